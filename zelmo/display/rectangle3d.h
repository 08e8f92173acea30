// XRectangle3D: a rectangle in space, given as its four corners for drawing.
#ifndef ZELMO_DISPLAY_RECTANGLE3D_H_
#define ZELMO_DISPLAY_RECTANGLE3D_H_

#include "zelmo/display/curve3d.h"
#include "zelmo/export.h"

namespace xgeometry {

// A rectangle about `center` in the plane of `normal`, `halfLength` along
// `majorDir` and `halfWidth` across it. Fields are copied as given; nothing
// is normalised. Every getDisplayData call prints the frame lines of
// XCurve3D::alignBy3Plane.
class ZELMO_API XRectangle3D : public XCurve3D {
 public:
  // All fields 0.
  XRectangle3D();
  XRectangle3D(const float* const center,
               const float* const normal,
               const float* const majorDir,
               const float& halfLength,
               const float& halfWidth);

  // getDisplayData()
  // The object's corners, see the form with geometry.
  int getDisplayData(float* const out) const;

  // getDisplayData()
  // Writes the 4 corners as x, y, z float triples into `out`: in local
  // coordinates (x along `majorDir`, y along normal x majorDir), a =
  // halfLength, b = halfWidth, (a, b), (-a, b), (-a, -b), (a, -b), which
  // run counter-clockwise about the normal (right-hand rule). Returns 0.
  int getDisplayData(const float* const center,
                     const float* const normal,
                     const float* const majorDir,
                     const float& halfLength,
                     const float& halfWidth,
                     float* const out) const;

 private:
  float center_[3];
  float normal_[3];
  float major_dir_[3];
  float half_length_;
  float half_width_;
};

}  // namespace xgeometry

#endif  // ZELMO_DISPLAY_RECTANGLE3D_H_
