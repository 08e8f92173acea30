#include "zelmo/lmfit/cone_fit_lm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "tests/support/fit_checks.h"
#include "tests/support/samplers.h"
#include "tests/support/stdout_capture.h"
#include "tests/support/tolerance.h"

namespace zelmolm {

// White-box access to the ends of the stored cone.
class XConeFitLMPeer {
 public:
  static void Ends(XConeFitLM& f, const std::vector<float>& p) {
    f.getValue(p.data(), nullptr, static_cast<int>(p.size() / 3));
  }
};

namespace {

namespace zt = zelmo::test;

constexpr double kNoise = 0.01;         // deviation of the scan
constexpr double kFitTol = 3 * kNoise;  // apex, ends and radii
constexpr double kAxisTolRad = 2e-3;    // axis direction
constexpr double kAngleTol = 1e-3;      // half angle, radians

// Fits silently (no console line) and returns the result.
int FitQuietly(XConeFitLM& fit, const zt::Samples& s) {
  zt::StdoutCapture capture;
  const int result = fit.Fit(s.Xyz().data(), s.NormalsXyz().data(), s.Count());
  EXPECT_EQ(capture.Take(), "");
  return result;
}

// Arcs of 360, 180 and 90 degrees. Apex and ends lie off the points along
// the axis: they move with its error.
TEST(XConeFitLM, RecoversFrustumsWithTheBaseAtTheFarEndOrFails) {
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE(trial);
    std::mt19937 rng(9100 + trial);
    const zt::Frame f = zt::RandomFrame(rng, 500.0);
    std::uniform_real_distribution<double> unit(0, 1);
    const double r0 = 10 + 20 * unit(rng), r1 = r0 * (0.3 + 0.4 * unit(rng));
    const double h = 20 + 20 * unit(rng), half = std::atan((r0 - r1) / h);
    const zt::Samples s = zt::SampleCone(f, r0, r1, h, 800, kNoise, rng,
                                         zt::kPi * 2 / (1 << trial));
    double zBase, zTop;
    zt::AxialExtent(f, s, &zBase, &zTop);
    const double zApex = h * r0 / (r0 - r1);
    XConeFitLM fit;
    ASSERT_GE(FitQuietly(fit, s), 0);
    const double apexTol = kFitTol + (zApex - zBase) * kAxisTolRad;
    const double endTol = kFitTol + std::fabs(zBase) * kAxisTolRad;
    zt::ExpectNear3(fit.apex, f.At(0, 0, zApex), apexTol);
    EXPECT_NEAR(fit.halfAngle, half, kAngleTol);
    zt::ExpectSameDirection(fit.axis, f.w, kAxisTolRad);
    zt::ExpectNear3(fit.base, f.At(0, 0, zBase), endTol);
    EXPECT_NEAR(fit.baseRadius, (zApex - zBase) * std::tan(half), endTol);
    // Five points, or coincident ones (no consensus model): -1, fields kept.
    const std::vector<float> before(fit.apex, &fit.topRadius + 1);
    zt::Samples five = s, same = s;
    five.points.resize(5);
    same.points.assign(s.Count(), s.points[0]);
    EXPECT_TRUE(FitQuietly(fit, five) == -1 && FitQuietly(fit, same) == -1);
    EXPECT_EQ(std::vector<float>(fit.apex, &fit.topRadius + 1), before);
  }
}

// About +z from the apex (1, 2, 3), radius |t| / 2 at t along z. Each row:
// the points' extent t0, t1; where base and top land; the axis afterwards.
TEST(XConeFitLM, EndsAndAxisTurnFollowTheExtentOfThePoints) {
  const float cases[4][5] = {{2, 5, 5, 2, -1},     // ahead of the apex: turned
                             {-5, -2, -5, -2, 1},  // behind it
                             {-5, 2, -5, 0, 1},    // longer behind: top at apex
                             {-2, 5, 5, 0, -1}};   // longer ahead: turned
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "extent " << c[0] << " " << c[1]);
    XConeFitLM fit;
    fit.apex[0] = 1, fit.apex[1] = 2, fit.apex[2] = 3;
    fit.axis[2] = 1.0f;
    fit.halfAngle = std::atan(0.5f);
    std::vector<float> p;
    for (float t : {c[0], 0.5f * (c[0] + c[1]), c[1]})
      p.insert(p.end(), {1 + 0.5f * std::fabs(t), 2, 3 + t});
    XConeFitLMPeer::Ends(fit, p);
    zt::ExpectNear3(fit.base, cv::Vec3d(1, 2, 3 + c[2]), 1e-6);
    zt::ExpectNear3(fit.top, cv::Vec3d(1, 2, 3 + c[3]), 1e-6);
    zt::ExpectNear3(fit.axis, cv::Vec3d(0, 0, c[4]), 0.0);
    EXPECT_NEAR(fit.height, std::fabs(c[2] - c[3]), 1e-6);
    EXPECT_NEAR(fit.baseRadius, 0.5f * std::fabs(c[2]), 1e-6);
    EXPECT_NEAR(fit.topRadius, 0.5f * std::fabs(c[3]), 1e-6);
  }
}

}  // namespace
}  // namespace zelmolm
