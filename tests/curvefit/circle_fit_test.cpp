#include "zelmo/curvefit/circle_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "tests/curvefit/outline_checks.h"
#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"

namespace xcurve3dfit {
namespace {

using zelmo::test::Frame;
using zelmo::test::Samples;
using zelmo::test::ToVec3d;

// A point the one-sided fits keep on their side may still cross the
// outline by the descent's own tolerance.
constexpr double kSideTol = 1e-4;
// Deviation of the points of a noisy bore from its circle.
constexpr double kBoreNoise = 0.02;
// The simplex stops at its first contact; the second and third points lie
// within this of the circle (measured up to 0.031 on these seeds).
constexpr double kThreeContactTol = 2 * kBoreNoise;
// How far the one-sided circles of such a bore may lie from its radius;
// MaximumInscribed, stopping at its first contact, falls up to 0.3 short.
constexpr double kOneSidedRadiusTol = 0.4;
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
  std::mt19937 rng(41);
  std::uniform_real_distribution<double> radius(4.0, 60.0);
  for (int trial = 0; trial < 5; ++trial) {
    for (double noise : {0.0, zelmo::test::kOutlineNoise}) {
      const Frame f = zelmo::test::RandomFrame(rng, 500.0);
      const double r = radius(rng);
      const Samples s = zelmo::test::SampleCircle(f, r, 200, noise, rng);
      for (FitMethod method : zelmo::test::kTwoSidedMethods) {
        SCOPED_TRACE(testing::Message()
                     << "seed 41 trial " << trial << " noise " << noise
                     << " method " << method);
        XCircle3DFit fit;
        float out[10];
        ASSERT_TRUE(fit.Fit(s.points, out, method));
        zelmo::test::ExpectOutline(out, f, {r}, noise > 0, false);
        xgeofeature::XFCircle3D circle;
        fit.getCircle(circle);
        EXPECT_EQ(circle.radius, out[9]);
        EXPECT_EQ(circle.majorDir[2], out[8]);
      }
    }
  }
}

TEST(XCircle3DFit, PlaneIsTheAbsDevPlaneForEveryMethod) {
  // Points on the circle, six of them lifted off its plane by 4: a
  // least-squares plane would move 0.19 towards them, the least-absolute-
  // deviation plane stays on the majority. The lifted points project back
  // onto the circle, so even the algebraic circle stays exact.
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
  float kept[10];
  ASSERT_TRUE(fit.Fit(s.points, kept, LeastAbsDev));

  const std::vector<std::vector<cv::Point3f>> refused = {
      {s.points.begin(), s.points.begin() + 3}, {}};
  for (const std::vector<cv::Point3f>& points : refused) {
    float out[10];
    std::fill(out, out + 10, kUnwritten);
    const std::vector<float> xyz = zelmo::test::Samples{points, {}}.Xyz();
    EXPECT_FALSE(fit.Fit(points, out, LeastAbsDev));
    EXPECT_FALSE(fit.Fit(xyz.data(), static_cast<int>(points.size()), out,
                         MaximumInscribed));
    for (float v : out) EXPECT_EQ(v, kUnwritten);
    xgeofeature::XFCircle3D circle;
    fit.getCircle(circle);
    EXPECT_EQ(circle.center[0], kept[0]);
    EXPECT_EQ(circle.radius, kept[9]);
  }
  // Four points are enough.
  float out[10];
  EXPECT_TRUE(
      fit.Fit(std::vector<cv::Point3f>(s.points.begin(), s.points.begin() + 4),
              out, LeastSquare));
  EXPECT_NEAR(out[9], 10.0, zelmo::test::kExactSizeTol);

  // Points exactly on the x axis divide by zero in the algebraic circle:
  // only a negative squared radius is refused, so the circle that is not a
  // number comes back as a fit, and the object keeps it.
  std::vector<cv::Point3f> collinear;
  for (int i = 0; i < 6; ++i) collinear.emplace_back(float(i), 0.0f, 0.0f);
  ASSERT_TRUE(fit.Fit(collinear, out, LeastSquare));
  EXPECT_TRUE(std::isnan(out[9]));
  xgeofeature::XFCircle3D circle;
  fit.getCircle(circle);
  EXPECT_TRUE(std::isnan(circle.radius));
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

  // `against` of the normals point against the plain fit's normal, the
  // rest along it (tilted, so that they are not the normal itself).
  auto votes = [&](int against, double scale) {
    std::vector<float> normals;
    for (int i = 0; i < s.Count(); ++i) {
      const cv::Vec3d m = (i < against ? -n : n) * scale + 0.3 * f.u * scale;
      normals.insert(normals.end(), {float(m[0]), float(m[1]), float(m[2])});
    }
    return normals;
  };
  struct Case {
    int against;
    double scale;
    double sign;
  };
  const Case cases[] = {
      {0, 1.0, 1},   {19, 1.0, 1},
      {20, 1.0, 1},  // a tie keeps the sign
      {21, 1.0, -1}, {40, 1.0, -1},
      {0, 0.0, -1},  // zero normals are not above 0
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message()
                 << "against " << c.against << " scale " << c.scale);
    const std::vector<float> normals = votes(c.against, c.scale);
    float out[10];
    ASSERT_TRUE(
        fit.Fit(xyz.data(), normals.data(), s.Count(), out, LeastAbsDev));
    for (int k = 0; k < 3; ++k) EXPECT_EQ(out[3 + k], c.sign * plain[3 + k]);
    xgeofeature::XFCircle3D circle;
    fit.getCircle(circle);
    for (int k = 0; k < 3; ++k) EXPECT_EQ(circle.normal[k], out[3 + k]);
  }
}

TEST(XCircle3DFit, OneSidedMethodsKeepTheirSideOfANoisyBore) {
  // MaximumInscribed (any value outside 0 to 5) ends where the circle has
  // grown onto the points: one touches it to the solver's precision, none
  // enters. It stops at that first contact and does not walk on to the
  // three-point optimum.
  std::mt19937 rng(59);
  for (int trial = 0; trial < 3; ++trial) {
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const Samples s = zelmo::test::SampleCircle(f, 12.0, 180, kBoreNoise, rng);
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
        // Two more points lie within the noise band of the circle: the
        // circle rests on three points up to what the simplex resolves.
        EXPECT_LE(e[2], kThreeContactTol);
      }
      EXPECT_NEAR(out[9], 12.0, kOneSidedRadiusTol);
    }
  }
}

}  // namespace
}  // namespace xcurve3dfit
