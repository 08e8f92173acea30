#include "zelmo/simplex/cylinder_fit.h"

#include "tests/simplex/simplex_checks.h"
#include "tests/support/fit_checks.h"

namespace x3dfit {
namespace {

// Exposes the iteration limit that Fit2 leaves behind.
class CylinderFitProbe : public XCylinderFit {
 public:
  int maxIter() const { return m_maxIter; }
};

// p[0..2] is the middle of the points' extent on the fitted axis, p[7] its
// length.
void ExpectCylinder(const double* p,
                    const Frame& f,
                    double radius,
                    const Samples& s,
                    double posTol,
                    double dirTol) {
  double z0, z1;
  zelmo::test::AxialExtent(f, s, &z0, &z1);
  const double height = z1 - z0, tilt = height * dirTol;
  ExpectUnitAxis(p + 3, f, dirTol);
  EXPECT_NEAR(p[6], radius, posTol);
  zelmo::test::ExpectNear3(p, f.origin + f.w * ((z0 + z1) / 2), posTol + tilt);
  EXPECT_NEAR(p[7], height, 2 * posTol + tilt);
}

TEST(XCylinderFit, RecoversLongCylindersWithEveryMethod) {
  ForEachPose(41, 4, [](const Frame& f, double noise, std::mt19937& rng) {
    const double r = std::uniform_real_distribution<double>(3.0, 20.0)(rng);
    const Samples s = zelmo::test::SampleCylinder(f, r, 5 * r, 300, noise, rng);
    for (FitMethod method : kAllMethods) {
      SCOPED_TRACE(testing::Message() << "method " << method);
      XCylinderFit fit;
      double p[8];
      ASSERT_TRUE(fit.Fit(s.points, p, method));
      ExpectCylinder(p, f, r, s, PosTol(noise), DirTol(noise));
    }
  });
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
    ExpectCylinder(p, f, 30.0, s, 1e-3, 1e-4);
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
    const double e =
        zelmo::test::DistanceToLine(Vec3(p), Vec3(p + 3), Vec3(&x.x)) - p[6];
    sum += e * e;
  }
  EXPECT_GT(sum, 0.1);  // noise 0.05 on 200 points
  EXPECT_NEAR(XCylinderFit::m_optimal_value, sum, 1e-6 * sum);
}

}  // namespace
}  // namespace x3dfit
