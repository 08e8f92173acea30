// The sphere, cylinder and cone fits.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/fit_checks.h"
#include "tests/support/outliers.h"
#include "tests/support/tolerance.h"
#include "zelmo/lmfit/cone_fit_lm.h"
#include "zelmo/lmfit/cylinder_fit_lm.h"
#include "zelmo/lmfit/sphere_fit_lm.h"

namespace zelmolm {

// White-box access to the ends of the stored cone.
class XConeFitLMPeer {
 public:
  static void Ends(XConeFitLM& f, const std::vector<float>& p) {
    f.getValue(p.data(), nullptr, static_cast<int>(p.size() / 3));
  }
};

// White-box access to the statistics of the stored cylinder.
class XCylinderFitLMPeer {
 public:
  static void Statistics(XCylinderFitLM& f, std::vector<float> p, float* s) {
    std::vector<float> r;
    f.calcStatistics(p.data(), static_cast<int>(p.size() / 3), s, r);
  }
};

namespace {

namespace zt = zelmo::test;
using xfeaturefitfilter::FilterParam;
using zt::Frame;
using zt::Samples;

constexpr double kFitTol = 0.01;      // the scan's noise: radius, axis, ends
constexpr double kConeTol = 0.03;     // apex, ends and radii of a cone
constexpr double kAxisTolRad = 2e-3;  // axis direction
// Normals within 60 degrees of the axis fail; 2 deviations; 5 %.
const FilterParam kParam(60.0f, 2.0f, 0.05f);
const FilterParam kSphereParam(30.0f, 2.0f, 0.05f);

// The true cylinder; ends on the axis within the points' extent.
void ExpectCylinder(const XCylinderFitLM& fit,
                    const Frame& f,
                    double radius,
                    const Samples& s,
                    bool allKept) {
  double z0, z1, z[3];
  zt::AxialExtent(f, s, &z0, &z1);
  zt::ExpectSameAxis(fit.axis, f.w, kAxisTolRad);
  EXPECT_NEAR(fit.radius, radius, kFitTol);
  const double tol = kFitTol + radius * kAxisTolRad;
  const float* points[3] = {fit.center, fit.base, fit.top};
  for (int k = 0; k < 3; ++k) {
    const cv::Vec3d d = zt::ToVec3d(points[k]) - f.origin;
    z[k] = d.dot(f.w);
    EXPECT_LT(cv::norm(d - f.w * z[k]), tol) << "off the axis " << k;
  }
  EXPECT_GT(std::min(z[1], z[2]), z0 - tol);
  EXPECT_LT(std::max(z[1], z[2]), z1 + tol);
  EXPECT_NEAR(std::fabs(z[2] - z[1]), z1 - z0,
              allKept ? tol : 0.02 * (z1 - z0));
  EXPECT_NEAR(fit.height, std::fabs(z[2] - z[1]), 1e-3);
}

// Every filter and a seed over three arcs; console line; failure codes.
TEST(XCylinderFitLM, RecoversCylindersWithEveryFilterOrSeedAndFailures) {
  for (int trial = 0; trial < 3; ++trial) {
    std::mt19937 rng(8100 + trial);
    const Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 40)(rng);
    const double height = std::uniform_real_distribution<double>(30, 80)(rng);
    const Samples s = zt::SampleCylinder(f, radius, height, 800, kFitTol, rng,
                                         zt::kPi * 2 / (1 << trial));
    Samples dirty = s;
    zt::AddTurnedOutliers(dirty, 0.03, 0.3, [&f](auto&) { return f.w; });
    XCylinderFitLM fit;
    std::string out;
    for (int method = 0; method < 6; ++method) {
      SCOPED_TRACE(testing::Message() << trial << "/" << method);
      ASSERT_EQ(
          zt::RunFilteredFit(fit, method ? dirty : s, method, kParam, &out), 0);
      ExpectCylinder(fit, f, radius, s, method == 0);
      EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), method == 5 ? 2 : 1);
    }
    std::istringstream line(out.substr(6));
    double v[7];
    for (double& x : v) ASSERT_TRUE(line >> x) << out;
    EXPECT_NEAR(v[6], radius, 0.1 * radius);
    const cv::Vec3f p = f.At(0.5, 0, 10), d = (f.w + 0.05 * f.v) * 7;
    const float seed[7] = {
        p[0], p[1], p[2], d[0], d[1], d[2], float(1.1 * radius)};
    zt::StdoutCapture capture;
    ASSERT_EQ(fit.Fit(s.Xyz().data(), nullptr, s.Count(), seed), 0);
    EXPECT_EQ(capture.Take(), "");
    ExpectCylinder(fit, f, radius, s, true);
    const std::vector<float> before(fit.center, fit.top + 3);
    Samples five = s, same = s;
    five.points.resize(5);
    same.points.assign(s.Count(), s.points[0]);
    for (const Samples* input : {&five, &same}) {
      EXPECT_EQ(zt::RunFilteredFit(fit, *input, 0, kParam, &out), -1);
      EXPECT_EQ(out, "");
    }
    EXPECT_EQ(fit.Fit(five.Xyz().data(), nullptr, 5, seed), -1);
    EXPECT_EQ(std::vector<float>(fit.center, fit.top + 3), before);
    EXPECT_EQ(zt::RunFilteredFit(fit, s, 1, FilterParam(60, 0, 0)), -2);
  }
}

// Normals 1e-3 off square: 90 degrees fails them (half go), 89.9 not.
TEST(XCylinderFitLM, AngleLimitCountsFromTheAxisAndDropsAtMostHalf) {
  std::mt19937 rng(8200);
  const Frame f = zt::FrameFromAxis({0, 0, 0}, {0, 0, 1});
  Samples s = zt::SampleCylinder(f, 10.0, 40.0, 400, 0.0, rng);
  std::vector<cv::Point3f>& p = s.points;
  std::sort(p.begin(), p.end(), [](auto& a, auto& b) { return a.z < b.z; });
  for (int i = 0; i < s.Count(); ++i)
    s.normals[i] = {p[i].x / 10, p[i].y / 10, 1e-3f};
  XCylinderFitLM fit;
  ASSERT_EQ(zt::RunFilteredFit(fit, s, 3, FilterParam(90, 2, 0)), 0);
  EXPECT_NEAR(std::min(fit.base[2], fit.top[2]), p[200].z, kFitTol);
  EXPECT_NEAR(std::max(fit.base[2], fit.top[2]), p[399].z, kFitTol);
  ASSERT_EQ(zt::RunFilteredFit(fit, s, 3, FilterParam(89.9f, 2, 0)), 0);
  EXPECT_NEAR(fit.height, p[399].z - p[0].z, kFitTol);
}

// The variance divides by n up to ten points, by n - 1 above.
TEST(XCylinderFitLM, VarianceDividesByCountLessOneAboveTenPoints) {
  XCylinderFitLM fit;
  fit.axis[2] = fit.radius = 1.0f;  // the z axis through the origin
  const float want[2][4] = {{0.5f, -0.5f, 0, 0.25f},
                            {0.5f, -0.5f, -0.5f / 11, 3.0f / 11}};
  for (int count : {10, 11}) {
    std::vector<float> p;
    for (int i = 0; i < count; ++i)
      p.insert(p.end(), {0.0f, i % 2 ? 1.5f : 0.5f, float(i)});
    float stats[4];
    XCylinderFitLMPeer::Statistics(fit, p, stats);
    for (int k = 0; k < 4; ++k)
      EXPECT_NEAR(stats[k], want[count - 10][k], 1e-6) << count << " " << k;
  }
}

// Full sphere and cap under every filter; refit and few-point failures.
TEST(XSphereFitLM, RecoversSpheresAndCapsWithEveryFilterAndFailsOnFewPoints) {
  for (int trial = 0; trial < 2; ++trial) {
    std::mt19937 rng(7100 + trial);
    const zt::Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const zt::Samples s = zt::SampleSphere(f, radius, 600, kFitTol, rng,
                                           zt::kPi / (1 + 2 * trial));
    zt::Samples dirty = s, three = s;
    zt::AddTurnedOutliers(dirty, 0.03, 0.3, zt::SquareTo);
    XSphereFitLM fit;
    for (int method = 0; method < 6; ++method) {
      SCOPED_TRACE(testing::Message() << trial << "/" << method);
      ASSERT_EQ(
          zt::RunFilteredFit(fit, method ? dirty : s, method, kSphereParam), 0);
      zt::ExpectNear3(fit.center, f.origin, kFitTol);
      EXPECT_NEAR(fit.radius, radius, kFitTol);
    }
    EXPECT_EQ(zt::RunFilteredFit(fit, s, 1, FilterParam(30, 0, 0.05f)), -2);
    const std::vector<float> before(fit.center, &fit.radius + 1);
    three.points.resize(3);
    EXPECT_EQ(zt::RunFilteredFit(fit, three, 0, kSphereParam), -1);
    EXPECT_EQ(std::vector<float>(fit.center, &fit.radius + 1), before);
  }
}

// Fits silently (no console line) and returns the result.
int FitQuietly(XConeFitLM& fit, const zt::Samples& s) {
  zt::StdoutCapture capture;
  const int result = fit.Fit(s.Xyz().data(), s.NormalsXyz().data(), s.Count());
  EXPECT_EQ(capture.Take(), "");
  return result;
}

// Three arcs; apex and ends move with the axis error; failure codes.
TEST(XConeFitLM, RecoversFrustumsWithTheBaseAtTheFarEndOrFails) {
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE(trial);
    std::mt19937 rng(9100 + trial);
    const zt::Frame f = zt::RandomFrame(rng, 500.0);
    std::uniform_real_distribution<double> unit(0, 1);
    const double r0 = 10 + 20 * unit(rng), r1 = r0 * (0.3 + 0.4 * unit(rng));
    const double h = 20 + 20 * unit(rng), half = std::atan((r0 - r1) / h);
    const zt::Samples s = zt::SampleCone(f, r0, r1, h, 800, kFitTol, rng,
                                         zt::kPi * 2 / (1 << trial));
    double zBase, zTop;
    zt::AxialExtent(f, s, &zBase, &zTop);
    const double zApex = h * r0 / (r0 - r1);
    XConeFitLM fit;
    ASSERT_GE(FitQuietly(fit, s), 0);
    const double apexTol = kConeTol + (zApex - zBase) * kAxisTolRad;
    const double endTol = kConeTol + std::fabs(zBase) * kAxisTolRad;
    zt::ExpectNear3(fit.apex, f.At(0, 0, zApex), apexTol);
    EXPECT_NEAR(fit.halfAngle, half, 1e-3);  // radians
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

// Rows: extent t0, t1 from apex (1, 2, 3); base and top t; axis z after.
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
