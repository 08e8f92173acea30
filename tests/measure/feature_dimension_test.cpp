#include "zelmo/measure/feature_dimension.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/measure/record_test_util.h"
#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"

namespace xgeofeature {
namespace {

using zelmo::test::ExpectNear3;
using zelmo::test::Frame;
using zelmo::test::kPi;
using zelmo::test::kRecordMaxOffset;
using zelmo::test::kRecordPosTol;
using zelmo::test::Line;
using zelmo::test::Plane;
using zelmo::test::Pt;
using zelmo::test::RandomFrame;
using zelmo::test::V;
using D = XGeoDimension;

// Angles between float directions.
constexpr double kRadianTol = 1e-6;

TEST(XGeoDimensionRecords, DistancesFillAttributesFromTheFoot) {
  XDistanceAttributes out;
  EXPECT_EQ(D::Distance(XFPoint(1, 2, 3), XFPoint(4, -2, 3), out), 0);
  EXPECT_EQ(out.distance, 5.0f);
  EXPECT_EQ(out.dx, 3.0f);
  EXPECT_EQ(out.dy, 4.0f);
  EXPECT_EQ(out.dz, 0.0f);
  // The distance is a float root of a float sum.
  const XFPoint p(400.1f, -0.7f, 3.3f), q(-0.2f, 300.3f, 1.9f);
  D::Distance(p, q, out);
  const float dx = q.x - p.x, dy = q.y - p.y, dz = q.z - p.z;
  EXPECT_EQ(out.distance, std::sqrt(dx * dx + dy * dy + dz * dz));

  std::mt19937 rng(91);
  std::uniform_real_distribution<double> coord(-50, 50);
  for (int trial = 0; trial < 10; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kRecordMaxOffset);
    const double x = coord(rng), y = coord(rng), z = coord(rng);
    XFPoint foot;
    EXPECT_EQ(D::Distance(Pt(f.At(x, y, z)), Line(f.origin, f.w, 5), foot, out),
              0);
    ExpectNear3(V(foot), f.At(0, 0, z), kRecordPosTol);
    EXPECT_NEAR(out.distance, std::hypot(x, y), kRecordPosTol);
    EXPECT_EQ(D::Distance(Pt(f.At(x, y, z)), Plane(f.origin, f.w), foot, out),
              0);
    ExpectNear3(V(foot), f.At(x, y, 0), kRecordPosTol);
    EXPECT_NEAR(out.distance, std::fabs(z), kRecordPosTol);
    EXPECT_NEAR(out.dx, std::fabs(f.w[0] * z), kRecordPosTol);
  }
}

TEST(XGeoDimensionRecords, AnglesInRadiansWithLinePlaneFolded) {
  const cv::Vec3d o(3, 4, 5), x(1, 0, 0), z(0, 0, 1);
  const XFLine3D2 along = Line(o, x, 2);
  EXPECT_EQ(D::Angle(along, along.invert()), kPi);
  EXPECT_NEAR(D::Angle(along, Line(o, cv::Vec3d(1, std::sqrt(3.0), 0), 2)),
              kPi / 3, kRadianTol);
  const XFPlane ground = Plane(o, z);
  EXPECT_EQ(D::Angle(ground, ground), 0.0);
  EXPECT_EQ(D::Angle(ground, ground.invert()), kPi);

  // A line in the plane, either sense: 0. Thirty degrees to it, up or down
  // and either sense: pi / 6.
  EXPECT_EQ(D::Angle(along, ground), 0.0);
  EXPECT_EQ(D::Angle(along.invert(), ground), 0.0);
  const double s = std::sqrt(3.0);
  for (const cv::Vec3d& dir :
       {cv::Vec3d(s, 0, 1), cv::Vec3d(s, 0, -1), cv::Vec3d(-s, 0, 1)}) {
    EXPECT_NEAR(D::Angle(Line(o, dir, 2), ground), kPi / 6, kRadianTol);
    EXPECT_NEAR(D::Angle(ground, Line(o, dir, 2)), kPi / 6, kRadianTol);
  }
  // Standing on the plane, or within the 1e-6 of the cross product test:
  // exactly pi / 2.
  EXPECT_EQ(D::Angle(Line(o, z, 2), ground), kPi / 2);
  EXPECT_EQ(D::Angle(Line(o, cv::Vec3d(0.9e-6, 0, 1), 2), ground), kPi / 2);
}

}  // namespace
}  // namespace xgeofeature
