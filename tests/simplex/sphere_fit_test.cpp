#include "zelmo/simplex/sphere_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "tests/simplex/recovery_tolerances.h"
#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/tolerance.h"

namespace x3dfit {
namespace {

using zelmo::test::Frame;
using zelmo::test::Vec3;

zelmo::test::Spread SphereSpread(const std::vector<cv::Point3f>& pts,
                                 const double* p) {
  return zelmo::test::SpreadOf(pts, [p](const cv::Vec3d& q) {
    return std::fabs(cv::norm(q - Vec3(p)) - p[3]);
  });
}

TEST(XSphereFit, RecoversSpheresAndCapsWithEveryMethod) {
  std::mt19937 rng(31);
  std::uniform_real_distribution<double> radius(2.0, 60.0);
  for (int trial = 0; trial < 4; ++trial) {
    for (double noise : {0.0, 0.01}) {
      for (double polar : {zelmo::test::kPi, zelmo::test::kPi / 3}) {
        const Frame f = zelmo::test::RandomFrame(rng, 500.0);
        const double r = radius(rng);
        const auto s = zelmo::test::SampleSphere(f, r, 300, noise, rng, polar);
        for (FitMethod method : {LeastSquare, LeastAbsDev, Chebyshev}) {
          SCOPED_TRACE(testing::Message()
                       << "seed 31 trial " << trial << " noise " << noise
                       << " polar " << polar << " method " << method);
          XSphereFit fit;
          double p[4];
          ASSERT_TRUE(fit.Fit(s.points, p, method));
          const double tol = noise == 0.0 ? kExactPosTol : kNoisyPosTol;
          // A cap fixes its center less well than the whole sphere.
          const double capFactor = polar < 3 ? 5.0 : 1.0;
          zelmo::test::ExpectNear3(p, f.origin, tol * capFactor);
          EXPECT_NEAR(p[3], r, tol * capFactor);
        }
      }
    }
  }
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
