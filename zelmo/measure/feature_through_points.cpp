// XGeoFConstructor: plane, circle and sphere through points.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/measure/feature_constructor.h"
#include "zelmo/measure/geo_constructor.h"
#include "zelmo/measure/record_math.h"

namespace xgeofeature {
namespace {

using zelmo::measure::isSmall;
using zelmo::measure::vec;

// The nine floats of three points.
void pointsArray(const XFPointN points[3], float* const nine) {
  for (int i = 0; i < 3; ++i)
    for (int k = 0; k < 3; ++k) nine[3 * i + k] = points[i].point[k];
}

}  // namespace

int XGeoFConstructor::getPlane(const XFPointN points[3], XFPlane& out) {
  const cv::Vec3d p0 = vec(points[0].point);
  const cv::Vec3d a = vec(points[1].point) - p0;
  const cv::Vec3d b = vec(points[2].point) - p0;
  if (isSmall(a) || isSmall(b)) return kFailed;
  cv::Vec3d n = a.cross(b);
  if (isSmall(n)) return kFailed;
  n = zelmo::measure::unitOrZero(n);
  if (n.dot(vec(points[0].normal)) < 0.0) n = -n;

  // The smallest rectangle about the points, found in the plane's frame.
  double plane[4] = {n[0], n[1], n[2], -n.dot(p0)};
  std::vector<cv::Point3f> space;
  for (int i = 0; i < 3; ++i)
    space.emplace_back(points[i].point[0], points[i].point[1],
                       points[i].point[2]);
  std::vector<cv::Point2f> flat;
  double toPlane[16], toSpace[16];
  zelmo::frame::projection2Plane_tranformed(space, plane, flat, toPlane,
                                            zelmo::frame::AlignMode::kGuarded);
  const cv::RotatedRect rect = cv::minAreaRect(flat);
  cv::Point2f corners[4];
  rect.points(corners);
  cv::Point2f major = corners[2] - corners[1];
  cv::Point2f minor = corners[0] - corners[1];
  if (cv::norm(minor) > cv::norm(major)) std::swap(major, minor);

  zelmo::frame::convertMatrixRT(toPlane, toSpace);
  float center[3], normal[3], majorDir[3];
  zelmo::measure::store(
      zelmo::measure::transformPoint(
          toSpace, cv::Vec3d(rect.center.x, rect.center.y, 0)),
      center);
  zelmo::measure::store(n, normal);
  zelmo::measure::store(zelmo::measure::unitOrZero(zelmo::measure::rotateVector(
                            toSpace, cv::Vec3d(major.x, major.y, 0))),
                        majorDir);
  out = XFPlane(center, normal, majorDir, static_cast<float>(cv::norm(major)),
                static_cast<float>(cv::norm(minor)));
  return kOk;
}

int XGeoFConstructor::getCircle(const XFPointN points[3], XFCircle3D& out) {
  float nine[9], circle[10];
  pointsArray(points, nine);
  if (xgeomeasure::XGeoConstructor::Circle3D_3Point(nine, circle) != 0)
    return kFailed;
  float* const normal = circle + 3;
  if (vec(normal).dot(vec(points[0].normal)) < 0.0)
    for (int k = 0; k < 3; ++k) normal[k] = -normal[k];
  out = XFCircle3D(circle, normal, circle + 6, circle[9]);
  return kOk;
}

int XGeoFConstructor::getSphere(const XFPoint points[4], XFSphere& out) {
  float twelve[12], sphere[4];
  for (int i = 0; i < 4; ++i) {
    twelve[3 * i] = points[i].x;
    twelve[3 * i + 1] = points[i].y;
    twelve[3 * i + 2] = points[i].z;
  }
  if (xgeomeasure::XGeoConstructor::Sphere_4Point(twelve, sphere) != 0)
    return kFailed;
  out = XFSphere(sphere, sphere[3]);
  return kOk;
}

}  // namespace xgeofeature
