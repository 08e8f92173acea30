// XGeoFConstructor: intersections of lines, planes and solids, and the
// lines made from two lines (bisector, common perpendicular).
#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/measure/feature_constructor.h"
#include "zelmo/measure/geo_constructor.h"
#include "zelmo/measure/record_math.h"

namespace xgeofeature {
namespace {

using xgeomeasure::XGeoConstructor;
using zelmo::measure::coincide;
using zelmo::measure::isSmall;
using zelmo::measure::lineBetween;
using zelmo::measure::pointOf;
using zelmo::measure::unitOrZero;
using zelmo::measure::vec;

// Two non-parallel lines farther apart than this (in units of the length of
// the cross product of their directions) are skew.
constexpr double kSkewDistance = 1e-5;
// Two cone axes are parallel when |cos| differs from 1 by at most this.
constexpr double kConeAxisTol = 0.0001;
// |cos| of two parallel cone axes above this: the cones point the same way.
constexpr double kSameWayCos = 0.9;
// Tangents of half angles closer than this leave two cones pointing the
// same way without a common circle.
constexpr double kConeTanTol = 0.0001;

// The skew test of two lines: |(b.center - a.center) . (a.dir x b.dir)|.
double skewness(const XFLine3D2& a, const XFLine3D2& b) {
  const cv::Vec3d c = vec(a.dir).cross(vec(b.dir));
  return std::fabs((vec(b.center) - vec(a.center)).dot(c));
}

// The feet of the common perpendicular of two non-parallel lines: on a
// into footA, on b into footB.
void perpendicularFeet(const XFLine3D2& a,
                       const XFLine3D2& b,
                       float* const footA,
                       float* const footB) {
  float la[6], lb[6];
  zelmo::measure::lineArray(a, la);
  zelmo::measure::lineArray(b, lb);
  XGeoConstructor::Intersection_Line_Line2(la, lb, footA, footB);
}

}  // namespace

int XGeoFConstructor::getIntersectionPoint(const XFLine3D2& a,
                                           const XFLine3D2& b,
                                           XFPoint& out) {
  float la[6], lb[6], point[3];
  zelmo::measure::lineArray(a, la);
  zelmo::measure::lineArray(b, lb);
  switch (XGeoConstructor::Intersection_Line_Line(la, lb, point)) {
    case XGeoConstructor::kParallel:
      return kLinesParallel;
    case XGeoConstructor::kSkew: {
      float footA[3], footB[3];
      perpendicularFeet(a, b, footA, footB);
      out = pointOf((vec(footA) + vec(footB)) * 0.5);
      return kLinesSkew;
    }
    default:
      out = XFPoint(point);
      return kLinesIntersect;
  }
}

int XGeoFConstructor::getIntersectionPoint(const XFLine3D2& line,
                                           const XFSphere& sphere,
                                           XFPoint out[2]) {
  XFPoint foot;
  getProjectionPoint(XFPoint(sphere.center), line, foot);
  const double h = foot.Distance(XFPoint(sphere.center));
  const double r = sphere.radius;
  if (h > r) return 0;
  if (h == r) {
    out[0] = foot;
    return 1;
  }
  const double w = std::sqrt(r * r - h * h);
  out[0] = pointOf(vec(foot) - vec(line.dir) * w);
  out[1] = pointOf(vec(foot) + vec(line.dir) * w);
  return 2;
}

int XGeoFConstructor::getIntersectionPoint(const XFPlane& a,
                                           const XFPlane& b,
                                           const XFPlane& c,
                                           XFPoint& out) {
  const cv::Vec3d normals[3] = {vec(a.normal), vec(b.normal), vec(c.normal)};
  const cv::Point3d points[3] = {cv::Point3d(vec(a.center)),
                                 cv::Point3d(vec(b.center)),
                                 cv::Point3d(vec(c.center))};
  cv::Mat point;
  if (zelmo::frame::Intersection3Planes(normals, points, point) == 0)
    return kFailed;
  out = pointOf(
      cv::Vec3d(point.at<double>(0), point.at<double>(1), point.at<double>(2)));
  return kOk;
}

int XGeoFConstructor::getIntersectionPoint(const XFPlane& plane,
                                           const XFLine3D2& line,
                                           XFPoint& out) {
  float six[6], plane6[6], point[3];
  zelmo::measure::lineArray(line, six);
  zelmo::measure::planeArray(plane, plane6);
  if (XGeoConstructor::Intersection_Line_Plane(six, plane6, point) != 0)
    return kFailed;
  out = XFPoint(point);
  return kOk;
}

int XGeoFConstructor::getIntersectionLine(const XFPlane& a,
                                          const XFPlane& b,
                                          XFLine3D2& out) {
  cv::Vec3d v = vec(a.normal).cross(vec(b.normal));
  if (isSmall(v)) return kFailed;
  v = unitOrZero(v);
  // d of each plane from its centre and normal, in float.
  const float da = -(a.normal[0] * a.center[0] + a.normal[1] * a.center[1] +
                     a.normal[2] * a.center[2]);
  const float db = -(b.normal[0] * b.center[0] + b.normal[1] * b.center[1] +
                     b.normal[2] * b.center[2]);
  // A point of the line with 0 in the coordinate k where the direction is
  // largest: the two plane equations solve the other two.
  const int k = zelmo::frame::largestAbsIndex(v);
  const int i = k == 0 ? 1 : 0;
  const int j = k == 2 ? 1 : 2;
  const cv::Mat A = (cv::Mat_<double>(2, 2) << a.normal[i], a.normal[j],
                     b.normal[i], b.normal[j]);
  const cv::Mat rhs = (cv::Mat_<double>(2, 1) << -da, -db);
  const cv::Mat inverse = A.inv();  // explicit inverse, then the product
  const cv::Mat st = inverse * rhs;
  cv::Vec3d point(0, 0, 0);
  point[i] = st.at<double>(0);
  point[j] = st.at<double>(1);

  // The span of both rectangles' corners along the line.
  XFPoint corners[8];
  a.getCornerPoint(corners);
  b.getCornerPoint(corners + 4);
  double tMin = 0.0, tMax = 0.0;
  for (int c = 0; c < 8; ++c) {
    const cv::Vec3d q = vec(corners[c]);
    const double t = coincide(q, point) ? 0.0 : v.dot(q - point);
    if (c == 0 || t < tMin) tMin = t;
    if (c == 0 || t > tMax) tMax = t;
  }
  out = lineBetween(point + tMin * v, point + tMax * v);
  return kOk;
}

int XGeoFConstructor::getIntersectionCircle(const XFCone& first,
                                            const XFCone& second,
                                            XFCircle3D& out) {
  if (coincide(vec(first.apex), vec(second.apex))) return kFailed;
  const double x = vec(first.axis).dot(vec(second.axis));
  if (std::fabs(std::fabs(x) - 1.0) > kConeAxisTol) return kFailed;
  const double t1 = std::tan(first.halfAngle), t2 = std::tan(second.halfAngle);
  const double apexDistance =
      XFPoint(first.apex).Distance(XFPoint(second.apex));

  const XFCone* apexCone;  // the cone whose apex and axis carry the circle
  double u, tanApex;       // distance of the circle from that apex; its tan
  if (x > kSameWayCos) {
    const bool firstWider = first.halfAngle > second.halfAngle;
    const XFCone& wide = firstWider ? first : second;
    const XFCone& narrow = firstWider ? second : first;
    const double tWide = firstWider ? t1 : t2, tNarrow = firstWider ? t2 : t1;
    // The narrow cone's apex must lie ahead of the wide one's.
    if (vec(lineBetween(vec(wide.apex), vec(narrow.apex)).dir)
            .dot(vec(first.axis)) <= 0.0)
      return kFailed;
    if (std::fabs(tWide - tNarrow) < kConeTanTol) return kConesEqualAngles;
    u = apexDistance * tNarrow / (tWide - tNarrow);
    apexCone = &wide;
    tanApex = tWide;
  } else {
    // Facing cones: the first apex must lie ahead of the second.
    if (vec(lineBetween(vec(second.apex), vec(first.apex)).dir)
            .dot(vec(first.axis)) <= 0.0)
      return kFailed;
    u = apexDistance * t2 / (t2 + t1);
    apexCone = &first;
    tanApex = t1;
  }
  float center[3];
  zelmo::measure::store(vec(apexCone->apex) - vec(apexCone->axis) * u, center);
  out = XFCircle3D(center, apexCone->axis, static_cast<float>(u * tanApex));
  return kOk;
}

int XGeoFConstructor::getIntersectionCircle(const XFPlane& plane,
                                            const XFCone& cone,
                                            XFCircle3D& out) {
  XFLine3D2 axis;
  cone.getLine(axis);
  XFPoint hit;
  const int status = getIntersectionPoint(plane, axis, hit);
  if (status < 0) return status;
  const float center[3] = {hit.x, hit.y, hit.z};
  out = XFCircle3D(center, plane.normal,
                   static_cast<float>(zelmo::measure::coneRadiusAt(cone, hit)));
  return kOk;
}

int XGeoFConstructor::getIntersectionCircle(const XFPlane& plane,
                                            const XFCylinder& cylinder,
                                            XFCircle3D& out) {
  XFPoint hit;
  const int status = getIntersectionPoint(
      plane, XFLine3D2(cylinder.center, cylinder.axis, cylinder.height), hit);
  if (status < 0) return status;
  const float center[3] = {hit.x, hit.y, hit.z};
  out = XFCircle3D(center, plane.normal, plane.majorDir, cylinder.radius);
  return kOk;
}

int XGeoFConstructor::getIntersectionCircle(const XFPlane& plane,
                                            const XFSphere& sphere,
                                            XFCircle3D& out) {
  const cv::Vec3d c = vec(sphere.center);
  const double s = plane.a * c[0] + plane.b * c[1] + plane.c * c[2] + plane.d;
  const float w = static_cast<float>(std::fabs(s));
  if (w >= sphere.radius) return kFailed;
  if (w < zelmo::measure::kSmall) {
    out = XFCircle3D(sphere.center, plane.normal, sphere.radius);
    return kOk;
  }
  float center[3];
  zelmo::measure::store(c - vec(plane.normal) * s, center);
  const double r = sphere.radius;
  out = XFCircle3D(center, plane.normal,
                   static_cast<float>(std::sqrt(r * r - double(w) * w)));
  return kOk;
}

int XGeoFConstructor::getAngleBisector(const XFLine3D2& a,
                                       const XFLine3D2& b,
                                       XFLine3D2& out) {
  const float length = std::max(a.length, b.length);
  if (isSmall(vec(a.dir).cross(vec(b.dir)))) {
    float center[3];
    zelmo::measure::store((vec(a.center) + vec(b.center)) * 0.5, center);
    out = XFLine3D2(center, a.dir, length);
    return kBisectorOfParallel;
  }
  if (skewness(a, b) > kSkewDistance) return kBisectorOfSkew;
  XFPoint meeting;
  getIntersectionPoint(a, b, meeting);
  const float center[3] = {meeting.x, meeting.y, meeting.z};
  float dir[3];
  zelmo::measure::store(unitOrZero((vec(a.dir) + vec(b.dir)) * 0.5), dir);
  out = XFLine3D2(center, dir, length);
  return kBisectorOfIntersecting;
}

int XGeoFConstructor::getVerticalLine(const XFLine3D2& a,
                                      const XFLine3D2& b,
                                      XFLine3D2& out) {
  const cv::Vec3d c = vec(a.dir).cross(vec(b.dir));
  if (c[0] == 0.0 && c[1] == 0.0 && c[2] == 0.0)
    return kPerpendicularOfParallel;
  if (!(skewness(a, b) > kSkewDistance)) return kPerpendicularOfMeeting;
  float footA[3], footB[3];
  perpendicularFeet(a, b, footA, footB);
  out = lineBetween(vec(footB), vec(footA));
  return kPerpendicularFound;
}

}  // namespace xgeofeature
