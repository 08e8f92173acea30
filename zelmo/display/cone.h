// XCone: a cone frustum sampled into two rings of points for drawing.
#ifndef ZELMO_DISPLAY_CONE_H_
#define ZELMO_DISPLAY_CONE_H_

#include "zelmo/display/geometry3d.h"
#include "zelmo/export.h"

namespace xgeometry {

// A cone frustum about `axis` (expected unit; not normalised): radius
// `firstRadius` at `point`, `secondRadius` at point + height axis. Fields
// are copied as given.
class ZELMO_API XCone : public XGeometry3D {
 public:
  // All fields 0.
  XCone();
  XCone(const float* const point,
        const float* const axis,
        const float& height,
        const float& firstRadius,
        const float& secondRadius);

  // getDisplayData()
  // Writes `count` x, y, z float triples into each of `first` (the ring of
  // the first radius about `point`) and `second` (the ring of the second
  // radius about point + height axis), at the angles i 2 pi / count; see
  // XGeometry3D::getRingData. A count below 1 writes nothing. Returns 0.
  int getDisplayData(const int& count,
                     float* const first,
                     float* const second) const;

 private:
  float point_[3];
  float axis_[3];
  float height_;
  float first_radius_;
  float second_radius_;
};

}  // namespace xgeometry

#endif  // ZELMO_DISPLAY_CONE_H_
