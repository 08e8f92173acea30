#include "zelmo/display/geometry3d.h"

#include "zelmo/display/display_points.h"
#include "zelmo/feature/frame_toolkit.h"

namespace xgeometry {

int XGeometry3D::Intersection3Planes(const cv::Vec3d* normals,
                                     const cv::Point3d* points,
                                     cv::Mat& out) const {
  return zelmo::frame::Intersection3Planes(normals, points, out);
}

void XGeometry3D::getMatRByVector(const cv::Vec3d& from,
                                  const cv::Vec3d& to,
                                  cv::Mat& R) const {
  zelmo::frame::getMatRByVector(from, to, R);
}

void XGeometry3D::alignBy3Plane(const cv::Vec3d* targetNormals,
                                const cv::Point3d* targetPoints,
                                const cv::Vec3d* sourceNormals,
                                const cv::Point3d* sourcePoints,
                                double* const rt) const {
  zelmo::frame::alignBy3Plane(targetNormals, targetPoints, sourceNormals,
                              sourcePoints, rt,
                              zelmo::frame::AlignMode::kPlain);
}

int XGeometry3D::convertMatrixRT(const double* const in,
                                 double* const out) const {
  return zelmo::frame::convertMatrixRT(in, out);
}

void XGeometry3D::projection2Plane(const std::vector<cv::Point3f>& points,
                                   double* const plane,
                                   std::vector<cv::Point3f>& out) const {
  zelmo::frame::projection2Plane(points, plane, out);
}

int XGeometry3D::getRingData(const float* const point,
                             const float* const axis,
                             const float& height,
                             const float& firstRadius,
                             const float& secondRadius,
                             const int& count,
                             float* const first,
                             float* const second) const {
  const cv::Vec3d a = zelmo::display::widen(axis);
  const cv::Vec3d h =
      zelmo::frame::unitOrZero(zelmo::frame::auxiliaryOrthogonal(a));
  const cv::Vec3d g = zelmo::frame::unitOrZero(a.cross(h));
  const zelmo::display::LocalFramePlanes planes(zelmo::display::widen(point), h,
                                                g, a);
  double rt[16];
  alignBy3Plane(planes.targetNormals, planes.targetPoints, planes.sourceNormals,
                planes.sourcePoints, rt);
  if (count < 1) return 0;
  const double s = zelmo::display::angularStep(count);
  zelmo::display::writeLocalArc(rt, 0.0, 0.0, firstRadius, s, 0, count, first);
  // The second ring is sampled in the same frame as the first, stored, and
  // then moved by height x axis from its stored floats. With equal radii
  // (a cylinder) it is thus the stored first ring moved, point for point.
  zelmo::display::writeLocalArc(rt, 0.0, 0.0, secondRadius, s, 0, count,
                                second);
  const double lift = height;
  for (int i = 0; i < count; ++i)
    for (int k = 0; k < 3; ++k) {
      float& v = second[3 * i + k];
      v = static_cast<float>(v + lift * a[k]);
    }
  return 0;
}

}  // namespace xgeometry
