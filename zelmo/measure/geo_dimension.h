// xgeomeasure::XGeoDimension: distances and angles between features given
// as float arrays (a point is 3 floats; a line or plane 6: position, then
// direction or normal).
#ifndef ZELMO_MEASURE_GEO_DIMENSION_H_
#define ZELMO_MEASURE_GEO_DIMENSION_H_

#include "zelmo/export.h"

namespace xgeomeasure {

// A name space of static measurements; the class holds no state. Nothing
// fails: every input gives a value.
class ZELMO_API XGeoDimension {
 public:
  // calcDistance_Point2Point()
  // The distance of two points, in double.
  static double calcDistance_Point2Point(const float* const p,
                                         const float* const q);

  // calcDistance_Point2Line()
  // |(p - o) x d| for the line (o, d), in double. The direction is taken as
  // given, so this is a distance only for a unit d; callers scale by it on
  // purpose. A point within 0.001 of o in every coordinate gives 0, even
  // off the line.
  static double calcDistance_Point2Line(const float* const point,
                                        const float* const line);

  // calcDistance_Point2Plane()
  // |n . p - n . o| for the plane (o, n), in double; a distance for a unit n.
  static double calcDistance_Point2Plane(const float* const point,
                                         const float* const plane);

  // calcAngle_Line_Line(), calcAngle_Line_Plane(), calcAngle_Plane_Plane()
  // One routine for all three: the angle in degrees, 0 to 180, between
  // entries 3 to 5 of the two arrays, directed (opposite directions give
  // 180). It does not tell lines from planes: a line and a plane give the
  // angle between the line's direction and the normal, so a line lying in
  // the plane gives 90 and one along the normal 0; hosts rely on this.
  static double calcAngle_Line_Line(const float* const a, const float* const b);
  static double calcAngle_Line_Plane(const float* const line,
                                     const float* const plane);
  static double calcAngle_Plane_Plane(const float* const a,
                                      const float* const b);

 private:
  static double calcAngle(const float* const a, const float* const b);
};

}  // namespace xgeomeasure

#endif  // ZELMO_MEASURE_GEO_DIMENSION_H_
