// XRoundGroove3D: a rectangle with rounded corners in space, sampled into a
// point list for drawing.
#ifndef ZELMO_DISPLAY_ROUND_GROOVE3D_H_
#define ZELMO_DISPLAY_ROUND_GROOVE3D_H_

#include "zelmo/display/curve3d.h"
#include "zelmo/export.h"

namespace xgeometry {

// A round groove about `center` in the plane of `normal`: a rectangle
// `halfLength` along `majorDir` and `halfWidth` across it, with corners
// rounded to `cornerRadius`. Fields are copied as given; nothing is
// normalised. Every getDisplayData call prints the frame lines of
// XCurve3D::alignBy3Plane.
class ZELMO_API XRoundGroove3D : public XCurve3D {
 public:
  // All fields 0.
  XRoundGroove3D();
  XRoundGroove3D(const float* const center,
                 const float* const normal,
                 const float* const majorDir,
                 const float& halfLength,
                 const float& halfWidth,
                 const float& cornerRadius);

  // getDisplayData()
  // The object's outline, see the form with geometry.
  int getDisplayData(const int& count, float* const out) const;

  // getDisplayData()
  // Writes 4 q + 8 x, y, z float triples into `out`, q = count / 4 in
  // integers: four corner arcs of q points each at the angles i 2 pi /
  // count, each followed by the two ends of the next side, counter-clockwise
  // from the corner at (+x, +y). With a = halfLength, b = halfWidth,
  // r = cornerRadius, A = a - r, B = b - r, s = 2 pi / count, in local
  // coordinates (x along `majorDir`, y along normal x majorDir):
  // (A + r cos(i s), B + r sin(i s)) for i = 0 .. q - 1; (A, b), (-A, b);
  // (-A + r cos(i s), B + r sin(i s)) for i = q .. 2 q - 1; (-a, B),
  // (-a, -B); (-A + r cos(i s), -B + r sin(i s)) for i = 2 q .. 3 q - 1;
  // (-A, -b), (A, -b); (A + r cos(i s), -B + r sin(i s)) for
  // i = 3 q .. 4 q - 1; (a, -B), (a, B). The list is open. For a count that
  // is not a multiple of 4 the arcs keep these index ranges with the finer
  // step, so they turn less than a quarter and their points, still on the
  // corner circles, may fall inside the outline; a count below 4 writes the
  // eight ends of the sides only. Returns 0.
  int getDisplayData(const float* const center,
                     const float* const normal,
                     const float* const majorDir,
                     const float& halfLength,
                     const float& halfWidth,
                     const float& cornerRadius,
                     const int& count,
                     float* const out) const;

 private:
  float center_[3];
  float normal_[3];
  float major_dir_[3];
  float half_length_;
  float half_width_;
  float corner_radius_;
};

}  // namespace xgeometry

#endif  // ZELMO_DISPLAY_ROUND_GROOVE3D_H_
