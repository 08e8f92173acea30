// XFBase: the common base of the feature records, and the rotation and
// symmetry matrices that the records' users build from them.
#ifndef ZELMO_FEATURE_XF_BASE_H_
#define ZELMO_FEATURE_XF_BASE_H_

#include "zelmo/export.h"
#include "zelmo/feature/geo_feature_type.h"

namespace xgeofeature {

// Abstract base of every feature record. It holds no data, so a record is a
// flat run of floats behind its one virtual table pointer and copies member
// by member.
//
// There is deliberately no virtual destructor: records are destroyed through
// their own type, never through an XFBase pointer. The destructor is
// protected so that the compiler refuses `delete` on an XFBase*; hosts may
// still pass records around as XFBase* and switch on getFeatureType().
class ZELMO_API XFBase {
 public:
  XFBase() = default;
  XFBase(const XFBase&) = default;
  XFBase(XFBase&&) = default;
  XFBase& operator=(const XFBase&) = default;
  XFBase& operator=(XFBase&&) = default;

  // The kind of record, fixed per class.
  virtual GeoFeatureType getFeatureType() const = 0;

  // Rotation by `angle` about `axis` (three floats), written as nine doubles
  // row by row into `r`. The axis is widened and made unit in double; a zero
  // axis gives cos(angle) on the diagonal and zeros elsewhere. `degrees`
  // says `angle` is in degrees rather than radians. Returns 0.
  static int getRotationMatrix(const float* const axis,
                               const float& angle,
                               double* const r,
                               bool degrees);

  // The rigid 4 x 4 (16 doubles, row-major, column vectors) of the
  // inversion through `point` (three floats): R = -I, t = 2 p.
  static void getMatRT_PointSymmetry(const float* const point,
                                     double* const rt);

 protected:
  ~XFBase() = default;

  // The rigid 4 x 4 of the half-turn about the line `line` (six floats:
  // point, unit direction d): R = 2 d d^T - I, t = p - R p, to rounding.
  static void getMatRT_LineSymmetry(const float* const line, double* const rt);

  // The rigid 4 x 4 of the mirror at the plane `plane` (six floats: point,
  // unit normal n): R = I - 2 n n^T, t = p - R p, to rounding.
  static void getMatRT_PlaneSymmetry(const float* const plane,
                                     double* const rt);
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_XF_BASE_H_
