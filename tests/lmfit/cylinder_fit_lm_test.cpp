#include "zelmo/lmfit/cylinder_fit_lm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>
#include <string>
#include <vector>

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
  const std::vector<float> p = s.Xyz(), n = s.NormalsXyz();
  zelmo::test::StdoutCapture capture;
  const int result = f.Fit(p.data(), n.data(), s.Count(), param,
                           static_cast<FilterMethod>(method));
  if (console != nullptr) *console = capture.Take();
  return result;
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

// Axial extent of the samples about the frame.
void Extent(const Frame& f, const Samples& s, double* z0, double* z1) {
  *z0 = 1e30;
  *z1 = -1e30;
  for (const cv::Point3f& p : s.points) {
    const double z = (cv::Vec3d(p.x, p.y, p.z) - f.origin).dot(f.w);
    *z0 = std::min(*z0, z);
    *z1 = std::max(*z1, z);
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
    Extent(f, s, &z0, &z1);
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

}  // namespace
}  // namespace zelmolm
