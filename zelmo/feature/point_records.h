// Point records: XFPoint, a bare point, and XFPointN, a point with a normal.
#ifndef ZELMO_FEATURE_POINT_RECORDS_H_
#define ZELMO_FEATURE_POINT_RECORDS_H_

#include "zelmo/export.h"
#include "zelmo/feature/geo_feature_type.h"
#include "zelmo/feature/xf_base.h"

namespace xgeofeature {

// A point. Also the output record of every getXxxPoint accessor.
class ZELMO_API XFPoint : public XFBase {
 public:
  XFPoint() = default;
  XFPoint(const float& x, const float& y, const float& z);
  // `p` holds x, y, z.
  explicit XFPoint(const float* const p);

  // GeoPoint.
  GeoFeatureType getFeatureType() const override;

  // Distance to `other` as a double: the coordinate differences are taken
  // in float, then widened, squared and summed in double, and rooted.
  double Distance(const XFPoint& other) const;
  // Distance() without the root.
  double SqrDistance(const XFPoint& other) const;

  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
};

// A point with a normal, as a touch point of a probe. The normal is stored as
// given, not made unit.
class ZELMO_API XFPointN : public XFBase {
 public:
  XFPointN() = default;
  XFPointN(const float& x,
           const float& y,
           const float& z,
           const float& nx,
           const float& ny,
           const float& nz);
  XFPointN(const float* const point, const float* const normal);

  // GeoPoint.
  GeoFeatureType getFeatureType() const override;

  float point[3] = {};
  float normal[3] = {};
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_POINT_RECORDS_H_
