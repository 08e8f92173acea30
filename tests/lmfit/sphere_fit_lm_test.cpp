#include "zelmo/lmfit/sphere_fit_lm.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/support/fit_checks.h"
#include "tests/support/outliers.h"
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
  return std::vector<float>(f.center, &f.radius + 1);
}

// A full sphere and a cap; filters see 3 % outliers 0.3 off, normals turned.
TEST(XSphereFitLM, RecoversFullSpheresAndCapsWithEveryFilter) {
  for (int trial = 0; trial < 2; ++trial) {
    std::mt19937 rng(7100 + trial);
    const zt::Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const double polar = zt::kPi / (trial % 2 == 0 ? 1 : 3);
    const zt::Samples s = zt::SampleSphere(f, radius, 600, kNoise, rng, polar);
    zt::Samples dirty = s;
    zt::AddTurnedOutliers(dirty, 0.03, 0.3, zt::SquareTo);
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(testing::Message()
                   << "trial " << trial << " method " << method);
      XSphereFitLM fit;
      ASSERT_EQ(zt::RunFilteredFit(fit, method ? dirty : s, method, kParam), 0);
      zt::ExpectNear3(fit.center, f.origin, kFitTol);
      EXPECT_NEAR(fit.radius, radius, kFitTol);
    }
  }
}

// Three points fail, fields untouched; a proportion dropping no point keeps
// the first fit; a zero-width band fails the refit.
TEST(XSphereFitLM, FailureCodes) {
  std::mt19937 rng(7200);
  const zt::Frame f = zt::RandomFrame(rng, 100.0);
  zt::Samples s = zt::SampleSphere(f, 10.0, 150, kNoise, rng);
  XSphereFitLM fit, plain;
  ASSERT_EQ(zt::RunFilteredFit(plain, s, 0, kParam), 0);
  ASSERT_EQ(zt::RunFilteredFit(fit, s, 2, FilterParam(30, 2, 0.006f)), 0);
  EXPECT_EQ(Fields(fit), Fields(plain));
  EXPECT_EQ(zt::RunFilteredFit(fit, s, 1, FilterParam(30, 0, 0.05f)), -2);
  const std::vector<float> before = Fields(fit);
  s.points.resize(3);
  EXPECT_EQ(zt::RunFilteredFit(fit, s, 0, kParam), -1);
  EXPECT_EQ(Fields(fit), before);
}

}  // namespace
}  // namespace zelmolm
