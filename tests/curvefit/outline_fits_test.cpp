#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <opencv2/core.hpp>
#include <random>
#include <vector>

#include "tests/curvefit/outline_checks.h"
#include "tests/support/outline_samplers.h"
#include "zelmo/curvefit/oval_groove_fit.h"
#include "zelmo/curvefit/rectangle_fit.h"
#include "zelmo/curvefit/round_groove_fit.h"

namespace xcurve3dfit {
namespace {

using zelmo::test::Frame;
using zelmo::test::Samples;

// Samples of a shape with its true sizes, for a frame and a noise level.
using Shape = std::function<Samples(
    const Frame&, double, std::mt19937&, std::vector<double>&)>;

// Fits samples of `shape` in random oblique frames by every two-sided
// method. `exactMethods` lists the methods held to the full tolerances; the
// others must keep the plane, the axis within kValleyDirTol and the center
// and first two sizes within kValleyTol.
template <class Fit>
void ExpectRecovered(int seed, const Shape& shape, int exactMethods) {
  // The sum of absolute and the largest distance leave a corner radius
  // weakly bound (it trades against the half sizes along the corners) and
  // the descent can stop early in that valley.
  constexpr double kValleyTol = 1.0, kValleyDirTol = 0.01;
  std::mt19937 rng(seed);
  for (int trial = 0; trial < 4; ++trial) {
    for (double noise : {0.0, zelmo::test::kOutlineNoise}) {
      const Frame f = zelmo::test::RandomFrame(rng, 500.0);
      std::vector<double> sizes;
      const Samples s = shape(f, noise, rng, sizes);
      for (int m = 0; m < 3; ++m) {
        const FitMethod method = zelmo::test::kTwoSidedMethods[m];
        SCOPED_TRACE(testing::Message()
                     << "seed " << seed << " trial " << trial << " noise "
                     << noise << " method " << method);
        Fit fit;
        float out[12];
        const std::vector<float> xyz = s.Xyz();
        std::vector<float> up;  // normals along w vote the normal onto w
        for (int i = 0; i < s.Count(); ++i)
          up.insert(up.end(), {float(f.w[0]), float(f.w[1]), float(f.w[2])});
        ASSERT_TRUE(fit.Fit(xyz.data(), up.data(), s.Count(), out, method));
        zelmo::test::ExpectSameDirection(out + 3, f.w, zelmo::test::kNormalTol);
        if (m < exactMethods) {
          zelmo::test::ExpectOutline(out, f, sizes, noise > 0, true);
        } else {
          zelmo::test::ExpectNear3(out, f.origin, kValleyTol);
          zelmo::test::ExpectSameAxis(out + 6, f.u, kValleyDirTol);
          EXPECT_NEAR(out[9], sizes[0], kValleyTol);
          EXPECT_NEAR(out[10], sizes[1], kValleyTol);
        }
      }
    }
  }
}

TEST(OutlineFits, RecoverSlotsRectanglesAndRoundedRectangles) {
  std::uniform_real_distribution<double> length(15, 40), width(4, 12);
  std::uniform_real_distribution<double> corner(0.2, 0.7);
  ExpectRecovered<XOvalGroove3DFit>(
      71,
      [&](const Frame& f, double noise, std::mt19937& rng, auto& sizes) {
        sizes = {length(rng) - 12, width(rng)};
        return zelmo::test::SampleSlot(f, sizes[0], sizes[1], 240, noise, rng);
      },
      3);
  ExpectRecovered<XRectangle3DFit>(
      83,
      [&](const Frame& f, double noise, std::mt19937& rng, auto& sizes) {
        sizes = {length(rng), width(rng)};
        return zelmo::test::SampleRectangle(f, sizes[0], sizes[1], 240, noise,
                                            rng);
      },
      3);
  ExpectRecovered<XRoundGroove3DFit>(
      97,
      [&](const Frame& f, double noise, std::mt19937& rng, auto& sizes) {
        const double b = width(rng) + 2;
        sizes = {length(rng), b, corner(rng) * b};
        return zelmo::test::SampleRoundedRectangle(f, sizes[0], b, sizes[2],
                                                   300, noise, rng);
      },
      1);
}

// The floats an object holds, read through its record.
template <class Record>
std::vector<float> Floats(const Record& g, std::vector<float> sizes) {
  std::vector<float> v(g.center, g.center + 3);
  v.insert(v.end(), g.normal, g.normal + 3);
  v.insert(v.end(), g.majorDir, g.majorDir + 3);
  v.insert(v.end(), sizes.begin(), sizes.end());
  return v;
}
std::vector<float> Held(const XOvalGroove3DFit& fit) {
  xgeofeature::XFOvalGroove3D g;
  fit.getOvalGroove(g);
  return Floats(g, {g.halfStraight, g.radius});
}
std::vector<float> Held(const XRectangle3DFit& fit) {
  xgeofeature::XFRectangle3D g;
  fit.getRectangle(g);
  return Floats(g, {g.halfLength, g.halfWidth});
}
std::vector<float> Held(const XRoundGroove3DFit& fit) {
  xgeofeature::XFRoundGroove3D g;
  fit.getRoundGroove(g);
  return Floats(g, {g.halfLength, g.halfWidth, g.cornerRadius});
}

// Fits `good`, then `bad` into `out` (which is then written whatever the
// outcome) and checks that the object holds the last accepted result.
// Returns whether `bad` was accepted; `minimum` - 1 of the good points
// must be refused, with `out` untouched.
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
  const std::vector<float> held = Held(fit);
  const float* want = ok ? out : kept;
  EXPECT_EQ(held, std::vector<float>(want, want + held.size()));
  EXPECT_NE(out[9], -777.0f);
  return ok;
}

TEST(OutlineFits, FailedSizeTestsWriteOutputButKeepTheLastResult) {
  // Each fit refuses one point less than its minimum. A circle is a slot
  // of no straight length, a slot a round groove whose
  // corner radius is its half width: the descent ends on either side of
  // the limit, and only the fits on the right side are kept.
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
