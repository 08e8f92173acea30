#include <algorithm>

#include "tests/curvefit/outline_checks.h"
#include "tests/support/outline_samplers.h"

namespace xcurve3dfit {
namespace {

using zelmo::test::ExpectRecovered;
using zelmo::test::Frame;
using zelmo::test::Samples;

TEST(OutlineFits, RecoverSlotsRectanglesAndRoundedRectangles) {
  std::uniform_real_distribution<double> length(15, 40), width(4, 12);
  std::uniform_real_distribution<double> corner(0.2, 0.7);
  ExpectRecovered<XOvalGroove3DFit>(
      71, 4,
      [&](const Frame& f, double noise, std::mt19937& rng, auto& sizes) {
        sizes = {length(rng) - 12, width(rng)};
        return zelmo::test::SampleSlot(f, sizes[0], sizes[1], 240, noise, rng);
      },
      3);
  ExpectRecovered<XRectangle3DFit>(
      83, 4,
      [&](const Frame& f, double noise, std::mt19937& rng, auto& sizes) {
        sizes = {length(rng), width(rng)};
        return zelmo::test::SampleRectangle(f, sizes[0], sizes[1], 240, noise,
                                            rng);
      },
      3);
  ExpectRecovered<XRoundGroove3DFit>(
      97, 4,
      [&](const Frame& f, double noise, std::mt19937& rng, auto& sizes) {
        const double b = width(rng) + 2;
        sizes = {length(rng), b, corner(rng) * b};
        return zelmo::test::SampleRoundedRectangle(f, sizes[0], b, sizes[2],
                                                   300, noise, rng);
      },
      1);
}

// Fits `good`; refuses `minimum` - 1 of its points, `out` untouched; fits
// `bad` into `out`, written even when refused, and returns whether it was
// accepted. The object must hold the last accepted result.
template <class Fit>
bool FitTwice(const Samples& good,
              const Samples& bad,
              size_t minimum,
              float* out) {
  Fit fit;
  float kept[12];
  EXPECT_TRUE(fit.Fit(good.points, kept, LeastSquare));
  std::fill(out, out + 12, -777.0f);
  EXPECT_FALSE(
      fit.Fit(std::vector<cv::Point3f>(good.points.begin(),
                                       good.points.begin() + minimum - 1),
              out, LeastSquare));
  EXPECT_EQ(out[0], -777.0f);
  const bool ok = fit.Fit(bad.points, out, LeastSquare);
  const std::vector<float> held = zelmo::test::Held(fit);
  const float* want = ok ? out : kept;
  EXPECT_EQ(held, std::vector<float>(want, want + held.size()));
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
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    float out[12];
    const bool oval = FitTwice<XOvalGroove3DFit>(
        zelmo::test::SampleSlot(f, 8.0, 3.0, 60, 0.0, rng),
        zelmo::test::SampleCircle(f, 6.0, 60, 0.0, rng), 8, out);
    EXPECT_EQ(oval, out[9] > 0 && out[10] > 0);
    EXPECT_NEAR(out[10], 6.0, 0.15);
    ovalRejected += !oval;
    const bool round = FitTwice<XRoundGroove3DFit>(
        zelmo::test::SampleRoundedRectangle(f, 20, 8, 3, 120, 0.0, rng),
        zelmo::test::SampleSlot(f, 12.0, 5.0, 120, 0.0, rng), 12, out);
    EXPECT_EQ(round, out[9] >= out[10] && out[10] > out[11] && out[11] > 0);
    EXPECT_NEAR(out[11], 5.0, 0.05);
    roundRejected += !round;
    // The rectangle tests no sizes: a slot passes, 3 points do not.
    EXPECT_TRUE(FitTwice<XRectangle3DFit>(
        zelmo::test::SampleRectangle(f, 9, 4, 40, 0.0, rng),
        zelmo::test::SampleSlot(f, 12.0, 5.0, 40, 0.0, rng), 4, out));
  }
  EXPECT_GT(ovalRejected, 0);
  EXPECT_GT(roundRejected, 0);
}

}  // namespace
}  // namespace xcurve3dfit
