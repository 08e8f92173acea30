// XFPlane: a bounded plane with its plane equation.
#ifndef ZELMO_FEATURE_PLANE_RECORD_H_
#define ZELMO_FEATURE_PLANE_RECORD_H_

#include "zelmo/export.h"
#include "zelmo/feature/geo_feature_type.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/xf_base.h"

namespace xgeofeature {

// A plane through `center` with normal `normal`, bounded by a rectangle of
// side `length` along `majorDir` and side `width` across it. `a`, `b`, `c`,
// `d` are the plane equation a x + b y + c z + d = 0 with (a, b, c) equal to
// `normal` and d = -(normal . center).
class ZELMO_API XFPlane : public XFBase {
 public:
  XFPlane() = default;
  // Stores; (a, b, c) = normal and d = -c0 n0 - c1 n1 - c2 n2 in float.
  XFPlane(const float* const center,
          const float* const normal,
          const float* const majorDir,
          const float& length,
          const float& width);
  // Stores center and normal; majorDir by the perpendicular rule (a unit
  // vector orthogonal to the normal, built on its largest component);
  // length = width = 1; a, b, c, d as above.
  XFPlane(const float* const center, const float* const normal);
  // From the equation a, b, c, d (four floats), kept as given: the normal
  // (a, b, c) is not made unit and d is not rescaled. center is the point
  // where the plane crosses the axis of the largest |normal| component
  // (lowest index on a tie), the other two coordinates 0; majorDir by the
  // perpendicular rule; length = width = 1.
  explicit XFPlane(const float* const abcd);

  // GeoPlane.
  GeoFeatureType getFeatureType() const override;

  void getCenterPoint(XFPoint& out) const;

  // The four corners into corners[0..3]: with a = majorDir x (length x 0.5)
  // and b = unit(normal x majorDir) x (width x 0.5), the corners are
  // center + a + b, center - a + b, center - a - b, center + a - b,
  // counter-clockwise about the normal (right-hand rule). The sums are
  // in double, except that center +/- a is rounded to float before b is
  // added; a zero normal x majorDir gives b = 0.
  void getCornerPoint(XFPoint* const corners) const;

  // Negates normal and all of a, b, c, d: the same set of points, facing
  // the other way. majorDir stays.
  void inv();
  // A copy with inv() applied.
  XFPlane invert() const;

  float center[3] = {};
  float normal[3] = {};
  float majorDir[3] = {};
  float length = 0.0f;
  float width = 0.0f;
  float a = 0.0f;
  float b = 0.0f;
  float c = 0.0f;
  float d = 0.0f;
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_PLANE_RECORD_H_
