#include "zelmo/display/curve3d.h"

#include "zelmo/display/display_points.h"
#include "zelmo/feature/frame_toolkit.h"

namespace xgeometry {

int XCurve3D::Intersection3Planes(const cv::Vec3d* normals,
                                  const cv::Point3d* points,
                                  cv::Mat& out) const {
  return zelmo::frame::Intersection3Planes(normals, points, out);
}

void XCurve3D::getMatRByVector(const cv::Vec3d& from,
                               const cv::Vec3d& to,
                               cv::Mat& R) const {
  zelmo::frame::getMatRByVector(from, to, R);
}

void XCurve3D::alignBy3Plane(const cv::Vec3d* targetNormals,
                             const cv::Point3d* targetPoints,
                             const cv::Vec3d* sourceNormals,
                             const cv::Point3d* sourcePoints,
                             double* const rt) const {
  zelmo::frame::alignBy3Plane(targetNormals, targetPoints, sourceNormals,
                              sourcePoints, rt,
                              zelmo::frame::AlignMode::kGuardedPrinting);
}

int XCurve3D::convertMatrixRT(const double* const in, double* const out) const {
  return zelmo::frame::convertMatrixRT(in, out);
}

void XCurve3D::projection2Plane(const std::vector<cv::Point3f>& points,
                                double* const plane,
                                std::vector<cv::Point3f>& out) const {
  zelmo::frame::projection2Plane(points, plane, out);
}

void XCurve3D::getLocalFrame(const cv::Vec3d& center,
                             const cv::Vec3d& normal,
                             const cv::Vec3d& majorDir,
                             double* const rt) const {
  const cv::Vec3d w =
      zelmo::frame::unitOrZero(normal.cross(majorDir));  // zero stays 0
  const zelmo::display::LocalFramePlanes planes(center, majorDir, w, normal);
  alignBy3Plane(planes.targetNormals, planes.targetPoints, planes.sourceNormals,
                planes.sourcePoints, rt);
}

void XCurve3D::getMatrixR(const cv::Vec3d& axis,
                          const double& angle,
                          cv::Mat& R,
                          bool degrees) {
  zelmo::frame::getMatrixR(axis, angle, R, degrees);
}

}  // namespace xgeometry
