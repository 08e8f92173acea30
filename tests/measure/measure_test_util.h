// Bounds and builders for the measurement tests: float arrays, point lists
// and feature records from double vectors.
#ifndef ZELMO_TESTS_MEASURE_MEASURE_TEST_UTIL_H_
#define ZELMO_TESTS_MEASURE_MEASURE_TEST_UTIL_H_

#include <opencv2/core.hpp>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/tolerance.h"
#include "zelmo/feature/records.h"

namespace zelmo {
namespace test {

// Float inputs at up to kMaxOffset carry about 3e-5 of rounding; the
// constructions amplify it a little, a band width sums two of them.
constexpr double kMaxOffset = 500.0;
constexpr double kPosTol = 2e-3;
constexpr double kDirTol = 1e-5;
constexpr double kBandTol = 2e-4;
// Directions between float points a few units apart at kMaxOffset.
constexpr double kChordDirTol = 2e-4;
// A coordinate no construction produces: marks outputs left unwritten.
constexpr float kUnwritten = 12345.0f;

inline cv::Vec3d V(const float* v) { return Vec3(v); }
inline cv::Vec3d V(const xgeofeature::XFPoint& p) {
  return cv::Vec3d(p.x, p.y, p.z);
}
inline void Put(const cv::Vec3d& v, float* out) {
  for (int k = 0; k < 3; ++k) out[k] = static_cast<float>(v[k]);
}
// Six floats: a point and a direction.
inline void PutLine(const cv::Vec3d& p, const cv::Vec3d& d, float* out) {
  Put(p, out);
  Put(d, out + 3);
}
// A point and a direction as doubles, then any trailing entries (radius).
inline std::vector<double> Feature(const cv::Vec3d& p,
                                   const cv::Vec3d& d,
                                   std::vector<double> tail = {}) {
  std::vector<double> f = {p[0], p[1], p[2], d[0], d[1], d[2]};
  f.insert(f.end(), tail.begin(), tail.end());
  return f;
}
inline std::vector<float> Xyz(const std::vector<cv::Point3f>& points) {
  std::vector<float> xyz;
  for (const cv::Point3f& p : points) xyz.insert(xyz.end(), {p.x, p.y, p.z});
  return xyz;
}

inline xgeofeature::XFPoint Pt(const cv::Vec3d& v) {
  float p[3];
  Put(v, p);
  return xgeofeature::XFPoint(p);
}
inline xgeofeature::XFPointN PointN(const cv::Vec3d& p, const cv::Vec3d& n) {
  float xyz[6];
  PutLine(p, n, xyz);
  return xgeofeature::XFPointN(xyz, xyz + 3);
}
// Line, plane and solid records with the direction made unit.
inline xgeofeature::XFLine3D2 Line(const cv::Vec3d& center,
                                   const cv::Vec3d& dir,
                                   float length) {
  float cd[6];
  PutLine(center, dir / cv::norm(dir), cd);
  return xgeofeature::XFLine3D2(cd, cd + 3, length);
}
inline xgeofeature::XFPlane Plane(const cv::Vec3d& center,
                                  const cv::Vec3d& normal) {
  float cn[6];
  PutLine(center, normal / cv::norm(normal), cn);
  return xgeofeature::XFPlane(cn, cn + 3);
}
inline xgeofeature::XFPlane Plane(const cv::Vec3d& center,
                                  const cv::Vec3d& normal,
                                  const cv::Vec3d& majorDir,
                                  float length,
                                  float width) {
  float c[3], n[3], m[3];
  Put(center, c);
  Put(normal / cv::norm(normal), n);
  Put(majorDir / cv::norm(majorDir), m);
  return xgeofeature::XFPlane(c, n, m, length, width);
}
inline xgeofeature::XFSphere Sphere(const cv::Vec3d& center, float radius) {
  float c[3];
  Put(center, c);
  return xgeofeature::XFSphere(c, radius);
}
inline xgeofeature::XFCylinder Cylinder(const cv::Vec3d& base,
                                        const cv::Vec3d& axis,
                                        float radius,
                                        float height) {
  float ba[6];
  PutLine(base, axis / cv::norm(axis), ba);
  return xgeofeature::XFCylinder(ba, ba + 3, radius, height);
}
inline xgeofeature::XFCone Cone(const cv::Vec3d& base,
                                const cv::Vec3d& axis,
                                float baseRadius,
                                float topRadius,
                                float height) {
  float ba[6];
  PutLine(base, axis / cv::norm(axis), ba);
  return xgeofeature::XFCone(ba, ba + 3, baseRadius, topRadius, height);
}
// The line record has exactly this centre, direction and length.
inline void ExpectLine(const xgeofeature::XFLine3D2& line,
                       const cv::Vec3d& center,
                       const cv::Vec3d& dir,
                       float length) {
  ExpectNear3(line.center, center, 0.0);
  ExpectNear3(line.dir, dir, 0.0);
  EXPECT_EQ(line.length, length);
}
// Signed distance of `p` from the plane record, along its normal.
inline double SignedDistance(const cv::Vec3d& p,
                             const xgeofeature::XFPlane& plane) {
  return (p - V(plane.center)).dot(V(plane.normal));
}

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_MEASURE_MEASURE_TEST_UTIL_H_
