#include "zelmo/measure/record_math.h"

#include <cmath>

namespace zelmo {
namespace measure {

using xgeofeature::XFPlane;
using xgeofeature::XFPoint;

cv::Vec3d vec(const float* const v) { return cv::Vec3d(v[0], v[1], v[2]); }

cv::Vec3d vec(const XFPoint& p) { return cv::Vec3d(p.x, p.y, p.z); }

void store(const cv::Vec3d& v, float* const out) {
  for (int k = 0; k < 3; ++k) out[k] = static_cast<float>(v[k]);
}

XFPoint pointOf(const cv::Vec3d& v) {
  return XFPoint(static_cast<float>(v[0]), static_cast<float>(v[1]),
                 static_cast<float>(v[2]));
}

bool isSmall(const cv::Vec3d& v) {
  return std::fabs(v[0]) < kSmall && std::fabs(v[1]) < kSmall &&
         std::fabs(v[2]) < kSmall;
}

bool coincide(const cv::Vec3d& a, const cv::Vec3d& b) { return isSmall(a - b); }

cv::Vec3d rotateVector(const double* const rt, const cv::Vec3d& v) {
  cv::Vec3d out;
  for (int r = 0; r < 3; ++r)
    out[r] = rt[4 * r] * v[0] + rt[4 * r + 1] * v[1] + rt[4 * r + 2] * v[2];
  return out;
}

cv::Vec3d transformPoint(const double* const rt, const cv::Vec3d& p) {
  return rotateVector(rt, p) + cv::Vec3d(rt[3], rt[7], rt[11]);
}

void lineArray(const xgeofeature::XFLine3D2& line, float* const six) {
  for (int k = 0; k < 3; ++k) {
    six[k] = line.center[k];
    six[3 + k] = line.dir[k];
  }
}

void planeArray(const XFPlane& plane, float* const six) {
  for (int k = 0; k < 3; ++k) {
    six[k] = plane.center[k];
    six[3 + k] = plane.normal[k];
  }
}

xgeofeature::XFLine3D2 lineBetween(const cv::Vec3d& from, const cv::Vec3d& to) {
  float f[3], t[3];
  store(from, f);
  store(to, t);
  xgeofeature::XFLine3D2 out;
  xgeofeature::XFLine3D(f, t).getLine(out);
  return out;
}

double coneRadiusAt(const xgeofeature::XFCone& cone, const XFPoint& onAxis) {
  return onAxis.Distance(XFPoint(cone.apex)) * std::tan(cone.halfAngle);
}

XFPoint footOnPlane(const XFPoint& p, const XFPlane& plane) {
  // Float throughout, left to right; the plane projection of the
  // constructions and the point-to-plane foot of the dimensions are this
  // one routine, so they agree to the bit.
  const float s = plane.a * p.x + plane.b * p.y + plane.c * p.z + plane.d;
  return XFPoint(p.x - plane.normal[0] * s, p.y - plane.normal[1] * s,
                 p.z - plane.normal[2] * s);
}

}  // namespace measure
}  // namespace zelmo
