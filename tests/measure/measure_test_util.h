// Bounds and builders for the measurement tests: float arrays, point lists
// and feature records from double vectors.
#ifndef ZELMO_TESTS_MEASURE_MEASURE_TEST_UTIL_H_
#define ZELMO_TESTS_MEASURE_MEASURE_TEST_UTIL_H_

#include <array>
#include <opencv2/core.hpp>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/tolerance.h"
#include "zelmo/feature/records.h"

namespace zelmo {
namespace test {

using namespace xgeofeature;  // test helpers only
using Vec = cv::Vec3d;
// Float inputs at up to kMaxOffset carry about 3e-5 of rounding.
constexpr double kMaxOffset = 500.0;
constexpr double kPosTol = 2e-3;
constexpr double kDirTol = 1e-5;
constexpr double kBandTol = 2e-4;
// Directions between float points a few units apart at kMaxOffset.
constexpr double kChordDirTol = 2e-4;
// A coordinate no construction produces: marks outputs left unwritten.
constexpr float kUnwritten = 12345.0f;

inline Vec V(const float* v) { return Vec3(v); }
inline Vec V(const XFPoint& p) { return Vec(p.x, p.y, p.z); }
inline void Put(const Vec& v, float* out) {
  for (int k = 0; k < 3; ++k) out[k] = static_cast<float>(v[k]);
}
inline void PutLine(const Vec& p, const Vec& d, float* out) {
  Put(p, out);
  Put(d, out + 3);
}
// A point and a unit direction as six floats.
inline std::array<float, 6> Unit(const Vec& p, const Vec& d) {
  std::array<float, 6> a;
  PutLine(p, d / cv::norm(d), a.data());
  return a;
}
// A point and a direction as doubles, then any trailing entries (radius).
inline std::vector<double> Feature(const Vec& p, const Vec& d, double r = 0) {
  return {p[0], p[1], p[2], d[0], d[1], d[2], r};
}
// The float point at (x, y, z) in the frame.
inline cv::Point3f P3(const Frame& f, double x, double y, double z) {
  return ToPoint3f(f.At(x, y, z));
}
inline XFPoint Pt(const Vec& v) {
  return XFPoint(float(v[0]), float(v[1]), float(v[2]));
}
inline XFPointN PointN(const Vec& p, const Vec& n) {
  const std::array<float, 6> a = Unit(p, n);
  return XFPointN(a.data(), a.data() + 3);
}
inline XFLine3D2 Line(const Vec& c, const Vec& d, float len) {
  const std::array<float, 6> a = Unit(c, d);
  return XFLine3D2(a.data(), a.data() + 3, len);
}
inline XFPlane Plane(const Vec& c, const Vec& n) {
  const std::array<float, 6> a = Unit(c, n);
  return XFPlane(a.data(), a.data() + 3);
}
// A plane with this major direction and extent.
inline XFPlane Plane(
    const Vec& c, const Vec& n, const Vec& major, float length, float width) {
  const std::array<float, 6> a = Unit(c, n), m = Unit(c, major);
  return XFPlane(a.data(), a.data() + 3, m.data() + 3, length, width);
}
inline XFSphere Sphere(const Vec& c, float radius) {
  return XFSphere(float(c[0]), float(c[1]), float(c[2]), radius);
}
inline XFCylinder Cylinder(const Vec& b, const Vec& d, float r) {
  const std::array<float, 6> a = Unit(b, d);
  return XFCylinder(a.data(), a.data() + 3, r, 60);
}
inline XFCone Cone(const Vec& b, const Vec& d, float r0, float r1, float h) {
  const std::array<float, 6> a = Unit(b, d);
  return XFCone(a.data(), a.data() + 3, r0, r1, h);
}

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_MEASURE_MEASURE_TEST_UTIL_H_
