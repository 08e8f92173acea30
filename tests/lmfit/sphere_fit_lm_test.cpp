#include "zelmo/lmfit/sphere_fit_lm.h"

#include <gtest/gtest.h>

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
namespace {

using xfeaturefitfilter::FilterMethod;
using xfeaturefitfilter::FilterParam;
using zelmo::test::Frame;
using zelmo::test::Samples;

constexpr double kNoise = 0.01;           // deviation of the scan along normals
constexpr double kOutlierShare = 0.03;    // every 33rd point
constexpr double kOutlierDistance = 0.3;  // off the surface, normal turned
constexpr double kFitTol = kNoise;        // center and radius against the truth
constexpr int kMethods = 6;

// Angle 30 degrees, band of 2 deviations, 5 % dropped.
const FilterParam kParam(30.0f, 2.0f, 0.05f);

int FitSamples(XSphereFitLM& f,
               const Samples& s,
               int method,
               const FilterParam& param = kParam,
               std::string* console = nullptr) {
  return zelmo::test::RunFilteredFit(f, s, method, param, console);
}

std::vector<float> Fields(const XSphereFitLM& f) {
  return {f.center[0], f.center[1], f.center[2], f.radius};
}

TEST(XSphereFitLM, RecoversFullSpheresAndCapsWithEveryFilter) {
  for (int trial = 0; trial < 4; ++trial) {
    const unsigned seed = 7100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const double polar =
        trial % 2 == 0 ? zelmo::test::kPi : zelmo::test::kPi / 3;
    const Samples s =
        zelmo::test::SampleSphere(f, radius, 600, kNoise, rng, polar);
    // The unfiltered fit sees the clean scan; the filters see outliers.
    Samples dirty = s;
    zelmo::test::AddTurnedOutliers(dirty, kOutlierShare, kOutlierDistance,
                                   zelmo::test::SquareTo);
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(testing::Message() << "method " << method);
      XSphereFitLM fit;
      ASSERT_EQ(FitSamples(fit, method == 0 ? s : dirty, method), 0);
      zelmo::test::ExpectNear3(fit.center, f.origin, kFitTol);
      EXPECT_NEAR(fit.radius, radius, kFitTol);
      xgeofeature::XFSphere record;
      fit.getSphere(record);
      zelmo::test::ExpectNear3(record.center, fit.center, 0.0);
      EXPECT_EQ(record.radius, fit.radius);
    }
  }
}

TEST(XSphereFitLM, FailureCodes) {
  std::mt19937 rng(7200);
  const Frame f = zelmo::test::RandomFrame(rng, 100.0);
  const Samples s = zelmo::test::SampleSphere(f, 10.0, 100, kNoise, rng);
  XSphereFitLM fit;
  ASSERT_EQ(FitSamples(fit, s, 0), 0);
  const std::vector<float> before = Fields(fit);

  // Three points are too few for every method, and unknown methods fail;
  // neither touches the fields.
  Samples three = s;
  three.points.resize(3);
  three.normals.resize(3);
  for (int method = -1; method <= kMethods; ++method) {
    SCOPED_TRACE(testing::Message() << "method " << method);
    const Samples& input = method < 0 || method == kMethods ? s : three;
    EXPECT_EQ(FitSamples(fit, input, method), -1);
    EXPECT_EQ(Fields(fit), before);
  }

  // A band of width 0 keeps (almost) nothing: the refit's solver fails.
  EXPECT_EQ(FitSamples(fit, s, xfeaturefitfilter::FilterSigma,
                       FilterParam(30.0f, 0.0f, 0.05f)),
            -2);
}

TEST(XSphereFitLM, ProportionBelowOnePointKeepsTheFirstFitUnchanged) {
  std::mt19937 rng(7300);
  const Frame f = zelmo::test::RandomFrame(rng, 500.0);
  const Samples s = zelmo::test::SampleSphere(f, 20.0, 150, kNoise, rng);
  XSphereFitLM plain, proportion;
  ASSERT_EQ(FitSamples(plain, s, xfeaturefitfilter::FilterNone), 0);
  // 150 x 0.006 truncates to 0 points to drop.
  ASSERT_EQ(FitSamples(proportion, s, xfeaturefitfilter::FilterProportion,
                       FilterParam(30.0f, 2.0f, 0.006f)),
            0);
  EXPECT_EQ(Fields(proportion), Fields(plain));
}

TEST(XSphereFitLM, PrintsTheBandAndTheThresholdOnly) {
  std::mt19937 rng(7400);
  const Frame f = zelmo::test::RandomFrame(rng, 50.0);
  const Samples s = zelmo::test::SampleSphere(f, 8.0, 200, kNoise, rng);
  for (int method = 0; method < kMethods; ++method) {
    SCOPED_TRACE(testing::Message() << "method " << method);
    XSphereFitLM fit;
    std::string out;
    ASSERT_EQ(FitSamples(fit, s, method, kParam, &out), 0);
    if (method == xfeaturefitfilter::FilterSigma) {
      // "<mean> <sd> <hi> <lo>\n" with hi, lo = mean +- 2 sd.
      std::istringstream line(out);
      double mean, sd, hi, lo;
      ASSERT_TRUE(line >> mean >> sd >> hi >> lo) << out;
      EXPECT_NEAR(hi, mean + 2 * sd, 1e-4 * (1 + std::fabs(hi)));
      EXPECT_NEAR(lo, mean - 2 * sd, 1e-4 * (1 + std::fabs(lo)));
      EXPECT_EQ(out.back(), '\n');
      EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1);
    } else if (method == xfeaturefitfilter::FilterProportionAngle) {
      ASSERT_EQ(out.rfind("min_n_maxvalue=", 0), 0u) << out;
      const double threshold = std::stod(out.substr(15));
      EXPECT_GT(threshold, 0.0);
      EXPECT_LT(threshold, 5 * kNoise);
      EXPECT_EQ(out.back(), '\n');
    } else {
      EXPECT_EQ(out, "");
    }
  }
}

}  // namespace
}  // namespace zelmolm
