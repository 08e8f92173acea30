// XGeometry3D: the base of the solid display classes (XCylinder, XCone),
// with the plain frame routines; and XSphere, XPlane, members of the family
// without data or operations of their own.
#ifndef ZELMO_DISPLAY_GEOMETRY3D_H_
#define ZELMO_DISPLAY_GEOMETRY3D_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/frame_members.h"

namespace xgeometry {

// No data; subclasses sample their rings through getRingData.
class ZELMO_API XGeometry3D
    : public zelmo::FrameMembers<zelmo::AlignFlavour::kPlain> {
 protected:
  // getRingData()
  // The two rings of a solid of revolution about `axis` (expected unit; not
  // normalised) through `point`: `count` x, y, z float triples into each of
  // `first` and `second`. Ring one has `firstRadius` about `point`, ring two
  // `secondRadius` about point + height axis: sampled like ring one, stored
  // as floats, then moved by height x axis from the stored values, so that
  // with equal radii second[i] = first[i] + height axis exactly (one
  // rounding of the double sum). Point i lies at the angle
  // i 2 pi / count from the unit direction h made up from `axis` (the
  // auxiliary direction of getMatRByVector), towards axis x h. A count below
  // 1 writes nothing. Returns 0.
  int getRingData(const float* const point,
                  const float* const axis,
                  const float& height,
                  const float& firstRadius,
                  const float& secondRadius,
                  const int& count,
                  float* const first,
                  float* const second) const;
};

// A sphere of the display family; it has no data and no display list.
class ZELMO_API XSphere : public XGeometry3D {};

// A plane of the display family; it has no data and no display list.
class ZELMO_API XPlane : public XGeometry3D {};

}  // namespace xgeometry

#endif  // ZELMO_DISPLAY_GEOMETRY3D_H_
