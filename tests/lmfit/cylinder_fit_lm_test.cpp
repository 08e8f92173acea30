#include "zelmo/lmfit/cylinder_fit_lm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/fit_checks.h"
#include "tests/support/outliers.h"
#include "tests/support/samplers.h"
#include "tests/support/stdout_capture.h"
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

using xfeaturefitfilter::FilterMethod;
using xfeaturefitfilter::FilterParam;
using zelmo::test::Frame;
using zelmo::test::Samples;

constexpr double kNoise = 0.01;           // deviation of the scan
constexpr double kOutlierShare = 0.03;    // every 33rd point
constexpr double kOutlierDistance = 0.3;  // off the surface, normal axial
constexpr double kFitTol = kNoise;        // radius, axis position, extent
constexpr double kAxisTolRad = 2e-3;      // axis direction
constexpr int kMethods = 6;

// Normals within 60 degrees of the axis fail; band of 2 deviations; 5 %.
const FilterParam kParam(60.0f, 2.0f, 0.05f);

int FitSamples(XCylinderFitLM& f,
               const Samples& s,
               int method,
               const FilterParam& param = kParam,
               std::string* console = nullptr) {
  return zelmo::test::RunFilteredFit(f, s, method, param, console);
}

// Distance of a point from the line through f.origin along f.w.
double OffAxis(const Frame& f, const float* p) {
  const cv::Vec3d d = zelmo::test::ToVec3d(p) - f.origin;
  return cv::norm(d - f.w * d.dot(f.w));
}

// The fitted cylinder is the true one, its ends on the axis within the
// axial extent [z0, z1] of the points; with `allKept` they are its ends,
// else a filter may have dropped points near them (not more than kEndLoss
// of the length). The ends are the extreme points projected on the fitted
// axis, so they may also move by the radius times the axis error.
constexpr double kEndLoss = 0.02;
void ExpectCylinder(const XCylinderFitLM& fit,
                    const Frame& f,
                    double radius,
                    double z0,
                    double z1,
                    bool allKept,
                    double tol) {
  zelmo::test::ExpectSameAxis(fit.axis, f.w, kAxisTolRad);
  EXPECT_NEAR(fit.radius, radius, tol);
  EXPECT_LT(OffAxis(f, fit.center), tol);
  const double endTol = tol + radius * kAxisTolRad;
  EXPECT_LT(OffAxis(f, fit.base), endTol);
  EXPECT_LT(OffAxis(f, fit.top), endTol);
  const cv::Vec3d axis = zelmo::test::ToVec3d(fit.axis);
  zelmo::test::ExpectNear3(
      zelmo::test::ToVec3d(fit.top) - zelmo::test::ToVec3d(fit.base),
      axis * fit.height, zelmo::test::kFloatOutTol * 10);
  const bool along = axis.dot(f.w) > 0;
  const double zBase = (zelmo::test::ToVec3d(fit.base) - f.origin).dot(f.w);
  const double zTop = (zelmo::test::ToVec3d(fit.top) - f.origin).dot(f.w);
  const double zLow = along ? zBase : zTop, zHigh = along ? zTop : zBase;
  if (allKept) {
    EXPECT_NEAR(zLow, z0, endTol);
    EXPECT_NEAR(zHigh, z1, endTol);
  } else {
    EXPECT_GT(zLow, z0 - endTol);
    EXPECT_LT(zHigh, z1 + endTol);
    EXPECT_GT(fit.height, (z1 - z0) * (1 - kEndLoss));
  }
}

TEST(XCylinderFitLM, RecoversCylindersAndPartialArcsWithEveryFilter) {
  const double arcs[] = {2 * zelmo::test::kPi, zelmo::test::kPi,
                         zelmo::test::kPi / 2};
  for (int trial = 0; trial < 6; ++trial) {
    const unsigned seed = 8100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 40)(rng);
    const double height = std::uniform_real_distribution<double>(30, 80)(rng);
    Samples s = zelmo::test::SampleCylinder(f, radius, height, 800, kNoise, rng,
                                            arcs[trial % 3]);
    double z0, z1;
    zelmo::test::AxialExtent(f, s, &z0, &z1);
    // The unfiltered fit sees the clean scan; the filters see outliers.
    Samples dirty = s;
    zelmo::test::AddTurnedOutliers(dirty, kOutlierShare, kOutlierDistance,
                                   [&f](const cv::Vec3d&) { return f.w; });
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(testing::Message() << "method " << method);
      XCylinderFitLM fit;
      ASSERT_EQ(FitSamples(fit, method == 0 ? s : dirty, method), 0);
      ExpectCylinder(fit, f, radius, z0, z1, method == 0, kFitTol);
      xgeofeature::XFCylinder record;
      fit.getCylinder(record);
      zelmo::test::ExpectNear3(record.center, fit.center, 0.0);
      zelmo::test::ExpectNear3(record.axis, fit.axis, 0.0);
      zelmo::test::ExpectNear3(record.base, fit.base, 0.0);
      zelmo::test::ExpectNear3(record.top, fit.top, 0.0);
      EXPECT_EQ(record.radius, fit.radius);
      EXPECT_EQ(record.height, fit.height);
    }
  }
}

// Points of a cylinder about the z axis through (0, 0, 0), sorted by z,
// with normals tilted `tilt` towards +z.
Samples SortedTiltedCylinder(
    double radius, double height, int count, double tilt, std::mt19937& rng) {
  const Frame f =
      zelmo::test::FrameFromAxis(cv::Vec3d(0, 0, 0), cv::Vec3d(0, 0, 1));
  Samples s = zelmo::test::SampleCylinder(f, radius, height, count, 0.0, rng);
  std::vector<int> order(count);
  for (int i = 0; i < count; ++i) order[i] = i;
  std::sort(order.begin(), order.end(),
            [&s](int a, int b) { return s.points[a].z < s.points[b].z; });
  Samples sorted;
  for (int i : order) {
    cv::Vec3d n(s.normals[i].x, s.normals[i].y, tilt);
    n *= 1.0 / cv::norm(n);
    sorted.points.push_back(s.points[i]);
    sorted.normals.push_back(cv::Point3f(n[0], n[1], n[2]));
  }
  return sorted;
}

TEST(XCylinderFitLM, AngleLimitCountsFromTheAxisAndDropsAtMostHalf) {
  std::mt19937 rng(8200);
  constexpr double kHeight = 40.0;
  const Samples s = SortedTiltedCylinder(10.0, kHeight, 400, 1e-3, rng);
  XCylinderFitLM fit;
  // At 90 degrees every normal with an axial part fails: the first half of
  // the points (the lower half of the cylinder) goes, and no more.
  ASSERT_EQ(FitSamples(fit, s, xfeaturefitfilter::FilterAngle,
                       FilterParam(90.0f, 2.0f, 0.05f)),
            0);
  const float middle = s.points[200].z;
  EXPECT_NEAR(std::min(fit.base[2], fit.top[2]), middle, kFitTol);
  EXPECT_NEAR(std::max(fit.base[2], fit.top[2]), s.points[399].z, kFitTol);
  // At 89.9 degrees (cosine 1.7e-3) a tilt of 1e-3 passes: nothing goes.
  ASSERT_EQ(FitSamples(fit, s, xfeaturefitfilter::FilterAngle,
                       FilterParam(89.9f, 2.0f, 0.05f)),
            0);
  EXPECT_NEAR(fit.height, s.points[399].z - s.points[0].z, kFitTol);
}

TEST(XCylinderFitLM, FailureCodes) {
  std::mt19937 rng(8300);
  const Frame f = zelmo::test::RandomFrame(rng, 100.0);
  const Samples s = zelmo::test::SampleCylinder(f, 10, 30, 100, kNoise, rng);
  XCylinderFitLM fit;
  ASSERT_EQ(FitSamples(fit, s, 0), 0);
  xgeofeature::XFCylinder before;
  fit.getCylinder(before);
  auto unchanged = [&fit, &before]() {
    xgeofeature::XFCylinder now;
    fit.getCylinder(now);
    EXPECT_EQ(std::vector<float>(now.center, now.top + 3),
              std::vector<float>(before.center, before.top + 3));
  };
  Samples five = s;
  five.points.resize(5);
  five.normals.resize(5);
  for (int method = -1; method <= kMethods; ++method) {
    SCOPED_TRACE(testing::Message() << "method " << method);
    const bool known = method >= 0 && method < kMethods;
    std::string out;
    EXPECT_EQ(FitSamples(fit, known ? five : s, method, kParam, &out), -1);
    EXPECT_EQ(out, "");
    unchanged();
  }
  // Coincident points give the consensus no model: no start, no line.
  Samples same = s;
  std::fill(same.points.begin(), same.points.end(), s.points[0]);
  std::fill(same.normals.begin(), same.normals.end(), s.normals[0]);
  std::string out;
  EXPECT_EQ(FitSamples(fit, same, 0, kParam, &out), -1);
  EXPECT_EQ(out, "");
  unchanged();
  const std::vector<float> p = five.Xyz();
  const float seed[7] = {0, 0, 0, 0, 0, 1, 10};
  EXPECT_EQ(fit.Fit(p.data(), nullptr, 5, seed), -1);
  unchanged();
  // A band of width 0 keeps (almost) nothing: the refit's solver fails.
  EXPECT_EQ(FitSamples(fit, s, xfeaturefitfilter::FilterSigma,
                       FilterParam(60.0f, 0.0f, 0.05f)),
            -2);
}

TEST(XCylinderFitLM, PrintsTheStartAndTheKeptCountAfterTheCombinedFilter) {
  std::mt19937 rng(8400);
  const Frame f = zelmo::test::RandomFrame(rng, 200.0);
  constexpr double kRadius = 12.0;
  const Samples s =
      zelmo::test::SampleCylinder(f, kRadius, 30, 100, kNoise, rng);
  for (int method = 0; method < kMethods; ++method) {
    SCOPED_TRACE(testing::Message() << "method " << method);
    XCylinderFitLM fit;
    std::string out;
    ASSERT_EQ(FitSamples(fit, s, method, kParam, &out), 0);
    // "param:" and the seven start values, single spaces, one line.
    ASSERT_EQ(out.rfind("param:", 0), 0u) << out;
    const std::string first = out.substr(6, out.find('\n') - 6);
    EXPECT_EQ(std::count(first.begin(), first.end(), ' '), 6) << first;
    std::istringstream values(first);
    double v[7];
    for (double& x : v) ASSERT_TRUE(values >> x) << first;
    EXPECT_NEAR(v[6], kRadius, 0.1 * kRadius);  // the consensus radius
    const std::string rest = out.substr(out.find('\n') + 1);
    // 5 % of 100 points dropped by the combined filter, none by angle.
    EXPECT_EQ(rest, method == xfeaturefitfilter::FilterProportionAngle
                        ? "95 100\n"
                        : "");
  }
}

TEST(XCylinderFitLM, SeededFitIgnoresNormalsAndTheAxisLength) {
  std::mt19937 rng(8500);
  const Frame f = zelmo::test::RandomFrame(rng, 500.0);
  constexpr double kRadius = 15.0;
  const Samples s =
      zelmo::test::SampleCylinder(f, kRadius, 50, 300, kNoise, rng, 2.0);
  const std::vector<float> p = s.Xyz();
  std::vector<float> results[2];
  const double lengths[2] = {1.0, 7.0};
  for (int k = 0; k < 2; ++k) {
    // Start off the true axis by 0.5 and 0.05 rad, radius 10 % high.
    const cv::Vec3d start = f.At(0.5, 0, 10);
    const cv::Vec3d dir = (f.w + 0.05 * f.v) * lengths[k];
    const float seed[7] = {
        float(start[0]), float(start[1]), float(start[2]),     float(dir[0]),
        float(dir[1]),   float(dir[2]),   float(kRadius * 1.1)};
    XCylinderFitLM fit;
    zelmo::test::StdoutCapture capture;
    const int result = fit.Fit(p.data(), nullptr, s.Count(), seed);
    EXPECT_EQ(capture.Take(), "");
    ASSERT_EQ(result, 0);
    double z0, z1;
    zelmo::test::AxialExtent(f, s, &z0, &z1);
    ExpectCylinder(fit, f, kRadius, z0, z1, true, kFitTol);
    results[k] = {fit.center[0], fit.center[1], fit.center[2], fit.radius,
                  fit.height,    fit.axis[0],   fit.axis[1],   fit.axis[2]};
  }
  for (int i = 0; i < 8; ++i)
    EXPECT_NEAR(results[0][i], results[1][i], zelmo::test::kFloatOutTol * 10)
        << "value " << i;
}

TEST(XCylinderFitLM, VarianceDividesByCountLessOneAboveTenPoints) {
  XCylinderFitLM fit;
  fit.axis[2] = 1.0f;  // the z axis through the origin, radius 1
  fit.radius = 1.0f;
  for (int count : {10, 11}) {
    SCOPED_TRACE(testing::Message() << count << " points");
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
    EXPECT_NEAR(stats[3], squares / (count > 10 ? count - 1 : count), 1e-6);
  }
}

}  // namespace
}  // namespace zelmolm
