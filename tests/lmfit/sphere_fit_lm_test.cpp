#include "zelmo/lmfit/sphere_fit_lm.h"

#include <gtest/gtest.h>

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
namespace {

using xfeaturefitfilter::FilterParam;
using zelmo::test::Samples;

constexpr double kNoise = 0.01;     // deviation of the scan along normals
constexpr double kFitTol = kNoise;  // center and radius against the truth
constexpr int kMethods = 6;
// Normals within 30 degrees; band of 2 deviations; 5 % dropped.
const FilterParam kParam(30.0f, 2.0f, 0.05f);

std::vector<float> Fields(const XSphereFitLM& f) {
  return {f.center[0], f.center[1], f.center[2], f.radius};
}

TEST(XSphereFitLM, RecoversFullSpheresAndCapsWithEveryFilter) {
  for (int trial = 0; trial < 4; ++trial) {
    const unsigned seed = 7100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const zelmo::test::Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const double polar = zelmo::test::kPi / (trial % 2 == 0 ? 1 : 3);
    const Samples s =
        zelmo::test::SampleSphere(f, radius, 600, kNoise, rng, polar);
    // The unfiltered fit sees the clean scan, the filters 3 % outliers
    // 0.3 off the surface with their normals in it.
    Samples dirty = s;
    zelmo::test::AddTurnedOutliers(dirty, 0.03, 0.3, zelmo::test::SquareTo);
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(testing::Message() << "method " << method);
      XSphereFitLM fit;
      ASSERT_EQ(zelmo::test::RunFilteredFit(fit, method == 0 ? s : dirty,
                                            method, kParam),
                0);
      zelmo::test::ExpectNear3(fit.center, f.origin, kFitTol);
      EXPECT_NEAR(fit.radius, radius, kFitTol);
      xgeofeature::XFSphere record;
      fit.getSphere(record);
      EXPECT_EQ(std::vector<float>(record.center, &record.radius + 1),
                Fields(fit));
    }
  }
}

TEST(XSphereFitLM, FailureCodesAndConsoleLines) {
  std::mt19937 rng(7200);
  const zelmo::test::Frame f = zelmo::test::RandomFrame(rng, 100.0);
  const Samples s = zelmo::test::SampleSphere(f, 10.0, 150, kNoise, rng);
  XSphereFitLM fit, plain;
  std::string out[kMethods];
  for (int method = 0; method < kMethods; ++method)
    ASSERT_EQ(zelmo::test::RunFilteredFit(fit, s, method, kParam, &out[method]),
              0);
  // Only the sigma stage prints "<mean> <sd> <hi> <lo>", and the combined
  // proportion stage "min_n_maxvalue=<T>".
  std::istringstream band(out[xfeaturefitfilter::FilterSigma]);
  double mean, sd, hi, lo;
  ASSERT_TRUE(band >> mean >> sd >> hi >> lo);
  EXPECT_NEAR(hi - lo, 4 * sd, 1e-6);
  EXPECT_EQ(out[xfeaturefitfilter::FilterProportionAngle].rfind(
                "min_n_maxvalue=0.0", 0),
            0u);
  for (int method : {0, 2, 3, 4}) EXPECT_EQ(out[method], "") << method;

  // A proportion that drops no point leaves the first fit as it was.
  ASSERT_EQ(zelmo::test::RunFilteredFit(plain, s, 0, kParam), 0);
  ASSERT_EQ(zelmo::test::RunFilteredFit(fit, s, 2, FilterParam(30, 2, 0.006f)),
            0);
  EXPECT_EQ(Fields(fit), Fields(plain));
  // Three points and unknown methods fail with -1, fields untouched.
  Samples three = s;
  three.points.resize(3);
  for (int method = -1; method <= kMethods; ++method) {
    const bool known = method >= 0 && method < kMethods;
    EXPECT_EQ(
        zelmo::test::RunFilteredFit(fit, known ? three : s, method, kParam),
        -1);
    EXPECT_EQ(Fields(fit), Fields(plain));
  }
  // A band of width 0 keeps (almost) nothing: the refit's solver fails.
  EXPECT_EQ(zelmo::test::RunFilteredFit(fit, s, 1, FilterParam(30, 0, 0.05f)),
            -2);
}

}  // namespace
}  // namespace zelmolm
