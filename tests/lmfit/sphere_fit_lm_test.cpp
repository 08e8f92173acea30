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
const FilterParam kParam(30.0f, 2.0f, 0.05f);  // 30 degrees, 2 sd, 5 %

// A full sphere and a cap; filters see 3 % outliers 0.3 off, normals
// turned. A zero-width band fails the refit; three points fail, fields kept.
TEST(XSphereFitLM, RecoversSpheresAndCapsWithEveryFilterAndFailsOnFewPoints) {
  for (int trial = 0; trial < 2; ++trial) {
    std::mt19937 rng(7100 + trial);
    const zt::Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const double polar = zt::kPi / (trial % 2 == 0 ? 1 : 3);
    const zt::Samples s = zt::SampleSphere(f, radius, 600, kNoise, rng, polar);
    zt::Samples dirty = s, three = s;
    zt::AddTurnedOutliers(dirty, 0.03, 0.3, zt::SquareTo);
    XSphereFitLM fit;
    for (int method = 0; method < 6; ++method) {
      SCOPED_TRACE(testing::Message() << trial << "/" << method);
      ASSERT_EQ(zt::RunFilteredFit(fit, method ? dirty : s, method, kParam), 0);
      zt::ExpectNear3(fit.center, f.origin, kFitTol);
      EXPECT_NEAR(fit.radius, radius, kFitTol);
    }
    EXPECT_EQ(zt::RunFilteredFit(fit, s, 1, FilterParam(30, 0, 0.05f)), -2);
    const std::vector<float> before(fit.center, &fit.radius + 1);
    three.points.resize(3);
    EXPECT_EQ(zt::RunFilteredFit(fit, three, 0, kParam), -1);
    EXPECT_EQ(std::vector<float>(fit.center, &fit.radius + 1), before);
  }
}

}  // namespace
}  // namespace zelmolm
