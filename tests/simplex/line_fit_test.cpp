#include "zelmo/simplex/line_fit.h"

#include "tests/simplex/simplex_checks.h"

namespace x3dfit {
namespace {

using zelmo::test::DistanceToLine;
using zelmo::test::ToPoint3f;

TEST(XLine3DFit, RecoversLinesWithEveryMethod) {
  ForEachPose(21, 5, [](const Frame& f, double noise, std::mt19937& rng) {
    const Samples s = zelmo::test::SampleLine(f, 80.0, 200, noise, rng);
    const std::vector<float> xyz = s.Xyz();
    for (FitMethod method : kAllMethods) {
      SCOPED_TRACE(testing::Message() << "method " << method);
      XLine3DFit fit;
      double p[6];
      ASSERT_TRUE(fit.Fit(xyz.data(), s.Count(), p, method));
      ExpectUnitAxis(p + 3, f, DirTol(noise));
      EXPECT_LE(DistanceToLine(Vec3(p), Vec3(p + 3), f.origin), PosTol(noise));
    }
  });
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

TEST(XLine3DFit, ChebyshevRerunsTheObjectiveOfTheLastFit) {
  std::mt19937 rng(4);
  const Frame f = zelmo::test::FrameFromAxis({120, -40, 300}, {1, 2, 2});
  Samples s = zelmo::test::SampleLine(f, 50.0, 60, 0.0, rng);
  s.points[5] = ToPoint3f(f.At(3, 0, 20));  // one outlier
  ExpectChebyshevRerunsHeldObjective<XLine3DFit>(s.points, 6);
}

TEST(XLine3DFit, StartAndEndAreTheExtremesAlongTheDirection) {
  std::mt19937 rng(8);
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(testing::Message() << "seed 8 trial " << trial);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    Samples s = zelmo::test::SampleLine(f, 60.0, 100, 0.0, rng);
    s.points.push_back(ToPoint3f(f.At(0, 0, -5)));
    s.points.push_back(ToPoint3f(f.At(0, 0, 70)));
    std::shuffle(s.points.begin(), s.points.end(), rng);
    const std::vector<float> xyz = s.Xyz();
    XLine3DFit fit;
    double p[6];
    float start[3], end[3];
    fit.Fit(s.points, p, LeastSquare);
    fit.getStart_End_Point(xyz.data(), s.Count(), p, start, end);
    const bool along = Vec3(p + 3).dot(f.w) > 0;
    zelmo::test::ExpectNear3(start, f.At(0, 0, along ? -5 : 70), 1e-3);
    zelmo::test::ExpectNear3(end, f.At(0, 0, along ? 70 : -5), 1e-3);
  }
}

}  // namespace
}  // namespace x3dfit
