// Both XGeoDimension classes: on float arrays (degrees) and on records
// (radians, distance attributes).
#include <gtest/gtest.h>

#include <cmath>

#include "tests/measure/measure_test_util.h"
#include "zelmo/measure/feature_dimension.h"
#include "zelmo/measure/geo_dimension.h"

namespace {

using namespace zelmo::test;
using xgeofeature::XDistanceAttributes;
using xgeofeature::XFPoint;
using Arrays = xgeomeasure::XGeoDimension;
using Records = xgeofeature::XGeoDimension;

TEST(XGeoDimensionArrays, DistancesAndDirectedAngles) {
  const float p[3] = {1, 2, 3}, q[3] = {4, 6, 3}, point[3] = {5, 3, 4};
  EXPECT_DOUBLE_EQ(Arrays::calcDistance_Point2Point(p, q), 5.0);
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
  EXPECT_NEAR(Arrays::calcAngle_Plane_Plane(x, sixty), 60.0, 1e-5);
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
  EXPECT_EQ(out.dx + out.dy + out.dz, 7.0f);
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
  EXPECT_EQ(Records::Angle(ground, ground.invert()), kPi);
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
