// XGeoConstructor and both XGeoDimension classes: on float arrays (degrees)
// and on records (radians, distance attributes).
#include "zelmo/measure/geo_constructor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/measure/measure_test_util.h"
#include "zelmo/measure/feature_dimension.h"
#include "zelmo/measure/geo_dimension.h"

namespace xgeomeasure {
namespace {

using namespace zelmo::test;
using G = XGeoConstructor;
using Arrays = XGeoDimension;
using Records = xgeofeature::XGeoDimension;

TEST(XGeoConstructor, ThroughPointsIntersectionsAndProjections) {
  std::mt19937 rng(11);
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double r = 20 + 200 * trial;
    float pts[9], circle[10], plane[6];
    for (int i = 0; i < 3; ++i)  // counter-clockwise about w
      Put(f.At(r * std::cos(2.0 * i), r * std::sin(2.0 * i), 0), pts + 3 * i);
    ASSERT_EQ(G::Circle3D_3Point(pts, circle), 0);
    ExpectSameDirection(circle + 3, f.w, kDirTol);
    ExpectSameDirection(circle + 6, V(pts + 3) - V(pts), kDirTol);
    ASSERT_EQ(G::Plane_3Point(pts, plane), 0);
    ExpectNear3(plane, pts, 0.0);
    ExpectNear3(plane + 3, circle + 3, 1e-6);
    PutLine(f.origin, f.w, plane);
    float line[6], out[6];
    const Vec d = 3.0 * (f.u + 2.0 * f.w);  // of any length
    PutLine(f.At(4, -9, 0) + 2.0 * d, d, line);
    ASSERT_EQ(G::Intersection_Line_Plane(line, plane, out), 0);
    ExpectNear3(out, f.At(4, -9, 0), kPosTol);
    // The projected line keeps the foot but points against the line.
    PutLine(f.At(1, 1, 10), f.u * 0.6 + f.w * 0.8, line);
    ASSERT_EQ(G::Projection_Line_Plane(line, plane, out), 0);
    ExpectNear3(out, f.At(1, 1, 0), kPosTol);
    ExpectSameDirection(out + 3, -f.u, kChordDirTol);
    std::fill(out, out + 6, kUnwritten);
    PutLine(f.At(1, 1, 10), f.u, line);  // parallel to the plane
    EXPECT_EQ(G::Intersection_Line_Plane(line, plane, out), -1);
    PutLine(f.At(1, 1, 10), f.w, line);  // along the normal
    EXPECT_EQ(G::Projection_Line_Plane(line, plane, out), -1);
    for (float v : out) EXPECT_EQ(v, kUnwritten);
  }
  // Within 1e-6 of the line's point: that point; outside, a real foot.
  const float line[6] = {1, 2, 3, 0, 0, 2}, nearPoint[3] = {1, 2, 3.0000005f};
  float foot[3], offPoint[3] = {1, 2, 3.000002f};
  G::Projection_Point_Line(nearPoint, line, foot);
  EXPECT_EQ(foot[2], 3.0f);
  G::Projection_Point_Line(offPoint, line, foot);
  EXPECT_GT(foot[2], 3.000005f);
  float out[10];
  std::fill(out, out + 10, kUnwritten);
  // Collinear points, or the first two within 1e-6 in every coordinate.
  const float collinear[9] = {1, 2, 3, 2, 4, 6, 4, 8, 12};
  const float coincident[9] = {1, 2, 3, 1, 2, 3.0000002f, 0, 5, 1};
  for (const float* pts : {collinear, coincident})
    EXPECT_EQ(G::Plane_3Point(pts, out) + G::Circle3D_3Point(pts, out), -2);
  const float coplanar[12] = {0, 0, 7, 3, 0, 7, 0, 4, 7, -2, -1, 7};
  EXPECT_EQ(G::Sphere_4Point(coplanar, out), -1);
  for (float v : out) EXPECT_EQ(v, kUnwritten);
}

TEST(XGeoConstructor, LineIntersectionsClassifyAndFindFeet) {
  // Integers are exact in float: the absolute 1e-5 skew test holds far out.
  std::mt19937 rng(12);
  std::uniform_int_distribution<int> coord(-500, 500), dir(-5, 5);
  float l1[6], l2[6], p[3], q[3];
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(trial);
    const Vec meet(coord(rng), coord(rng), coord(rng));
    const Vec u(dir(rng), dir(rng), 1 + trial), w(1 + trial, dir(rng), 0);
    const Vec c = u.cross(w);
    PutLine(meet - 7.0 * u, u, l1);
    PutLine(meet + 3.0 * w, w, l2);
    ASSERT_EQ(G::Intersection_Line_Line(l1, l2, p), 2);
    ExpectNear3(p, meet, kPosTol);
    // Line 2 moved along u x w is skew; the common perpendicular is c.
    PutLine(meet + 3.0 * w + c, w, l2);
    p[0] = kUnwritten;
    EXPECT_EQ(G::Intersection_Line_Line(l1, l2, p), 1);
    EXPECT_EQ(p[0], kUnwritten);
    EXPECT_EQ(G::Intersection_Line_Line2(l1, l2, p, q), 0);
    ExpectNear3(p, meet, kPosTol);
    ExpectNear3(q, meet + c, kPosTol);
  }
  // A cross product of 1e-12 is not parallel: "meeting" far away.
  const float a[6] = {0, 0, 0, 1, 0, 0}, b[6] = {0, 0, 5, 1, 1e-12f, 0};
  EXPECT_EQ(G::Intersection_Line_Line(a, b, p), 2);
  EXPECT_GT(std::fabs(p[0]), 1e12);
}

TEST(XGeoConstructor, PlanePlaneFixesOneCoordinateAtSignedZero) {
  // Largest direction component (first on a tie) fixes its coordinate at -0.
  const float h = float(std::sqrt(0.5));
  const struct {
    float a[6], b[6], want[6];
  } cases[] = {
      {{1, 2, 3, 0, 0, 1}, {4, 5, 6, 0, 1, 0}, {-0.f, -1, 5.f / 3, -1, 0, 0}},
      {{1, 2, 3, 1, 0, 0}, {4, 5, 6, 0, 1, 0}, {5.f / 3, -1.f / 3, 0, 0, 0, 1}},
      {{0, 0, 0, 0, 0, 1}, {0, 0, 0, 1, 0, 0}, {0, -0.f, 0, 0, 1, 0}},
      {{0, 7, 2, 0, 0, 1},
       {0, 3, 5, 1, -1, 0},
       {-0.f, 16.f / 29, -27.f / 29, h, h, 0}}};
  for (const auto& c : cases) {
    float line[6];
    ASSERT_EQ(G::Intersection_Plane_Plane(c.a, c.b, line), 0);
    for (int k = 0; k < 6; ++k) EXPECT_FLOAT_EQ(line[k], c.want[k]) << k;
    for (int k = 0; k < 3; ++k)
      EXPECT_EQ(std::signbit(line[k]), std::signbit(c.want[k])) << k;
  }
  const float par[6] = {9, 9, 9, 0, 0, -1};
  float line[6];
  EXPECT_EQ(G::Intersection_Plane_Plane(cases[0].a, par, line), -1);
}

TEST(XGeoDimensionArrays, DistancesAndDirectedAngles) {
  const float point[3] = {5, 3, 4};
  // The direction is taken as given: doubled, the distance doubles.
  const float doubled[6] = {0, 0, 0, 2, 0, 0}, z[6] = {0, 0, 0, 0, 0, 1};
  EXPECT_DOUBLE_EQ(Arrays::calcDistance_Point2Line(point, doubled), 10.0);
  // Within 0.001 of the line's point in every coordinate counts as on it.
  const float near[3] = {0.0009f, 0.0009f, -0.0009f}, off[3] = {0.0011f, 0, 0};
  EXPECT_EQ(Arrays::calcDistance_Point2Line(near, z), 0.0);
  EXPECT_NEAR(Arrays::calcDistance_Point2Line(off, z), 0.0011, 1e-9);
  EXPECT_DOUBLE_EQ(Arrays::calcDistance_Point2Plane(point, z), 4.0);

  const float x[6] = {0, 0, 0, 1, 0, 0};
  const float sixty[6] = {9, 9, 9, 0.5f, float(std::sqrt(3.0) / 2), 0};
  EXPECT_NEAR(Arrays::calcAngle_Line_Line(x, sixty), 60.0, 1e-5);
  // 0.6f and 0.8f have a squared sum just above 1: clamped, not NaN.
  const float tilted[6] = {0, 0, 0, 0.6f, 0.8f, 0};
  const float against[6] = {0, 0, 0, -0.6f, -0.8f, 0};
  EXPECT_EQ(Arrays::calcAngle_Line_Line(tilted, tilted), 0.0);
  EXPECT_EQ(Arrays::calcAngle_Line_Line(tilted, against), 180.0);
  // A line and a plane give the angle to the normal, not to the plane.
  EXPECT_EQ(Arrays::calcAngle_Line_Plane(z, z), 0.0);
}

TEST(XGeoDimensionRecords, DistancesFillAttributesFromTheFoot) {
  XDistanceAttributes out;
  EXPECT_EQ(Records::Distance(XFPoint(1, 2, 3), XFPoint(4, -2, 3), out), 0);
  // The distance is a float root of a float sum.
  const XFPoint p(400.1f, -0.7f, 3.3f), q(-0.2f, 300.3f, 1.9f);
  Records::Distance(p, q, out);
  const float dx = q.x - p.x, dy = q.y - p.y, dz = q.z - p.z;
  EXPECT_EQ(out.distance, std::sqrt(dx * dx + dy * dy + dz * dz));
  // 6 along (2, 1, -2) / 3 from (3, 3, 2); 3 above (4, 2, -2).
  const Vec axis = Vec(1, 2, 2) / 3.0;
  XFPoint foot;
  Records::Distance(XFPoint(7, 5, -2), Line({2, 1, 0}, axis, 5), foot, out);
  ExpectNear3(V(foot), Vec(3, 3, 2), 1e-5);
  EXPECT_NEAR(out.distance, 6.0, 1e-5);
  EXPECT_NEAR(out.dx, 4.0, 1e-5);
  Records::Distance(XFPoint(5, 4, 0), Plane({2, 1, 0}, axis), foot, out);
  ExpectNear3(V(foot), Vec(4, 2, -2), 1e-5);
  EXPECT_NEAR(out.distance, 3.0, 1e-5);
}

TEST(XGeoDimensionRecords, AnglesInRadiansWithLinePlaneFolded) {
  const Vec o(3, 4, 5), z(0, 0, 1), s(std::sqrt(3.0), 0, 1);
  const xgeofeature::XFLine3D2 along = Line(o, {1, 0, 0}, 2);
  const xgeofeature::XFPlane ground = Plane(o, z);
  EXPECT_EQ(Records::Angle(along, along.invert()), kPi);
  EXPECT_NEAR(Records::Angle(along, Line(o, s, 2)), kPi / 6, 1e-6);
  // In the plane: 0; thirty degrees either way, either order: pi / 6.
  EXPECT_EQ(Records::Angle(along.invert(), ground), 0.0);
  for (const Vec& dir : {s, Vec(s[0], 0, -1), Vec(-s[0], 0, 1)}) {
    EXPECT_NEAR(Records::Angle(Line(o, dir, 2), ground), kPi / 6, 1e-6);
    EXPECT_NEAR(Records::Angle(ground, Line(o, dir, 2)), kPi / 6, 1e-6);
  }
  // Normal, or within 1e-6 of it by the cross product: exactly pi / 2.
  EXPECT_EQ(Records::Angle(Line(o, {0.9e-6, 0, 1}, 2), ground), kPi / 2);
}

}  // namespace
}  // namespace xgeomeasure
