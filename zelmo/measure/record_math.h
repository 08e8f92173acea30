// Vector helpers of the constructions and dimensions on feature records:
// conversions between records and double vectors, the "small" and
// "coincide" tests, and the float foot of a point on a plane.
//
// Internal to the library: not exported, so only library sources use it.
#ifndef ZELMO_MEASURE_RECORD_MATH_H_
#define ZELMO_MEASURE_RECORD_MATH_H_

#include <opencv2/core.hpp>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/line_records.h"
#include "zelmo/feature/plane_record.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/solid_records.h"

namespace zelmo {
namespace measure {

// A vector whose components all lie strictly inside (-kSmall, kSmall) is
// zero; two points whose coordinates all differ by strictly less than
// kSmall coincide.
constexpr double kSmall = 1e-6;

// Widened float triples and points.
cv::Vec3d vec(const float* const v);
cv::Vec3d vec(const xgeofeature::XFPoint& p);

// `v` rounded to float, as three floats or as a point.
void store(const cv::Vec3d& v, float* const out);
xgeofeature::XFPoint pointOf(const cv::Vec3d& v);

// All components strictly inside (-kSmall, kSmall).
bool isSmall(const cv::Vec3d& v);
// isSmall(a - b).
bool coincide(const cv::Vec3d& a, const cv::Vec3d& b);

using frame::unitOrZero;

// A rigid transform (16 doubles, row-major) applied to the point `p`, and
// its rotation alone applied to the direction `v`.
cv::Vec3d transformPoint(const double* const rt, const cv::Vec3d& p);
cv::Vec3d rotateVector(const double* const rt, const cv::Vec3d& v);

// The six-float arrays of XGeoConstructor: center, dir of a line; center,
// normal of a plane.
void lineArray(const xgeofeature::XFLine3D2& line, float* const six);
void planeArray(const xgeofeature::XFPlane& plane, float* const six);

// The line record from `from` to `to` (both rounded to float first), by
// XFLine3D::getLine: unit dir and float length.
xgeofeature::XFLine3D2 lineBetween(const cv::Vec3d& from, const cv::Vec3d& to);

// The radius of `cone` at `onAxis`, a point of its axis: the distance from
// the apex (XFPoint::Distance) times tanf(halfAngle).
double coneRadiusAt(const xgeofeature::XFCone& cone,
                    const xgeofeature::XFPoint& onAxis);

// The foot of `p` on `plane` by the plane's equation fields, wholly in
// float: s = a x + b y + c z + d, foot = p - normal x s.
xgeofeature::XFPoint footOnPlane(const xgeofeature::XFPoint& p,
                                 const xgeofeature::XFPlane& plane);

}  // namespace measure
}  // namespace zelmo

#endif  // ZELMO_MEASURE_RECORD_MATH_H_
