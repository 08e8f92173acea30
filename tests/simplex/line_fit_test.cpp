#include "zelmo/simplex/line_fit.h"

#include "tests/simplex/simplex_checks.h"

namespace x3dfit {
namespace {

TEST(XLine3DFit, RecoversLinesWithEveryMethod) {
  ForEachPose(21, [](const Frame& f, double noise, std::mt19937& rng) {
    const Samples s = SampleLine(f, 80.0, 200, noise, rng);
    for (FitMethod method : kAllMethods) {
      XLine3DFit fit;
      double p[6];
      ASSERT_TRUE(fit.Fit(s.points, p, method)) << method;
      ExpectUnitAxis(p + 3, f, DirTol(noise));
      EXPECT_LE(DistanceToLine(Vec3(p), Vec3(p + 3), f.origin), PosTol(noise));
    }
  });
}

TEST(XLine3DFit, ChebyshevRerunsTheObjectiveOfTheLastFit) {
  std::mt19937 rng(4);
  const Frame f = FrameFromAxis({120, -40, 300}, {1, 2, 2});
  Samples s = SampleLine(f, 50.0, 60, 0.0, rng);
  s.points[5] = ToPoint3f(f.At(3, 0, 20));  // one outlier
  EXPECT_GT(ChebyshevRerunsHeldObjective<XLine3DFit>(s.points), 1e-3);
}

// Start and end are the extremes along the fitted direction; under three
// points Fit fails and neither writes anything.
TEST(XLine3DFit, StartAndEndAreTheExtremesAlongTheDirection) {
  std::mt19937 rng(8);
  const Frame f = RandomFrame(rng, 500.0);
  Samples s = SampleLine(f, 60.0, 100, 0.0, rng);
  s.points.push_back(ToPoint3f(f.At(0, 0, -5)));
  s.points.push_back(ToPoint3f(f.At(0, 0, 70)));
  std::shuffle(s.points.begin(), s.points.end(), rng);
  const std::vector<float> xyz = s.Xyz();
  XLine3DFit fit;
  double p[6] = {1, 1, 1, 1, 1, 1};
  float ends[6] = {7, 7, 7, 8, 8, 8};
  EXPECT_FALSE(fit.Fit(xyz.data(), 2, p, LeastSquare));
  fit.getStart_End_Point(xyz.data(), 2, p, ends, ends + 3);
  EXPECT_EQ(cv::Vec6d(p), cv::Vec6d::all(1));
  EXPECT_EQ(cv::Vec6f(ends), cv::Vec6f(7, 7, 7, 8, 8, 8));
  ASSERT_TRUE(fit.Fit(s.points, p, LeastSquare));
  fit.getStart_End_Point(xyz.data(), s.Count(), p, ends, ends + 3);
  const bool along = Vec3(p + 3).dot(f.w) > 0;
  ExpectNear3(ends, f.At(0, 0, along ? -5 : 70), 1e-3);
  ExpectNear3(ends + 3, f.At(0, 0, along ? 70 : -5), 1e-3);
}

}  // namespace
}  // namespace x3dfit
