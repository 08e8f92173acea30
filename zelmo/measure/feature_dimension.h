// xgeofeature::XGeoDimension: distances and angles between feature records.
#ifndef ZELMO_MEASURE_FEATURE_DIMENSION_H_
#define ZELMO_MEASURE_FEATURE_DIMENSION_H_

#include "zelmo/export.h"
#include "zelmo/feature/attributes.h"
#include "zelmo/feature/line_records.h"
#include "zelmo/feature/plane_record.h"
#include "zelmo/feature/point_records.h"

namespace xgeofeature {

// A name space of static measurements on records; the class holds no state.
// Nothing fails: Distance always returns 0.
class ZELMO_API XGeoDimension {
 public:
  // Distance() of two points
  // Fills `out`: the distance from float differences, a float sum of their
  // squares and a float root; then |dx|, |dy|, |dz| (q minus p), each
  // narrowed to float.
  static int Distance(const XFPoint& p,
                      const XFPoint& q,
                      XDistanceAttributes& out);

  // Distance() of a point and a line
  // `foot` is the point's foot on the line (XGeoFConstructor's
  // getProjectionPoint); `out` as for two points, from the point to it.
  static int Distance(const XFPoint& point,
                      const XFLine3D2& line,
                      XFPoint& foot,
                      XDistanceAttributes& out);

  // Distance() of a point and a plane
  // `foot` = point - normal x s, s = a x + b y + c z + d from the plane's
  // equation fields, all in float; `out` as for two points.
  static int Distance(const XFPoint& point,
                      const XFPlane& plane,
                      XFPoint& foot,
                      XDistanceAttributes& out);

  // Angle() of two lines or two planes
  // The angle in radians, 0 to pi, between the directions or normals as
  // stored: opposite senses give pi.
  static double Angle(const XFLine3D2& a, const XFLine3D2& b);
  static double Angle(const XFPlane& a, const XFPlane& b);

  // Angle() of a line and a plane, in either order
  // The angle in radians, 0 to pi/2, between the line and its projection on
  // the plane; pi/2 when the line stands perpendicular (its direction
  // crossed with the normal is small) and no projection exists.
  static double Angle(const XFLine3D2& line, const XFPlane& plane);
  static double Angle(const XFPlane& plane, const XFLine3D2& line);
};

}  // namespace xgeofeature

#endif  // ZELMO_MEASURE_FEATURE_DIMENSION_H_
