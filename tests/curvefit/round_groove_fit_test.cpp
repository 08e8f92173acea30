#include "zelmo/curvefit/round_groove_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "tests/curvefit/outline_checks.h"
#include "tests/support/outline_samplers.h"
#include "tests/support/samplers.h"

namespace xcurve3dfit {
namespace {

using zelmo::test::Frame;
using zelmo::test::Samples;

constexpr float kUnwritten = -777.0f;
// The sum of absolute distances and the largest distance leave the corner
// radius weakly bound (radius and half sizes can trade against each other
// along the corners), and the descent may stop early in that valley: their
// results are checked to these bounds, the corner radius only for its range.
constexpr double kValleyPosTol = 0.5;
constexpr double kValleySizeTol = 0.5;
constexpr double kValleyDirTol = 0.01;

std::vector<float> Fields(const xgeofeature::XFRoundGroove3D& g) {
  std::vector<float> v(g.center, g.center + 3);
  v.insert(v.end(), g.normal, g.normal + 3);
  v.insert(v.end(), g.majorDir, g.majorDir + 3);
  v.insert(v.end(), {g.halfLength, g.halfWidth, g.cornerRadius});
  return v;
}

TEST(XRoundGroove3DFit, RecoversRoundedRectanglesInObliquePlanes) {
  std::mt19937 rng(97);
  std::uniform_real_distribution<double> length(15.0, 40.0), width(6, 12);
  std::uniform_real_distribution<double> corner(0.2, 0.7);
  for (int trial = 0; trial < 4; ++trial) {
    for (double noise : {0.0, zelmo::test::kOutlineNoise}) {
      const Frame f = zelmo::test::RandomFrame(rng, 500.0);
      const double a = length(rng), b = width(rng), r = corner(rng) * b;
      const Samples s =
          zelmo::test::SampleRoundedRectangle(f, a, b, r, 300, noise, rng);
      for (FitMethod method : zelmo::test::kTwoSidedMethods) {
        SCOPED_TRACE(testing::Message()
                     << "seed 97 trial " << trial << " noise " << noise
                     << " method " << method);
        XRoundGroove3DFit fit;
        float out[12];
        ASSERT_TRUE(fit.Fit(s.points, out, method));
        if (method == LeastSquare) {
          zelmo::test::ExpectOutline(out, f, {a, b, r}, noise > 0, true);
        } else {
          zelmo::test::ExpectNear3(out, f.origin, kValleyPosTol);
          zelmo::test::ExpectSameAxis(out + 3, f.w, zelmo::test::kNormalTol);
          zelmo::test::ExpectSameAxis(out + 6, f.u, kValleyDirTol);
          EXPECT_NEAR(out[9], a, kValleySizeTol);
          EXPECT_NEAR(out[10], b, kValleySizeTol);
          EXPECT_GT(out[11], 0.0f);
          EXPECT_LT(out[11], out[10]);
        }
        xgeofeature::XFRoundGroove3D groove;
        fit.getRoundGroove(groove);
        EXPECT_EQ(Fields(groove), std::vector<float>(out, out + 12));
      }
    }
  }
}

TEST(XRoundGroove3DFit, RefusesElevenPointsLeavingOutputs) {
  std::mt19937 rng(101);
  const Frame f = zelmo::test::RandomFrame(rng, 200.0);
  const Samples s =
      zelmo::test::SampleRoundedRectangle(f, 12, 6, 2, 12, 0.0, rng);
  XRoundGroove3DFit fit;
  float kept[12];
  ASSERT_TRUE(fit.Fit(s.points, kept, LeastSquare));
  float out[12];
  std::fill(out, out + 12, kUnwritten);
  EXPECT_FALSE(
      fit.Fit({s.points.begin(), s.points.end() - 1}, out, LeastSquare));
  for (float v : out) EXPECT_EQ(v, kUnwritten);
  xgeofeature::XFRoundGroove3D groove;
  fit.getRoundGroove(groove);
  EXPECT_EQ(Fields(groove), std::vector<float>(kept, kept + 12));
}

TEST(XRoundGroove3DFit, FailedSizeTestWritesOutputButKeepsLastResult) {
  // A slot is a round groove whose corner radius is its half width: the
  // fitted radius ends near the half width, on either side of it.
  std::mt19937 rng(103);
  int rejected = 0;
  for (int trial = 0; trial < 12; ++trial) {
    SCOPED_TRACE(testing::Message() << "seed 103 trial " << trial);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const Samples good =
        zelmo::test::SampleRoundedRectangle(f, 20, 8, 3, 120, 0.0, rng);
    const Samples slot = zelmo::test::SampleSlot(f, 12.0, 5.0, 120, 0.0, rng);
    XRoundGroove3DFit fit;
    float kept[12], out[12];
    ASSERT_TRUE(fit.Fit(good.points, kept, LeastSquare));
    std::fill(out, out + 12, kUnwritten);
    const bool ok = fit.Fit(slot.points, out, LeastSquare);
    EXPECT_NEAR(out[9], 17.0, 0.05);
    EXPECT_NEAR(out[10], 5.0, 0.05);
    EXPECT_NEAR(out[11], 5.0, 0.05);
    EXPECT_EQ(ok, out[9] >= out[10] && out[10] > out[11] && out[11] > 0);
    xgeofeature::XFRoundGroove3D groove;
    fit.getRoundGroove(groove);
    EXPECT_EQ(Fields(groove),
              std::vector<float>(ok ? out : kept, (ok ? out : kept) + 12));
    rejected += ok ? 0 : 1;
  }
  EXPECT_GT(rejected, 0);
}

}  // namespace
}  // namespace xcurve3dfit
