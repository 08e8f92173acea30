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

// p[0..2] is the middle of the points' extent on the axis, p[7] its length,
// within 1e-4 k; the axis within 1e-5 k radians.
void ExpectCylinder(
    const double* p, const Frame& f, double r, const Samples& s, double k) {
  double z0, z1;
  AxialExtent(f, s, &z0, &z1);
  const double tilt = (z1 - z0) * 1e-5 * k;
  ExpectUnitAxis(p + 3, f, 1e-5 * k);
  EXPECT_NEAR(p[6], r, 1e-4 * k);
  ExpectNear3(p, f.origin + f.w * ((z0 + z1) / 2), 1e-4 * k + tilt);
  EXPECT_NEAR(p[7], z1 - z0, 2e-4 * k + tilt);
}

// Fit recovers long cylinders. On a disc-like one it starts on a diameter
// and stays there, while Fit2 tries every principal axis within 1000
// iterations and keeps the best.
TEST(XCylinderFit, RecoversLongCylindersAndFit2AShortWideOne) {
  ForEachPose(41, [](const Frame& f, double noise, std::mt19937& rng) {
    const double r = std::uniform_real_distribution<double>(3.0, 20.0)(rng);
    const Samples s = SampleCylinder(f, r, 5 * r, 300, noise, rng);
    for (FitMethod method : kAllMethods) {
      XCylinderFit fit;
      double p[8];
      ASSERT_TRUE(fit.Fit(s.points, p, method)) << method;
      ExpectCylinder(p, f, r, s, noise ? 100 : 1);  // PosTol, DirTol
    }
  });
  std::mt19937 rng(43);
  const Frame f = RandomFrame(rng, 500.0);
  const Samples s = SampleCylinder(f, 30.0, 6.0, 400, 0.0, rng);
  const std::vector<float> xyz = s.Xyz();
  CylinderFitProbe fit;
  double q[8], p[8];
  fit.Fit(s.points, q, LeastSquare);
  EXPECT_EQ(fit.maxIter(), 10000);
  EXPECT_GT(AxisAngle(Vec3(q + 3), f.w), 0.5);
  ASSERT_TRUE(fit.Fit2(xyz.data(), s.Count(), p));
  EXPECT_EQ(fit.maxIter(), 1000);  // the limit Fit2 set stays
  ExpectCylinder(p, f, 30.0, s, 10);
}

}  // namespace
}  // namespace x3dfit
