// XGeoFConstructor: features through points, projections, mirror images,
// offsets, averages, intersections, bisectors and tangents.
#include "zelmo/measure/feature_constructor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/measure/measure_test_util.h"

namespace xgeofeature {
namespace {

using namespace zelmo::test;
using C = XGeoFConstructor;

TEST(XGeoFConstructor, ThroughPointsProjectionsAndMirrorImages) {
  std::mt19937 rng(61);
  std::uniform_real_distribution<double> coord(-20, 20), radial(5, 40);
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double sense = trial % 2 ? 1.0 : -1.0, s = 1 + trial, r = 5 + 80 * s;
    // Obtuse: the smallest rectangle lies on the long side; first normal only.
    const XFPointN tri[3] = {PointN(f.At(0, 0, 0), sense * f.w),
                             PointN(f.At(10 * s, 0, 0), -f.w),
                             PointN(f.At(2 * s, s, 0), -f.w)};
    XFPlane plane;
    ASSERT_EQ(C::getPlane(tri, plane), 0);
    ExpectSameDirection(plane.normal, sense * f.w, kChordDirTol);
    ExpectNear3(plane.center, f.At(5 * s, 0.5 * s, 0), kPosTol);
    EXPECT_NEAR(plane.length, 10 * s, kPosTol);
    EXPECT_NEAR(plane.width, s, kPosTol);
    const XFPointN on[3] = {PointN(f.At(r, 0, 0), sense * f.w),
                            PointN(f.At(0, r, 0), f.w),
                            PointN(f.At(0, -r, 0), f.w)};
    XFCircle3D circle;
    ASSERT_EQ(C::getCircle(on, circle), 0);
    ExpectNear3(circle.center, f.origin, kPosTol);
    EXPECT_NEAR(circle.radius, r, kPosTol);
    ExpectSameDirection(circle.normal, sense * f.w, kChordDirTol);
    const XFPoint four[4] = {Pt(f.At(r, 0, 0)), Pt(f.At(0, r, 0)),
                             Pt(f.At(0, 0, r)), Pt(f.At(0, -r * 0.6, r * 0.8))};
    XFSphere sphere;
    ASSERT_EQ(C::getSphere(four, sphere), 0);
    ExpectNear3(sphere.center, f.origin, kPosTol);
    EXPECT_NEAR(sphere.radius, r, kPosTol);

    const double angle = coord(rng), rho = radial(rng), z = coord(rng);
    const double cs = std::cos(angle), sn = std::sin(angle);
    const XFPoint p = Pt(f.At(rho * cs, rho * sn, z));
    XFPoint out;
    C::getProjectionPoint(p, Line(f.origin, f.w, 3), out);
    ExpectNear3(V(out), f.At(0, 0, z), kPosTol);
    const XFPlane ground = Plane(f.origin, f.w);
    C::getProjectionPoint(p, ground, out);
    ExpectNear3(V(out), f.At(rho * cs, rho * sn, 0), kPosTol);
    // A projected line keeps its sense; a short one projects ends at +/-1.
    const double a = angle / 15;
    const float length = trial % 2 ? 30.0f : 0.001f;
    XFLine3D2 projected;
    const XFLine3D2 line =
        Line(V(p), std::cos(a) * f.u + std::sin(a) * f.w, length);
    ASSERT_EQ(C::getProjectionLine(line, ground, projected), 0);
    ExpectNear3(projected.center, V(out), kPosTol);
    ExpectSameDirection(projected.dir, f.u, kChordDirTol);
    EXPECT_NEAR(projected.length, std::cos(a) * (trial % 2 ? 30.0 : 2.0),
                kPosTol);
    ASSERT_EQ(C::getProjectionPoint(p, Sphere(f.origin, 10), out), 0);
    const Vec ray = V(p) - f.origin;
    ExpectNear3(V(out), f.origin + 10.0 * ray / cv::norm(ray), kPosTol);
    // Half angle 45 degrees, apex at z = 30: the generator rho = 30 - z.
    const XFCone cone = Cone(f.origin, f.w, 30, 10, 20);
    ASSERT_EQ(C::getProjectionPoint(p, cone, out), 0);
    const double footRho = (rho - z + 30) / 2, footZ = (z - rho + 30) / 2;
    ExpectNear3(V(out), f.At(footRho * cs, footRho * sn, footZ), kPosTol);
    XFPoint onAxis;  // on the axis or at the centre: no direction to go
    cone.getCenterPoint(onAxis);
    out.x = kUnwritten;
    EXPECT_EQ(C::getProjectionPoint(Pt(f.origin), Sphere(f.origin, 1), out),
              -1);
    EXPECT_EQ(C::getProjectionPoint(onAxis, cone, out), -1);
    EXPECT_EQ(out.x, kUnwritten);

    C::getPointSymmetry(p, ground, out);
    ExpectNear3(V(out), f.At(rho * cs, rho * sn, -z), kPosTol);
    // A plane's centre and normal are mirrored, its major direction not.
    const XFPlane tilted = Plane(V(p), f.u + f.w);
    C::getPlaneSymmetry(tilted, ground, plane);
    ExpectSameDirection(plane.normal, f.u - f.w, kChordDirTol);
  }
  XFPoint image;  // within 1e-6 of q: the image is q itself
  C::getPointSymmetry(XFPoint(1, 2, 3), XFPoint(1, 2, 3.0000005f), image);
  EXPECT_EQ(image.z, 3.0000005f);
  // Collinear or coplanar points fail and leave the outputs as they were.
  const XFPointN line[3] = {XFPointN(1, 2, 3, 0, 0, 1),
                            XFPointN(2, 4, 6, 0, 0, 1),
                            XFPointN(4, 8, 12, 0, 0, 1)};
  const XFPoint flat[4] = {Pt({0, 0, 0}), Pt({1, 0, 0}), Pt({0, 1, 0}),
                           Pt({1, 1, 0})};
  XFCircle3D circle;
  XFSphere sphere(kUnwritten, 0, 0, 1);
  circle.radius = kUnwritten;
  EXPECT_EQ(C::getCircle(line, circle) + C::getSphere(flat, sphere),
            2 * C::kFailed);
  EXPECT_EQ(circle.radius + sphere.center[0], 2 * kUnwritten);
}

TEST(XGeoFConstructor, OffsetsAndAveragesFollowTheirRules) {
  XFPoint mean;
  EXPECT_EQ(C::getPointAverage({}, mean), C::kFailed);
  C::getPointAverage(
      {XFPoint(0.1f, 0, 0), XFPoint(0.2f, 3, 0), XFPoint(0.3f, 6, 9)}, mean);
  EXPECT_EQ(mean.x, (0.1f + 0.2f + 0.3f) / 3.0f);  // summed in float
  // Opposite normals keep the first; the extent is the largest of all.
  const XFPlane up = Plane({0, 0, 0}, {0, 0, 1});
  XFPlane down = Plane({2, 4, 6}, {0, 0, -1}), average;
  down.width = 9;
  ASSERT_EQ(C::getPlaneAverage({up, down}, average), 0);
  ExpectNear3(average.center, Vec(1, 2, 3), 0.0);
  ExpectNear3(average.normal, up.normal, 0.0);
  EXPECT_EQ(average.length + average.width, 18.0f);
  const double h = std::sqrt(3.0) / 2;  // normals that cancel: no mean
  average.d = kUnwritten;
  auto at0 = [](double x, double y) { return Plane({0, 0, 0}, {x, y, 0}); };
  EXPECT_EQ(
      C::getPlaneAverage({at0(1, 0), at0(-0.5, h), at0(-0.5, -h)}, average),
      C::kFailed);
  EXPECT_EQ(average.d, kUnwritten);
}

TEST(XGeoFConstructor, IntersectionsBisectorsAndPerpendiculars) {
  std::mt19937 rng(72);
  std::uniform_real_distribution<double> turn(0.2, 2.9);
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    // Lines that meet: the 1e-5 skew bound is absolute, so near the origin.
    const Frame g = RandomFrame(rng, 20.0);
    const double theta = turn(rng);
    const Vec bd = std::cos(theta) * g.u + std::sin(theta) * g.v;
    const XFLine3D2 a = Line(g.At(5, 0, 0), g.u, 4);
    const XFLine3D2 b = Line(g.origin - 7 * bd, bd, 9);
    XFPoint meet;
    ASSERT_EQ(C::getIntersectionPoint(a, b, meet), C::kLinesIntersect);
    ExpectNear3(V(meet), g.origin, kPosTol);
    XFLine3D2 bisector;
    ASSERT_EQ(C::getAngleBisector(a, b, bisector), C::kBisectorOfIntersecting);
    ExpectSameDirection(bisector.dir, g.u + bd, kDirTol);
    // Lifted by 3: skew; the perpendicular runs b to a, the point mid-way.
    const XFLine3D2 lifted = Line(g.At(0, 0, 3) - 7 * bd, bd, 9);
    ASSERT_EQ(C::getIntersectionPoint(a, lifted, meet), C::kLinesSkew);
    ExpectNear3(V(meet), g.At(0, 0, 1.5), kPosTol);
    ASSERT_EQ(C::getVerticalLine(a, lifted, bisector), 0);
    ExpectSameDirection(bisector.dir, -g.w, kDirTol);
    EXPECT_NEAR(bisector.length, 3.0, kPosTol);
    EXPECT_EQ(C::getVerticalLine(a, b, bisector), C::kPerpendicularOfMeeting);
    EXPECT_EQ(C::getAngleBisector(a, lifted, bisector), C::kBisectorOfSkew);

    const XFPlane floor = Plane(f.origin, f.w, f.u, 10, 4);      // v: -2 .. 2
    const XFPlane wall = Plane(f.At(1, 0, 0), f.u, f.v, 6, 20);  // v: -3 .. 3
    XFLine3D2 line;
    ASSERT_EQ(C::getIntersectionLine(floor, wall, line), 0);
    ExpectNear3(line.center, f.At(1, 0, 0), kPosTol);
    ExpectSameDirection(line.dir, f.v, kDirTol);
    EXPECT_NEAR(line.length, 6.0, kPosTol);  // all eight corners
    XFPoint point, hits[2];
    const Vec p = f.At(1, 2, 3);
    ASSERT_EQ(C::getIntersectionPoint(Plane(p, f.u), Plane(p, f.v),
                                      Plane(p, f.w), point),
              0);
    ExpectNear3(V(point), p, kPosTol);
    ASSERT_EQ(C::getIntersectionPoint(Line(f.At(20, 6, 0), f.u, 1),
                                      Sphere(f.origin, 10), hits),
              2);
    ExpectNear3(V(hits[0]), f.At(-8, 6, 0), kPosTol);
    ExpectNear3(V(hits[1]), f.At(8, 6, 0), kPosTol);

    const XFPlane cut = Plane(f.At(0, 0, 5), f.w);
    XFCircle3D circle;
    const XFCylinder oblique = Cylinder(f.At(-3, 0, -3), f.u + f.w, 4);
    ASSERT_EQ(C::getIntersectionCircle(cut, oblique, circle), 0);
    ExpectNear3(circle.center, f.At(5, 0, 5), kPosTol);
    ASSERT_EQ(C::getIntersectionCircle(cut, Sphere(f.At(0, 0, -1), 10), circle),
              0);
    EXPECT_NEAR(circle.radius, 8, kPosTol);
    // Apexes at 30 (tan 1), 50 (tan 0.5), -10 (up): all meet at z 10, r 20.
    const XFCone wide = Cone(f.origin, f.w, 30, 10, 20);
    const XFCone narrow = Cone(f.At(0, 0, 10), f.w, 20, 10, 20);
    const XFCone facing = Cone(f.At(0, 0, 10), -f.w, 20, 10, 10);
    const XFCone pairs[3][2] = {{wide, narrow}, {narrow, wide}, {wide, facing}};
    for (const auto& pair : pairs) {
      ASSERT_EQ(C::getIntersectionCircle(pair[0], pair[1], circle), 0);
      ExpectNear3(circle.center, f.At(0, 0, 10), kPosTol);
      ExpectSameDirection(circle.normal, pair[0].axis, kDirTol);
      EXPECT_NEAR(circle.radius, 20, kPosTol);
    }
    circle.radius = kUnwritten;
    EXPECT_EQ(C::getIntersectionCircle(Cone(f.At(0, 0, 5), f.w, 30, 10, 20),
                                       wide, circle),
              C::kConesEqualAngles);
    // Apex behind, opening away, one apex, tilted axes: no circle.
    const XFCone failing[4] = {Cone(f.At(0, 0, -20), f.w, 20, 10, 20),
                               Cone(f.At(0, 0, 60), -f.w, 20, 10, 10), wide,
                               Cone(f.origin, f.w + 0.1 * f.u, 20, 10, 20)};
    for (const XFCone& other : failing)
      EXPECT_EQ(C::getIntersectionCircle(wide, other, circle), C::kFailed);
    EXPECT_EQ(circle.radius, kUnwritten);
  }
  // Parallel lines or planes, a plane touching a sphere: nothing written.
  const XFLine3D2 a = Line({0, 0, 0}, {1, 0, 0}, 2);
  const XFLine3D2 b = Line({4, 2, 6}, {-1, 0, 0}, 5);
  const XFPlane ground = Plane({0, 0, 0}, {0, 0, 1});
  XFLine3D2 line;
  XFCircle3D circle;
  XFPoint hits[2] = {XFPoint(kUnwritten, 0, 0), XFPoint()};
  line.length = circle.radius = kUnwritten;
  EXPECT_EQ(C::getIntersectionPoint(a, b, hits[0]), C::kLinesParallel);
  EXPECT_EQ(C::getVerticalLine(a, b, line), C::kPerpendicularOfParallel);
  EXPECT_EQ(C::getIntersectionLine(ground, Plane({0, 0, 5}, {0, 0, -1}), line),
            C::kFailed);
  EXPECT_EQ(C::getIntersectionCircle(ground, XFSphere(0, 0, 3, 3), circle), -1);
  // A line 2 from the centre misses a sphere of 1.9 and touches one of 2.
  const XFLine3D2 byTwo = Line({5, 2, 0}, {1, 0, 0}, 1);
  EXPECT_EQ(C::getIntersectionPoint(byTwo, XFSphere(0, 0, 0, 1.9f), hits), 0);
  EXPECT_EQ(line.length + circle.radius + hits[0].x, 3 * kUnwritten);
  EXPECT_EQ(C::getAngleBisector(a, b, line), C::kBisectorOfParallel);
  ASSERT_EQ(C::getIntersectionPoint(byTwo, XFSphere(0, 0, 0, 2), hits), 1);
  ExpectNear3(V(hits[0]), Vec(0, 2, 0), 0.0);
}

TEST(XGeoFConstructor, TangentLinesAndPlanesKeepTheirOffsets) {
  std::mt19937 rng(81);
  std::uniform_real_distribution<double> radius(0, 30), coord(-40, 40);
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const XFPoint points[3] = {Pt(f.At(coord(rng), coord(rng), 0)),
                               Pt(f.At(coord(rng) + 150, coord(rng), 0)),
                               Pt(f.At(coord(rng), 120 + coord(rng), 0))};
    float radii[3] = {float(radius(rng)), float(radius(rng)),
                      float(radius(rng))};
    if (trial == 1) radii[1] = radii[2] = radii[0];
    if (trial >= 2) radii[trial % 2] = 0.0f;  // tangents from a point
    const int large = radii[1] > radii[0] ? 1 : 0;
    XFLine3D2 lines[2];
    ASSERT_EQ(C::getLineOffset(points, radii, Plane(f.origin, f.w), lines), 2);
    const Vec across = f.w.cross(V(points[1 - large]) - V(points[large]));
    for (int k = 0; k < 2; ++k) {
      // Larger touch point to smaller, one side; out[0] on normal x e.
      XFPoint ends[2];
      lines[k].getStartPoint(ends[large]);
      lines[k].getEndPoint(ends[1 - large]);
      Vec normal = f.w.cross(V(lines[k].dir));
      if ((V(points[large]) - V(ends[large])).dot(normal) < 0) normal *= -1;
      for (int i = 0; i < 2; ++i) {
        const Vec arm = V(points[i]) - V(ends[i]);
        EXPECT_NEAR(arm.dot(normal), radii[i], kPosTol);
        EXPECT_NEAR(cv::norm(arm), radii[i], kPosTol);
      }
      EXPECT_GT((V(lines[k].center) - V(points[large])).dot(across) *
                    (k == 0 ? 1 : -1),
                0.0);
    }
    // Tangent planes: the first normal points up in space, the second down.
    XFPlane planes[2];
    ASSERT_EQ(C::getPlaneOffset(points, radii, planes), 0);
    const Vec up = f.w[2] >= 0 ? f.w : -f.w;
    for (int s = 0; s < 2; ++s) {
      EXPECT_GT(V(planes[s].normal).dot(up) * (s == 0 ? 1 : -1), 0.0) << s;
      for (int k = 0; k < 3; ++k)
        EXPECT_NEAR(
            (V(points[k]) - V(planes[s].center)).dot(V(planes[s].normal)),
            -radii[k], kPosTol);
    }
  }
  const XFPlane ground = Plane({0, 0, 0}, {0, 0, 1});
  const XFPoint centers[2] = {XFPoint(0, 0, 0), XFPoint(2, 0, 0)};
  XFLine3D2 lines[2];
  const float inside[2] = {5, 3};  // touching from inside: one line
  ASSERT_EQ(C::getLineOffset(centers, inside, ground, lines), 1);
  lines[0].length = kUnwritten;
  const float contained[2] = {5, 2.5f}, negative[2] = {-1, 1};
  EXPECT_EQ(C::getLineOffset(centers, contained, ground, lines), C::kNoTangent);
  EXPECT_EQ(C::getLineOffset(centers, negative, ground, lines),
            C::kNegativeRadius);
  EXPECT_EQ(lines[0].length, kUnwritten);
  // Held point or a small sphere sunk between two large: no tangent plane.
  const struct {
    XFPoint points[3];
    float offsets[3];
    int code;
  } failing[] = {
      {{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}, {1, -1, 1}, C::kNegativeOffset},
      {{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}, {20, 1, 1}, C::kNoTangentPlane},
      {{{-20, 0, 0}, {20, 0, 0}, {0, 0.5f, 0}},
       {10, 10, 1},
       C::kNoTangentPlane}};
  for (const auto& c : failing) {
    XFPlane planes[2];
    planes[0].d = planes[1].d = kUnwritten;
    EXPECT_EQ(C::getPlaneOffset(c.points, c.offsets, planes), c.code);
    EXPECT_EQ(planes[0].d + planes[1].d, 2 * kUnwritten) << c.code;
  }
}

// Constructions whose rule no other test reaches, each with a known answer.
TEST(XGeoFConstructor, LineImagesOffsetsAndCylinderFeet) {
  std::mt19937 rng(67);
  const Frame f = RandomFrame(rng, kMaxOffset);
  const XFPlane floor = Plane(f.origin, f.w);
  XFPoint point;
  ASSERT_EQ(
      C::getIntersectionPoint(floor, Line(f.At(1, 2, 3), f.u + f.w, 1), point),
      0);
  ExpectNear3(V(point), f.At(-2, 2, 0), kPosTol);
  XFLine3D2 image;
  C::getLineSymmetry(Line(f.At(4, 5, 6), f.u + f.w, 20), floor, image);
  ExpectNear3(image.center, f.At(4, 5, -6), kPosTol);
  ExpectSameDirection(V(image.dir), f.u - f.w, kChordDirTol);
  const XFLine3D2 far = Line({900, -7, 5}, {0, 0.6, 0.8}, 1);
  C::getPointOffset(XFPoint(1, 2, 3), 5.0f, far, point);
  ExpectNear3(V(point), Vec(1, 2 + far.dir[1] * 5, 3 + far.dir[2] * 5), 0.0);
  const XFCylinder cylinder = Cylinder(f.origin, f.w, 10);
  ASSERT_EQ(C::getProjectionPoint(Pt(f.At(3, 4, 7)), cylinder, point), 0);
  ExpectNear3(V(point), f.At(6, 8, 7), kPosTol);
  XFPoint onAxis, untouched(kUnwritten, 0, 0);
  cylinder.getCenterPoint(onAxis);
  EXPECT_EQ(C::getProjectionPoint(onAxis, cylinder, untouched), -1);
  EXPECT_EQ(untouched.x, kUnwritten);
  // Centres stacked along the normal: unequal radii fail, equal radii give
  // two lines with a zero direction.
  const XFPlane ground = Plane({0, 0, 0}, {0, 0, 1});
  const XFPoint stacked[2] = {XFPoint(0, 0, 0), XFPoint(0, 0, 4)};
  const float unequal[2] = {2, 1}, same[2] = {1, 1};
  XFLine3D2 lines[2];
  EXPECT_EQ(C::getLineOffset(stacked, unequal, ground, lines), C::kNoTangent);
  ASSERT_EQ(C::getLineOffset(stacked, same, ground, lines), 2);
  EXPECT_EQ(lines[0].length, 0.0f);
}

}  // namespace
}  // namespace xgeofeature
