#include "zelmo/simplex/sphere_fit.h"

#include "tests/simplex/simplex_checks.h"

namespace x3dfit {
namespace {

Spread SphereSpread(const std::vector<cv::Point3f>& pts, const double* p) {
  return SpreadOf(pts, [p](const cv::Vec3d& q) {
    return std::fabs(cv::norm(q - Vec3(p)) - p[3]);
  });
}

TEST(XSphereFit, RecoversSpheresAndCapsWithEveryMethod) {
  ForEachPose(31, [](const Frame& f, double noise, std::mt19937& rng) {
    const double r = std::uniform_real_distribution<double>(2.0, 60.0)(rng);
    for (double polar : {kPi, kPi / 3}) {
      const Samples s = SampleSphere(f, r, 300, noise, rng, polar);
      // A cap fixes its center less well than the whole sphere.
      const double tol = PosTol(noise) * (polar < 3 ? 5.0 : 1.0);
      for (FitMethod method : kAllMethods) {
        XSphereFit fit;
        double p[4];
        ASSERT_TRUE(fit.Fit(s.points, p, method)) << polar << " " << method;
        ExpectNear3(p, f.origin, tol);
        EXPECT_NEAR(p[3], r, tol);
      }
    }
  });
}

// Eight points on a sphere of radius 10 and one 2 outside it: the sum of
// deviations leaves the sphere on the eight, the largest splits the outlier.
// Under four points nothing is written; a descent starts from the caller's p.
TEST(XSphereFit, MethodSelectsObjective) {
  std::vector<cv::Point3f> pts = {{0, 0, 12}};
  for (int k = 0; k < 8; ++k)
    pts.push_back(
        ToPoint3f(8 * cv::Vec3d(std::cos(k * kPi / 4), std::sin(k * kPi / 4),
                                k % 2 ? .75 : -.75)));
  XSphereFit fit;
  double ls[4], lad[4], cheb[4], other[4], p[4] = {0.5, 0.5, 0.5, 9.0};
  fit.Fit(pts, ls, LeastSquare);
  fit.Fit(pts, lad, LeastAbsDev);
  fit.Fit(pts, cheb, Chebyshev);
  fit.Fit(pts, other, static_cast<FitMethod>(-1));  // runs the sum
  EXPECT_LT(SphereSpread(pts, lad).sum, SphereSpread(pts, ls).sum - 0.1);
  EXPECT_LT(SphereSpread(pts, cheb).max, SphereSpread(pts, lad).max - 0.1);
  ExpectNearArray(other, lad, 4, 0.0);
  const std::vector<cv::Point3f> three = {{10, 0, 0}, {0, 10, 0}, {0, 0, 10}};
  EXPECT_TRUE(fit.Fit(three, p, LeastSquare));
  EXPECT_EQ(cv::Vec4d(p), cv::Vec4d(0.5, 0.5, 0.5, 9.0));
  EXPECT_TRUE(fit.Fit(three, p, LeastAbsDev));
  EXPECT_LE(SphereSpread(three, p).max, 1e-4);
}

}  // namespace
}  // namespace x3dfit
