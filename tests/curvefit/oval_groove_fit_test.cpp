#include "zelmo/curvefit/oval_groove_fit.h"

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
// A circle fitted as a slot: the straight part is not determined, and the
// descent ends within this of a 0 half straight length and the radius.
constexpr double kDegenerateTol = 0.15;

std::vector<float> Fields(const xgeofeature::XFOvalGroove3D& g) {
  std::vector<float> v(g.center, g.center + 3);
  v.insert(v.end(), g.normal, g.normal + 3);
  v.insert(v.end(), g.majorDir, g.majorDir + 3);
  v.push_back(g.halfStraight);
  v.push_back(g.radius);
  return v;
}

TEST(XOvalGroove3DFit, RecoversSlotsInObliquePlanes) {
  std::mt19937 rng(71);
  std::uniform_real_distribution<double> straight(5.0, 30.0), radius(3, 12);
  for (int trial = 0; trial < 4; ++trial) {
    for (double noise : {0.0, zelmo::test::kOutlineNoise}) {
      const Frame f = zelmo::test::RandomFrame(rng, 500.0);
      const double a = straight(rng), r = radius(rng);
      const Samples s = zelmo::test::SampleSlot(f, a, r, 240, noise, rng);
      for (FitMethod method : zelmo::test::kTwoSidedMethods) {
        SCOPED_TRACE(testing::Message()
                     << "seed 71 trial " << trial << " noise " << noise
                     << " method " << method);
        XOvalGroove3DFit fit;
        float out[11];
        ASSERT_TRUE(fit.Fit(s.points, out, method));
        zelmo::test::ExpectOutline(out, f, {a, r}, noise > 0, true);
        xgeofeature::XFOvalGroove3D groove;
        fit.getOvalGroove(groove);
        EXPECT_EQ(Fields(groove), std::vector<float>(out, out + 11));

        // Normals along w vote the fitted normal onto w.
        const std::vector<float> xyz = s.Xyz();
        std::vector<float> up;
        for (int i = 0; i < s.Count(); ++i)
          up.insert(up.end(), {float(f.w[0]), float(f.w[1]), float(f.w[2])});
        ASSERT_TRUE(fit.Fit(xyz.data(), up.data(), s.Count(), out, method));
        zelmo::test::ExpectSameDirection(out + 3, f.w, zelmo::test::kNormalTol);
      }
    }
  }
}

TEST(XOvalGroove3DFit, RefusesSevenPointsLeavingOutputs) {
  std::mt19937 rng(73);
  const Frame f = zelmo::test::RandomFrame(rng, 200.0);
  const Samples s = zelmo::test::SampleSlot(f, 10.0, 4.0, 8, 0.0, rng);
  XOvalGroove3DFit fit;
  float kept[11];
  ASSERT_TRUE(fit.Fit(s.points, kept, LeastAbsDev));
  float out[11];
  std::fill(out, out + 11, kUnwritten);
  const std::vector<cv::Point3f> seven(s.points.begin(), s.points.end() - 1);
  EXPECT_FALSE(fit.Fit(seven, out, LeastAbsDev));
  for (float v : out) EXPECT_EQ(v, kUnwritten);
  xgeofeature::XFOvalGroove3D groove;
  fit.getOvalGroove(groove);
  EXPECT_EQ(Fields(groove), std::vector<float>(kept, kept + 11));
}

TEST(XOvalGroove3DFit, FailedSizeTestWritesOutputButKeepsLastResult) {
  // Circles have no straight part: the fitted half straight length ends
  // near 0, on either side of it.
  std::mt19937 rng(79);
  int rejected = 0;
  for (int trial = 0; trial < 12; ++trial) {
    SCOPED_TRACE(testing::Message() << "seed 79 trial " << trial);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const Samples slot = zelmo::test::SampleSlot(f, 8.0, 3.0, 60, 0.0, rng);
    const Samples circle = zelmo::test::SampleCircle(f, 6.0, 60, 0.0, rng);
    XOvalGroove3DFit fit;
    float kept[11], out[11];
    ASSERT_TRUE(fit.Fit(slot.points, kept, LeastAbsDev));
    std::fill(out, out + 11, kUnwritten);
    const bool ok = fit.Fit(circle.points, out, LeastAbsDev);
    EXPECT_NEAR(out[9], 0.0, kDegenerateTol);
    EXPECT_NEAR(out[10], 6.0, kDegenerateTol);
    EXPECT_EQ(ok, out[9] > 0.0f && out[10] > 0.0f);
    xgeofeature::XFOvalGroove3D groove;
    fit.getOvalGroove(groove);
    EXPECT_EQ(Fields(groove),
              std::vector<float>(ok ? out : kept, (ok ? out : kept) + 11));
    rejected += ok ? 0 : 1;
  }
  EXPECT_GT(rejected, 0);
}

}  // namespace
}  // namespace xcurve3dfit
