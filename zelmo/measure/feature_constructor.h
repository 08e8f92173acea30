// XGeoFConstructor: new features derived from feature records: features
// through points, intersections, projections, mirror images, offsets and
// averages.
//
// Conventions of every operation:
//  - A line record's `center` is its point and `dir` its (unit) direction.
//  - A vector is "small" when all three components lie strictly inside
//    (-1e-6, 1e-6); two points "coincide" when all three coordinates differ
//    by strictly less than 1e-6.
//  - Computation is in double on the stored floats, and results are rounded
//    to float when stored, unless an operation says "in float".
//  - Failure is a negative result, and then every output is left unwritten.
#ifndef ZELMO_MEASURE_FEATURE_CONSTRUCTOR_H_
#define ZELMO_MEASURE_FEATURE_CONSTRUCTOR_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/circle_record.h"
#include "zelmo/feature/line_records.h"
#include "zelmo/feature/plane_record.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/solid_records.h"

namespace xgeofeature {

// A name space of static constructions on records; the class holds no state.
class ZELMO_API XGeoFConstructor {
 public:
  // Plain results.
  enum Status : int {
    kOk = 0,
    kFailed = -1,
  };
  // getIntersectionPoint of two lines.
  enum LinePair : int {
    kLinesIntersect = 0,
    kLinesSkew = 1,
    kLinesParallel = -1,
  };
  // getAngleBisector.
  enum Bisector : int {
    kBisectorOfIntersecting = 0,
    kBisectorOfParallel = 1,
    kBisectorOfSkew = -1,
  };
  // getVerticalLine.
  enum CommonPerpendicular : int {
    kPerpendicularFound = 0,
    kPerpendicularOfParallel = -1,
    kPerpendicularOfMeeting = -2,
  };
  // getIntersectionCircle of two cones: kOk, kFailed, or this.
  enum ConePair : int {
    kConesEqualAngles = -2,
  };
  // getLineOffset: the number of lines (1 or 2), or one of these.
  enum CommonTangents : int {
    kNoTangent = -1,
    kNegativeRadius = -2,
  };
  // getPlaneOffset of three points.
  enum TangentPlanes : int {
    kTangentPlanesFound = 0,
    kNoTangentPlane = -1,
    kNegativeOffset = -2,
    kCoincidentPoints = -3,
    kDegeneratePoints = -4,
  };

  // ---- features through points -------------------------------------------

  // getPlane()
  // The plane through three points, bounded by the smallest rectangle about
  // them in the plane: `majorDir` along its longer side, `length` and
  // `width` its sides, `center` its middle. The normal is the unit
  // (p1 - p0) x (p2 - p0), turned to face points[0].normal when their dot
  // product is negative (the other normals are not read). kFailed when
  // p1 - p0, p2 - p0 or their cross product is small.
  static int getPlane(const XFPointN points[3], XFPlane& out);

  // getCircle()
  // The circle through three points: XGeoConstructor::Circle3D_3Point, with
  // the normal turned to face points[0].normal, and `majorDir` the unit
  // vector from point 0 to point 1. kFailed for degenerate points, as
  // getPlane().
  static int getCircle(const XFPointN points[3], XFCircle3D& out);

  // getSphere()
  // The sphere through four points (XGeoConstructor::Sphere_4Point).
  // kFailed for four coplanar points.
  static int getSphere(const XFPoint points[4], XFSphere& out);

  // ---- intersections -----------------------------------------------------

  // getIntersectionPoint() of two lines
  // kLinesIntersect with the meeting point; kLinesSkew with the middle of
  // the feet of the common perpendicular, when |(b.center - a.center) .
  // (a.dir x b.dir)| is above 1e-5; kLinesParallel, `out` unwritten, when
  // the cross product of the directions is exactly zero.
  static int getIntersectionPoint(const XFLine3D2& a,
                                  const XFLine3D2& b,
                                  XFPoint& out);

  // getIntersectionPoint() of a line and a sphere
  // Returns the number of points written: 0 when the line misses, 1 (the
  // foot F of the centre, in out[0]) when it touches exactly, else 2:
  // out[0] = F - dir w and out[1] = F + dir w, w the half chord.
  static int getIntersectionPoint(const XFLine3D2& line,
                                  const XFSphere& sphere,
                                  XFPoint out[2]);

  // getIntersectionPoint() of three planes
  // The one point shared by the planes; kFailed when the determinant of the
  // normals lies strictly inside (-1e-6, 1e-6).
  static int getIntersectionPoint(const XFPlane& a,
                                  const XFPlane& b,
                                  const XFPlane& c,
                                  XFPoint& out);

  // getIntersectionPoint() of a plane and a line
  // Where the line meets the plane; kFailed when |dir . normal| < 1e-6.
  static int getIntersectionPoint(const XFPlane& plane,
                                  const XFLine3D2& line,
                                  XFPoint& out);

  // getIntersectionLine()
  // The line shared by two planes, with the unit direction a.normal x
  // b.normal, running from the lowest to the highest of the eight corners
  // of the two planes' rectangles along it. kFailed when the cross product
  // is small.
  static int getIntersectionLine(const XFPlane& a,
                                 const XFPlane& b,
                                 XFLine3D2& out);

  // getIntersectionCircle() of two coaxial cones
  // Cones pointing the same way meet where the wider one (the second on
  // equal angles) meets the narrower, whose apex must lie ahead of the
  // wider one's along the axis; facing cones need the first apex ahead of
  // the second along the first axis. The circle's normal is the axis of the
  // wider (same way) or of the first cone (facing). kFailed for coincident
  // apexes, axes more than 1e-4 from parallel in |cos| or apexes in the
  // wrong order; kConesEqualAngles when the tangents of the half angles of
  // cones pointing the same way differ by less than 1e-4.
  static int getIntersectionCircle(const XFCone& first,
                                   const XFCone& second,
                                   XFCircle3D& out);

  // getIntersectionCircle() of a plane and a cone
  // Centre where the cone's axis meets the plane, normal the plane's,
  // radius the distance of that point from the apex times tanf(halfAngle);
  // majorDir by the perpendicular rule. kFailed when the axis runs parallel
  // to the plane.
  static int getIntersectionCircle(const XFPlane& plane,
                                   const XFCone& cone,
                                   XFCircle3D& out);

  // getIntersectionCircle() of a plane and a cylinder
  // Centre where the axis meets the plane, normal and majorDir the plane's,
  // radius the cylinder's, also for an axis oblique to the plane (the true
  // section is then an ellipse). kFailed when the axis runs parallel.
  static int getIntersectionCircle(const XFPlane& plane,
                                   const XFCylinder& cylinder,
                                   XFCircle3D& out);

  // getIntersectionCircle() of a plane and a sphere
  // The section circle, normal the plane's, majorDir by the perpendicular
  // rule. A plane within 1e-6 of the centre gives the sphere's centre and
  // radius. kFailed when the centre's distance, as a float, is at least the
  // radius: a plane that only touches the sphere gives no circle.
  static int getIntersectionCircle(const XFPlane& plane,
                                   const XFSphere& sphere,
                                   XFCircle3D& out);

  // ---- lines from lines --------------------------------------------------

  // getAngleBisector()
  // kBisectorOfIntersecting: centre the meeting point, dir the unit half sum
  // of the two stored directions (a reversed dir gives the other bisector).
  // kBisectorOfParallel (small dir cross product): centre the middle of the
  // centres, dir a's. kBisectorOfSkew, `out` unwritten, when the lines miss
  // each other (as getIntersectionPoint). The length is the larger one.
  static int getAngleBisector(const XFLine3D2& a,
                              const XFLine3D2& b,
                              XFLine3D2& out);

  // getVerticalLine()
  // The common perpendicular of two skew lines, running from its foot on b
  // to its foot on a. kPerpendicularOfParallel when a.dir x b.dir is
  // exactly zero; kPerpendicularOfMeeting when the lines meet (within 1e-5
  // as in getIntersectionPoint), since no perpendicular segment exists.
  static int getVerticalLine(const XFLine3D2& a,
                             const XFLine3D2& b,
                             XFLine3D2& out);

  // getProjectionLine()
  // The image on the plane of the segment center -/+ dir h, h = length / 2
  // (1.0 when length / 2 is below 0.01), keeping the line's sense. kFailed
  // when dir x normal is small or the two images coincide.
  static int getProjectionLine(const XFLine3D2& line,
                               const XFPlane& plane,
                               XFLine3D2& out);

  // getLineSymmetry()
  // The mirror image of the segment in the plane, running from the image of
  // its start to the image of its end. Returns 0.
  static int getLineSymmetry(const XFLine3D2& line,
                             const XFPlane& plane,
                             XFLine3D2& out);

  // getLineOffset()
  // The outer common tangents in `plane` of the circles about the two
  // points' projections with the two radii; the points are meant to lie in
  // the plane. With L the centre of the larger radius (the first on a tie),
  // S the other and e the unit vector from L to S, each line runs from its
  // touch point on L's circle to the one on S's; out[0] lies on the side of
  // plane.normal x e, out[1] on the other. Returns the number of lines: 2,
  // or 1 when the circles touch from inside (the line through the touch
  // point, dir = unit(normal x e), length 1). kNegativeRadius for a
  // negative radius; kNoTangent when the radii differ by more than the
  // distance of the points, or when the points differ only along the
  // normal (no direction in the plane to build on).
  static int getLineOffset(const XFPoint points[2],
                           const float radii[2],
                           const XFPlane& plane,
                           XFLine3D2 out[2]);

  // ---- planes ------------------------------------------------------------

  // getPlaneOffset() of a plane
  // The plane moved by `offset` along its normal; d follows the new centre,
  // all else is copied. Returns 0.
  static int getPlaneOffset(const XFPlane& plane,
                            const float& offset,
                            XFPlane& out);

  // getPlaneOffset() of three points
  // The two planes that touch the spheres of radius offsets[k] about
  // points[k], all three spheres on the same side. Let n be the normal of
  // the plane through the points taken so that its z component is not
  // negative (for a vertical plane: the sense of the points sorted by
  // falling offset). out[0] lies on the side n points to and out[1] on the
  // other; each normal points away from the spheres, so a point's signed
  // distance (p - center) . normal is -offset. A zero offset makes its
  // point lie on both planes. kNegativeOffset, kCoincidentPoints (two
  // points closer than 1e-6), kDegeneratePoints (collinear points), or
  // kNoTangentPlane when a pair of spheres has no two outer tangents or no
  // plane touches all three.
  static int getPlaneOffset(const XFPoint points[3],
                            const float offsets[3],
                            XFPlane out[2]);

  // getPlaneSymmetry()
  // The mirror image of `plane` in `mirror`: centre and normal mirrored,
  // d recomputed, majorDir, length and width copied unmirrored. Returns 0.
  static int getPlaneSymmetry(const XFPlane& plane,
                              const XFPlane& mirror,
                              XFPlane& out);

  // getPlaneAverage()
  // The mean plane: mean centre and the unit sum of the normals (for two
  // parallel planes, the first normal whatever the second's sense), with
  // majorDir by the perpendicular rule and length = width = the largest
  // length or width of all planes. One plane is copied. kFailed for no
  // plane or normals summing to less than 1e-6.
  static int getPlaneAverage(const std::vector<XFPlane>& planes, XFPlane& out);

  // ---- points ------------------------------------------------------------

  // getPointAverage()
  // The mean point, summed and divided in float; one point is copied.
  // kFailed for none.
  static int getPointAverage(const std::vector<XFPoint>& points, XFPoint& out);

  // getPointOffset()
  // point + line.dir x offset in float; the line's position is not read.
  static int getPointOffset(const XFPoint& point,
                            const float& offset,
                            const XFLine3D2& line,
                            XFPoint& out);

  // getPointSymmetry() about a point, a line or a plane
  // The mirror image of p: through q (q itself when p coincides with it),
  // or through p's foot on the line or plane. Return 0.
  static int getPointSymmetry(const XFPoint& p, const XFPoint& q, XFPoint& out);
  static int getPointSymmetry(const XFPoint& p,
                              const XFLine3D2& line,
                              XFPoint& out);
  static int getPointSymmetry(const XFPoint& p,
                              const XFPlane& plane,
                              XFPoint& out);

  // getProjectionPoint() on a line
  // The foot on the line (XGeoConstructor::Projection_Point_Line): `center`
  // itself for a point that coincides with it. Returns 0.
  static int getProjectionPoint(const XFPoint& point,
                                const XFLine3D2& line,
                                XFPoint& out);

  // getProjectionPoint() on a plane
  // point - normal x s, s = a x + b y + c z + d, all in float. Returns 0.
  static int getProjectionPoint(const XFPoint& point,
                                const XFPlane& plane,
                                XFPoint& out);

  // getProjectionPoint() on a sphere
  // The nearest surface point. kFailed when point - center is small.
  static int getProjectionPoint(const XFPoint& point,
                                const XFSphere& sphere,
                                XFPoint& out);

  // getProjectionPoint() on a cylinder
  // The nearest point of the infinite cylinder. kFailed for a point closer
  // than 1e-6 to the axis.
  static int getProjectionPoint(const XFPoint& point,
                                const XFCylinder& cylinder,
                                XFPoint& out);

  // getProjectionPoint() on a cone
  // The foot on the cone's generator in the half plane of the point (the
  // axis runs through the middle of base and top). kFailed when the point's
  // foot on the axis coincides with it.
  static int getProjectionPoint(const XFPoint& point,
                                const XFCone& cone,
                                XFPoint& out);
};

}  // namespace xgeofeature

#endif  // ZELMO_MEASURE_FEATURE_CONSTRUCTOR_H_
