// XOvalGroove3D: an oval groove (two half circles joined by straight sides)
// in space, sampled into a point list for drawing.
#ifndef ZELMO_DISPLAY_OVAL_GROOVE3D_H_
#define ZELMO_DISPLAY_OVAL_GROOVE3D_H_

#include "zelmo/display/curve3d.h"
#include "zelmo/export.h"

namespace xgeometry {

// An oval groove about `center` in the plane of `normal`: the centres of its
// half circles of `radius` lie `halfStraight` from `center` along and
// against `majorDir`. Fields are copied as given; nothing is normalised.
// Every getDisplayData call prints the frame lines of
// XCurve3D::alignBy3Plane.
class ZELMO_API XOvalGroove3D : public XCurve3D {
 public:
  // All fields 0.
  XOvalGroove3D();
  XOvalGroove3D(const float* const center,
                const float* const normal,
                const float* const majorDir,
                const float& halfStraight,
                const float& radius);

  // getDisplayData()
  // The object's outline, see the form with geometry.
  int getDisplayData(const int& count, float* const out) const;

  // getDisplayData()
  // Writes 4 q + 4 x, y, z float triples into `out`, q = count / 4 in
  // integers. In local coordinates (x along `majorDir`, y along
  // normal x majorDir), L = halfStraight, r = radius, s = 2 pi / count: the
  // right half circle (L + r cos(i s), r sin(i s)) for i = -q .. q - 1;
  // (L, r), (-L, r); the left half circle (-L + r cos(i s), r sin(i s)) for
  // i = q .. 3 q - 1; (-L, -r), (L, -r). The list is open. For a count that
  // is not a multiple of 4 the arcs keep these index ranges with the finer
  // step, so they turn less than half a circle and their points, still on
  // the arc circles, may fall inside the outline; a count below 4 writes
  // the four ends of the straight sides only. Returns 0.
  int getDisplayData(const float* const center,
                     const float* const normal,
                     const float* const majorDir,
                     const float& halfStraight,
                     const float& radius,
                     const int& count,
                     float* const out) const;

 private:
  float center_[3];
  float normal_[3];
  float major_dir_[3];
  float half_straight_;
  float radius_;
};

}  // namespace xgeometry

#endif  // ZELMO_DISPLAY_OVAL_GROOVE3D_H_
