#include "zelmo/simplex/cone_fit.h"

#include <string>

#include "tests/simplex/simplex_checks.h"

namespace x3dfit {
namespace {

// A frustum of radii 15 and 5 over height 60 along w: apex at z = 90.
constexpr double kBase = 15, kTop = 5, kHeight = 60, kApexZ = 90;
const double kHalfAngle = std::atan((kBase - kTop) / kHeight);

// Least squares within 5000 iterations, which Fit prints.
TEST(XConeFit, RecoversSlenderConesByLeastSquares) {
  ForEachPose(51, [](const Frame& f, double noise, std::mt19937& rng) {
    const Samples s = SampleCone(f, kBase, kTop, kHeight, 400, noise, rng);
    XConeFit fit;
    double p[8];
    StdoutCapture capture;
    ASSERT_TRUE(fit.Fit(s.points, p, LeastSquare));
    const std::string out = capture.Take();
    const int iter = std::min(std::stoi(out.substr(5)), 5000);  // at most
    EXPECT_EQ(out, "iter:" + std::to_string(iter) + "\n");
    ExpectUnitAxis(p + 3, f, DirTol(noise));
    // Noise moves the apex, 30 units beyond the points, the most.
    ExpectNear3(p, f.At(0, 0, kApexZ), PosTol(noise) * (noise ? 10 : 1));
    EXPECT_NEAR(p[6], kHalfAngle, DirTol(noise));
  });
}

// Fit keeps the held objective for Chebyshev; Fit2 always runs least
// squares, silently. The base is the end of the points' extent away from
// the apex; the axis is turned to run from the base towards the apex, once.
TEST(XConeFit, MethodsAndBaseFollowTheHeldObjectiveAndTheApex) {
  std::mt19937 rng(57);
  const Frame f = RandomFrame(rng, 200.0);
  Samples s = SampleCone(f, kBase, kTop, kHeight, 150, 0.0, rng);
  s.points.push_back(ToPoint3f(f.At(kBase, 0, 0)));
  s.points.push_back(ToPoint3f(f.At(kTop, 0, kHeight)));
  const std::vector<float> xyz = s.Xyz();
  for (double sign : {1.0, -1.0}) {  // the exact cone, axis either way
    const cv::Vec3d a = f.At(0, 0, kApexZ), w = sign * f.w;
    double p[8] = {a[0], a[1], a[2], w[0], w[1], w[2], kHalfAngle, 0};
    double base[3], top[3], again[3], height = 0;
    XConeFit fit;
    fit.calcConeBasePoint_Center(xyz.data(), s.Count(), p, base, top, height);
    EXPECT_NEAR(height, kHeight, 1e-3);
    ExpectNear3(base, f.At(0, 0, 0), 1e-3);
    ExpectNear3(top, f.At(0, 0, kHeight), 1e-3);
    ExpectSameDirection(Vec3(p + 3), f.w, 1e-12);
    fit.calcConeBasePoint_Center(xyz.data(), s.Count(), p, again, top, height);
    ExpectSameDirection(Vec3(p + 3), f.w, 1e-12);
    ExpectNearArray(again, base, 3, 0.0);
  }
  double byLs[8] = {0}, byLad[8] = {0};
  XConeFit d;
  StdoutCapture none;
  d.Fit2(xyz.data(), s.Count(), byLs, LeastSquare);
  d.Fit2(xyz.data(), s.Count(), byLad, LeastAbsDev);
  EXPECT_EQ(none.Take(), "");
  ExpectNearArray(byLad, byLs, 8, 0.0);
  s.points[7] = ToPoint3f(f.At(25, 0, 20));  // one outlier
  EXPECT_GT(ChebyshevRerunsHeldObjective<XConeFit>(s.points), 1e-3);
}

}  // namespace
}  // namespace x3dfit
