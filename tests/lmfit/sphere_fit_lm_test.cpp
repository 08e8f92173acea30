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

namespace zelmolm {
namespace {

namespace zt = zelmo::test;
using xfeaturefitfilter::FilterParam;

constexpr double kNoise = 0.01;     // deviation of the scan along normals
constexpr double kFitTol = kNoise;  // center and radius against the truth
constexpr int kMethods = 6;
const FilterParam kParam(30.0f, 2.0f, 0.05f);  // 30 degrees, 2 sd, 5 %

std::vector<float> Fields(const XSphereFitLM& f) {
  return {f.center[0], f.center[1], f.center[2], f.radius};
}

TEST(XSphereFitLM, RecoversFullSpheresAndCapsWithEveryFilter) {
  for (int trial = 0; trial < 4; ++trial) {
    const unsigned seed = 7100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const zt::Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const double polar = zt::kPi / (trial % 2 == 0 ? 1 : 3);
    const zt::Samples s = zt::SampleSphere(f, radius, 600, kNoise, rng, polar);
    // Filters see 3 % outliers 0.3 off the surface, normals turned into it.
    zt::Samples dirty = s;
    zt::AddTurnedOutliers(dirty, 0.03, 0.3, zt::SquareTo);
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(testing::Message() << "method " << method);
      XSphereFitLM fit;
      ASSERT_EQ(zt::RunFilteredFit(fit, method ? dirty : s, method, kParam), 0);
      zt::ExpectNear3(fit.center, f.origin, kFitTol);
      EXPECT_NEAR(fit.radius, radius, kFitTol);
    }
  }
}

TEST(XSphereFitLM, FailureCodesAndConsoleLines) {
  std::mt19937 rng(7200);
  const zt::Frame f = zt::RandomFrame(rng, 100.0);
  const zt::Samples s = zt::SampleSphere(f, 10.0, 150, kNoise, rng);
  XSphereFitLM fit, plain;
  std::string out[kMethods];
  for (int method = 0; method < kMethods; ++method)
    ASSERT_EQ(zt::RunFilteredFit(fit, s, method, kParam, &out[method]), 0);
  // Only sigma prints "<mean> <sd> <hi> <lo>", combined proportion
  // "min_n_maxvalue=<T>".
  std::istringstream band(out[xfeaturefitfilter::FilterSigma]);
  double mean, sd, hi, lo;
  ASSERT_TRUE(band >> mean >> sd >> hi >> lo);
  EXPECT_NEAR(hi - lo, 4 * sd, 1e-6);
  EXPECT_EQ(out[xfeaturefitfilter::FilterProportionAngle].rfind(
                "min_n_maxvalue=0.0", 0),
            0u);
  for (int method : {0, 2, 3, 4}) EXPECT_EQ(out[method], "") << method;

  // A proportion that drops no point leaves the first fit as it was.
  ASSERT_EQ(zt::RunFilteredFit(plain, s, 0, kParam), 0);
  ASSERT_EQ(zt::RunFilteredFit(fit, s, 2, FilterParam(30, 2, 0.006f)), 0);
  EXPECT_EQ(Fields(fit), Fields(plain));
  // Three points and unknown methods fail with -1, fields untouched.
  zt::Samples three = s;
  three.points.resize(3);
  for (int method = -1; method <= kMethods; ++method) {
    const bool known = method >= 0 && method < kMethods;
    EXPECT_EQ(zt::RunFilteredFit(fit, known ? three : s, method, kParam), -1);
    EXPECT_EQ(Fields(fit), Fields(plain));
  }
  // A band of width 0 keeps (almost) nothing: the refit's solver fails.
  EXPECT_EQ(zt::RunFilteredFit(fit, s, 1, FilterParam(30, 0, 0.05f)), -2);
}

}  // namespace
}  // namespace zelmolm
