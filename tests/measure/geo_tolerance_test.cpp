// XGeoTolrance (form, orientation and location) and the deviation statistics
// beneath it.
#include "zelmo/measure/geo_tolerance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "tests/measure/measure_test_util.h"
#include "zelmo/measure/deviation_statistics.h"

namespace xgeomeasure {
namespace {

using namespace zelmo::test;
using Points = XGeoTolrance::Points;
using T = XGeoTolrance;
using namespace zelmo::measure;

constexpr double kWidthTol = 1e-3;  // minAreaRect works in float
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(XGeoTolrance, FormTolerancesRecoverKnownSpreads) {
  std::mt19937 rng(21);
  std::uniform_real_distribution<double> coord(-40, 40), angle(0, 2 * kPi);
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double half = 0.01 + 0.05 * (trial % 4), radius = 30.0;
    std::uniform_real_distribution<double> spread(-half, half);
    Points plane, cylinder, sphere, circle;
    for (int k = 0; k < 120; ++k) {  // the two extremes first
      const double e = k < 2 ? (k ? half : -half) : spread(rng);
      const double a = angle(rng), b = 0.2 + 2.6 * (a / (2 * kPi));
      const double r = radius + e;
      plane.push_back(P3(f, coord(rng), coord(rng), e));
      cylinder.push_back(
          P3(f, r * std::cos(a), r * std::sin(a), 1 + std::fabs(coord(rng))));
      sphere.push_back(P3(f, r * std::sin(b) * std::cos(a),
                          r * std::sin(b) * std::sin(a), r * std::cos(b)));
      // Off the circle's plane by up to 40: the projection removes it.
      circle.push_back(P3(f, r * std::cos(a), r * std::sin(a), coord(rng)));
    }
    std::vector<double> pl = Feature(f.origin, f.w),
                        cy = Feature(f.origin, f.w, radius);
    std::vector<double> sp = {f.origin[0], f.origin[1], f.origin[2], radius};
    const double bands[4] = {T::calcFlatness(plane, pl.data(), false, 0),
                             T::calcCylindricity(cylinder, cy.data(), false, 0),
                             T::calcSphericity(sphere, sp.data(), false, 0),
                             T::calcCircularity(circle, cy.data(), false, 0)};
    for (int k = 0; k < 4; ++k) EXPECT_NEAR(bands[k], 2 * half, kBandTol) << k;
  }
}

TEST(XGeoTolrance, FewerThanThreePointsGiveMinusOne) {
  // Circularity and plane perpendicularity answer before their frames.
  const Points two = {{1, 2, 3}, {4, 0, -1}};
  const float x[6] = {1, 2, 3, 4, 0, -1};
  double p[7] = {0, 0, 0, 0, 0, 1, 2}, q[7] = {0, 0, 0, 1, 0, 0, 2};
  for (int count : {2, 0, -1}) {
    SCOPED_TRACE(count);
    const Points some(two.begin(), two.begin() + std::max(count, 0));
    for (bool band : {false, true}) {
      EXPECT_EQ(T::calcFlatness(some, p, band, 1), T::kTooFewPoints);
      EXPECT_EQ(T::calcStraightness(x, count, p, band, 1), -1.0);
      EXPECT_EQ(T::calcCircularity(x, count, p, band, 1), -1.0);
      EXPECT_EQ(T::calcPerpendicularity_Plane_Plane(x, count, p, q, band, 1),
                -1.0);
      EXPECT_EQ(T::calcConcentricity(some, p, q, band, 1), -1.0);
    }
  }
  // The deviation statistics write nothing and reduce to no extremes.
  double stats[4] = {7, 7, 7, 7}, untouched[4] = {7, 7, 7, 7};
  std::vector<double> dev;
  sphereStatistics(two, p, stats, dev);
  EXPECT_TRUE(dev.empty());
  ExpectNearArray(stats, untouched, 4, 0.0);
  DeviationExtremes e;
  EXPECT_FALSE(reduceDeviations(dev, stats, false, 1.0, &e));
}

TEST(XGeoTolrance, OrientationOfTiltedFeaturesEqualsTheirSpan) {
  std::mt19937 rng(31);
  std::uniform_real_distribution<double> s(-20, 20);
  for (double tilt : {0.01, 0.05, 0.1}) {
    SCOPED_TRACE(tilt);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double c = std::cos(tilt), sn = std::sin(tilt);
    std::vector<double> w = Feature(f.At(3, -4, -9), f.w),  // datums
        u = Feature(f.At(3, -4, -9), f.u);
    // Plane and lines tilted by `tilt`: each spans 40 sin(tilt).
    Points plane = {P3(f, 0, -20 * c, 7 - 20 * sn),
                    P3(f, 0, 20 * c, 7 + 20 * sn)};
    Points line, steep;
    for (int k = 0; k <= 40; ++k) {
      const double y = s(rng);
      plane.push_back(P3(f, s(rng), y * c, 7 + y * sn));
      line.push_back(P3(f, k * c, 0, 3 + k * sn));
      steep.push_back(P3(f, k * sn, 0, k * c));
    }
    std::vector<double> pl = Feature(f.At(0, 0, 7), f.w),
                        ln = Feature(f.At(0, 0, 3), f.u * c + f.w * sn),
                        st = Feature(f.origin, f.u * sn + f.w * c);
    // Against the datum line u every point lies ahead of the line's point.
    const double spans[5] = {
        T::calcParallelism_Plane_Plane(plane, pl.data(), w.data(), false, 0),
        T::calcParallelism_Line_Plane(line, ln.data(), w.data(), false, 0),
        T::calcParallelism_Line_Line(line, ln.data(), u.data(), false, 0),
        T::calcPerpendicularity_Line_Line(line, ln.data(), w.data(), false, 0),
        T::calcPerpendicularity_Line_Plane(steep, st.data(), w.data(), false,
                                           0)};
    for (int k = 0; k < 5; ++k) EXPECT_NEAR(spans[k], 40 * sn, kBandTol) << k;

    // A wall leaning over w: 10 tan(tilt) wide, its outlier cut by the band.
    const double t = std::tan(tilt);
    Points wall = {P3(f, -30, 0, 0), P3(f, 30, 0, 0), P3(f, -30, 10 * t, 10),
                   P3(f, 30, 10 * t, 10), P3(f, 0, 5, 5)};
    for (int k = 0; k < 100; ++k) {
      const double h = std::fabs(s(rng)) / 2;
      wall.push_back(P3(f, s(rng), h * t, h));
    }
    std::vector<double> leaning = Feature(f.origin, f.v * c - f.w * sn);
    EXPECT_NEAR(T::calcPerpendicularity_Plane_Plane(wall, leaning.data(),
                                                    w.data(), true, 2.0),
                10 * t, kWidthTol);
    EXPECT_GT(T::calcPerpendicularity_Plane_Plane(wall, leaning.data(),
                                                  w.data(), false, 0),
              4.9);
  }
  // Parallel directions fail.
  const Points points = {{0, 0, 0}, {0, 1, 1}, {0, 2, 2.1f}};
  double d1[6] = {0, 0, 0, 0, 1, 1};
  EXPECT_EQ(T::calcPerpendicularity_Line_Line(points, d1, d1, true, 1),
            T::kParallelLines);
  // A band that keeps no point: the width of nothing.
  const Points heights = {{0, 0, 0}, {1, 0, 0}, {0, 1, 6}};
  double z0[6] = {0, 0, 0, 0, 0, 1}, x0[6] = {0, 0, 0, 1, 0, 0};
  EXPECT_EQ(T::calcPerpendicularity_Plane_Plane(heights, z0, x0, true, 0.0),
            0.0);
}

TEST(XGeoTolrance, ConcentricityComparesReachOnBothSides) {
  std::mt19937 rng(34);
  const Frame f = RandomFrame(rng, kMaxOffset);
  std::vector<double> axis = Feature(f.origin, f.w);
  // The first array is never read.
  auto concentricity = [&](const Points& points) {
    return T::calcConcentricity(points, nullptr, axis.data(), false, 0);
  };
  Points both;  // reach 1.1 .. 2 ahead of the axis point and behind
  for (int k = 1; k <= 10; ++k) {
    both.push_back(P3(f, 1 + 0.1 * k, 0, k));
    both.push_back(P3(f, 0, -1 - 0.1 * k, -k));
  }
  EXPECT_NEAR(concentricity(both), 0.0, kBandTol);
  both.push_back(P3(f, 3.5, 0, -1));  // reach 3.5 behind
  EXPECT_NEAR(concentricity(both), 1.5, kBandTol);
}

TEST(DeviationStatistics, PopulationVarianceAndOneInclusiveBandPass) {
  // Heights 0, 0, 6: mean 2, population variance 8; band 2 -/+ 2.83.
  const double plane[6] = {7, -1, 0, 0, 0, 1}, want[7] = {6, 0, 2, 8, 0, 0, 6};
  double stats[4];
  std::vector<double> dev;
  planeStatistics({{1, 2, 0}, {-3, 4, 0}, {5, 5, 6}}, plane, plane, stats, dev);
  ExpectNearArray(stats, want, 4, kDoubleTol);
  ASSERT_EQ(dev.size(), 3u);
  ExpectNearArray(dev.data(), want + 4, 3, kDoubleTol);
  DeviationExtremes e;
  ASSERT_TRUE(reduceDeviations(dev, stats, true, 1.0, &e));
  EXPECT_EQ(e.largest, 0.0);
  EXPECT_EQ(e.smallest, 0.0);
  // Without the band the factor is not read, even when NaN.
  ASSERT_TRUE(reduceDeviations(dev, stats, false, kNaN, &e));
  EXPECT_EQ(e.largest - e.smallest, 6.0);
  // Limits are inclusive: mean 0, variance 1, factor 1 keeps -1 and 1.
  const double unitStats[4] = {2, -1, 0, 1};
  ASSERT_TRUE(reduceDeviations({-1, 1, 2}, unitStats, true, 1.0, &e));
  EXPECT_EQ(e.largest - e.smallest, 2.0);
  // A band that keeps no point leaves the start values: -1e10 - 1e10.
  const double offStats[4] = {2, -1, 100, 1};
  ASSERT_TRUE(reduceDeviations({-1, 1, 2}, offStats, true, 1.0, &e));
  EXPECT_EQ(e.largest - e.smallest, -2e10);
}

TEST(DeviationStatistics, LineSignAndNearPointRules) {
  const double line[7] = {10, 0, 0, 1, 0, 0, 5};  // also a cylinder, r = 5
  // Sign by side of the line point (0 counts +); within 0.01 of it: 0.
  const std::vector<cv::Point3f> points = {
      {13, 4, 0}, {7, 0, 3}, {10, 2, 0}, {10.009f, 0.009f, -0.009f}};
  const double want[4] = {4, -3, 2, 0};
  double stats[4];
  std::vector<double> dev;
  axisStatistics(points, line, 0.0, true, stats, dev);
  ExpectNearArray(dev.data(), want, 4, 1e-6);
  axisStatistics(points, line, line[6], false, stats, dev);
  EXPECT_EQ(dev, std::vector<double>({-1, -2, -3, -5}));
}

}  // namespace
}  // namespace xgeomeasure
