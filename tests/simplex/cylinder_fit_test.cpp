#include "zelmo/simplex/cylinder_fit.h"

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

using zelmo::test::DistanceToLine;
using zelmo::test::Frame;
using zelmo::test::Samples;
using zelmo::test::Vec3;

// Exposes the iteration limit that Fit2 leaves behind.
class CylinderFitProbe : public XCylinderFit {
 public:
  int maxIter() const { return m_maxIter; }
};

// The extent of the samples along the true axis, and its middle.
struct Extent {
  cv::Vec3d middle;
  double height;
};

Extent ExtentAlong(const Frame& f, const Samples& s) {
  double lo = 1e300, hi = -1e300;
  for (const cv::Point3f& x : s.points) {
    const double t = (Vec3(&x.x) - f.origin).dot(f.w);
    lo = std::min(lo, t);
    hi = std::max(hi, t);
  }
  return {f.origin + f.w * ((lo + hi) / 2), hi - lo};
}

void ExpectCylinder(const double* p,
                    const Frame& f,
                    double radius,
                    const Extent& extent,
                    double posTol,
                    double dirTol) {
  EXPECT_NEAR(cv::norm(Vec3(p + 3)), 1.0, 1e-12);
  zelmo::test::ExpectSameAxis(Vec3(p + 3), f.w, dirTol);
  EXPECT_NEAR(p[6], radius, posTol);
  // p[0..2] is the middle of the points' extent on the fitted axis.
  zelmo::test::ExpectNear3(p, extent.middle, posTol + extent.height * dirTol);
  EXPECT_NEAR(p[7], extent.height, 2 * posTol + extent.height * dirTol);
}

TEST(XCylinderFit, RecoversLongCylindersWithEveryMethod) {
  std::mt19937 rng(41);
  std::uniform_real_distribution<double> radius(3.0, 20.0);
  for (int trial = 0; trial < 4; ++trial) {
    for (double noise : {0.0, 0.01}) {
      const Frame f = zelmo::test::RandomFrame(rng, 500.0);
      const double r = radius(rng);
      const Samples s =
          zelmo::test::SampleCylinder(f, r, 5 * r, 300, noise, rng);
      const Extent extent = ExtentAlong(f, s);
      const bool exact = noise == 0.0;
      for (FitMethod method : {LeastSquare, LeastAbsDev, Chebyshev}) {
        SCOPED_TRACE(testing::Message()
                     << "seed 41 trial " << trial << " noise " << noise
                     << " method " << method);
        XCylinderFit fit;
        double p[8];
        ASSERT_TRUE(fit.Fit(s.points, p, method));
        ExpectCylinder(p, f, r, extent, exact ? kExactPosTol : kNoisyPosTol,
                       exact ? kExactDirTol : kNoisyDirTol);
      }
    }
  }
}

// A disc-like cylinder: its axis is the direction of least spread, so Fit
// starts on a diameter and stays there, while Fit2 tries every principal
// axis and keeps the least-squares best.
TEST(XCylinderFit, Fit2FindsTheAxisOfAShortWideCylinder) {
  std::mt19937 rng(43);
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE(testing::Message() << "seed 43 trial " << trial);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const Samples s = zelmo::test::SampleCylinder(f, 30.0, 6.0, 400, 0.0, rng);
    const std::vector<float> xyz = s.Xyz();
    XCylinderFit plain;
    double q[8];
    plain.Fit(s.points, q, LeastSquare);
    EXPECT_GT(zelmo::test::AxisAngle(Vec3(q + 3), f.w), 0.5);

    CylinderFitProbe fit;
    ASSERT_EQ(fit.maxIter(), 10000);
    double p[8];
    ASSERT_TRUE(fit.Fit2(xyz.data(), s.Count(), p));
    EXPECT_EQ(fit.maxIter(), 1000);
    // Within 1000 iterations the descent gets close, not to the last digit.
    ExpectCylinder(p, f, 30.0, ExtentAlong(f, s), 1e-3, 1e-4);
  }
}

// Only the least-squares objective writes the shared value; it holds the
// objective at its last evaluation, here at the converged cylinder.
TEST(XCylinderFit, LeastSquaresLeavesItsValueInTheSharedStatic) {
  std::mt19937 rng(47);
  const Frame f = zelmo::test::RandomFrame(rng, 300.0);
  const Samples s = zelmo::test::SampleCylinder(f, 8.0, 40.0, 200, 0.05, rng);
  XCylinderFit fit;
  double p[8];
  XCylinderFit::m_optimal_value = -1.0;
  fit.Fit(s.points, p, LeastAbsDev);
  fit.Fit(s.points, p, Chebyshev);
  EXPECT_EQ(XCylinderFit::m_optimal_value, -1.0);

  fit.Fit(s.points, p, LeastSquare);
  double sum = 0;
  for (const cv::Point3f& x : s.points) {
    const double e = DistanceToLine(Vec3(p), Vec3(p + 3), Vec3(&x.x)) - p[6];
    sum += e * e;
  }
  EXPECT_GT(sum, 0.1);  // noise 0.05 on 200 points
  EXPECT_NEAR(XCylinderFit::m_optimal_value, sum, 1e-6 * sum);
}

}  // namespace
}  // namespace x3dfit
