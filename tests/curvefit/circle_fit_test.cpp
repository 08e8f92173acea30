#include "zelmo/curvefit/circle_fit.h"

#include <algorithm>

#include "tests/curvefit/outline_checks.h"

namespace xcurve3dfit {
namespace {

using zelmo::test::Frame;
using zelmo::test::Held;
using zelmo::test::Samples;
using zelmo::test::ToVec3d;

constexpr float kUnwritten = -777.0f;

// Signed in-plane distance of each point from the fitted circle `out`.
std::vector<double> CircleDistances(const Samples& s, const float* out) {
  const cv::Vec3d c = ToVec3d(out), n = ToVec3d(out + 3);
  std::vector<double> e;
  for (const cv::Point3f& p : s.points) {
    const cv::Vec3d d = cv::Vec3d(p.x, p.y, p.z) - c;
    const double along = d.dot(n);
    e.push_back(std::sqrt(d.dot(d) - along * along) - out[9]);
  }
  return e;
}

TEST(XCircle3DFit, RecoversCirclesInObliquePlanes) {
  std::uniform_real_distribution<double> radius(4.0, 60.0);
  zelmo::test::ExpectRecovered<XCircle3DFit>(
      41, 5,
      [&](const Frame& f, double noise, std::mt19937& rng, auto& sizes) {
        sizes = {radius(rng)};
        return zelmo::test::SampleCircle(f, sizes[0], 200, noise, rng);
      },
      3, false);
}

// Six points lifted off the plane by 4 would pull a least-squares plane
// 0.19 towards them; the least-absolute-deviation plane stays.
TEST(XCircle3DFit, PlaneIsTheAbsDevPlaneForEveryMethod) {
  std::mt19937 rng(43);
  const Frame f = zelmo::test::RandomFrame(rng, 300.0);
  Samples s = zelmo::test::SampleCircle(f, 25.0, 120, 0.0, rng);
  for (int k = 0; k < 6; ++k) {
    const double a = k * zelmo::test::kPi / 3;
    const cv::Vec3d q = f.At(25.0 * std::cos(a), 25.0 * std::sin(a), 4.0);
    s.points.push_back(cv::Point3f(q[0], q[1], q[2]));
  }
  XCircle3DFit fit;
  float out[10];
  ASSERT_TRUE(fit.Fit(s.points, out, LeastSquare));
  zelmo::test::ExpectOutline(out, f, {25.0}, false, false);
}

TEST(XCircle3DFit, RefusesTooFewPointsLeavingOutputsButNotCollinearOnes) {
  std::mt19937 rng(47);
  const Frame f = zelmo::test::RandomFrame(rng, 100.0);
  const Samples s = zelmo::test::SampleCircle(f, 10.0, 50, 0.0, rng);
  XCircle3DFit fit;
  float kept[10], out[10];
  ASSERT_TRUE(fit.Fit(s.points, kept, LeastAbsDev));
  for (int n : {3, 0}) {
    SCOPED_TRACE(testing::Message() << n << " points");
    const Samples few{{s.points.begin(), s.points.begin() + n}, {}};
    const std::vector<float> xyz = few.Xyz();
    std::fill(out, out + 10, kUnwritten);
    EXPECT_FALSE(fit.Fit(few.points, out, LeastAbsDev));
    EXPECT_FALSE(fit.Fit(xyz.data(), n, out, MaximumInscribed));
    EXPECT_EQ(std::vector<float>(out, out + 10),
              std::vector<float>(10, kUnwritten));
    EXPECT_EQ(Held(fit), std::vector<float>(kept, kept + 10));
  }
  // Four points are enough.
  ASSERT_TRUE(
      fit.Fit({s.points.begin(), s.points.begin() + 4}, out, LeastSquare));
  EXPECT_NEAR(out[9], 10.0, zelmo::test::SizeTol(false));

  // Only a negative squared radius is refused: points on one line give a
  // circle that is not a number, returned and held.
  std::vector<cv::Point3f> collinear;
  for (int i = 0; i < 6; ++i) collinear.emplace_back(float(i), 0.0f, 0.0f);
  ASSERT_TRUE(fit.Fit(collinear, out, LeastSquare));
  EXPECT_TRUE(std::isnan(out[9]));
  EXPECT_TRUE(std::isnan(Held(fit)[9]));
}

TEST(XCircle3DFit, NormalsVoteForTheSideOfTheNormal) {
  std::mt19937 rng(53);
  const Frame f = zelmo::test::RandomFrame(rng, 500.0);
  const Samples s = zelmo::test::SampleCircle(f, 15.0, 40, 0.0, rng);
  const std::vector<float> xyz = s.Xyz();
  XCircle3DFit fit;
  float plain[10];
  ASSERT_TRUE(fit.Fit(xyz.data(), s.Count(), plain, LeastAbsDev));
  const cv::Vec3d n = ToVec3d(plain + 3);

  // The first `against` normals point against the plain fit's normal, the
  // rest along it, all tilted by 0.3 u and scaled.
  const struct Case {
    int against;
    double scale;
    double sign;
  } cases[] = {
      {0, 1.0, 1},   {19, 1.0, 1},
      {20, 1.0, 1},  // a tie keeps the sign
      {21, 1.0, -1}, {40, 1.0, -1},
      {0, 0.0, -1},  // zero normals are not above 0
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message()
                 << "against " << c.against << " scale " << c.scale);
    std::vector<float> normals;
    for (int i = 0; i < s.Count(); ++i) {
      const cv::Vec3d m = ((i < c.against ? -n : n) + 0.3 * f.u) * c.scale;
      normals.insert(normals.end(), {float(m[0]), float(m[1]), float(m[2])});
    }
    float out[10];
    ASSERT_TRUE(
        fit.Fit(xyz.data(), normals.data(), s.Count(), out, LeastAbsDev));
    for (int k = 0; k < 3; ++k) EXPECT_EQ(out[3 + k], c.sign * plain[3 + k]);
    EXPECT_EQ(Held(fit), std::vector<float>(out, out + 10));
  }
}

// The one-sided circles of a bore with noise 0.02 keep their side up to the
// descent's tolerance 1e-4; MaximumInscribed (any value outside 0 to 5)
// grows until a point touches, none entering, and stops at that first
// contact, up to 0.3 short of the three-point optimum.
TEST(XCircle3DFit, OneSidedMethodsKeepTheirSideOfANoisyBore) {
  constexpr double kSideTol = 1e-4;
  std::mt19937 rng(59);
  for (int trial = 0; trial < 3; ++trial) {
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const Samples s = zelmo::test::SampleCircle(f, 12.0, 180, 0.02, rng);
    for (int method : {2, 4, 5, 6, -1, 7}) {
      SCOPED_TRACE(testing::Message()
                   << "seed 59 trial " << trial << " method " << method);
      XCircle3DFit fit;
      float out[10];
      ASSERT_TRUE(fit.Fit(s.points, out, static_cast<FitMethod>(method)));
      std::vector<double> e = CircleDistances(s, out);
      std::sort(e.begin(), e.end());
      if (method == ChebyshevCircumscribed) {
        EXPECT_LE(e.back(), kSideTol);
      } else {
        EXPECT_GE(e.front(), -kSideTol);
      }
      if (method >= 6 || method < 0) {
        EXPECT_LE(e.front(), kSideTol);
        // Resting on three points: two more within twice the noise (0.031
        // measured on these seeds).
        EXPECT_LE(e[2], 0.04);
      }
      EXPECT_NEAR(out[9], 12.0, 0.4);
    }
  }
}

}  // namespace
}  // namespace xcurve3dfit
