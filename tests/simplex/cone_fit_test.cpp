#include "zelmo/simplex/cone_fit.h"

#include <regex>
#include <string>

#include "tests/simplex/simplex_checks.h"

namespace x3dfit {
namespace {

using zelmo::test::ToPoint3f;

// A frustum of radii 15 and 5 over height 60 along w: the apex stands at
// z = 90, the half angle is atan(10 / 60).
constexpr double kBase = 15, kTop = 5, kHeight = 60;
const double kApexZ = kHeight * kBase / (kBase - kTop);
const double kHalfAngle = std::atan((kBase - kTop) / kHeight);

Samples Frustum(const Frame& f, int count, double noise, std::mt19937& rng) {
  return zelmo::test::SampleCone(f, kBase, kTop, kHeight, count, noise, rng);
}

// Least squares from the start value of Fit (apex at the centroid, 30 units
// short of the true apex) within the limit of 5000 iterations, which Fit
// prints.
TEST(XConeFit, RecoversSlenderConesByLeastSquares) {
  ForEachPose(51, 4, [](const Frame& f, double noise, std::mt19937& rng) {
    const Samples s = Frustum(f, 400, noise, rng);
    XConeFit fit;
    double p[8];
    zelmo::test::StdoutCapture capture;
    ASSERT_TRUE(fit.Fit(s.points, p, LeastSquare));
    const std::string out = capture.Take();
    std::smatch m;
    ASSERT_TRUE(std::regex_match(out, m, std::regex("iter:([0-9]+)\n"))) << out;
    EXPECT_LE(std::stoi(m[1]), 5000);
    // Noise moves the apex, 30 units beyond the points, the most.
    const double posTol = PosTol(noise) * (noise == 0.0 ? 1 : 10);
    ExpectUnitAxis(p + 3, f, DirTol(noise));
    zelmo::test::ExpectNear3(p, f.At(0, 0, kApexZ), posTol);
    EXPECT_NEAR(p[6], kHalfAngle, DirTol(noise));
  });
}

// Fit keeps the objective the object holds for Chebyshev; Fit2 always runs
// least squares, whatever method it is given, and prints nothing.
TEST(XConeFit, MethodsKeepOrIgnoreTheObjectiveAsDocumented) {
  std::mt19937 rng(57);
  const Frame f = zelmo::test::RandomFrame(rng, 200.0);
  Samples s = Frustum(f, 150, 0.0, rng);
  s.points[7] = ToPoint3f(f.At(25, 0, 20));  // one outlier
  ExpectChebyshevRerunsHeldObjective<XConeFit>(s.points, 7);

  const std::vector<float> xyz = s.Xyz();
  double byLs[8] = {0}, byLad[8] = {0};
  XConeFit d;
  zelmo::test::StdoutCapture none;
  d.Fit2(xyz.data(), s.Count(), byLs, LeastSquare);
  EXPECT_EQ(none.Take(), "");
  const double value = XConeFit::m_optimal_value_cone;
  d.Fit2(xyz.data(), s.Count(), byLad, LeastAbsDev);
  zelmo::test::ExpectNearArray(byLad, byLs, 8, 0.0);
  EXPECT_EQ(XConeFit::m_optimal_value_cone, value);
}

// The base is the end of the points' extent away from the apex; the axis
// is turned to run from the base towards the apex, once.
TEST(XConeFit, BaseAndTopOrientTheAxisTowardsTheApex) {
  std::mt19937 rng(61);
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(testing::Message() << "seed 61 trial " << trial);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    Samples s = Frustum(f, 300, 0.0, rng);
    s.points.push_back(ToPoint3f(f.At(kBase, 0, 0)));
    s.points.push_back(ToPoint3f(f.At(kTop, 0, kHeight)));
    const std::vector<float> xyz = s.Xyz();
    const cv::Vec3d apex = f.At(0, 0, kApexZ);
    for (double sign : {1.0, -1.0}) {  // the exact cone, axis either way
      double p[8] = {apex[0],       apex[1],       apex[2],    sign * f.w[0],
                     sign * f.w[1], sign * f.w[2], kHalfAngle, 0};
      double base[3], top[3], again[3], height = 0;
      XConeFit fit;
      fit.calcConeBasePoint_Center(xyz.data(), s.Count(), p, base, top, height);
      EXPECT_NEAR(height, kHeight, 1e-3);
      zelmo::test::ExpectNear3(base, f.At(0, 0, 0), 1e-3);
      zelmo::test::ExpectNear3(top, f.At(0, 0, kHeight), 1e-3);
      zelmo::test::ExpectSameDirection(Vec3(p + 3), f.w, 1e-12);
      // A second call finds the axis already turned.
      fit.calcConeBasePoint_Center(xyz.data(), s.Count(), p, again, top,
                                   height);
      zelmo::test::ExpectSameDirection(Vec3(p + 3), f.w, 1e-12);
      zelmo::test::ExpectNearArray(again, base, 3, 0.0);
    }
  }
}

}  // namespace
}  // namespace x3dfit
