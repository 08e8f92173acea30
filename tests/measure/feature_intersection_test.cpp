// XGeoFConstructor: intersections, bisectors and common perpendiculars.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/measure/measure_test_util.h"
#include "zelmo/measure/feature_constructor.h"

namespace xgeofeature {
namespace {

using namespace zelmo::test;
using C = XGeoFConstructor;

// Lines that meet must do so within the absolute skew bound 1e-5, so their
// float centres stay near the origin.
constexpr double kMeetingLinesOffset = 20.0;

TEST(XGeoFConstructorIntersections, TwoLinesMeetMissOrRunParallel) {
  std::mt19937 rng(71);
  std::uniform_real_distribution<double> turn(0.2, 2.9);
  for (int trial = 0; trial < 20; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMeetingLinesOffset);
    const double theta = turn(rng);
    const cv::Vec3d bd = std::cos(theta) * f.u + std::sin(theta) * f.v;
    const XFLine3D2 a = Line(f.At(5, 0, 0), f.u, 4);
    const XFLine3D2 b = Line(f.origin - 7 * bd, bd, 9);
    XFPoint meet;
    ASSERT_EQ(C::getIntersectionPoint(a, b, meet), C::kLinesIntersect);
    ExpectNear3(V(meet), f.origin, kPosTol);
    XFLine3D2 bisector, other;
    ASSERT_EQ(C::getAngleBisector(a, b, bisector), C::kBisectorOfIntersecting);
    ExpectNear3(bisector.center, f.origin, kPosTol);
    EXPECT_NEAR(std::acos(V(bisector.dir).dot(f.u)), theta / 2, kDirTol);
    EXPECT_NEAR(std::acos(V(bisector.dir).dot(bd)), theta / 2, kDirTol);
    EXPECT_EQ(bisector.length, 9.0f);
    C::getAngleBisector(a, b.invert(), other);  // the other bisector
    EXPECT_NEAR(V(other.dir).dot(V(bisector.dir)), 0.0, kDirTol);

    // Lifted by 3 along w, b misses a: the common perpendicular runs from
    // b down to a, and the skew "meeting point" is its middle.
    const XFLine3D2 lifted = Line(f.At(0, 0, 3) - 7 * bd, bd, 9);
    ASSERT_EQ(C::getIntersectionPoint(a, lifted, meet), C::kLinesSkew);
    ExpectNear3(V(meet), f.At(0, 0, 1.5), kPosTol);
    XFLine3D2 perpendicular;
    ASSERT_EQ(C::getVerticalLine(a, lifted, perpendicular), 0);
    ExpectNear3(perpendicular.center, f.At(0, 0, 1.5), kPosTol);
    ExpectSameDirection(V(perpendicular.dir), -f.w, kDirTol);
    EXPECT_NEAR(perpendicular.length, 3.0, kPosTol);
    EXPECT_EQ(C::getVerticalLine(a, b, perpendicular),
              C::kPerpendicularOfMeeting);
    EXPECT_EQ(C::getAngleBisector(a, lifted, bisector), C::kBisectorOfSkew);
  }
  // Parallel lines: no point, no perpendicular; the bisector runs between.
  const XFLine3D2 a = Line({0, 0, 0}, {1, 0, 0}, 2);
  const XFLine3D2 b = Line({4, 2, 6}, {-1, 0, 0}, 5);
  XFPoint meet(kUnwritten, 0, 0);
  XFLine3D2 out;
  out.length = kUnwritten;
  EXPECT_EQ(C::getIntersectionPoint(a, b, meet), C::kLinesParallel);
  EXPECT_EQ(C::getVerticalLine(a, b, out), C::kPerpendicularOfParallel);
  EXPECT_EQ(meet.x + out.length, 2 * kUnwritten);
  ASSERT_EQ(C::getAngleBisector(a, b, out), C::kBisectorOfParallel);
  ExpectLine(out, {2, 1, 3}, V(a.dir), 5);
}

TEST(XGeoFConstructorIntersections, PlanesAndLinesMeetWhereExpected) {
  std::mt19937 rng(72);
  for (int trial = 0; trial < 20; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const XFPlane floor = Plane(f.origin, f.w, f.u, 10, 4);      // v: -2 .. 2
    const XFPlane wall = Plane(f.At(1, 0, 0), f.u, f.v, 6, 20);  // v: -3 .. 3
    XFLine3D2 line;
    ASSERT_EQ(C::getIntersectionLine(floor, wall, line), 0);
    ExpectNear3(line.center, f.At(1, 0, 0), kPosTol);
    ExpectSameDirection(V(line.dir), f.v, kDirTol);
    EXPECT_NEAR(line.length, 6.0, kPosTol);  // all eight corners

    XFPoint point;
    const cv::Vec3d p = f.At(1, 2, 3);
    ASSERT_EQ(C::getIntersectionPoint(Plane(p, f.u), Plane(p, f.v),
                                      Plane(p, f.w), point),
              0);
    ExpectNear3(V(point), p, kPosTol);
    ASSERT_EQ(C::getIntersectionPoint(floor, Line(p, f.u + f.w, 1), point), 0);
    ExpectNear3(V(point), f.At(-2, 2, 0), kPosTol);

    XFPoint hits[2];
    ASSERT_EQ(C::getIntersectionPoint(Line(f.At(20, 6, 0), f.u, 1),
                                      XFSphere(floor.center, 10), hits),
              2);
    ExpectNear3(V(hits[0]), f.At(-8, 6, 0), kPosTol);
    ExpectNear3(V(hits[1]), f.At(8, 6, 0), kPosTol);
  }
  const XFPlane ground = Plane({0, 0, 0}, {0, 0, 1});
  XFLine3D2 line;
  line.length = kUnwritten;
  XFPoint hits[2] = {XFPoint(kUnwritten, 0, 0), XFPoint()};
  EXPECT_EQ(C::getIntersectionLine(ground, Plane({0, 0, 5}, {0, 0, -1}), line),
            C::kFailed);
  EXPECT_EQ(C::getIntersectionPoint(ground, Plane({1, 0, 0}, {1, 0, 0}),
                                    Plane({0, 0, 0}, {1, 0, 1}), hits[0]),
            C::kFailed);
  EXPECT_EQ(
      C::getIntersectionPoint(ground, Line({0, 0, 1}, {1, 1, 0}, 1), hits[0]),
      C::kFailed);
  // A line 2 from the centre misses a sphere of 1.9 and touches one of 2.
  const XFLine3D2 byTwo = Line({5, 2, 0}, {1, 0, 0}, 1);
  EXPECT_EQ(C::getIntersectionPoint(byTwo, XFSphere(0, 0, 0, 1.9f), hits), 0);
  EXPECT_EQ(line.length + hits[0].x, 2 * kUnwritten);
  ASSERT_EQ(C::getIntersectionPoint(byTwo, XFSphere(0, 0, 0, 2), hits), 1);
  ExpectNear3(V(hits[0]), cv::Vec3d(0, 2, 0), 0.0);
}

TEST(XGeoFConstructorIntersections, PlaneCutsSolidsInCircles) {
  std::mt19937 rng(74);
  for (int trial = 0; trial < 10; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const XFPlane plane = Plane(f.At(0, 0, 5), f.w);
    const XFCylinder oblique = Cylinder(f.At(-3, 0, -3), f.u + f.w, 4, 20);
    XFCircle3D circle;
    ASSERT_EQ(C::getIntersectionCircle(plane, oblique, circle), 0);
    ExpectNear3(circle.center, f.At(5, 0, 5), kPosTol);  // oblique
    ExpectNear3(circle.majorDir, plane.majorDir, 0.0);
    EXPECT_EQ(circle.radius, 4.0f);
    // Half angle 45 degrees, apex at 30: radius 25 at height 5.
    ASSERT_EQ(C::getIntersectionCircle(plane, Cone(f.origin, f.w, 30, 10, 20),
                                       circle),
              0);
    ExpectNear3(circle.center, f.At(0, 0, 5), kPosTol);
    EXPECT_NEAR(circle.radius, 25, kPosTol);
    ASSERT_EQ(
        C::getIntersectionCircle(plane, Sphere(f.At(0, 0, -1), 10), circle), 0);
    ExpectNear3(circle.center, f.At(0, 0, 5), kPosTol);
    EXPECT_NEAR(circle.radius, 8, kPosTol);
    ExpectNear3(circle.normal, plane.normal, 0.0);
  }
  // Through the centre: the sphere's own radius; touching: no circle.
  const XFPlane ground = Plane({0, 0, 3}, {0, 0, 1});
  XFCircle3D circle;
  ASSERT_EQ(C::getIntersectionCircle(ground, XFSphere(1, 2, 3, 4), circle), 0);
  ExpectNear3(circle.center, cv::Vec3d(1, 2, 3), 0.0);
  EXPECT_EQ(circle.radius, 4.0f);
  circle.radius = kUnwritten;
  EXPECT_EQ(C::getIntersectionCircle(ground, XFSphere(0, 0, 0, 3), circle), -1);
  const cv::Vec3d o(0, 0, 0), x(1, 0, 0);
  EXPECT_EQ(C::getIntersectionCircle(ground, Cylinder(o, x, 1, 5), circle), -1);
  EXPECT_EQ(C::getIntersectionCircle(ground, Cone(o, x, 2, 1, 5), circle), -1);
  EXPECT_EQ(circle.radius, kUnwritten);
}

TEST(XGeoFConstructorIntersections, CoaxialConesMeetOnACircleOfBoth) {
  std::mt19937 rng(75);
  for (int trial = 0; trial < 10; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    // wide: tan 1, apex at 30; narrow: tan 0.5, apex at 50; facing: tan 1,
    // apex at -10 opening upwards. All meet at height 10 with radius 20.
    const XFCone wide = Cone(f.origin, f.w, 30, 10, 20);
    const XFCone narrow = Cone(f.At(0, 0, 10), f.w, 20, 10, 20);
    const XFCone facing = Cone(f.At(0, 0, 10), -f.w, 20, 10, 10);
    const XFCone pairs[3][2] = {{wide, narrow}, {narrow, wide}, {wide, facing}};
    for (const auto& pair : pairs) {
      XFCircle3D circle;
      ASSERT_EQ(C::getIntersectionCircle(pair[0], pair[1], circle), 0);
      ExpectNear3(circle.center, f.At(0, 0, 10), kPosTol);
      ExpectSameDirection(V(circle.normal), V(pair[0].axis), kDirTol);
      for (const XFCone& cone : pair)  // on the surface of both
        EXPECT_NEAR(circle.radius,
                    (V(cone.apex) - V(circle.center)).dot(V(cone.axis)) *
                        std::tan(double(cone.halfAngle)),
                    kPosTol);
    }
    XFCircle3D circle;
    circle.radius = kUnwritten;
    EXPECT_EQ(C::getIntersectionCircle(Cone(f.At(0, 0, 5), f.w, 30, 10, 20),
                                       wide, circle),
              C::kConesEqualAngles);
    // The narrow apex behind the wide one, cones opening away from each
    // other, one apex, tilted axes: no circle.
    const XFCone failing[4] = {Cone(f.At(0, 0, -20), f.w, 20, 10, 20),
                               Cone(f.At(0, 0, 60), -f.w, 20, 10, 10), wide,
                               Cone(f.origin, f.w + 0.1 * f.u, 20, 10, 20)};
    for (const XFCone& other : failing)
      EXPECT_EQ(C::getIntersectionCircle(wide, other, circle), C::kFailed);
    EXPECT_EQ(circle.radius, kUnwritten);
  }
}

}  // namespace
}  // namespace xgeofeature
