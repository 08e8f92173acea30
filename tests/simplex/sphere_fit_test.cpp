#include "zelmo/simplex/sphere_fit.h"

#include "tests/simplex/simplex_checks.h"

namespace x3dfit {
namespace {

zelmo::test::Spread SphereSpread(const std::vector<cv::Point3f>& pts,
                                 const double* p) {
  return zelmo::test::SpreadOf(pts, [p](const cv::Vec3d& q) {
    return std::fabs(cv::norm(q - Vec3(p)) - p[3]);
  });
}

TEST(XSphereFit, RecoversSpheresAndCapsWithEveryMethod) {
  ForEachPose(31, 8, [](const Frame& f, double noise, std::mt19937& rng) {
    const double r = std::uniform_real_distribution<double>(2.0, 60.0)(rng);
    for (double polar : {zelmo::test::kPi, zelmo::test::kPi / 3}) {
      const Samples s = zelmo::test::SampleSphere(f, r, 300, noise, rng, polar);
      // A cap fixes its center less well than the whole sphere.
      const double tol = PosTol(noise) * (polar < 3 ? 5.0 : 1.0);
      for (FitMethod method : kAllMethods) {
        SCOPED_TRACE(testing::Message()
                     << "polar " << polar << " method " << method);
        XSphereFit fit;
        double p[4];
        ASSERT_TRUE(fit.Fit(s.points, p, method));
        zelmo::test::ExpectNear3(p, f.origin, tol);
        EXPECT_NEAR(p[3], r, tol);
      }
    }
  });
}

// Eight points on a sphere of radius 10 and one 2 outside it: the sum of
// deviations leaves the sphere on the eight, the largest deviation splits
// the outlier, any value but 0 and 2 runs the sum.
TEST(XSphereFit, MethodSelectsObjective) {
  std::vector<cv::Point3f> pts;
  for (int k = 0; k < 8; ++k) {
    const double a = k * zelmo::test::kPi / 4;
    pts.push_back(zelmo::test::ToPoint3f(
        {10 * std::cos(a) * 0.8, 10 * std::sin(a) * 0.8, k % 2 ? 6.0 : -6.0}));
  }
  pts.emplace_back(0.0f, 0.0f, 12.0f);
  XSphereFit fit;
  double ls[4], lad[4], cheb[4], other[4];
  fit.Fit(pts, ls, LeastSquare);
  fit.Fit(pts, lad, LeastAbsDev);
  fit.Fit(pts, cheb, Chebyshev);
  fit.Fit(pts, other, static_cast<FitMethod>(-1));
  EXPECT_LT(SphereSpread(pts, lad).sum, SphereSpread(pts, ls).sum - 0.1);
  EXPECT_LT(SphereSpread(pts, lad).sum, SphereSpread(pts, cheb).sum);
  EXPECT_LT(SphereSpread(pts, cheb).max, SphereSpread(pts, lad).max - 0.1);
  EXPECT_LT(SphereSpread(pts, cheb).max, SphereSpread(pts, ls).max);
  zelmo::test::ExpectNearArray(other, lad, 4, 0.0);
}

TEST(XSphereFit, FewerThanFourPointsStartFromCallersParams) {
  const std::vector<cv::Point3f> three = {{10, 0, 0}, {0, 10, 0}, {0, 0, 10}};
  XSphereFit fit;
  double p[4] = {0.5, 0.5, 0.5, 9.0};
  const double before[4] = {0.5, 0.5, 0.5, 9.0};
  EXPECT_TRUE(fit.Fit(three, p, LeastSquare));
  zelmo::test::ExpectNearArray(p, before, 4, 0.0);
  // The descent starts from p and fits the three points.
  EXPECT_TRUE(fit.Fit(three, p, LeastAbsDev));
  EXPECT_LE(SphereSpread(three, p).max, 1e-4);
}

}  // namespace
}  // namespace x3dfit
