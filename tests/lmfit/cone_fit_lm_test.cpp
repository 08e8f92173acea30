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

int FitSamples(XConeFitLM& f, const Samples& s) {
  const std::vector<float> p = s.Xyz(), n = s.NormalsXyz();
  zelmo::test::StdoutCapture capture;
  const int result = f.Fit(p.data(), n.data(), s.Count());
  EXPECT_EQ(capture.Take(), "");
  return result;
}

// The fitted cone has its apex at `apex`, half angle `half`, the far end
// (base) at z = zBase along f.w from the frame origin and the near end
// (top) at zTop, and its axis points from the base towards the apex.
void ExpectCone(XConeFitLM& fit,
                const Frame& f,
                const cv::Vec3d& apex,
                double half,
                double zBase,
                double zTop) {
  // The apex lies beyond the points: it moves with the axis and the angle.
  const double zApex = (apex - f.origin).dot(f.w);
  const double apexTol = kFitTol + std::fabs(zApex - zBase) * kAxisTolRad;
  zelmo::test::ExpectNear3(fit.apex, apex, apexTol);
  EXPECT_NEAR(fit.halfAngle, half, kAngleTol);
  const cv::Vec3d towardsApex = zBase < zTop ? f.w : -f.w;
  zelmo::test::ExpectSameDirection(fit.axis, towardsApex, kAxisTolRad);
  const double endTol = kFitTol + std::fabs(zBase) * kAxisTolRad;
  zelmo::test::ExpectNear3(fit.base, f.At(0, 0, zBase), endTol);
  zelmo::test::ExpectNear3(fit.top, f.At(0, 0, zTop), endTol);
  EXPECT_NEAR(fit.height, std::fabs(zTop - zBase), endTol);
  EXPECT_NEAR(fit.baseRadius, std::fabs(zBase - zApex) * std::tan(half),
              endTol);
  EXPECT_NEAR(fit.topRadius, std::fabs(zTop - zApex) * std::tan(half), endTol);
  xgeofeature::XFCone record;
  fit.getCone(record);
  const std::vector<float> got(record.apex, &record.topRadius + 1);
  const std::vector<float> want = {
      fit.apex[0], fit.apex[1], fit.apex[2],    fit.axis[0],
      fit.axis[1], fit.axis[2], fit.halfAngle,  fit.base[0],
      fit.base[1], fit.base[2], fit.top[0],     fit.top[1],
      fit.top[2],  fit.height,  fit.baseRadius, fit.topRadius};
  EXPECT_EQ(got, want);
}

TEST(XConeFitLM, RecoversFrustumsWithTheBaseAtTheFarEnd) {
  const double arcs[] = {2 * zelmo::test::kPi, zelmo::test::kPi,
                         zelmo::test::kPi / 2};
  for (int trial = 0; trial < 6; ++trial) {
    const unsigned seed = 9100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    std::uniform_real_distribution<double> unit(0, 1);
    const double r0 = 10 + 20 * unit(rng);
    const double r1 = r0 * (0.3 + 0.4 * unit(rng));
    const double h = 20 + 20 * unit(rng);
    const Samples s = zelmo::test::SampleCone(f, r0, r1, h, 800, kNoise, rng,
                                              arcs[trial % 3]);
    XConeFitLM fit;
    ASSERT_GE(FitSamples(fit, s), 0);
    double z0, z1;
    zelmo::test::AxialExtent(f, s, &z0, &z1);
    const double zApex = h * r0 / (r0 - r1);
    ExpectCone(fit, f, f.At(0, 0, zApex), std::atan((r0 - r1) / h), z0, z1);
  }
}

TEST(XConeFitLM, PointsOnBothSidesOfTheApexPutTheTopAtTheApex) {
  constexpr double kHalf = 0.4;
  for (int longer = 0; longer < 2; ++longer) {
    const unsigned seed = 9200 + longer;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zelmo::test::RandomFrame(rng, 300.0);
    // Nappes of 30 and 12 along +w and -w, the longer one on either side.
    const double up = longer == 0 ? 30.0 : 12.0;
    const double down = longer == 0 ? 12.0 : 30.0;
    Frame g = f;
    g.w = -f.w;
    g.v = -f.v;
    Samples s = zelmo::test::SampleCone(f, 0, up * std::tan(kHalf), up, 600,
                                        kNoise, rng);
    const Samples other = zelmo::test::SampleCone(g, 0, down * std::tan(kHalf),
                                                  down, 600, kNoise, rng);
    s.points.insert(s.points.end(), other.points.begin(), other.points.end());
    s.normals.insert(s.normals.end(), other.normals.begin(),
                     other.normals.end());
    XConeFitLM fit;
    ASSERT_GE(FitSamples(fit, s), 0);
    double z0, z1;
    zelmo::test::AxialExtent(f, s, &z0, &z1);
    ExpectCone(fit, f, f.origin, kHalf, longer == 0 ? z1 : z0, 0.0);
    EXPECT_EQ(fit.topRadius, 0.0f);
  }
}

TEST(XConeFitLM, FivePointsOrNoModelFailWithoutTouchingTheFields) {
  std::mt19937 rng(9300);
  const Frame f = zelmo::test::RandomFrame(rng, 10.0);
  const Samples s = zelmo::test::SampleCone(f, 10, 5, 10, 5, 0.0, rng);
  XConeFitLM fit;
  fit.halfAngle = 0.25f;
  EXPECT_EQ(FitSamples(fit, s), -1);
  // Coincident points give the consensus no model.
  Samples same = zelmo::test::SampleCone(f, 10, 5, 10, 50, 0.0, rng);
  std::fill(same.points.begin(), same.points.end(), s.points[0]);
  std::fill(same.normals.begin(), same.normals.end(), s.normals[0]);
  EXPECT_EQ(FitSamples(fit, same), -1);
  EXPECT_EQ(fit.halfAngle, 0.25f);
  EXPECT_EQ(fit.apex[0], 0.0f);
  EXPECT_EQ(fit.height, 0.0f);
}

TEST(XConeFitLM, EndsAndAxisTurnFollowTheExtentOfThePoints) {
  // Cone about +z from the apex (1, 2, 3), radius t / 2 at t along z.
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
    const float apex[3] = {1, 2, 3};
    std::copy(apex, apex + 3, fit.apex);
    fit.axis[2] = 1.0f;
    fit.halfAngle = std::atan(0.5f);
    std::vector<float> p;
    for (float t : {c.t0, 0.5f * (c.t0 + c.t1), c.t1})
      p.insert(p.end(), {1 + 0.5f * std::fabs(t), 2, 3 + t});
    XConeFitLMPeer::Ends(fit, p);
    const float tol = 1e-6f;
    zelmo::test::ExpectNear3(fit.base, cv::Vec3d(1, 2, 3 + c.far), tol);
    zelmo::test::ExpectNear3(fit.top, cv::Vec3d(1, 2, 3 + c.near), tol);
    zelmo::test::ExpectNear3(fit.axis, cv::Vec3d(0, 0, c.axisZ), 0.0);
    EXPECT_NEAR(fit.height, std::fabs(c.far - c.near), tol);
    EXPECT_NEAR(fit.baseRadius, 0.5f * std::fabs(c.far), tol);
    EXPECT_NEAR(fit.topRadius, 0.5f * std::fabs(c.near), tol);
  }
}

}  // namespace
}  // namespace zelmolm
