// XGeoTolrance: form, orientation and location tolerances.
#include "zelmo/measure/geo_tolerance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/measure/measure_test_util.h"

namespace xgeomeasure {
namespace {

using namespace zelmo::test;
using Points = XGeoTolrance::Points;
using T = XGeoTolrance;

constexpr double kWidthTol = 1e-3;  // minAreaRect works in float

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
    // The array forms answer as the vector forms, band included.
    const std::vector<float> xyz = Samples{circle, {}}.Xyz();
    EXPECT_EQ(T::calcCircularity(xyz.data(), int(circle.size()), cy.data(),
                                 true, 1.5),
              T::calcCircularity(circle, cy.data(), true, 1.5));
  }
}

TEST(XGeoTolrance, FewerThanThreePointsGiveMinusOne) {
  // Circularity and plane perpendicularity answer before their frames.
  const Points two = {{1, 2, 3}, {4, 0, -1}};
  const std::vector<float> xyz = Samples{two, {}}.Xyz();
  std::vector<double> a = Feature({0, 0, 0}, {0, 0, 1}, 2);
  std::vector<double> b = Feature({0, 0, 0}, {1, 0, 0}, 2);
  double *p = a.data(), *q = b.data();
  const float* x = xyz.data();
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
  // Three points clustered within 0.01 span no in-plane frame.
  const Points tight = {{1, 1, 0}, {1.004f, 1, 0}, {1, 1.004f, 0}};
  EXPECT_THROW(T::calcCircularity(tight, p, false, 0), cv::Exception);
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
    // A plane turned by `tilt` about u, lines along (c, 0, sn) and
    // (sn, 0, c): each spans 40 sin(tilt) along w or across it.
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

    // A wall leaning by `tilt` over the datum w: a shadow 10 tan(tilt) wide,
    // with an outlier off the wall that only the band removes.
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
  // Only exactly parallel directions fail; one bit apart is computed.
  const Points points = {{0, 0, 0}, {0, 1, 1}, {0, 2, 2.1f}};
  double d1[6] = {0, 0, 0, 0, 1, 1};
  double d2[6] = {5, 5, 5, 0, 1, std::nextafter(1.0, 2.0)};
  EXPECT_EQ(T::calcPerpendicularity_Line_Line(points, d1, d1, true, 1),
            T::kParallelLines);
  EXPECT_GE(T::calcPerpendicularity_Line_Line(points, d1, d2, false, 0), 0.0);
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
  Points ahead, both;  // reach 1.1 .. 2 ahead of the axis point and behind
  for (int k = 1; k <= 10; ++k) {
    ahead.push_back(P3(f, 1 + 0.1 * k, 0, k));
    both.push_back(ahead.back());
    both.push_back(P3(f, 0, -1 - 0.1 * k, -k));
  }
  EXPECT_NEAR(concentricity(both), 0.0, kBandTol);
  both.push_back(P3(f, 3.5, 0, -1));  // reach 3.5 behind
  EXPECT_NEAR(concentricity(both), 1.5, kBandTol);
  EXPECT_NEAR(concentricity(ahead), 0.9, kBandTol);
}

}  // namespace
}  // namespace xgeomeasure
