// XFCircle3D: a circle in space.
#ifndef ZELMO_FEATURE_CIRCLE_RECORD_H_
#define ZELMO_FEATURE_CIRCLE_RECORD_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/geo_feature_type.h"
#include "zelmo/feature/line_records.h"
#include "zelmo/feature/plane_record.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/xf_base.h"

namespace xgeofeature {

// A circle of `radius` about `center` in the plane of normal `normal`;
// `majorDir` is a direction in that plane that fixes where angles start.
class ZELMO_API XFCircle3D : public XFBase {
 public:
  XFCircle3D() = default;
  XFCircle3D(const float* const center,
             const float* const normal,
             const float* const majorDir,
             const float& radius);
  // Stores; majorDir by the perpendicular rule (see XFPlane).
  XFCircle3D(const float* const center,
             const float* const normal,
             const float& radius);
  // `v` holds center, normal, majorDir, radius (10 floats); any other size
  // leaves the fields unset.
  explicit XFCircle3D(const std::vector<float>& v);

  // GeoCircle.
  GeoFeatureType getFeatureType() const override;

  void getCenterPoint(XFPoint& out) const;
  // The axis line: center, normal as direction, length 2 radius. The normal
  // line with a length across the circle is the established pairing that
  // callers rely on.
  void getLine(XFLine3D2& out) const;
  // The circle's plane: center, normal, a majorDir made anew by the
  // perpendicular rule (the circle's own majorDir is not used), length =
  // width = 2 radius, and the plane equation from center and normal.
  void getPlane(XFPlane& out) const;

  // Negates normal; majorDir and the rest stay.
  void inv();
  // A copy with normal negated.
  XFCircle3D invert() const;

  // True when radius and each center coordinate differ by at most 0.01
  // (differences in float, compared in double) and |n1 . n2| differs from 1
  // by at most 0.02: opposite normals count as equal. majorDir is not
  // compared.
  bool operator==(const XFCircle3D& other);

  float center[3] = {};
  float normal[3] = {};
  float majorDir[3] = {};
  float radius = 0.0f;
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_CIRCLE_RECORD_H_
