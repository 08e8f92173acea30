#include "zelmo/display/curve3d.h"

#include "zelmo/display/display_points.h"
#include "zelmo/feature/frame_toolkit.h"

namespace xgeometry {

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
