#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "zelmo/measure/geo_tolerance.h"

namespace xgeomeasure {
namespace {

using zelmo::test::Frame;
using zelmo::test::kPi;
using zelmo::test::RandomFrame;
using Points = XGeoTolrance::Points;

// Float coordinates at up to 500 units round by about 3e-5; a band width
// sums two such errors.
constexpr double kBandTol = 2e-4;
constexpr double kMaxOffset = 500.0;

cv::Point3f ToPoint(const cv::Vec3d& v) {
  return cv::Point3f(float(v[0]), float(v[1]), float(v[2]));
}

std::vector<float> Xyz(const Points& points) {
  std::vector<float> xyz;
  for (const cv::Point3f& p : points) xyz.insert(xyz.end(), {p.x, p.y, p.z});
  return xyz;
}

// An array of a point, a direction and optional trailing entries.
std::vector<double> Feature(const cv::Vec3d& p,
                            const cv::Vec3d& d,
                            std::vector<double> tail = {}) {
  std::vector<double> f = {p[0], p[1], p[2], d[0], d[1], d[2]};
  f.insert(f.end(), tail.begin(), tail.end());
  return f;
}

// n values uniform in [-half, half], the two extremes among them.
std::vector<double> Spread(std::mt19937& rng, int n, double half) {
  std::uniform_real_distribution<double> u(-half, half);
  std::vector<double> v = {-half, half};
  while (static_cast<int>(v.size()) < n) v.push_back(u(rng));
  return v;
}

TEST(XGeoTolrance, FormTolerancesRecoverKnownSpreads) {
  std::mt19937 rng(21);
  std::uniform_real_distribution<double> coord(-40, 40), angle(0, 2 * kPi);
  for (int trial = 0; trial < 12; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double half = 0.01 + 0.05 * (trial % 4), radius = 30.0;
    const std::vector<double> dev = Spread(rng, 120, half);
    Points plane, cylinder, sphere, circle;
    for (double e : dev) {
      const double a = angle(rng), b = 0.2 + 2.6 * (a / (2 * kPi));
      const double r = radius + e;
      plane.push_back(ToPoint(f.At(coord(rng), coord(rng), e)));
      cylinder.push_back(ToPoint(
          f.At(r * std::cos(a), r * std::sin(a), 1 + std::fabs(coord(rng)))));
      sphere.push_back(
          ToPoint(f.At(r * std::sin(b) * std::cos(a),
                       r * std::sin(b) * std::sin(a), r * std::cos(b))));
      // Off the circle's plane by up to 40: the projection removes it.
      circle.push_back(
          ToPoint(f.At(r * std::cos(a), r * std::sin(a), coord(rng))));
    }
    std::vector<double> pl = Feature(f.origin, f.w);
    std::vector<double> cy = Feature(f.origin, f.w, {radius});
    std::vector<double> sp = {f.origin[0], f.origin[1], f.origin[2], radius};
    EXPECT_NEAR(XGeoTolrance::calcFlatness(plane, pl.data(), false, 0),
                2 * half, kBandTol);
    EXPECT_NEAR(XGeoTolrance::calcCylindricity(cylinder, cy.data(), false, 0),
                2 * half, kBandTol);
    EXPECT_NEAR(XGeoTolrance::calcSphericity(sphere, sp.data(), false, 0),
                2 * half, kBandTol);
    EXPECT_NEAR(XGeoTolrance::calcCircularity(circle, cy.data(), false, 0),
                2 * half, kBandTol);
    // The array forms answer as the vector forms, band included.
    const std::vector<float> xyz = Xyz(circle);
    EXPECT_EQ(XGeoTolrance::calcCircularity(xyz.data(), int(circle.size()),
                                            cy.data(), true, 1.5),
              XGeoTolrance::calcCircularity(circle, cy.data(), true, 1.5));
  }
}

TEST(XGeoTolrance, FewerThanThreePointsGiveMinusOne) {
  // The shared reduction answers for most tolerances; circularity and the
  // plane-to-plane perpendicularity answer before their plane frames.
  const Points two = {{1, 2, 3}, {4, 0, -1}};
  const std::vector<float> xyz = Xyz(two);
  std::vector<double> a = Feature({0, 0, 0}, {0, 0, 1}, {2});
  std::vector<double> b = Feature({0, 0, 0}, {1, 0, 0}, {2});
  double *p = a.data(), *q = b.data();
  using T = XGeoTolrance;
  for (int count : {2, 0, -1}) {
    SCOPED_TRACE(count);
    const Points some(two.begin(), two.begin() + std::max(count, 0));
    const float* x = xyz.data();
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
  EXPECT_THROW(XGeoTolrance::calcCircularity(tight, p, false, 0),
               cv::Exception);
}

}  // namespace
}  // namespace xgeomeasure
