// XCylinder: a cylinder sampled into two rings of points for drawing.
#ifndef ZELMO_DISPLAY_CYLINDER_H_
#define ZELMO_DISPLAY_CYLINDER_H_

#include "zelmo/display/geometry3d.h"
#include "zelmo/export.h"

namespace xgeometry {

// A cylinder of `radius` about `axis` (expected unit; not normalised) from
// `point` to point + height axis. Fields are copied as given.
class ZELMO_API XCylinder : public XGeometry3D {
 public:
  // All fields 0.
  XCylinder();
  XCylinder(const float* const point,
            const float* const axis,
            const float& height,
            const float& radius);

  // getDisplayData()
  // Writes `count` x, y, z float triples into each of `first` (the ring
  // about `point`) and `second` (the same ring moved by height axis), at
  // the angles i 2 pi / count; see XGeometry3D::getRingData. A count below
  // 1 writes nothing. Returns 0.
  int getDisplayData(const int& count,
                     float* const first,
                     float* const second) const;

 private:
  float point_[3];
  float axis_[3];
  float height_;
  float radius_;
};

}  // namespace xgeometry

#endif  // ZELMO_DISPLAY_CYLINDER_H_
