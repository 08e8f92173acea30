#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "zelmo/measure/geo_tolerance.h"

namespace xgeomeasure {
namespace {

using zelmo::test::Frame;
using zelmo::test::RandomFrame;
using Points = XGeoTolrance::Points;

constexpr double kBandTol = 2e-4;   // float points at up to 500 units
constexpr double kWidthTol = 1e-3;  // minAreaRect works in float
constexpr double kMaxOffset = 500.0;

cv::Point3f ToPoint(const cv::Vec3d& v) {
  return cv::Point3f(float(v[0]), float(v[1]), float(v[2]));
}

std::vector<double> Feature(const cv::Vec3d& p, const cv::Vec3d& d) {
  return {p[0], p[1], p[2], d[0], d[1], d[2]};
}

TEST(XGeoTolrance, ParallelismOfTiltedFeaturesEqualsHeightSpan) {
  std::mt19937 rng(31);
  std::uniform_real_distribution<double> s(-20, 20);
  for (double tilt : {0.01, 0.05, 0.2}) {
    SCOPED_TRACE(tilt);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double c = std::cos(tilt), sn = std::sin(tilt);
    std::vector<double> datum = Feature(f.At(3, -4, -9), f.w);
    std::vector<double> datumLine = Feature(f.At(3, -4, -9), f.u);
    // A plane turned by `tilt` about u, and a line along (c, 0, sn) from
    // its own point: heights above the datum span 40 sin(tilt).
    Points plane = {ToPoint(f.At(0, -20 * c, 7 - 20 * sn)),
                    ToPoint(f.At(0, 20 * c, 7 + 20 * sn))};
    Points line;
    for (int k = 0; k <= 40; ++k) {
      const double y = s(rng);
      plane.push_back(ToPoint(f.At(s(rng), y * c, 7 + y * sn)));
      line.push_back(ToPoint(f.At(k * c, 0, 3 + k * sn)));
    }
    std::vector<double> measuredPlane = Feature(f.At(0, 0, 7), f.w);
    std::vector<double> measuredLine =
        Feature(f.At(0, 0, 3), f.u * c + f.w * sn);
    EXPECT_NEAR(XGeoTolrance::calcParallelism_Plane_Plane(
                    plane, measuredPlane.data(), datum.data(), false, 0),
                40 * sn, kBandTol);
    EXPECT_NEAR(XGeoTolrance::calcParallelism_Line_Plane(
                    line, measuredLine.data(), datum.data(), false, 0),
                40 * sn, kBandTol);
    // Against the datum line u all points lie ahead of the line's point:
    // distances 0 .. 40 sin(tilt), all positive.
    EXPECT_NEAR(XGeoTolrance::calcParallelism_Line_Line(
                    line, measuredLine.data(), datumLine.data(), false, 0),
                40 * sn, kBandTol);
  }
}

TEST(XGeoTolrance, PerpendicularityOfLinesAgainstDatums) {
  std::mt19937 rng(32);
  for (double tilt : {0.01, 0.05, 0.2}) {
    SCOPED_TRACE(tilt);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double c = std::cos(tilt), sn = std::sin(tilt);
    std::vector<double> datum = Feature(f.At(1, 2, 3), f.w);  // line or plane
    // Off perpendicular to the datum line w by `tilt`, toward w.
    Points across, along;
    for (int k = 0; k <= 40; ++k) {
      across.push_back(ToPoint(f.At(k * c, 0, k * sn)));
      along.push_back(ToPoint(f.At(k * sn, 0, k * c)));
    }
    std::vector<double> l1 = Feature(f.origin, f.u * c + f.w * sn);
    std::vector<double> l2 = Feature(f.origin, f.u * sn + f.w * c);
    EXPECT_NEAR(XGeoTolrance::calcPerpendicularity_Line_Line(
                    across, l1.data(), datum.data(), false, 0),
                40 * sn, kBandTol);
    EXPECT_NEAR(XGeoTolrance::calcPerpendicularity_Line_Plane(
                    along, l2.data(), datum.data(), false, 0),
                40 * sn, kBandTol);
  }
  // Only exactly parallel directions fail; one bit apart is computed.
  const Points points = {{0, 0, 0}, {0, 1, 1}, {0, 2, 2.1f}};
  double d1[6] = {0, 0, 0, 0, 1, 1};
  double d2[6] = {5, 5, 5, 0, 1, std::nextafter(1.0, 2.0)};
  EXPECT_EQ(
      XGeoTolrance::calcPerpendicularity_Line_Line(points, d1, d1, true, 1),
      XGeoTolrance::kParallelLines);
  EXPECT_GE(
      XGeoTolrance::calcPerpendicularity_Line_Line(points, d1, d2, false, 0),
      0.0);
}

TEST(XGeoTolrance, PerpendicularityPlanePlaneIsStripWidthInDatum) {
  std::mt19937 rng(33);
  std::uniform_real_distribution<double> x(-30, 30), z(0, 10);
  for (double tilt : {0.005, 0.02, 0.1}) {
    SCOPED_TRACE(tilt);
    const Frame f = RandomFrame(rng, kMaxOffset);
    // A wall over the datum z = 0, leaning by `tilt`: its shadow on the
    // datum is 60 long and 10 tan(tilt) wide.
    const double t = std::tan(tilt);
    Points wall = {ToPoint(f.At(-30, 0, 0)), ToPoint(f.At(30, 0, 0)),
                   ToPoint(f.At(-30, 10 * t, 10)),
                   ToPoint(f.At(30, 10 * t, 10))};
    for (int k = 0; k < 100; ++k) {
      const double h = z(rng);
      wall.push_back(ToPoint(f.At(x(rng), h * t, h)));
    }
    wall.push_back(ToPoint(f.At(0, 5, 5)));  // an outlier off the wall
    std::vector<double> datum = Feature(f.At(7, 7, 0), f.w);
    std::vector<double> measured =
        Feature(f.origin, f.v * std::cos(tilt) - f.w * std::sin(tilt));
    EXPECT_NEAR(XGeoTolrance::calcPerpendicularity_Plane_Plane(
                    wall, measured.data(), datum.data(), true, 2.0),
                10 * t, kWidthTol);
    EXPECT_GT(XGeoTolrance::calcPerpendicularity_Plane_Plane(
                  wall, measured.data(), datum.data(), false, 0),
              4.9);
  }
  // A band that keeps no point: the width of nothing.
  const Points heights = {{0, 0, 0}, {1, 0, 0}, {0, 1, 6}};
  double z0[6] = {0, 0, 0, 0, 0, 1}, x0[6] = {0, 0, 0, 1, 0, 0};
  EXPECT_EQ(XGeoTolrance::calcPerpendicularity_Plane_Plane(heights, z0, x0,
                                                           true, 0.0),
            0.0);
}

TEST(XGeoTolrance, ConcentricityComparesReachOnBothSides) {
  std::mt19937 rng(34);
  const Frame f = RandomFrame(rng, kMaxOffset);
  std::vector<double> axis = Feature(f.origin, f.w);
  // The first array is never read.
  auto concentricity = [&](const Points& points) {
    return XGeoTolrance::calcConcentricity(points, nullptr, axis.data(), false,
                                           0);
  };
  Points ahead, both;  // reach 1.1 .. 2 ahead of the axis point and behind
  for (int k = 1; k <= 10; ++k) {
    ahead.push_back(ToPoint(f.At(1 + 0.1 * k, 0, k)));
    both.push_back(ahead.back());
    both.push_back(ToPoint(f.At(0, -1 - 0.1 * k, -k)));
  }
  EXPECT_NEAR(concentricity(both), 0.0, kBandTol);
  both.push_back(ToPoint(f.At(3.5, 0, -1)));  // reach 3.5 behind
  EXPECT_NEAR(concentricity(both), 1.5, kBandTol);
  EXPECT_NEAR(concentricity(ahead), 0.9, kBandTol);
  EXPECT_EQ(concentricity(ahead),
            XGeoTolrance::calcStraightness(ahead, axis.data(), false, 0));
}

}  // namespace
}  // namespace xgeomeasure
