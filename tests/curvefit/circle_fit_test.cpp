#include "zelmo/curvefit/circle_fit.h"

#include <algorithm>

#include "tests/curvefit/outline_checks.h"

namespace xcurve3dfit {
namespace {

using namespace zelmo::test;  // NOLINT: the suites' own helpers

TEST(XCircle3DFit, RecoversCirclesInObliquePlanes) {
  std::uniform_real_distribution<double> radius(4.0, 60.0);
  auto circle = [&](const Frame& f, double noise, std::mt19937& rng,
                    auto& sizes) {
    sizes = {radius(rng)};
    return SampleCircle(f, sizes[0], 200, noise, rng);
  };
  EXPECT_EQ(Recovered<XCircle3DFit>(41, circle, 3), 12);
}

// Three points are refused, outputs untouched; four are
// enough. Given normals vote for the side of the normal: a tie keeps it,
// zero normals are no vote. Points lifted off the plane by 4 would pull a
// least-squares plane; the least-absolute-deviation plane stays. Collinear
// points give a circle that is not a number, returned.
TEST(XCircle3DFit, RefusalsVotesAndThePlaneOfTheOutline) {
  std::mt19937 rng(53);
  const Frame f = RandomFrame(rng, 500.0);
  Samples s = SampleCircle(f, 15.0, 40, 0.0, rng);
  const std::vector<float> xyz = s.Xyz();
  XCircle3DFit fit;
  float plain[10], out[10];
  std::fill(out, out + 10, -777.0f);
  ASSERT_TRUE(fit.Fit(xyz.data(), s.Count(), plain, LeastAbsDev));
  EXPECT_FALSE(fit.Fit(xyz.data(), 3, out, LeastAbsDev));
  EXPECT_EQ(std::vector<float>(out, out + 10), std::vector<float>(10, -777.0f));
  ASSERT_TRUE(fit.Fit(xyz.data(), 4, out, LeastSquare));
  EXPECT_NEAR(out[9], 15.0, SizeTol(false));
  // {normals against the plain normal, their scale, the expected sign}
  for (const cv::Vec3d& c :
       {cv::Vec3d(20, 1, 1), cv::Vec3d(21, 1, -1), cv::Vec3d(0, 0, -1)}) {
    std::vector<cv::Point3f> normals;
    for (int i = 0; i < s.Count(); ++i)
      normals.push_back(ToPoint3f(
          ((i < c[0] ? -1 : 1) * ToVec3d(plain + 3) + 0.3 * f.u) * c[1]));
    ASSERT_TRUE(fit.Fit(xyz.data(), &normals[0].x, 40, out, LeastAbsDev));
    for (int k = 0; k < 3; ++k) EXPECT_EQ(out[3 + k], c[2] * plain[3 + k]) << c;
  }
  for (int k = 0; k < 6; ++k)
    s.points.push_back(ToPoint3f(
        f.At(15 * std::cos(k * kPi / 3), 15 * std::sin(k * kPi / 3), 4.0)));
  ASSERT_TRUE(fit.Fit(s.points, out, LeastSquare));
  ExpectOutline(out, f, {15.0}, false);
  ASSERT_TRUE(fit.Fit({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {4, 0, 0}, {5, 0, 0}},
                      out, LeastSquare));
  EXPECT_TRUE(std::isnan(out[9]));
}

// The one-sided circles of a bore with noise 0.02 keep their side up to the
// descent's tolerance 1e-4; MaximumInscribed (any value outside 0 to 5)
// stops at the first contact, resting on three points.
TEST(XCircle3DFit, OneSidedMethodsKeepTheirSideOfANoisyBore) {
  std::mt19937 rng(59);
  const Frame f = RandomFrame(rng, 500.0);
  const Samples s = SampleCircle(f, 12.0, 180, 0.02, rng);
  for (int method : {2, 4, 5, 6, -1}) {
    SCOPED_TRACE(testing::Message() << "method " << method);
    XCircle3DFit fit;
    float out[10];
    ASSERT_TRUE(fit.Fit(s.points, out, static_cast<FitMethod>(method)));
    std::vector<double> e;  // signed in-plane distances from the circle
    for (const cv::Point3f& p : s.points)
      e.push_back(DistanceToLine(ToVec3d(out), ToVec3d(out + 3), ToVec3d(p)) -
                  out[9]);
    std::sort(e.begin(), e.end());
    EXPECT_GE(method == ChebyshevCircumscribed ? -e.back() : e.front(), -1e-4);
    if (method == 6 || method < 0) {
      EXPECT_LE(e.front(), 1e-4);
      EXPECT_LE(e[2], 0.04);  // two more within twice the noise (0.031)
    }
    EXPECT_NEAR(out[9], 12.0, 0.4);
  }
}

}  // namespace
}  // namespace xcurve3dfit
