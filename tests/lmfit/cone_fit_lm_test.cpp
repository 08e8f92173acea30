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

TEST(XConeFitLM, RecoversFrustumsWithTheBaseAtTheFarEnd) {
  for (int trial = 0; trial < 6; ++trial) {
    const unsigned seed = 9100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const zt::Frame f = zt::RandomFrame(rng, 500.0);
    std::uniform_real_distribution<double> unit(0, 1);
    const double r0 = 10 + 20 * unit(rng), r1 = r0 * (0.3 + 0.4 * unit(rng));
    const double h = 20 + 20 * unit(rng), half = std::atan((r0 - r1) / h);
    const double arc = zt::kPi * 2 / (1 << trial % 3);  // 360 .. 90
    const zt::Samples s = zt::SampleCone(f, r0, r1, h, 800, kNoise, rng, arc);
    double zBase, zTop;
    zt::AxialExtent(f, s, &zBase, &zTop);
    const double zApex = h * r0 / (r0 - r1);
    XConeFitLM fit;
    ASSERT_GE(FitQuietly(fit, s), 0);
    // Apex and ends lie off the points along the axis: they move with its
    // error.
    const double apexTol = kFitTol + (zApex - zBase) * kAxisTolRad;
    const double endTol = kFitTol + std::fabs(zBase) * kAxisTolRad;
    zt::ExpectNear3(fit.apex, f.At(0, 0, zApex), apexTol);
    EXPECT_NEAR(fit.halfAngle, half, kAngleTol);
    zt::ExpectSameDirection(fit.axis, f.w, kAxisTolRad);
    zt::ExpectNear3(fit.base, f.At(0, 0, zBase), endTol);
    zt::ExpectNear3(fit.top, f.At(0, 0, zTop), endTol);
    EXPECT_NEAR(fit.height, zTop - zBase, endTol);
    EXPECT_NEAR(fit.baseRadius, (zApex - zBase) * std::tan(half), endTol);
    EXPECT_NEAR(fit.topRadius, (zApex - zTop) * std::tan(half), endTol);
  }
}

TEST(XConeFitLM, EndsAndAxisTurnFollowTheExtentOfThePoints) {
  // Cone about +z from the apex (1, 2, 3), radius |t| / 2 at t along z.
  struct Case {
    float t0, t1;     // the points' extent along +z from the apex
    float far, near;  // where base and top land
    float axisZ;      // the stored axis afterwards
  };
  const Case cases[] = {
      {2, 5, 5, 2, -1},     // all ahead of the apex: turned
      {-5, -2, -5, -2, 1},  // all behind it
      {-5, 2, -5, 0, 1},    // both sides, longer behind: top at the apex
      {-2, 5, 5, 0, -1},    // both sides, longer ahead: turned
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "extent " << c.t0 << " " << c.t1);
    XConeFitLM fit;
    fit.apex[0] = 1, fit.apex[1] = 2, fit.apex[2] = 3;
    fit.axis[2] = 1.0f;
    fit.halfAngle = std::atan(0.5f);
    std::vector<float> p;
    for (float t : {c.t0, 0.5f * (c.t0 + c.t1), c.t1})
      p.insert(p.end(), {1 + 0.5f * std::fabs(t), 2, 3 + t});
    XConeFitLMPeer::Ends(fit, p);
    zt::ExpectNear3(fit.base, cv::Vec3d(1, 2, 3 + c.far), 1e-6);
    zt::ExpectNear3(fit.top, cv::Vec3d(1, 2, 3 + c.near), 1e-6);
    zt::ExpectNear3(fit.axis, cv::Vec3d(0, 0, c.axisZ), 0.0);
    EXPECT_NEAR(fit.height, std::fabs(c.far - c.near), 1e-6);
    EXPECT_NEAR(fit.baseRadius, 0.5f * std::fabs(c.far), 1e-6);
    EXPECT_NEAR(fit.topRadius, 0.5f * std::fabs(c.near), 1e-6);
  }
}

TEST(XConeFitLM, FivePointsOrNoModelFailWithoutTouchingTheFields) {
  std::mt19937 rng(9300);
  const zt::Frame f = zt::RandomFrame(rng, 10.0);
  zt::Samples s = zt::SampleCone(f, 10, 5, 10, 50, 0.0, rng);
  XConeFitLM fit;
  fit.halfAngle = 0.25f;
  const std::vector<float> before(fit.apex, &fit.topRadius + 1);
  zt::Samples five = s;
  five.points.resize(5);
  EXPECT_EQ(FitQuietly(fit, five), -1);
  // Coincident points give the consensus no model.
  std::fill(s.points.begin(), s.points.end(), s.points[0]);
  std::fill(s.normals.begin(), s.normals.end(), s.normals[0]);
  EXPECT_EQ(FitQuietly(fit, s), -1);
  EXPECT_EQ(std::vector<float>(fit.apex, &fit.topRadius + 1), before);
}

}  // namespace
}  // namespace zelmolm
