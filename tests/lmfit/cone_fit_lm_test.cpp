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
#include "zelmo/feature/solid_records.h"

namespace zelmolm {

// White-box access to the ends of the stored cone.
class XConeFitLMPeer {
 public:
  static void Ends(XConeFitLM& f, const std::vector<float>& p) {
    f.getValue(p.data(), nullptr, static_cast<int>(p.size() / 3));
  }
};

namespace {

using zelmo::test::Frame;
using zelmo::test::Samples;

constexpr double kNoise = 0.01;         // deviation of the scan
constexpr double kFitTol = 3 * kNoise;  // apex, ends and radii
constexpr double kAxisTolRad = 2e-3;    // axis direction
constexpr double kAngleTol = 1e-3;      // half angle, radians

int FitQuietly(XConeFitLM& fit, const Samples& s) {
  zelmo::test::StdoutCapture capture;
  const int result = fit.Fit(s.Xyz().data(), s.NormalsXyz().data(), s.Count());
  EXPECT_EQ(capture.Take(), "");
  return result;
}

// Fits the samples and expects apex at z = zApex on f's axis, half angle
// `half`, the base (far end) at zBase and the top at zTop along f.w, and
// an axis pointing from the base towards the apex. Ends and apex lie off
// the points along the fitted axis: they move with its error.
void ExpectCone(const Samples& s,
                const Frame& f,
                double zApex,
                double half,
                double zBase,
                double zTop) {
  XConeFitLM fit;
  ASSERT_GE(FitQuietly(fit, s), 0);
  const double apexTol = kFitTol + std::fabs(zApex - zBase) * kAxisTolRad;
  const double endTol = kFitTol + std::fabs(zBase) * kAxisTolRad;
  zelmo::test::ExpectNear3(fit.apex, f.At(0, 0, zApex), apexTol);
  EXPECT_NEAR(fit.halfAngle, half, kAngleTol);
  zelmo::test::ExpectSameDirection(fit.axis, zBase < zTop ? f.w : -f.w,
                                   kAxisTolRad);
  zelmo::test::ExpectNear3(fit.base, f.At(0, 0, zBase), endTol);
  zelmo::test::ExpectNear3(fit.top, f.At(0, 0, zTop), endTol);
  EXPECT_NEAR(fit.height, std::fabs(zTop - zBase), endTol);
  EXPECT_NEAR(fit.baseRadius, std::fabs(zBase - zApex) * std::tan(half),
              endTol);
  EXPECT_NEAR(fit.topRadius, std::fabs(zTop - zApex) * std::tan(half), endTol);
  xgeofeature::XFCone record;
  fit.getCone(record);
  EXPECT_EQ(std::vector<float>(record.apex, &record.topRadius + 1),
            std::vector<float>(fit.apex, &fit.topRadius + 1));
}

TEST(XConeFitLM, RecoversFrustumsWithTheBaseAtTheFarEnd) {
  for (int trial = 0; trial < 6; ++trial) {
    const unsigned seed = 9100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    std::uniform_real_distribution<double> unit(0, 1);
    const double r0 = 10 + 20 * unit(rng), r1 = r0 * (0.3 + 0.4 * unit(rng));
    const double h = 20 + 20 * unit(rng), half = std::atan((r0 - r1) / h);
    const double arc = zelmo::test::kPi * 2 / (1 << trial % 3);  // 360 .. 90
    const Samples s =
        zelmo::test::SampleCone(f, r0, r1, h, 800, kNoise, rng, arc);
    double z0, z1;
    zelmo::test::AxialExtent(f, s, &z0, &z1);
    ExpectCone(s, f, h * r0 / (r0 - r1), half, z0, z1);
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
    zelmo::test::ExpectNear3(fit.base, cv::Vec3d(1, 2, 3 + c.far), 1e-6);
    zelmo::test::ExpectNear3(fit.top, cv::Vec3d(1, 2, 3 + c.near), 1e-6);
    zelmo::test::ExpectNear3(fit.axis, cv::Vec3d(0, 0, c.axisZ), 0.0);
    EXPECT_NEAR(fit.height, std::fabs(c.far - c.near), 1e-6);
    EXPECT_NEAR(fit.baseRadius, 0.5f * std::fabs(c.far), 1e-6);
    EXPECT_NEAR(fit.topRadius, 0.5f * std::fabs(c.near), 1e-6);
  }
}

TEST(XConeFitLM, FivePointsOrNoModelFailWithoutTouchingTheFields) {
  std::mt19937 rng(9300);
  const Frame f = zelmo::test::RandomFrame(rng, 10.0);
  Samples s = zelmo::test::SampleCone(f, 10, 5, 10, 50, 0.0, rng);
  XConeFitLM fit;
  fit.halfAngle = 0.25f;
  const std::vector<float> before(fit.apex, &fit.topRadius + 1);
  Samples five = s;
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
