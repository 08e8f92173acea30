// XGeoConstructor: ideal features constructed from bare float arrays.
//
// Array layouts (floats, in order):
//   line   point x, y, z; direction dx, dy, dz
//   plane  point x, y, z; normal nx, ny, nz
//   point  x, y, z;  three points: 9 floats;  four points: 12 floats
//   circle centre x, y, z; unit normal; unit reference direction; radius
//   sphere centre x, y, z; radius
// Inside a routine differences and products are formed in double unless a
// routine says otherwise; results are rounded to float when stored. On a
// failure return the outputs are left unwritten.
#ifndef ZELMO_MEASURE_GEO_CONSTRUCTOR_H_
#define ZELMO_MEASURE_GEO_CONSTRUCTOR_H_

#include "zelmo/export.h"

namespace xgeomeasure {

// A name space of static constructions; the class holds no state.
class ZELMO_API XGeoConstructor {
 public:
  // Result codes of the constructions.
  enum Result : int {
    kFailed = -1,
    kOk = 0,
  };
  // Result of Intersection_Line_Line: how the two lines lie.
  enum LineRelation : int {
    kParallel = 0,
    kSkew = 1,
    kIntersecting = 2,
  };

  // Circle3D_3Point()
  // The circle through three points: centre, the unit normal of
  // (p1 - p0) x (p2 - p0), the unit reference direction along p1 - p0, and
  // the radius. kFailed when p1 - p0 or p2 - p0 is small (every component
  // strictly below 1e-6 in magnitude) or the points are collinear by the
  // same test on the cross product.
  static int Circle3D_3Point(const float* const points3, float* const circle);

  // Plane_3Point()
  // The plane with p0 as its point and the unit normal of
  // (p1 - p0) x (p2 - p0), the differences rounded to float. kFailed for a
  // small difference or cross product, as in Circle3D_3Point.
  static int Plane_3Point(const float* const points3, float* const plane);

  // Sphere_4Point()
  // The sphere through four points. kFailed when the determinant of the
  // rows p0 - p1, p1 - p2, p2 - p3 is strictly below 1e-6 in magnitude
  // (coplanar points). The radius is measured from the centre as stored.
  static int Sphere_4Point(const float* const points4, float* const sphere);

  // Intersection_Line_Line()
  // kParallel when the cross product of the directions is exactly zero (no
  // tolerance); kSkew when the lines miss each other by |(q - p) . c| above
  // 1e-5 (c the cross product; its size scales the test); otherwise
  // kIntersecting with the meeting point written. `point` is written only
  // for kIntersecting.
  static int Intersection_Line_Line(const float* const line1,
                                    const float* const line2,
                                    float* const point);

  // Intersection_Line_Line2()
  // The feet of the common perpendicular: `point1` on line 1, `point2` on
  // line 2. Always 0; for parallel lines neither point is written.
  static int Intersection_Line_Line2(const float* const line1,
                                     const float* const line2,
                                     float* const point1,
                                     float* const point2);

  // Intersection_Line_Plane()
  // Where the line meets the plane; the direction may have any length.
  // kFailed, `point` unwritten, when |direction . normal| < 1e-6.
  static int Intersection_Line_Plane(const float* const line,
                                     const float* const plane,
                                     float* const point);

  // Intersection_Plane_Plane()
  // The line direction is the unit cross product of the normals (kFailed
  // when it is small). Its point keeps 0 in the coordinate k of the
  // direction's largest component (lowest index on ties; stored as -0 for
  // k = 0 or 1) and solves the other two from the planes' point
  // coordinates (not their normals) against D = -(point . normal). That
  // point lies on both planes only in special cases; this is long-standing
  // behaviour that hosts rely on and is kept deliberately. When those
  // coordinates make the system singular the two solved values are 0.
  static int Intersection_Plane_Plane(const float* const plane1,
                                      const float* const plane2,
                                      float* const line);

  // Projection_Point_Line()
  // The foot of the point on the line; the direction must be of unit
  // length. A point within 1e-6 of the line's point in every coordinate
  // gives the line's point. Returns 0.
  static int Projection_Point_Line(const float* const point,
                                   const float* const line,
                                   float* const out);

  // Projection_Point_Plane()
  // The foot of the point on the plane, along the plane's normal. Returns
  // 0; a zero normal leaves `out` unwritten.
  static int Projection_Point_Plane(const float* const point,
                                    const float* const plane,
                                    float* const out);

  // Projection_Line_Plane()
  // The line's image on the plane: its point is the foot of the line's
  // point, its direction is unit and points AGAINST the projected line
  // (foot of p minus foot of p + d); hosts rely on that orientation.
  // kFailed when direction x normal is small (line along the normal).
  static int Projection_Line_Plane(const float* const line,
                                   const float* const plane,
                                   float* const out);

 private:
  // The 4 x 4 maps of a half-turn about a line (point, direction), a mirror
  // at a plane (point, normal) and an inversion through a point, as 16
  // row-major doubles.
  static void getMatRT_LineSymmetry(const float* const line, double* const rt);
  static void getMatRT_PlaneSymmetry(const float* const plane,
                                     double* const rt);
  static void getMatRT_PointSymmetry(const float* const point,
                                     double* const rt);
};

}  // namespace xgeomeasure

#endif  // ZELMO_MEASURE_GEO_CONSTRUCTOR_H_
