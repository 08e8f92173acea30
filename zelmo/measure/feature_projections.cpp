// XGeoFConstructor: projections, mirror images, offsets and averages of
// points, lines and planes.
#include <algorithm>
#include <cmath>

#include "zelmo/measure/feature_constructor.h"
#include "zelmo/measure/geo_constructor.h"
#include "zelmo/measure/record_math.h"

namespace xgeofeature {
namespace {

using zelmo::measure::coincide;
using zelmo::measure::isSmall;
using zelmo::measure::pointOf;
using zelmo::measure::unitOrZero;
using zelmo::measure::vec;

// Below this half length a line is projected from the points one unit
// either side of its centre, so that a very short line keeps a direction.
constexpr float kMinProjectedHalfLength = 0.01f;
constexpr float kShortLineHalfLength = 1.0f;
// The length of the normal line that carries a plane through a mirror.
constexpr float kMirroredNormalLength = 2.0f;
// Starting value of the largest extent in getPlaneAverage.
constexpr float kNoExtent = -1.0f;

// The mirror image of `p` through its foot on `feature`.
template <typename Feature>
int mirrorThroughFoot(const XFPoint& p, const Feature& feature, XFPoint& out) {
  XFPoint foot;
  XGeoFConstructor::getProjectionPoint(p, feature, foot);
  return XGeoFConstructor::getPointSymmetry(p, foot, out);
}

}  // namespace

int XGeoFConstructor::getProjectionPoint(const XFPoint& point,
                                         const XFLine3D2& line,
                                         XFPoint& out) {
  const float p[3] = {point.x, point.y, point.z};
  float six[6], foot[3];
  zelmo::measure::lineArray(line, six);
  xgeomeasure::XGeoConstructor::Projection_Point_Line(p, six, foot);
  out = XFPoint(foot);
  return kOk;
}

int XGeoFConstructor::getProjectionPoint(const XFPoint& point,
                                         const XFPlane& plane,
                                         XFPoint& out) {
  out = zelmo::measure::footOnPlane(point, plane);
  return kOk;
}

int XGeoFConstructor::getProjectionPoint(const XFPoint& point,
                                         const XFSphere& sphere,
                                         XFPoint& out) {
  const cv::Vec3d c = vec(sphere.center);
  const cv::Vec3d v = vec(point) - c;
  if (isSmall(v)) return kFailed;
  out = pointOf(c + unitOrZero(v) * static_cast<double>(sphere.radius));
  return kOk;
}

int XGeoFConstructor::getProjectionPoint(const XFPoint& point,
                                         const XFCylinder& cylinder,
                                         XFPoint& out) {
  XFPoint foot;
  getProjectionPoint(point, XFLine3D2(cylinder.center, cylinder.axis, 1.0f),
                     foot);
  if (point.Distance(foot) < zelmo::measure::kSmall) return kFailed;
  const cv::Vec3d f = vec(foot);
  out = pointOf(f + unitOrZero(vec(point) - f) *
                        static_cast<double>(cylinder.radius));
  return kOk;
}

int XGeoFConstructor::getProjectionPoint(const XFPoint& point,
                                         const XFCone& cone,
                                         XFPoint& out) {
  XFLine3D2 axis;
  cone.getLine(axis);
  XFPoint foot;
  getProjectionPoint(point, axis, foot);
  const cv::Vec3d f = vec(foot);
  if (coincide(f, vec(point))) return kFailed;
  // The cone's surface point in the half plane of `point` at the height of
  // its foot; the answer is the foot on the generator through it.
  const double r = zelmo::measure::coneRadiusAt(cone, foot);
  const XFLine3D2 generator = zelmo::measure::lineBetween(
      vec(cone.apex), f + unitOrZero(vec(point) - f) * r);
  return getProjectionPoint(point, generator, out);
}

int XGeoFConstructor::getPointOffset(const XFPoint& point,
                                     const float& offset,
                                     const XFLine3D2& line,
                                     XFPoint& out) {
  out = XFPoint(point.x + line.dir[0] * offset, point.y + line.dir[1] * offset,
                point.z + line.dir[2] * offset);  // in float
  return kOk;
}

int XGeoFConstructor::getPointAverage(const std::vector<XFPoint>& points,
                                      XFPoint& out) {
  if (points.empty()) return kFailed;
  if (points.size() == 1) {
    out = points[0];
    return kOk;
  }
  float sx = 0.0f, sy = 0.0f, sz = 0.0f;  // summed in float
  for (const XFPoint& p : points) {
    sx += p.x;
    sy += p.y;
    sz += p.z;
  }
  const float n = static_cast<float>(points.size());
  out = XFPoint(sx / n, sy / n, sz / n);
  return kOk;
}

int XGeoFConstructor::getPointSymmetry(const XFPoint& p,
                                       const XFPoint& q,
                                       XFPoint& out) {
  const cv::Vec3d qv = vec(q);
  if (coincide(vec(p), qv)) {
    out = q;
    return kOk;
  }
  // Through the line record from q to p: its unit dir and float length.
  const XFLine3D2 qp = zelmo::measure::lineBetween(qv, vec(p));
  out = pointOf(qv - vec(qp.dir) * static_cast<double>(qp.length));
  return kOk;
}

int XGeoFConstructor::getPointSymmetry(const XFPoint& p,
                                       const XFLine3D2& line,
                                       XFPoint& out) {
  return mirrorThroughFoot(p, line, out);
}

int XGeoFConstructor::getPointSymmetry(const XFPoint& p,
                                       const XFPlane& plane,
                                       XFPoint& out) {
  return mirrorThroughFoot(p, plane, out);
}

int XGeoFConstructor::getProjectionLine(const XFLine3D2& line,
                                        const XFPlane& plane,
                                        XFLine3D2& out) {
  if (isSmall(vec(line.dir).cross(vec(plane.normal)))) return kFailed;
  float half = line.length / 2;
  if (half < kMinProjectedHalfLength) half = kShortLineHalfLength;
  const XFLine3D2 span(line.center, line.dir, 2 * half);
  XFPoint ends[2], feet[2];
  span.getStartPoint(ends[0]);
  span.getEndPoint(ends[1]);
  for (int k = 0; k < 2; ++k) getProjectionPoint(ends[k], plane, feet[k]);
  if (coincide(vec(feet[0]), vec(feet[1]))) return kFailed;
  out = zelmo::measure::lineBetween(vec(feet[0]), vec(feet[1]));
  return kOk;
}

int XGeoFConstructor::getLineSymmetry(const XFLine3D2& line,
                                      const XFPlane& plane,
                                      XFLine3D2& out) {
  XFPoint ends[2], images[2];
  line.getStartPoint(ends[0]);
  line.getEndPoint(ends[1]);
  for (int k = 0; k < 2; ++k) getPointSymmetry(ends[k], plane, images[k]);
  out = zelmo::measure::lineBetween(vec(images[0]), vec(images[1]));
  return kOk;
}

int XGeoFConstructor::getPlaneOffset(const XFPlane& plane,
                                     const float& offset,
                                     XFPlane& out) {
  float center[3];
  zelmo::measure::store(
      vec(plane.center) + vec(plane.normal) * static_cast<double>(offset),
      center);
  XFPlane moved(center, plane.normal, plane.majorDir, plane.length,
                plane.width);  // d from the new centre
  moved.a = plane.a;
  moved.b = plane.b;
  moved.c = plane.c;
  out = moved;
  return kOk;
}

int XGeoFConstructor::getPlaneSymmetry(const XFPlane& plane,
                                       const XFPlane& mirror,
                                       XFPlane& out) {
  XFLine3D2 image;
  getLineSymmetry(XFLine3D2(plane.center, plane.normal, kMirroredNormalLength),
                  mirror, image);
  out = XFPlane(image.center, image.dir, plane.majorDir, plane.length,
                plane.width);
  return kOk;
}

int XGeoFConstructor::getPlaneAverage(const std::vector<XFPlane>& planes,
                                      XFPlane& out) {
  if (planes.empty()) return kFailed;
  if (planes.size() == 1) {
    out = planes[0];
    return kOk;
  }
  cv::Vec3d center(0, 0, 0), normal(0, 0, 0);
  for (const XFPlane& p : planes) {
    center += vec(p.center);
    normal += vec(p.normal);
  }
  center *= 1.0 / static_cast<double>(planes.size());
  if (planes.size() == 2 &&
      isSmall(vec(planes[0].normal).cross(vec(planes[1].normal)))) {
    // Parallel pair: the first plane's sense, whatever the second's.
    normal = vec(planes[0].normal);
  } else {
    if (cv::norm(normal) < zelmo::measure::kSmall) return kFailed;
    normal = unitOrZero(normal);
  }
  float c[3], n[3];
  zelmo::measure::store(center, c);
  zelmo::measure::store(normal, n);
  XFPlane mean(c, n);
  float extent = kNoExtent;
  for (const XFPlane& p : planes)
    extent = std::max({extent, p.length, p.width});
  mean.length = extent;
  mean.width = extent;
  out = mean;
  return kOk;
}

}  // namespace xgeofeature
