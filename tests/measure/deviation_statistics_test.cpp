#include "zelmo/measure/deviation_statistics.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/tolerance.h"

namespace zelmo {
namespace measure {
namespace {

using test::ExpectNearArray;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(DeviationStatistics, PopulationVarianceAndOneInclusiveBandPass) {
  // Heights 0, 0, 6: mean 2, population variance 8; band 2 -/+ 2.83.
  const double plane[6] = {7, -1, 0, 0, 0, 1}, want[7] = {6, 0, 2, 8, 0, 0, 6};
  double stats[4];
  std::vector<double> dev;
  planeStatistics({{1, 2, 0}, {-3, 4, 0}, {5, 5, 6}}, plane, plane, stats, dev);
  ExpectNearArray(stats, want, 4, test::kDoubleTol);
  ASSERT_EQ(dev.size(), 3u);
  ExpectNearArray(dev.data(), want + 4, 3, test::kDoubleTol);
  DeviationExtremes e;
  ASSERT_TRUE(reduceDeviations(dev, stats, true, 1.0, &e));
  EXPECT_EQ(e.largest, 0.0);
  EXPECT_EQ(e.smallest, 0.0);
  // Without the band the factor is not read, even when NaN.
  ASSERT_TRUE(reduceDeviations(dev, stats, false, kNaN, &e));
  EXPECT_EQ(e.largest - e.smallest, 6.0);
  // Factor 0 and no deviation at the mean: the start values stand.
  ASSERT_TRUE(reduceDeviations(dev, stats, true, 0.0, &e));
  EXPECT_EQ(e.largest - e.smallest, -2e10);
  // NaN limits exclude nothing.
  ASSERT_TRUE(reduceDeviations(dev, stats, true, kNaN, &e));
  EXPECT_EQ(e.largest - e.smallest, 6.0);
  // Limits are inclusive: mean 0, variance 1, factor 1 keeps -1 and 1.
  const double unitStats[4] = {2, -1, 0, 1};
  ASSERT_TRUE(reduceDeviations({-1, 1, 2}, unitStats, true, 1.0, &e));
  EXPECT_EQ(e.largest - e.smallest, 2.0);
}

TEST(DeviationStatistics, FewerThanThreePointsWriteNothing) {
  const float xyz[6] = {1, 2, 3, 4, 5, 6.5f};
  EXPECT_EQ(copyPoints2(xyz, 3)[2], cv::Point2f(5, 6.5f));  // pairs
  const double sphere[4] = {0, 0, 0, 1}, untouched[4] = {7, 7, 7, 7};
  double stats[4] = {7, 7, 7, 7};
  std::vector<double> dev;
  sphereStatistics(copyPoints3(xyz, 2), sphere, stats, dev);
  EXPECT_TRUE(dev.empty());
  ExpectNearArray(stats, untouched, 4, 0.0);
  DeviationExtremes e;
  EXPECT_FALSE(reduceDeviations(dev, stats, false, 1.0, &e));
}

TEST(DeviationStatistics, LineSignAndNearPointRules) {
  const double line[7] = {10, 0, 0, 1, 0, 0, 5};  // also a cylinder, r = 5
  // Ahead of the line point: +4; behind: -3; level: dot 0 stays +2; within
  // 0.01 of it: 0, no distance.
  const std::vector<cv::Point3f> points = {
      {13, 4, 0}, {7, 0, 3}, {10, 2, 0}, {10.009f, 0.009f, -0.009f}};
  const double want[8] = {4, -3, 2, 0, -1, -2, -3, -5};
  double stats[4];
  std::vector<double> dev;
  axisStatistics(points, line, 0.0, true, stats, dev);
  ExpectNearArray(dev.data(), want, 4, 1e-6);
  axisStatistics(points, line, line[6], false, stats, dev);
  ExpectNearArray(dev.data(), want + 4, 4, 0.0);
}

}  // namespace
}  // namespace measure
}  // namespace zelmo
