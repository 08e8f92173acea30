#include <algorithm>

#include "tests/curvefit/outline_checks.h"
#include "tests/support/outline_samplers.h"

namespace xcurve3dfit {
namespace {

using namespace zelmo::test;  // NOLINT: the suites' own helpers

TEST(OutlineFits, RecoverSlotsRectanglesAndRoundedRectangles) {
  std::uniform_real_distribution<double> length(15, 40), width(4, 12);
  std::uniform_real_distribution<double> corner(0.2, 0.7);
  auto slot = [&](const Frame& f, double noise, std::mt19937& rng, auto& s) {
    s = {length(rng) - 12, width(rng)};
    return SampleSlot(f, s[0], s[1], 240, noise, rng);
  };
  auto rect = [&](const Frame& f, double noise, std::mt19937& rng, auto& s) {
    s = {length(rng), width(rng)};
    return SampleRectangle(f, s[0], s[1], 240, noise, rng);
  };
  auto round = [&](const Frame& f, double noise, std::mt19937& rng, auto& s) {
    const double b = width(rng) + 2;
    s = {length(rng), b, corner(rng) * b};
    return SampleRoundedRectangle(f, s[0], b, s[2], 300, noise, rng);
  };
  EXPECT_EQ(Recovered<XOvalGroove3DFit>(71, slot, 3), 12);
  EXPECT_EQ(Recovered<XRectangle3DFit>(83, rect, 3), 12);
  // Only least squares pins the corner radius against the half sizes.
  EXPECT_EQ(Recovered<XRoundGroove3DFit>(97, round, 1), 12);
}

// Fits `good`; refuses `n` - 1 of its points, `out` untouched; fits
// `bad` into `out`, written even when refused, and returns whether it was
// accepted. The object must hold the last accepted result.
template <class Fit>
bool FitTwice(const Samples& good, const Samples& bad, int n, float* out) {
  Fit fit;
  float kept[12];
  EXPECT_TRUE(fit.Fit(good.points, kept, LeastSquare));
  std::fill(out, out + 12, -777.0f);
  EXPECT_FALSE(fit.Fit(good.Xyz().data(), n - 1, out, LeastSquare));
  EXPECT_EQ(out[0], -777.0f);
  const bool ok = fit.Fit(bad.points, out, LeastSquare);
  const float* want = ok ? out : kept;  // center x and sizes
  std::vector<float> sizes(want + 9, want + 8 + Held(fit).size());
  sizes.insert(sizes.begin(), want[0]);
  EXPECT_EQ(Held(fit), sizes);
  EXPECT_NE(out[9], -777.0f);
  return ok;
}

// A circle is a slot of no straight length, a slot a round groove whose
// corner radius is its half width: fits on the wrong side are refused.
TEST(OutlineFits, FailedSizeTestsWriteOutputButKeepTheLastResult) {
  std::mt19937 rng(79);
  int ovalRejected = 0, roundRejected = 0;
  for (int trial = 0; trial < 12; ++trial) {
    SCOPED_TRACE(testing::Message() << "seed 79 trial " << trial);
    const Frame f = RandomFrame(rng, 500.0);
    float out[12];
    const bool oval =
        FitTwice<XOvalGroove3DFit>(SampleSlot(f, 8.0, 3.0, 60, 0.0, rng),
                                   SampleCircle(f, 6.0, 60, 0.0, rng), 8, out);
    EXPECT_EQ(oval, out[9] > 0 && out[10] > 0);
    ovalRejected += !oval;
    const bool round = FitTwice<XRoundGroove3DFit>(
        SampleRoundedRectangle(f, 20, 8, 3, 120, 0.0, rng),
        SampleSlot(f, 12.0, 5.0, 120, 0.0, rng), 12, out);
    EXPECT_EQ(round, out[9] >= out[10] && out[10] > out[11] && out[11] > 0);
    roundRejected += !round;
    XRectangle3DFit rect;  // no size test: a slot passes, 3 points do not;
    // {} is LeastSquare
    EXPECT_FALSE(rect.Fit(SampleRectangle(f, 9, 4, 3, 0, rng).points, out, {}));
    EXPECT_TRUE(rect.Fit(SampleSlot(f, 12, 5, 40, 0, rng).points, out, {}));
  }
  EXPECT_GT(ovalRejected, 0);
  EXPECT_GT(roundRejected, 0);
}

}  // namespace
}  // namespace xcurve3dfit
