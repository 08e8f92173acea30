// Solid records: XFSphere, XFCylinder and XFCone.
#ifndef ZELMO_FEATURE_SOLID_RECORDS_H_
#define ZELMO_FEATURE_SOLID_RECORDS_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/geo_feature_type.h"
#include "zelmo/feature/line_records.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/xf_base.h"

namespace xgeofeature {

// A sphere of `radius` about `center`. It has no reversal.
class ZELMO_API XFSphere : public XFBase {
 public:
  XFSphere() = default;
  XFSphere(const float& x, const float& y, const float& z, const float& radius);
  XFSphere(const float* const center, const float& radius);
  // `v` holds center, radius (4 floats); any other size leaves the fields
  // unset.
  explicit XFSphere(const std::vector<float>& v);

  // GeoSphere.
  GeoFeatureType getFeatureType() const override;

  void getCenterPoint(XFPoint& out) const;

  float center[3] = {};
  float radius = 0.0f;
};

// A finite cylinder of `radius` from `base` to `top`. `axis` is the unit
// direction from base to top, `center` lies half way between them and
// `height` is their distance.
class ZELMO_API XFCylinder : public XFBase {
 public:
  XFCylinder() = default;
  // From the base, the unit axis and the height: center = base + axis x
  // (height x 0.5), top = base + axis x height, in double, stored as float.
  XFCylinder(const float* const base,
             const float* const axis,
             const float& radius,
             const float& height);
  // From the two end points, with h their distance in double. When h is over
  // 1e-6, axis = (top - base) / h and center = base + axis x (h x 0.5).
  // Otherwise the axis is undefined: only the z components of center and
  // axis are set, to 0, and x and y stay as they were. base, top, radius and
  // height = h are stored in both cases.
  XFCylinder(const float* const base,
             const float* const top,
             const float& radius);
  // `v` holds center, axis, radius, height, base, top (14 floats); any other
  // size leaves the fields unset.
  explicit XFCylinder(const std::vector<float>& v);

  // GeoCylinder.
  GeoFeatureType getFeatureType() const override;

  void getCenterPoint(XFPoint& out) const;
  void getBasePoint(XFPoint& out) const;
  void getTopPoint(XFPoint& out) const;
  // The axis segment: center, axis, height.
  void getLine(XFLine3D2& out) const;

  // Negates axis and swaps base and top; center stays.
  void inv();
  // A copy with inv() applied.
  XFCylinder invert() const;

  float center[3] = {};
  float axis[3] = {};
  float radius = 0.0f;
  float height = 0.0f;
  float base[3] = {};
  float top[3] = {};
};

// A truncated cone from `base` (radius `baseRadius`) to `top` (radius
// `topRadius`); `axis` is the unit direction from base to top and on to
// `apex`, `height` the distance of base and top, and `halfAngle`, in
// radians, atan((baseRadius - topRadius) / height). It has no reversal.
class ZELMO_API XFCone : public XFBase {
 public:
  XFCone() = default;
  // halfAngle = atanf((baseRadius - topRadius) / height) in float; apex =
  // base + axis x (height x topRadius / (baseRadius - topRadius) + height)
  // and top = base + axis x height, in double, stored as float. Equal radii
  // divide by zero: the apex is then infinite or NaN, unguarded.
  XFCone(const float* const base,
         const float* const axis,
         const float& baseRadius,
         const float& topRadius,
         const float& height);
  // From the two end points, with h their distance in double. When h is over
  // 1e-6, axis = (top - base) / h, and halfAngle and apex as above with h as
  // height. Otherwise only the z components of apex and axis are set, to 0,
  // and halfAngle to 0. base, top, both radii and height = h are stored in
  // both cases.
  XFCone(const float* const base,
         const float* const top,
         const float& baseRadius,
         const float& topRadius);
  // `v` holds apex, axis, halfAngle, base, top, height, baseRadius,
  // topRadius (16 floats); any other size leaves the fields unset.
  explicit XFCone(const std::vector<float>& v);

  // GeoCone.
  GeoFeatureType getFeatureType() const override;

  // (base + top) x 0.5: the middle of the frustum, not the apex.
  void getCenterPoint(XFPoint& out) const;
  void getApexPoint(XFPoint& out) const;
  void getBasePoint(XFPoint& out) const;
  void getTopPoint(XFPoint& out) const;
  // The axis segment: (base + top) x 0.5, axis, height.
  void getLine(XFLine3D2& out) const;

  float apex[3] = {};
  float axis[3] = {};
  float halfAngle = 0.0f;
  float base[3] = {};
  float top[3] = {};
  float height = 0.0f;
  float baseRadius = 0.0f;
  float topRadius = 0.0f;
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_SOLID_RECORDS_H_
