// Samplers of points on flat outlines (slot, rectangle, rounded rectangle)
// for recovery tests of the outline fits. The outline lies in the (u, v)
// plane of the frame about its origin, its long axis along u. Normals are
// the outward in-plane normals of the outline; noise (Gaussian, deviation
// `noise`) moves points along them.
#pragma once

#include <cmath>
#include <random>

#include "tests/support/samplers.h"

namespace zelmo::test {

// A rectangle of 2 halfLength by 2 halfWidth with corner arcs of
// cornerRadius (at most the smaller half size), points uniform in arc
// length.
inline Samples SampleRoundedRectangle(const Frame& f,
                                      double halfLength,
                                      double halfWidth,
                                      double cornerRadius,
                                      int count,
                                      double noise,
                                      std::mt19937& rng) {
  const double r = cornerRadius;
  const double sx = halfLength - r, sy = halfWidth - r;  // straight halves
  const double quarter = kPi / 2 * r;
  // Counter-clockwise from the middle of the right side: right, arc, top,
  // arc, left, arc, bottom, arc.
  const double lengths[8] = {2 * sy, quarter, 2 * sx, quarter,
                             2 * sy, quarter, 2 * sx, quarter};
  double perimeter = 0;
  for (double l : lengths) perimeter += l;
  std::uniform_real_distribution<double> along(0.0, perimeter);
  Noise off(noise);
  Samples s;
  for (int i = 0; i < count; ++i) {
    double t = along(rng);
    int seg = 0;
    while (seg < 7 && t >= lengths[seg]) t -= lengths[seg++];
    const int side = seg / 2;  // 0 right, 1 top, 2 left, 3 bottom
    double x, y, nx, ny;
    if (seg % 2 == 0) {
      const double w = t - lengths[seg] / 2;  // along the side, ccw
      const double ox[4] = {1, 0, -1, 0}, oy[4] = {0, 1, 0, -1};
      nx = ox[side];
      ny = oy[side];
      x = nx * halfLength - ny * w;
      y = ny * halfWidth + nx * w;
    } else {
      const double a = side * kPi / 2 + (r > 0 ? t / r : 0.0);
      const double cx[4] = {sx, -sx, -sx, sx}, cy[4] = {sy, sy, -sy, -sy};
      nx = std::cos(a);
      ny = std::sin(a);
      x = cx[side] + r * nx;
      y = cy[side] + r * ny;
    }
    const double e = off(rng);
    s.Add(f.At(x + e * nx, y + e * ny, 0), nx * f.u + ny * f.v);
  }
  return s;
}

// A rectangle with sharp corners.
inline Samples SampleRectangle(const Frame& f,
                               double halfLength,
                               double halfWidth,
                               int count,
                               double noise,
                               std::mt19937& rng) {
  return SampleRoundedRectangle(f, halfLength, halfWidth, 0.0, count, noise,
                                rng);
}

// A slot (stadium): straight sides of 2 halfStraight joined by half circles
// of `radius`.
inline Samples SampleSlot(const Frame& f,
                          double halfStraight,
                          double radius,
                          int count,
                          double noise,
                          std::mt19937& rng) {
  return SampleRoundedRectangle(f, halfStraight + radius, radius, radius, count,
                                noise, rng);
}

}  // namespace zelmo::test
