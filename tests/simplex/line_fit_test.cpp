#include "zelmo/simplex/line_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "tests/simplex/recovery_tolerances.h"
#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/tolerance.h"

namespace x3dfit {
namespace {

using zelmo::test::DistanceToLine;
using zelmo::test::Frame;
using zelmo::test::Vec3;

TEST(XLine3DFit, RecoversLinesWithEveryMethod) {
  std::mt19937 rng(21);
  for (int trial = 0; trial < 5; ++trial) {
    for (double noise : {0.0, 0.01}) {
      const Frame f = zelmo::test::RandomFrame(rng, 500.0);
      const auto s = zelmo::test::SampleLine(f, 80.0, 200, noise, rng);
      for (FitMethod method : {LeastSquare, LeastAbsDev, Chebyshev}) {
        SCOPED_TRACE(testing::Message()
                     << "seed 21 trial " << trial << " noise " << noise
                     << " method " << method);
        XLine3DFit fit;
        double p[6];
        const std::vector<float> xyz = s.Xyz();
        ASSERT_TRUE(fit.Fit(xyz.data(), s.Count(), p, method));
        const bool exact = noise == 0.0;
        EXPECT_NEAR(cv::norm(Vec3(p + 3)), 1.0, 1e-12);
        zelmo::test::ExpectSameAxis(Vec3(p + 3), f.w,
                                    exact ? kExactDirTol : kNoisyDirTol);
        EXPECT_LE(DistanceToLine(Vec3(p), Vec3(p + 3), f.origin),
                  exact ? kExactPosTol : kNoisyPosTol);
      }
    }
  }
}

TEST(XLine3DFit, FewerThanThreePointsFailAndWriteNothing) {
  const float xyz[6] = {1, 2, 3, 4, 5, 6};
  double p[6] = {1, 1, 1, 1, 1, 1};
  const double before[6] = {1, 1, 1, 1, 1, 1};
  XLine3DFit fit;
  EXPECT_FALSE(fit.Fit(xyz, 2, p, LeastSquare));
  EXPECT_FALSE(fit.Fit(xyz, 0, p, LeastAbsDev));
  zelmo::test::ExpectNearArray(p, before, 6, 0.0);

  float start[3] = {7, 7, 7}, end[3] = {8, 8, 8};
  fit.getStart_End_Point(xyz, 2, p, start, end);
  EXPECT_EQ(start[0], 7.0f);
  EXPECT_EQ(end[2], 8.0f);
}

// With no Chebyshev objective, any method but 0 and 1 runs the objective
// the object holds: the sum of distances when fresh, else the last one.
TEST(XLine3DFit, OtherMethodsKeepTheObjectiveOfTheLastFit) {
  std::mt19937 rng(4);
  const Frame f = zelmo::test::FrameFromAxis({120, -40, 300}, {1, 2, 2});
  auto s = zelmo::test::SampleLine(f, 50.0, 60, 0.0, rng);
  s.points[5] = zelmo::test::ToPoint3f(f.At(3, 0, 20));  // one outlier

  double ls[6], lad[6], fresh[6], kept[6];
  XLine3DFit a, b, c;
  a.Fit(s.points, ls, LeastSquare);
  a.Fit(s.points, kept, Chebyshev);
  b.Fit(s.points, lad, LeastAbsDev);
  c.Fit(s.points, fresh, Chebyshev);
  // The two objectives reach different lines on these points.
  ASSERT_GT(DistanceToLine(Vec3(ls), Vec3(ls + 3), Vec3(lad)), 1e-3);
  zelmo::test::ExpectNearArray(kept, ls, 6, 0.0);
  zelmo::test::ExpectNearArray(fresh, lad, 6, 0.0);
}

TEST(XLine3DFit, StartAndEndAreTheExtremesAlongTheDirection) {
  std::mt19937 rng(8);
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(testing::Message() << "seed 8 trial " << trial);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    auto s = zelmo::test::SampleLine(f, 60.0, 100, 0.0, rng);
    s.points.push_back(zelmo::test::ToPoint3f(f.At(0, 0, -5)));
    s.points.push_back(zelmo::test::ToPoint3f(f.At(0, 0, 70)));
    std::shuffle(s.points.begin(), s.points.end(), rng);
    const std::vector<float> xyz = s.Xyz();
    XLine3DFit fit;
    double p[6];
    fit.Fit(s.points, p, LeastSquare);
    float start[3], end[3];
    fit.getStart_End_Point(xyz.data(), s.Count(), p, start, end);
    const bool along = Vec3(p + 3).dot(f.w) > 0;
    zelmo::test::ExpectNear3(start, f.At(0, 0, along ? -5 : 70), 1e-3);
    zelmo::test::ExpectNear3(end, f.At(0, 0, along ? 70 : -5), 1e-3);
  }
}

}  // namespace
}  // namespace x3dfit
