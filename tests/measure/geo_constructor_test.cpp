#include "zelmo/measure/geo_constructor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"

namespace xgeomeasure {
namespace {

using zelmo::test::ExpectNear3;
using zelmo::test::ExpectSameDirection;
using zelmo::test::Frame;
using zelmo::test::RandomFrame;

// Float inputs at up to 500 units carry about 3e-5 of rounding; the
// constructions amplify it a little.
constexpr double kPosTol = 2e-3;
constexpr double kDirTolRad = 1e-5;
// Directions taken from two float points one unit apart at 500 units.
constexpr double kShortBaseDirTolRad = 2e-4;
constexpr double kMaxOffset = 500.0;
constexpr float kUnwritten = 12345.0f;

void Put(const cv::Vec3d& v, float* out) {
  for (int k = 0; k < 3; ++k) out[k] = static_cast<float>(v[k]);
}

// Six floats: a point and a direction.
void PutLine(const cv::Vec3d& p, const cv::Vec3d& d, float* out) {
  Put(p, out);
  Put(d, out + 3);
}

TEST(XGeoConstructor, ThroughPointsRecoversCirclePlaneAndSphere) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> angle(0, 2 * zelmo::test::kPi);
  for (int trial = 0; trial < 30; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double r = 20 + 100 * (trial % 5), a0 = angle(rng);
    float pts[12];
    for (int i = 0; i < 3; ++i) {
      const double a = a0 + i * 2.0;  // well spread on the circle
      Put(f.At(r * std::cos(a), r * std::sin(a), 0), pts + 3 * i);
    }
    const cv::Vec3d p0(pts[0], pts[1], pts[2]), p1(pts[3], pts[4], pts[5]),
        p2(pts[6], pts[7], pts[8]);
    float circle[10];
    ASSERT_EQ(XGeoConstructor::Circle3D_3Point(pts, circle), 0);
    ExpectNear3(circle, f.origin, kPosTol);
    ExpectSameDirection(cv::Vec3d(circle[3], circle[4], circle[5]),
                        (p1 - p0).cross(p2 - p0), kDirTolRad);
    ExpectSameDirection(cv::Vec3d(circle[6], circle[7], circle[8]), p1 - p0,
                        kDirTolRad);
    EXPECT_NEAR(circle[9], r, kPosTol);

    float plane[6];
    ASSERT_EQ(XGeoConstructor::Plane_3Point(pts, plane), 0);
    ExpectNear3(plane, pts, 0.0);
    ExpectNear3(plane + 3, circle + 3, 1e-6);

    const double polar = 0.3 + 0.5 * (trial % 4);  // fourth point off-plane
    Put(f.At(r * std::sin(polar), 0, r * std::cos(polar)), pts + 9);
    float sphere[4];
    ASSERT_EQ(XGeoConstructor::Sphere_4Point(pts, sphere), 0);
    ExpectNear3(sphere, f.origin, kPosTol);
    EXPECT_NEAR(sphere[3], r, kPosTol);
  }
}

TEST(XGeoConstructor, DegeneratePointsFailWithOutputsUnwritten) {
  float out[10];
  std::fill(out, out + 10, kUnwritten);
  const float collinear[9] = {1, 2, 3, 2, 4, 6, 4, 8, 12};
  EXPECT_EQ(XGeoConstructor::Plane_3Point(collinear, out), -1);
  EXPECT_EQ(XGeoConstructor::Circle3D_3Point(collinear, out), -1);
  // First and second point closer than 1e-6 in every coordinate.
  const float coincident[9] = {1, 2, 3, 1, 2, 3.0000002f, 0, 5, 1};
  EXPECT_EQ(XGeoConstructor::Plane_3Point(coincident, out), -1);
  EXPECT_EQ(XGeoConstructor::Circle3D_3Point(coincident, out), -1);
  const float coplanar[12] = {0, 0, 7, 3, 0, 7, 0, 4, 7, -2, -1, 7};
  EXPECT_EQ(XGeoConstructor::Sphere_4Point(coplanar, out), -1);
  for (float v : out) EXPECT_EQ(v, kUnwritten);
}

TEST(XGeoConstructor, LineIntersectionsClassifyAndFindFeet) {
  // Integer points and directions are exact in float, so the absolute
  // 1e-5 skew test sees the true geometry at any offset.
  std::mt19937 rng(12);
  std::uniform_int_distribution<int> coord(-500, 500), dir(-5, 5);
  float l1[6], l2[6], p[3], q[3];
  for (int trial = 0; trial < 20; ++trial) {
    SCOPED_TRACE(trial);
    const cv::Vec3d meet(coord(rng), coord(rng), coord(rng));
    const cv::Vec3d u(dir(rng), dir(rng), 1 + trial % 3);
    const cv::Vec3d w(1 + trial % 4, dir(rng), dir(rng));
    const cv::Vec3d c = u.cross(w);
    if (c == cv::Vec3d(0, 0, 0)) continue;
    PutLine(meet - 7.0 * u, u, l1);
    PutLine(meet + 3.0 * w, w, l2);
    ASSERT_EQ(XGeoConstructor::Intersection_Line_Line(l1, l2, p), 2);
    ExpectNear3(p, meet, kPosTol);

    // Line 2 moved along u x w is skew; the common perpendicular is c.
    PutLine(meet + 3.0 * w + c, w, l2);
    std::fill(p, p + 3, kUnwritten);
    EXPECT_EQ(XGeoConstructor::Intersection_Line_Line(l1, l2, p), 1);
    EXPECT_EQ(p[0], kUnwritten);
    EXPECT_EQ(XGeoConstructor::Intersection_Line_Line2(l1, l2, p, q), 0);
    ExpectNear3(p, meet, kPosTol);
    ExpectNear3(q, meet + c, kPosTol);
  }
  // Identical lines are parallel; Line2 writes nothing for parallel lines.
  PutLine(cv::Vec3d(1, 2, 3), cv::Vec3d(0, 0.6, 0.8), l1);
  std::fill(p, p + 3, kUnwritten);
  std::fill(q, q + 3, kUnwritten);
  EXPECT_EQ(XGeoConstructor::Intersection_Line_Line(l1, l1, p), 0);
  EXPECT_EQ(XGeoConstructor::Intersection_Line_Line2(l1, l1, p, q), 0);
  EXPECT_EQ(p[0], kUnwritten);
  EXPECT_EQ(q[0], kUnwritten);
  // A cross product of 1e-12 is not parallel: it meets the skew test, and
  // lines 5 apart pass it as intersecting, far away.
  const float a[6] = {0, 0, 0, 1, 0, 0}, b[6] = {0, 0, 5, 1, 1e-12f, 0};
  EXPECT_EQ(XGeoConstructor::Intersection_Line_Line(a, b, p), 2);
  EXPECT_GT(std::fabs(p[0]), 1e12);
}

TEST(XGeoConstructor, PlaneIntersectionsAndProjections) {
  std::mt19937 rng(13);
  for (int trial = 0; trial < 20; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    float plane[6], line[6], out[6], foot[3];
    PutLine(f.origin, f.w, plane);
    const cv::Vec3d hit = f.At(4, -9, 0), d = 3.0 * (f.u + 2.0 * f.w);
    PutLine(hit + 2.0 * d, d, line);  // a direction of any length works
    ASSERT_EQ(XGeoConstructor::Intersection_Line_Plane(line, plane, out), 0);
    ExpectNear3(out, hit, kPosTol);

    Put(f.At(6, 2, 40), foot);
    EXPECT_EQ(XGeoConstructor::Projection_Point_Plane(foot, plane, out), 0);
    ExpectNear3(out, f.At(6, 2, 0), kPosTol);
    PutLine(f.At(0, 0, 0), f.u, line);
    EXPECT_EQ(XGeoConstructor::Projection_Point_Line(foot, line, out), 0);
    ExpectNear3(out, f.At(6, 0, 0), kPosTol);

    // The projected line keeps the foot but points against the line.
    PutLine(f.At(1, 1, 10), f.u * 0.6 + f.w * 0.8, line);
    ASSERT_EQ(XGeoConstructor::Projection_Line_Plane(line, plane, out), 0);
    ExpectNear3(out, f.At(1, 1, 0), kPosTol);
    ExpectSameDirection(cv::Vec3d(out[3], out[4], out[5]), -f.u,
                        kShortBaseDirTolRad);

    std::fill(out, out + 6, kUnwritten);
    PutLine(f.At(1, 1, 10), f.u, line);  // parallel to the plane
    EXPECT_EQ(XGeoConstructor::Intersection_Line_Plane(line, plane, out), -1);
    PutLine(f.At(1, 1, 10), f.w, line);  // along the normal
    EXPECT_EQ(XGeoConstructor::Projection_Line_Plane(line, plane, out), -1);
    for (float v : out) EXPECT_EQ(v, kUnwritten);
  }
}

TEST(XGeoConstructor, PlanePlaneSolvesOnPointCoordinatesWithNegativeZero) {
  // Direction (0,0,1)x(0,1,0) = (-1,0,0): x is fixed at -0, and y, z solve
  // 2y + 3z = 3, 5y + 6z = 5 from the points and D = -3, -5.
  const float p1[6] = {1, 2, 3, 0, 0, 1}, p2[6] = {4, 5, 6, 0, 1, 0};
  float line[6];
  ASSERT_EQ(XGeoConstructor::Intersection_Plane_Plane(p1, p2, line), 0);
  const float want[6] = {0, -1, 5.0f / 3.0f, -1, 0, 0};
  for (int k = 0; k < 6; ++k) EXPECT_FLOAT_EQ(line[k], want[k]) << k;
  EXPECT_TRUE(std::signbit(line[0]));
  // Fixed coordinate z: stored as +0.
  const float q1[6] = {1, 2, 3, 1, 0, 0}, q2[6] = {4, 5, 6, 0, 1, 0};
  ASSERT_EQ(XGeoConstructor::Intersection_Plane_Plane(q1, q2, line), 0);
  EXPECT_EQ(line[2], 0.0f);
  EXPECT_FALSE(std::signbit(line[2]));
  // Planes through the origin: the singular system gives the origin.
  const float o1[6] = {0, 0, 0, 0, 0, 1}, o2[6] = {0, 0, 0, 1, 0, 0};
  ASSERT_EQ(XGeoConstructor::Intersection_Plane_Plane(o1, o2, line), 0);
  ExpectNear3(line, cv::Vec3d(0, 0, 0), 0.0);
  const float par[6] = {9, 9, 9, 0, 0, -1};
  EXPECT_EQ(XGeoConstructor::Intersection_Plane_Plane(p1, par, line), -1);
}

}  // namespace
}  // namespace xgeomeasure
