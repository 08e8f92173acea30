#include "zelmo/display/circle3d.h"

#include <algorithm>

#include "zelmo/display/display_points.h"
#include "zelmo/feature/frame_toolkit.h"

namespace xgeometry {

using zelmo::display::widen;

XCicle3D::XCicle3D()
    : center_{0, 0, 0}, normal_{0, 0, 0}, major_dir_{0, 0, 0}, radius_(0) {}

XCicle3D::XCicle3D(const float* const center,
                   const float* const normal,
                   const float* const majorDir,
                   const float& radius)
    : radius_(radius) {
  std::copy(center, center + 3, center_);
  std::copy(normal, normal + 3, normal_);
  std::copy(majorDir, majorDir + 3, major_dir_);
}

int XCicle3D::getDisplayData(const int& count, float* const out) const {
  return getDisplayData(center_, normal_, major_dir_, radius_, count, out);
}

int XCicle3D::getDisplayData(const float* const center,
                             const float* const normal,
                             const float* const majorDir,
                             const float& radius,
                             const int& count,
                             float* const out) const {
  return writeCircle(widen(center), widen(normal), widen(majorDir), radius,
                     count, out);
}

int XCicle3D::getDisplayData2(const float* const center,
                              const float* const normal,
                              const float& radius,
                              const int& count,
                              float* const out) const {
  const cv::Vec3d n = widen(normal);
  return writeCircle(widen(center), n, zelmo::frame::perpendicularDirection(n),
                     radius, count, out);
}

int XCicle3D::writeCircle(const cv::Vec3d& center,
                          const cv::Vec3d& normal,
                          const cv::Vec3d& majorDir,
                          double radius,
                          int count,
                          float* const out) const {
  double rt[16];
  getLocalFrame(center, normal, majorDir, rt);
  if (count < 1) return 0;
  zelmo::display::writeLocalArc(
      rt, 0.0, 0.0, radius, zelmo::display::angularStep(count), 0, count, out);
  return 0;
}

}  // namespace xgeometry
