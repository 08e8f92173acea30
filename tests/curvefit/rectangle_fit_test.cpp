#include "zelmo/curvefit/rectangle_fit.h"

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

TEST(XRectangle3DFit, RecoversRectanglesInObliquePlanes) {
  std::mt19937 rng(83);
  std::uniform_real_distribution<double> length(12.0, 40.0), width(3, 10);
  for (int trial = 0; trial < 4; ++trial) {
    for (double noise : {0.0, zelmo::test::kOutlineNoise}) {
      const Frame f = zelmo::test::RandomFrame(rng, 500.0);
      const double a = length(rng), b = width(rng);
      const Samples s = zelmo::test::SampleRectangle(f, a, b, 240, noise, rng);
      for (FitMethod method : zelmo::test::kTwoSidedMethods) {
        SCOPED_TRACE(testing::Message()
                     << "seed 83 trial " << trial << " noise " << noise
                     << " method " << method);
        XRectangle3DFit fit;
        float out[11];
        const std::vector<float> xyz = s.Xyz();
        ASSERT_TRUE(fit.Fit(xyz.data(), s.Count(), out, method));
        zelmo::test::ExpectOutline(out, f, {a, b}, noise > 0, true);
        xgeofeature::XFRectangle3D rectangle;
        fit.getRectangle(rectangle);
        EXPECT_EQ(rectangle.halfLength, out[9]);
        EXPECT_EQ(rectangle.halfWidth, out[10]);
        EXPECT_EQ(rectangle.majorDir[0], out[6]);
      }
    }
  }
}

TEST(XRectangle3DFit, RefusesThreePointsAndFitsFour) {
  std::mt19937 rng(89);
  const Frame f = zelmo::test::RandomFrame(rng, 200.0);
  const std::vector<cv::Point3f> corners = {
      cv::Point3f(f.At(5, 2, 0)), cv::Point3f(f.At(-5, 2, 0)),
      cv::Point3f(f.At(-5, -2, 0)), cv::Point3f(f.At(5, -2, 0))};
  XRectangle3DFit fit;
  float out[11];
  std::fill(out, out + 11, -777.0f);
  EXPECT_FALSE(fit.Fit({corners.begin(), corners.end() - 1}, out, Chebyshev));
  for (float v : out) EXPECT_EQ(v, -777.0f);
  EXPECT_TRUE(fit.Fit(corners, out, Chebyshev));
  zelmo::test::ExpectNear3(out, f.origin, zelmo::test::kExactPosTol);
}

}  // namespace
}  // namespace xcurve3dfit
