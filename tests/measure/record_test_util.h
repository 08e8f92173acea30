// Feature records from double vectors and back, for the tests of the
// constructions and dimensions on records.
#ifndef ZELMO_TESTS_MEASURE_RECORD_TEST_UTIL_H_
#define ZELMO_TESTS_MEASURE_RECORD_TEST_UTIL_H_

#include <opencv2/core.hpp>

#include "zelmo/feature/records.h"

namespace zelmo {
namespace test {

// Float inputs at up to 500 units carry about 3e-5 of rounding; the
// constructions amplify it a little.
constexpr double kRecordPosTol = 2e-3;
constexpr double kRecordDirTol = 1e-5;
// Directions taken between float points a few units apart at 500 units, or
// through the float plane equation there.
constexpr double kRecordChordDirTol = 2e-4;
constexpr double kRecordMaxOffset = 500.0;
// A coordinate no construction produces: marks outputs left unwritten.
constexpr float kUnwritten = 12345.0f;

inline cv::Vec3d V(const float* v) { return cv::Vec3d(v[0], v[1], v[2]); }
inline cv::Vec3d V(const xgeofeature::XFPoint& p) {
  return cv::Vec3d(p.x, p.y, p.z);
}
inline void Put(const cv::Vec3d& v, float* out) {
  for (int k = 0; k < 3; ++k) out[k] = static_cast<float>(v[k]);
}
inline xgeofeature::XFPoint Pt(const cv::Vec3d& v) {
  float p[3];
  Put(v, p);
  return xgeofeature::XFPoint(p);
}
// A line or plane record with the direction made unit.
inline xgeofeature::XFLine3D2 Line(const cv::Vec3d& center,
                                   const cv::Vec3d& dir,
                                   float length) {
  float c[3], d[3];
  Put(center, c);
  Put(dir / cv::norm(dir), d);
  return xgeofeature::XFLine3D2(c, d, length);
}
inline xgeofeature::XFPlane Plane(const cv::Vec3d& center,
                                  const cv::Vec3d& normal) {
  float c[3], n[3];
  Put(center, c);
  Put(normal / cv::norm(normal), n);
  return xgeofeature::XFPlane(c, n);
}
// Signed distance of `p` from the plane record, along its normal.
inline double SignedDistance(const cv::Vec3d& p,
                             const xgeofeature::XFPlane& plane) {
  return (p - V(plane.center)).dot(V(plane.normal));
}

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_MEASURE_RECORD_TEST_UTIL_H_
