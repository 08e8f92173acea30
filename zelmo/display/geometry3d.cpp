#include "zelmo/display/geometry3d.h"

#include "zelmo/display/display_points.h"
#include "zelmo/feature/frame_toolkit.h"

namespace xgeometry {

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
