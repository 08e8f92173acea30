#include "zelmo/measure/geo_constructor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/measure/measure_test_util.h"

namespace xgeomeasure {
namespace {

using namespace zelmo::test;
using G = XGeoConstructor;

TEST(XGeoConstructor, ThroughPointsFrameFollowsTheirOrder) {
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
  }
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
  // Integer points and directions are exact in float, so the absolute
  // 1e-5 skew test sees the true geometry at any offset.
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
  // Identical lines are parallel; Line2 writes nothing for them.
  p[0] = q[0] = kUnwritten;
  EXPECT_EQ(G::Intersection_Line_Line(l1, l1, p), 0);
  EXPECT_EQ(G::Intersection_Line_Line2(l1, l1, p, q), 0);
  EXPECT_EQ(p[0] + q[0], 2 * kUnwritten);
  // A cross product of 1e-12 is not parallel: lines 5 apart pass the skew
  // test as intersecting, far away.
  const float a[6] = {0, 0, 0, 1, 0, 0}, b[6] = {0, 0, 5, 1, 1e-12f, 0};
  EXPECT_EQ(G::Intersection_Line_Line(a, b, p), 2);
  EXPECT_GT(std::fabs(p[0]), 1e12);
}

TEST(XGeoConstructor, PlaneIntersectionsAndProjections) {
  std::mt19937 rng(13);
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    float plane[6], line[6], out[6], point[3];
    PutLine(f.origin, f.w, plane);
    const Vec d = 3.0 * (f.u + 2.0 * f.w);  // of any length
    PutLine(f.At(4, -9, 0) + 2.0 * d, d, line);
    ASSERT_EQ(G::Intersection_Line_Plane(line, plane, out), 0);
    ExpectNear3(out, f.At(4, -9, 0), kPosTol);
    Put(f.At(6, 2, 40), point);
    EXPECT_EQ(G::Projection_Point_Plane(point, plane, out), 0);
    ExpectNear3(out, f.At(6, 2, 0), kPosTol);
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
  // Within 1e-6 of the line's point: that point exactly; just outside, the
  // foot moves along the (here non-unit) direction.
  const float line[6] = {1, 2, 3, 0, 0, 2}, nearPoint[3] = {1, 2, 3.0000005f};
  const float offPoint[3] = {1, 2, 3.000002f};
  float foot[3];
  G::Projection_Point_Line(nearPoint, line, foot);
  EXPECT_EQ(foot[2], 3.0f);
  G::Projection_Point_Line(offPoint, line, foot);
  EXPECT_GT(foot[2], 3.000005f);
}

TEST(XGeoConstructor, PlanePlaneFixesOneCoordinateAtSignedZero) {
  // The largest direction component (lowest index on a tie) fixes its
  // coordinate at -0, +0 for z; the other two solve the system on the
  // planes' point coordinates, singular (all zero) for points at the origin.
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

}  // namespace
}  // namespace xgeomeasure
