#include "zelmo/measure/geo_dimension.h"

#include <gtest/gtest.h>

#include <cmath>

namespace xgeomeasure {
namespace {

using D = XGeoDimension;

// Angles from float directions: acos near a well-conditioned cosine.
constexpr double kDegreeTol = 1e-5;

TEST(XGeoDimensionArrays, DistancesTakeTheDirectionAsGiven) {
  const float p[3] = {1, 2, 3}, q[3] = {4, 6, 3};
  EXPECT_DOUBLE_EQ(D::calcDistance_Point2Point(p, q), 5.0);

  const float point[3] = {5, 3, 4};
  const float unit[6] = {0, 0, 0, 1, 0, 0}, doubled[6] = {0, 0, 0, 2, 0, 0};
  EXPECT_DOUBLE_EQ(D::calcDistance_Point2Line(point, unit), 5.0);
  EXPECT_DOUBLE_EQ(D::calcDistance_Point2Line(point, doubled), 10.0);
  // Within 0.001 of the line's point in every coordinate counts as on the
  // line, even off it; just outside measures.
  const float axis[6] = {0, 0, 0, 0, 0, 1};
  const float near[3] = {0.0009f, 0.0009f, -0.0009f}, off[3] = {0.0011f, 0, 0};
  EXPECT_EQ(D::calcDistance_Point2Line(near, axis), 0.0);
  EXPECT_NEAR(D::calcDistance_Point2Line(off, axis), 0.0011, 1e-9);

  const float plane[6] = {0, 0, 1, 0, 0, 1};
  const float above[3] = {3, 4, 7}, below[3] = {3, 4, -5};
  EXPECT_DOUBLE_EQ(D::calcDistance_Point2Plane(above, plane), 6.0);
  EXPECT_DOUBLE_EQ(D::calcDistance_Point2Plane(below, plane), 6.0);
}

TEST(XGeoDimensionArrays, OneDirectedAngleRoutineServesLinesAndPlanes) {
  const float x[6] = {0, 0, 0, 1, 0, 0};
  const float sixty[6] = {9, 9, 9, 0.5f, float(std::sqrt(3.0) / 2), 0};
  const float minusX[6] = {0, 0, 0, -1, 0, 0};
  EXPECT_NEAR(D::calcAngle_Line_Line(x, sixty), 60.0, kDegreeTol);
  EXPECT_NEAR(D::calcAngle_Plane_Plane(x, sixty), 60.0, kDegreeTol);
  EXPECT_EQ(D::calcAngle_Line_Line(x, minusX), 180.0);
  // 0.6f and 0.8f have a squared sum just above 1: clamped, not NaN.
  const float tilted[6] = {0, 0, 0, 0.6f, 0.8f, 0};
  const float against[6] = {0, 0, 0, -0.6f, -0.8f, 0};
  EXPECT_EQ(D::calcAngle_Line_Line(tilted, tilted), 0.0);
  EXPECT_EQ(D::calcAngle_Line_Line(tilted, against), 180.0);
  // A line and a plane give the angle to the normal, not to the plane.
  const float ground[6] = {0, 0, 0, 0, 0, 1};
  const float upright[6] = {1, 1, 1, 0, 0, 1};
  EXPECT_EQ(D::calcAngle_Line_Plane(upright, ground), 0.0);
  EXPECT_NEAR(D::calcAngle_Line_Plane(x, ground), 90.0, kDegreeTol);
}

}  // namespace
}  // namespace xgeomeasure
