#include "zelmo/lmfit/cylinder_fit_lm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/fit_checks.h"
#include "tests/support/outliers.h"
#include "tests/support/tolerance.h"

namespace zelmolm {

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
constexpr double kAxisTolRad = 2e-3;  // axis direction
// Normals within 60 degrees of the axis fail; 2 deviations; 5 %.
const FilterParam kParam(60.0f, 2.0f, 0.05f);

std::vector<float> Fields(const XCylinderFitLM& c) {
  return std::vector<float>(c.center, c.top + 3);
}

// The true cylinder; ends on the axis within the extent of s along it (at
// it when all are kept), moving by radius x axis error.
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

// Arcs of 360, 180, 90 degrees; filters see 3 % outliers 0.3 off the
// surface with axial normals. The first fit prints "param:" and the seven
// start values, the last the consensus radius. Seeded 0.5 off the axis,
// 0.05 rad off its direction, radius 10 % high: silent, no normals needed,
// the seed axis' length does not matter.
TEST(XCylinderFitLM, RecoversCylindersAndPartialArcsWithEveryFilter) {
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
  }
}

// Radial normals tilted 1e-3 towards the axis: at 90 degrees all fail and
// the lower half goes, no more; at 89.9 (cosine 1.7e-3) all pass.
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

// The first fit prints only "param:" and its values. Five points or
// coincident ones (no consensus): -1, nothing printed, fields kept; a band
// of width 0 keeps (almost) nothing: the refit fails.
TEST(XCylinderFitLM, FailureCodesAndConsoleLines) {
  std::mt19937 rng(8300);
  const Samples s =
      zt::SampleCylinder(zt::RandomFrame(rng, 100.0), 12, 30, 100, 0.01, rng);
  XCylinderFitLM fit;
  std::string out;
  ASSERT_EQ(zt::RunFilteredFit(fit, s, 0, kParam, &out), 0);
  EXPECT_EQ(out.substr(0, 6) + out.substr(out.find('\n') + 1), "param:");
  const std::vector<float> before = Fields(fit);
  Samples five = s, same = s;
  five.points.resize(5);
  same.points.assign(s.Count(), s.points[0]);
  for (const Samples* input : {&five, &same}) {
    EXPECT_EQ(zt::RunFilteredFit(fit, *input, 0, kParam, &out), -1);
    EXPECT_EQ(out, "");
  }
  const float seed[7] = {0, 0, 0, 0, 0, 1, 10};
  EXPECT_EQ(fit.Fit(five.Xyz().data(), nullptr, 5, seed), -1);
  EXPECT_EQ(Fields(fit), before);
  EXPECT_EQ(zt::RunFilteredFit(fit, s, 1, FilterParam(60, 0, 0)), -2);
}

// Residuals -0.5 and 0.5 alternate: the variance divides by the count up
// to ten points, by count - 1 above.
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

}  // namespace
}  // namespace zelmolm
