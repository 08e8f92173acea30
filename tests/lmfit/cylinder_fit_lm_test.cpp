#include "zelmo/lmfit/cylinder_fit_lm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/fit_checks.h"
#include "tests/support/outliers.h"
#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"
#include "zelmo/feature/solid_records.h"

namespace zelmolm {

// White-box access to the statistics of the stored cylinder.
class XCylinderFitLMPeer {
 public:
  static void Statistics(XCylinderFitLM& f,
                         const std::vector<float>& p,
                         float* stats) {
    std::vector<float> r;
    f.calcStatistics(p.data(), static_cast<int>(p.size() / 3), stats, r);
  }
};

namespace {

namespace zt = zelmo::test;
using xfeaturefitfilter::FilterParam;
using zt::Frame;
using zt::Samples;

constexpr double kNoise = 0.01;       // deviation of the scan
constexpr double kFitTol = kNoise;    // radius, axis position, extent
constexpr double kAxisTolRad = 2e-3;  // axis direction
constexpr int kMethods = 6;
// Normals within 60 degrees of the axis fail; 2 deviations; 5 %.
const FilterParam kParam(60.0f, 2.0f, 0.05f);

// Distance of a point from the line through f.origin along f.w.
double OffAxis(const Frame& f, const float* p) {
  const cv::Vec3d d = zt::ToVec3d(p) - f.origin;
  return cv::norm(d - f.w * d.dot(f.w));
}

std::vector<float> Fields(XCylinderFitLM& fit) {
  xgeofeature::XFCylinder c;
  fit.getCylinder(c);
  return std::vector<float>(c.center, c.top + 3);
}

// The true cylinder; ends on the axis within the points' extent [z0, z1]
// (at it when all are kept), moving by radius x axis error.
void ExpectCylinder(XCylinderFitLM& fit,
                    const Frame& f,
                    double radius,
                    double z0,
                    double z1,
                    bool allKept) {
  zt::ExpectSameAxis(fit.axis, f.w, kAxisTolRad);
  EXPECT_NEAR(fit.radius, radius, kFitTol);
  EXPECT_LT(OffAxis(f, fit.center), kFitTol);
  const double endTol = kFitTol + radius * kAxisTolRad;
  double z[2];
  for (const float* end : {fit.base, fit.top}) {
    EXPECT_LT(OffAxis(f, end), endTol);
    z[end == fit.top] = (zt::ToVec3d(end) - f.origin).dot(f.w);
  }
  const double low = std::min(z[0], z[1]), high = std::max(z[0], z[1]);
  EXPECT_GT(low, z0 - endTol);
  EXPECT_LT(high, z1 + endTol);
  EXPECT_NEAR(high - low, z1 - z0, allKept ? endTol : 0.02 * (z1 - z0));
  zt::ExpectNear3(zt::ToVec3d(fit.top) - zt::ToVec3d(fit.base),
                  zt::ToVec3d(fit.axis) * fit.height, 1e-3);
}

TEST(XCylinderFitLM, RecoversCylindersAndPartialArcsWithEveryFilter) {
  for (int trial = 0; trial < 6; ++trial) {
    const unsigned seed = 8100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 40)(rng);
    const double height = std::uniform_real_distribution<double>(30, 80)(rng);
    const double arc = zt::kPi * 2 / (1 << trial % 3);  // 360, 180, 90
    const Samples s =
        zt::SampleCylinder(f, radius, height, 800, kNoise, rng, arc);
    double z0, z1;
    zt::AxialExtent(f, s, &z0, &z1);
    // The unfiltered fit sees the clean scan, the filters 3 % outliers
    // 0.3 off the surface with axial normals.
    Samples dirty = s;
    zt::AddTurnedOutliers(dirty, 0.03, 0.3,
                          [&f](const cv::Vec3d&) { return f.w; });
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(testing::Message() << "method " << method);
      XCylinderFitLM fit;
      ASSERT_EQ(
          zt::RunFilteredFit(fit, method == 0 ? s : dirty, method, kParam), 0);
      ExpectCylinder(fit, f, radius, z0, z1, method == 0);
    }
  }
}

TEST(XCylinderFitLM, AngleLimitCountsFromTheAxisAndDropsAtMostHalf) {
  // Points sorted up the z axis, radial normals tilted 1e-3 towards it.
  std::mt19937 rng(8200);
  const Frame f = zt::FrameFromAxis({0, 0, 0}, {0, 0, 1});
  Samples sorted = zt::SampleCylinder(f, 10.0, 40.0, 400, 0.0, rng);
  std::vector<cv::Point3f>& p = sorted.points;
  std::sort(p.begin(), p.end(), [](auto& a, auto& b) { return a.z < b.z; });
  for (int i = 0; i < sorted.Count(); ++i)
    sorted.normals[i] = {p[i].x / 10, p[i].y / 10, 1e-3f};
  XCylinderFitLM fit;
  // At 90 degrees every normal with an axial part fails: the lower half
  // of the points goes, and no more.
  ASSERT_EQ(zt::RunFilteredFit(fit, sorted, 3, FilterParam(90, 2, 0)), 0);
  EXPECT_NEAR(std::min(fit.base[2], fit.top[2]), sorted.points[200].z, kFitTol);
  EXPECT_NEAR(std::max(fit.base[2], fit.top[2]), sorted.points[399].z, kFitTol);
  // At 89.9 degrees (cosine 1.7e-3) all pass.
  ASSERT_EQ(zt::RunFilteredFit(fit, sorted, 3, FilterParam(89.9f, 2, 0)), 0);
  EXPECT_NEAR(fit.height, sorted.points[399].z - sorted.points[0].z, kFitTol);
}

TEST(XCylinderFitLM, FailureCodesAndConsoleLines) {
  std::mt19937 rng(8300);
  const Frame f = zt::RandomFrame(rng, 100.0);
  constexpr double kRadius = 12.0;
  const Samples s = zt::SampleCylinder(f, kRadius, 30, 100, 0.01, rng);
  XCylinderFitLM fit;
  for (int method = 0; method < kMethods; ++method) {
    std::string out;
    ASSERT_EQ(zt::RunFilteredFit(fit, s, method, kParam, &out), 0);
    // "param:" and the seven start values; then, for the combined
    // proportion stage only, the kept count (5 % of 100 dropped).
    std::istringstream line(out.substr(6));
    double v[7];
    for (double& x : v) ASSERT_TRUE(line >> x) << out;
    EXPECT_NEAR(v[6], kRadius, 0.1 * kRadius);  // the consensus radius
    const std::string rest = out.substr(out.find('\n') + 1);
    EXPECT_EQ(out.substr(0, 6) + rest,
              std::string("param:") + (method == 5 ? "95 100\n" : ""));
  }
  const std::vector<float> before = Fields(fit);
  // Five points, no consensus model (coincident points) or an unknown
  // method give -1, print nothing and leave the fields.
  Samples five = s, same = s;
  five.points.resize(5);
  std::fill(same.points.begin(), same.points.end(), s.points[0]);
  std::fill(same.normals.begin(), same.normals.end(), s.normals[0]);
  for (int method = -1; method <= kMethods; ++method) {
    const bool known = method >= 0 && method < kMethods;
    for (const Samples* input : {known ? &five : &s, known ? &same : &s}) {
      std::string out;
      EXPECT_EQ(zt::RunFilteredFit(fit, *input, method, kParam, &out), -1);
      EXPECT_EQ(out, "");
      EXPECT_EQ(Fields(fit), before);
    }
  }
  const float seed[7] = {0, 0, 0, 0, 0, 1, 10};
  EXPECT_EQ(fit.Fit(five.Xyz().data(), nullptr, 5, seed), -1);
  EXPECT_EQ(Fields(fit), before);
  // A band of width 0 keeps (almost) nothing: the refit's solver fails.
  EXPECT_EQ(zt::RunFilteredFit(fit, s, 1, FilterParam(60, 0, 0)), -2);
}

TEST(XCylinderFitLM, SeededFitIgnoresNormalsAndTheAxisLength) {
  std::mt19937 rng(8500);
  const Frame f = zt::RandomFrame(rng, 500.0);
  const Samples s = zt::SampleCylinder(f, 15, 50, 300, kNoise, rng, 2);
  double z0, z1;
  zt::AxialExtent(f, s, &z0, &z1);
  std::vector<float> results[2];
  for (int k = 0; k < 2; ++k) {
    // Start 0.5 off the axis, 0.05 rad off its direction, radius 10 % high.
    const cv::Vec3d p = f.At(0.5, 0, 10), d = (f.w + 0.05 * f.v) * (1 + 6 * k);
    const float seed[7] = {float(p[0]), float(p[1]), float(p[2]), float(d[0]),
                           float(d[1]), float(d[2]), 16.5f};
    XCylinderFitLM fit;
    zt::StdoutCapture capture;
    ASSERT_EQ(fit.Fit(s.Xyz().data(), nullptr, s.Count(), seed), 0);
    EXPECT_EQ(capture.Take(), "");
    ExpectCylinder(fit, f, 15, z0, z1, true);
    results[k] = Fields(fit);
  }
  for (int i = 0; i < 14; ++i)
    EXPECT_NEAR(results[0][i], results[1][i], 1e-3) << "value " << i;
}

TEST(XCylinderFitLM, VarianceDividesByCountLessOneAboveTenPoints) {
  XCylinderFitLM fit;
  fit.axis[2] = 1.0f;  // the z axis through the origin, radius 1
  fit.radius = 1.0f;
  for (int count : {10, 11}) {
    std::vector<float> p;
    std::vector<double> r;
    for (int i = 0; i < count; ++i) {
      r.push_back(i % 2 == 0 ? 0.25 : -0.0625 * i);
      p.insert(p.end(), {0.0f, float(1.0 + r.back()), float(i)});
    }
    double mean = 0, squares = 0;
    for (double x : r) mean += x / count;
    for (double x : r) squares += (x - mean) * (x - mean);
    float stats[4];
    XCylinderFitLMPeer::Statistics(fit, p, stats);
    EXPECT_FLOAT_EQ(stats[0], *std::max_element(r.begin(), r.end()));
    EXPECT_FLOAT_EQ(stats[1], *std::min_element(r.begin(), r.end()));
    EXPECT_NEAR(stats[2], mean, 1e-6);
    EXPECT_NEAR(stats[3], squares / (count > 10 ? count - 1 : count), 1e-6)
        << count << " points";
  }
}

}  // namespace
}  // namespace zelmolm
