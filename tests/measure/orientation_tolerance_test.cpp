#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/measure/measure_test_util.h"
#include "zelmo/measure/geo_tolerance.h"

namespace xgeomeasure {
namespace {

using namespace zelmo::test;
using Points = XGeoTolrance::Points;
using T = XGeoTolrance;

constexpr double kWidthTol = 1e-3;  // minAreaRect works in float

TEST(XGeoTolrance, OrientationOfTiltedFeaturesEqualsHeightSpan) {
  std::mt19937 rng(31);
  std::uniform_real_distribution<double> s(-20, 20);
  for (double tilt : {0.01, 0.05, 0.2}) {
    SCOPED_TRACE(tilt);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double c = std::cos(tilt), sn = std::sin(tilt);
    std::vector<double> w = Feature(f.At(3, -4, -9), f.w);  // datums
    std::vector<double> u = Feature(f.At(3, -4, -9), f.u);
    // A plane turned by `tilt` about u, lines along (c, 0, sn) and
    // (sn, 0, c): each spans 40 sin(tilt) along w or across it.
    Points plane = {ToPoint3f(f.At(0, -20 * c, 7 - 20 * sn)),
                    ToPoint3f(f.At(0, 20 * c, 7 + 20 * sn))};
    Points line, steep;
    for (int k = 0; k <= 40; ++k) {
      const double y = s(rng);
      plane.push_back(ToPoint3f(f.At(s(rng), y * c, 7 + y * sn)));
      line.push_back(ToPoint3f(f.At(k * c, 0, 3 + k * sn)));
      steep.push_back(ToPoint3f(f.At(k * sn, 0, k * c)));
    }
    std::vector<double> pl = Feature(f.At(0, 0, 7), f.w);
    std::vector<double> ln = Feature(f.At(0, 0, 3), f.u * c + f.w * sn);
    std::vector<double> st = Feature(f.origin, f.u * sn + f.w * c);
    // Against the datum line u every point lies ahead of the line's point.
    const double spans[5] = {
        T::calcParallelism_Plane_Plane(plane, pl.data(), w.data(), false, 0),
        T::calcParallelism_Line_Plane(line, ln.data(), w.data(), false, 0),
        T::calcParallelism_Line_Line(line, ln.data(), u.data(), false, 0),
        T::calcPerpendicularity_Line_Line(line, ln.data(), w.data(), false, 0),
        T::calcPerpendicularity_Line_Plane(steep, st.data(), w.data(), false,
                                           0)};
    for (int k = 0; k < 5; ++k) EXPECT_NEAR(spans[k], 40 * sn, kBandTol) << k;
  }
  // Only exactly parallel directions fail; one bit apart is computed.
  const Points points = {{0, 0, 0}, {0, 1, 1}, {0, 2, 2.1f}};
  double d1[6] = {0, 0, 0, 0, 1, 1};
  double d2[6] = {5, 5, 5, 0, 1, std::nextafter(1.0, 2.0)};
  EXPECT_EQ(T::calcPerpendicularity_Line_Line(points, d1, d1, true, 1),
            T::kParallelLines);
  EXPECT_GE(T::calcPerpendicularity_Line_Line(points, d1, d2, false, 0), 0.0);
}

TEST(XGeoTolrance, PerpendicularityPlanePlaneIsStripWidthInDatum) {
  std::mt19937 rng(33);
  std::uniform_real_distribution<double> x(-30, 30), z(0, 10);
  for (double tilt : {0.005, 0.02, 0.1}) {
    SCOPED_TRACE(tilt);
    const Frame f = RandomFrame(rng, kMaxOffset);
    // A wall leaning by `tilt` over the datum: a shadow 10 tan(tilt) wide.
    const double t = std::tan(tilt);
    Points wall = {ToPoint3f(f.At(-30, 0, 0)), ToPoint3f(f.At(30, 0, 0)),
                   ToPoint3f(f.At(-30, 10 * t, 10)),
                   ToPoint3f(f.At(30, 10 * t, 10))};
    for (int k = 0; k < 100; ++k) {
      const double h = z(rng);
      wall.push_back(ToPoint3f(f.At(x(rng), h * t, h)));
    }
    wall.push_back(ToPoint3f(f.At(0, 5, 5)));  // an outlier off the wall
    std::vector<double> datum = Feature(f.At(7, 7, 0), f.w);
    std::vector<double> measured =
        Feature(f.origin, f.v * std::cos(tilt) - f.w * std::sin(tilt));
    EXPECT_NEAR(T::calcPerpendicularity_Plane_Plane(wall, measured.data(),
                                                    datum.data(), true, 2.0),
                10 * t, kWidthTol);
    EXPECT_GT(T::calcPerpendicularity_Plane_Plane(wall, measured.data(),
                                                  datum.data(), false, 0),
              4.9);
  }
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
    ahead.push_back(ToPoint3f(f.At(1 + 0.1 * k, 0, k)));
    both.push_back(ahead.back());
    both.push_back(ToPoint3f(f.At(0, -1 - 0.1 * k, -k)));
  }
  EXPECT_NEAR(concentricity(both), 0.0, kBandTol);
  both.push_back(ToPoint3f(f.At(3.5, 0, -1)));  // reach 3.5 behind
  EXPECT_NEAR(concentricity(both), 1.5, kBandTol);
  EXPECT_NEAR(concentricity(ahead), 0.9, kBandTol);
  EXPECT_EQ(concentricity(ahead),
            T::calcStraightness(ahead, axis.data(), false, 0));
}

}  // namespace
}  // namespace xgeomeasure
