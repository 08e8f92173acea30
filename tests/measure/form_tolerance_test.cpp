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
      plane.push_back(ToPoint3f(f.At(coord(rng), coord(rng), e)));
      cylinder.push_back(ToPoint3f(
          f.At(r * std::cos(a), r * std::sin(a), 1 + std::fabs(coord(rng)))));
      sphere.push_back(
          ToPoint3f(f.At(r * std::sin(b) * std::cos(a),
                         r * std::sin(b) * std::sin(a), r * std::cos(b))));
      // Off the circle's plane by up to 40: the projection removes it.
      circle.push_back(
          ToPoint3f(f.At(r * std::cos(a), r * std::sin(a), coord(rng))));
    }
    std::vector<double> pl = Feature(f.origin, f.w);
    std::vector<double> cy = Feature(f.origin, f.w, {radius});
    std::vector<double> sp = {f.origin[0], f.origin[1], f.origin[2], radius};
    const double bands[4] = {T::calcFlatness(plane, pl.data(), false, 0),
                             T::calcCylindricity(cylinder, cy.data(), false, 0),
                             T::calcSphericity(sphere, sp.data(), false, 0),
                             T::calcCircularity(circle, cy.data(), false, 0)};
    for (int k = 0; k < 4; ++k) EXPECT_NEAR(bands[k], 2 * half, kBandTol) << k;
    // The array forms answer as the vector forms, band included.
    const std::vector<float> xyz = Xyz(circle);
    EXPECT_EQ(T::calcCircularity(xyz.data(), int(circle.size()), cy.data(),
                                 true, 1.5),
              T::calcCircularity(circle, cy.data(), true, 1.5));
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

}  // namespace
}  // namespace xgeomeasure
