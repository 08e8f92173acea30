// XGeoFConstructor: features through points, projections, mirror images,
// offsets and averages.
#include "zelmo/measure/feature_constructor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/measure/measure_test_util.h"

namespace xgeofeature {
namespace {

using namespace zelmo::test;
using C = XGeoFConstructor;

TEST(XGeoFConstructor, ThroughPointsRecoverPlaneCircleAndSphere) {
  std::mt19937 rng(61);
  for (int trial = 0; trial < 20; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double sense = trial % 2 ? 1.0 : -1.0, s = 1 + trial % 4;
    // An obtuse triangle: its smallest rectangle lies on the long side,
    // 10 s by s about (5 s, s / 2). Only the first normal is read.
    const XFPointN tri[3] = {PointN(f.At(0, 0, 0), sense * f.w),
                             PointN(f.At(10 * s, 0, 0), -f.w),
                             PointN(f.At(2 * s, s, 0), -f.w)};
    XFPlane plane;
    ASSERT_EQ(C::getPlane(tri, plane), 0);
    ExpectSameDirection(V(plane.normal), sense * f.w, kChordDirTol);
    ExpectNear3(plane.center, f.At(5 * s, 0.5 * s, 0), kPosTol);
    ExpectSameAxis(V(plane.majorDir), f.u, kChordDirTol);
    EXPECT_NEAR(plane.length, 10 * s, kPosTol);
    EXPECT_NEAR(plane.width, s, kPosTol);

    const double r = 5 + 50 * (trial % 5);
    XFPointN on[3];
    for (int i = 0; i < 3; ++i)
      on[i] = PointN(f.At(r * std::cos(2.0 * i), r * std::sin(2.0 * i), 0),
                     sense * f.w);
    XFCircle3D circle;
    ASSERT_EQ(C::getCircle(on, circle), 0);
    ExpectNear3(circle.center, f.origin, kPosTol);
    EXPECT_NEAR(circle.radius, r, kPosTol);
    ExpectSameDirection(V(circle.normal), sense * f.w, kChordDirTol);
    ExpectSameDirection(V(circle.majorDir), V(on[1].point) - V(on[0].point),
                        kChordDirTol);

    const XFPoint four[4] = {Pt(V(on[0].point)), Pt(V(on[1].point)),
                             Pt(V(on[2].point)), Pt(f.At(0, r * 0.6, r * 0.8))};
    XFSphere sphere;
    ASSERT_EQ(C::getSphere(four, sphere), 0);
    ExpectNear3(sphere.center, f.origin, kPosTol);
    EXPECT_NEAR(sphere.radius, r, kPosTol);
  }
  // Collinear or coplanar points fail and leave the outputs as they were.
  const XFPointN line[3] = {XFPointN(1, 2, 3, 0, 0, 1),
                            XFPointN(2, 4, 6, 0, 0, 1),
                            XFPointN(4, 8, 12, 0, 0, 1)};
  const XFPoint flat[4] = {XFPoint(0, 0, 0), XFPoint(1, 0, 0), XFPoint(0, 1, 0),
                           XFPoint(1, 1, 0)};
  XFPlane plane;
  XFCircle3D circle;
  XFSphere sphere(kUnwritten, 0, 0, 1);
  plane.length = circle.radius = kUnwritten;
  EXPECT_EQ(C::getPlane(line, plane), C::kFailed);
  EXPECT_EQ(C::getCircle(line, circle), C::kFailed);
  EXPECT_EQ(C::getSphere(flat, sphere), C::kFailed);
  EXPECT_EQ(plane.length + circle.radius + sphere.center[0], 3 * kUnwritten);
}

TEST(XGeoFConstructor, ProjectionsFindTheNearestPointOfEachFeature) {
  std::mt19937 rng(62);
  std::uniform_real_distribution<double> coord(-20, 20), radial(5, 40),
      tilt(-1.4, 1.4);
  for (int trial = 0; trial < 20; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double angle = coord(rng), rho = radial(rng), z = coord(rng);
    const double cs = std::cos(angle), sn = std::sin(angle);
    const XFPoint p = Pt(f.At(rho * cs, rho * sn, z));
    XFPoint out;
    C::getProjectionPoint(p, Line(f.origin, f.w, 3), out);
    ExpectNear3(V(out), f.At(0, 0, z), kPosTol);
    const XFPlane plane = Plane(f.origin, f.w);
    const cv::Vec3d onPlane = f.At(rho * cs, rho * sn, 0);
    C::getProjectionPoint(p, plane, out);
    ExpectNear3(V(out), onPlane, kPosTol);
    // A projected line keeps its sense; a short one projects ends at +/-1.
    const double a = tilt(rng);
    const float length = trial % 2 ? 30.0f : 0.001f;
    const XFLine3D2 line =
        Line(V(p), std::cos(a) * f.u + std::sin(a) * f.w, length);
    XFLine3D2 projected;
    ASSERT_EQ(C::getProjectionLine(line, plane, projected), 0);
    ExpectNear3(projected.center, onPlane, kPosTol);
    ExpectSameDirection(V(projected.dir), f.u, kChordDirTol);
    EXPECT_NEAR(projected.length, std::cos(a) * (trial % 2 ? 30.0 : 2.0),
                kPosTol);

    const XFSphere sphere = Sphere(f.origin, 10);
    ASSERT_EQ(C::getProjectionPoint(p, sphere, out), 0);
    const cv::Vec3d ray = V(p) - f.origin;
    ExpectNear3(V(out), f.origin + 10.0 * ray / cv::norm(ray), kPosTol);
    const XFCylinder cylinder = Cylinder(f.origin, f.w, 10, 60);
    ASSERT_EQ(C::getProjectionPoint(p, cylinder, out), 0);
    ExpectNear3(V(out), f.At(10 * cs, 10 * sn, z), kPosTol);
    // Half angle 45 degrees, apex at z = 30: the generator rho = 30 - z.
    const XFCone cone = Cone(f.origin, f.w, 30, 10, 20);
    ASSERT_EQ(C::getProjectionPoint(p, cone, out), 0);
    const double footRho = (rho - z + 30) / 2, footZ = (z - rho + 30) / 2;
    ExpectNear3(V(out), f.At(footRho * cs, footRho * sn, footZ), kPosTol);

    // Points on the axis or at the centre have no direction to go.
    XFPoint onCylinderAxis, onConeAxis;
    cylinder.getCenterPoint(onCylinderAxis);
    cone.getCenterPoint(onConeAxis);
    out.x = kUnwritten;
    EXPECT_EQ(C::getProjectionPoint(Pt(f.origin), sphere, out), -1);
    EXPECT_EQ(C::getProjectionPoint(onCylinderAxis, cylinder, out), -1);
    EXPECT_EQ(C::getProjectionPoint(onConeAxis, cone, out), -1);
    EXPECT_EQ(out.x, kUnwritten);
  }
  // A line along the normal, also one 1e-7 off it, has no image.
  XFLine3D2 out;
  out.length = kUnwritten;
  const XFPlane ground = Plane({0, 0, 0}, {0, 0, 1});
  for (const cv::Vec3d& dir : {cv::Vec3d(0, 0, 1), cv::Vec3d(1e-7, 0, 1)})
    EXPECT_EQ(C::getProjectionLine(Line({1, 2, 3}, dir, 4), ground, out),
              C::kFailed);
  EXPECT_EQ(out.length, kUnwritten);
}

TEST(XGeoFConstructor, MirrorImagesOfPointsLinesAndPlanes) {
  std::mt19937 rng(63);
  std::uniform_real_distribution<double> coord(-50, 50);
  for (int trial = 0; trial < 20; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const double x = coord(rng), y = coord(rng), z = coord(rng);
    const XFPoint p = Pt(f.At(x, y, z)), q = Pt(f.At(y, z, x));
    XFPoint image;
    C::getPointSymmetry(p, q, image);
    ExpectNear3(V(image), 2.0 * V(q) - V(p), kPosTol);
    C::getPointSymmetry(p, Line(f.At(0, 0, 7), f.w, 2), image);
    ExpectNear3(V(image), f.At(-x, -y, z), kPosTol);
    const XFPlane mirror = Plane(f.origin, f.w);
    C::getPointSymmetry(p, mirror, image);
    ExpectNear3(V(image), f.At(x, y, -z), kPosTol);

    XFLine3D2 lineImage;
    C::getLineSymmetry(Line(f.At(x, y, z), f.u + f.w, 20), mirror, lineImage);
    ExpectNear3(lineImage.center, f.At(x, y, -z), kPosTol);
    ExpectSameDirection(V(lineImage.dir), f.u - f.w, kChordDirTol);
    // A plane's centre and normal are mirrored, its major direction not.
    const XFPlane tilted = Plane(f.At(x, y, z), f.u + f.w);
    XFPlane planeImage;
    C::getPlaneSymmetry(tilted, mirror, planeImage);
    ExpectNear3(planeImage.center, f.At(x, y, -z), kPosTol);
    ExpectSameDirection(V(planeImage.normal), f.u - f.w, kChordDirTol);
    ExpectNear3(planeImage.majorDir, tilted.majorDir, 0.0);
  }
  XFPoint image;  // within 1e-6 of q: the image is q itself
  C::getPointSymmetry(XFPoint(1, 2, 3), XFPoint(1, 2, 3.0000005f), image);
  EXPECT_EQ(image.z, 3.0000005f);
}

TEST(XGeoFConstructor, OffsetsAndAveragesFollowTheirRules) {
  const XFLine3D2 far = Line({900, -7, 5}, {0, 0.6, 0.8}, 1);
  XFPoint moved;
  C::getPointOffset(XFPoint(1, 2, 3), 5.0f, far, moved);
  ExpectNear3(V(moved), cv::Vec3d(1, 2 + far.dir[1] * 5, 3 + far.dir[2] * 5),
              0.0);  // in float
  XFPlane offset;
  C::getPlaneOffset(Plane({1, 2, 3}, {0, 0, 1}), 2.5f, offset);
  ExpectNear3(offset.center, cv::Vec3d(1, 2, 5.5), 0.0);
  EXPECT_EQ(offset.d, -5.5f);

  XFPoint mean(kUnwritten, 0, 0);
  EXPECT_EQ(C::getPointAverage({}, mean), C::kFailed);
  EXPECT_EQ(mean.x, kUnwritten);
  C::getPointAverage(
      {XFPoint(0.1f, 0, 0), XFPoint(0.2f, 3, 0), XFPoint(0.3f, 6, 9)}, mean);
  EXPECT_EQ(mean.x, (0.1f + 0.2f + 0.3f) / 3.0f);  // summed in float

  // Two parallel planes of opposite sense keep the first normal; the
  // extent is the largest length or width of all.
  const XFPlane up = Plane({0, 0, 0}, {0, 0, 1});
  XFPlane down = Plane({2, 4, 6}, {0, 0, -1}), average;
  down.width = 9;
  ASSERT_EQ(C::getPlaneAverage({up, down}, average), 0);
  ExpectNear3(average.center, cv::Vec3d(1, 2, 3), 0.0);
  ExpectNear3(average.normal, up.normal, 0.0);
  EXPECT_EQ(average.length + average.width, 18.0f);
  C::getPlaneAverage(
      {up, Plane({3, 0, 0}, {1, 0, 1}), Plane({0, 3, 0}, {-1, 0, 1})}, average);
  ExpectNear3(average.center, cv::Vec3d(1, 1, 0), 1e-6);
  ExpectNear3(average.normal, up.normal, 1e-6);
  // Three normals that cancel give no mean normal.
  const double h = std::sqrt(3.0) / 2;
  average.d = kUnwritten;
  EXPECT_EQ(C::getPlaneAverage(
                {Plane({0, 0, 0}, {1, 0, 0}), Plane({0, 0, 0}, {-0.5, h, 0}),
                 Plane({0, 0, 0}, {-0.5, -h, 0})},
                average),
            C::kFailed);
  EXPECT_EQ(average.d, kUnwritten);
}

}  // namespace
}  // namespace xgeofeature
