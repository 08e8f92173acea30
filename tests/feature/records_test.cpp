#include "zelmo/feature/records.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <vector>

#include "tests/support/tolerance.h"
#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/xf_base.h"

namespace xgeofeature {
namespace {

namespace toolkit = zelmo::frame;
using zelmo::test::ExpectNear3;
using zelmo::test::ExpectNearArray;

constexpr double kTol = 1e-6;
const float kOrigin[3] = {0, 0, 0}, kX[3] = {1, 0, 0}, kY[3] = {0, 1, 0},
            kZ[3] = {0, 0, 1};

cv::Point3f xyz(const XFPoint& p) { return cv::Point3f(p.x, p.y, p.z); }

std::vector<float> iota(int n) {
  std::vector<float> v(static_cast<size_t>(n));
  std::iota(v.begin(), v.end(), 1.0f);
  return v;
}

int type(const XFBase& r) { return static_cast<int>(r.getFeatureType()); }

// Opens the protected symmetry statics to the tests.
struct Access : XFBase {
  using XFBase::getMatRT_LineSymmetry;
  using XFBase::getMatRT_PlaneSymmetry;
};

TEST(GeoFeatureType, EachRecordReportsItsFixedValue) {
  const std::vector<int> got = {
      type(XFPoint()),        type(XFPointN()),        type(XFLine3D()),
      type(XFLine3D2()),      type(XFPlane()),         type(XFCircle3D()),
      type(XFSphere()),       type(XFCylinder()),      type(XFCone()),
      type(XFOvalGroove3D()), type(XFRoundGroove3D()), type(XFRectangle3D()),
      type(XFPolyLine())};
  EXPECT_EQ(got, std::vector<int>({0, 0, 1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(XFPoint, DistanceTakesFloatDifferencesThenSquaresInDouble) {
  // 1e8 - 1 is not a float; (2^24 - 1)^2 is exact only in double.
  EXPECT_EQ(XFPoint(1e8f, 0, 0).Distance(XFPoint(1, 0, 0)), 1e8);
  EXPECT_EQ(XFPoint(16777215.0f, 0, 0).SqrDistance(XFPoint(kOrigin)),
            281474943156225.0);
}

TEST(PerpendicularRule, LowestIndexWinsATieAndTheResultIsUnit) {
  const float tieXY[3] = {1, 1, 0}, tieXZ[3] = {1, 0, 1};
  const float s = static_cast<float>(1.0 / std::sqrt(2.0));
  const XFPlane plane(kOrigin, tieXY);
  EXPECT_NEAR(plane.majorDir[0], -s, kTol);
  EXPECT_NEAR(plane.majorDir[1], s, kTol);
  ExpectNear3(XFCircle3D(kOrigin, tieXZ, 1.0f).majorDir, kY, kTol);
}

TEST(XFPlane, EquationAndCornersRoundInFloat) {
  const float point[3] = {15.07f, 32.01f, 5.83f},
              normal[3] = {0.6f, 0.48f, 0.64f};
  const XFPlane e(point, normal), f = e.invert();
  EXPECT_EQ(e.d, -28.1379986f);
  EXPECT_TRUE(f.a == -e.a && f.b == -e.b && f.c == -e.c && f.d == -e.d);
  const float equation[4] = {0, 0, 2, -4}, tie[4] = {3, -3, 0, 6};
  ExpectNear3(XFPlane(equation).normal, cv::Point3f(0, 0, 2), 0.0);
  ExpectNear3(XFPlane(equation).center, cv::Point3f(0, 0, 2), 0.0);
  ExpectNear3(XFPlane(tie).center, cv::Point3f(-2, 0, 0), 0.0);
  XFPoint p[4];
  XFPlane(kOrigin, kZ, kX, 4.0f, 2.0f).getCornerPoint(p);
  const float want[4][3] = {{2, 1, 0}, {-2, 1, 0}, {-2, -1, 0}, {2, -1, 0}};
  for (int i = 0; i < 4; ++i) ExpectNear3(xyz(p[i]), want[i], 0.0);
  // At 1e7 (float step 1), 1e7 + 0.5 + 0.3 stays 1e7; one rounding gives +1.
  const float center[3] = {1e7f, 0, 0}, down[3] = {0, 0, -1},
              diagonal[3] = {1, 1, 0};
  const float width = static_cast<float>(0.6 * std::sqrt(2.0));
  XFPlane(center, down, diagonal, 1.0f, width).getCornerPoint(p);
  EXPECT_EQ(p[0].x, 1e7f);
}

TEST(XFLine3D2, CenterFormNormalisesOnlyAboveOneMillionthStartFormAsGiven) {
  const float start[3] = {1, 2, 3}, end[3] = {1, 5, 7};
  XFLine3D2 line(XFLine3D(start, end));
  ExpectNear3(line.center, cv::Point3f(1, 3.5f, 5), 0.0);
  ExpectNear3(line.dir, cv::Point3f(0, 0.6f, 0.8f), kTol);
  EXPECT_EQ(line.length, 5.0f);
  const float near[3] = {1.0f + 5e-7f, 2.0f, 3.0f};
  line = XFLine3D(start, near);
  EXPECT_EQ(line.dir[0], near[0] - start[0]) << "raw difference, not unit";
  // The start form centres half a length along the dir as given (not unit).
  const float dir[3] = {0, 0, 2};
  line = XFLine3D2(start, dir, 3.0f, 0);
  XFPoint a, b;
  line.getStartPoint(a);
  line.getEndPoint(b);
  ExpectNear3(xyz(a), start, 0.0);
  ExpectNear3(xyz(b), cv::Point3f(1, 2, 9), 0.0);
  ExpectNear3(line.invert().dir, cv::Point3f(0, 0, -2), 0.0);
}

TEST(XFLine3D, EqualityIsStrictAtOneHundredthAndAcceptsSwappedEnds) {
  const float end[3] = {1, 2, 3};
  XFLine3D line(kOrigin, end);
  XFLine3D other = line, shifted = line, mixed = line;
  // 0.01f is just below the double 0.01: inside. The next float is out.
  other.start[0] = 0.01f;
  EXPECT_TRUE(line == other);
  other.start[0] = std::nextafter(0.01f, 1.0f);
  EXPECT_FALSE(line == other);
  shifted.start[0] = 6e-10f;
  EXPECT_TRUE(other == shifted);
  EXPECT_TRUE(line == line.invert());
  std::fill_n(mixed.end, 3, 0.0f);
  EXPECT_FALSE(line == mixed);
}

TEST(XFCircle3D, EqualityIsInclusiveAndTreatsOppositeNormalsAsOne) {
  const float center[3] = {5, 5, 5};
  XFCircle3D circle(center, kZ, kX, 2.0f);
  XFCircle3D other(center, kZ, kY, 2.0f + 0.01f);  // majorDir not compared
  EXPECT_TRUE(circle == other);
  other.radius = std::nextafter(2.01f, 3.0f);
  EXPECT_FALSE(circle == other);
  other = circle;
  const float normals[][3] = {{0, 0, -1},     {0, 0, 1.015f}, {0, 0, 0.985f},
                              {0, 0, 0.975f}, {0, 0, -1.03f}, {0, 1, 0}};
  for (int i = 0; i < 6; ++i) {
    std::copy(normals[i], normals[i] + 3, other.normal);
    EXPECT_EQ(circle == other, i < 3) << i;
  }
}

TEST(OutlineRecords, EqualityComparesMajorDirAndEverySizeField) {
  XFOvalGroove3D oval(kOrigin, kZ, kX, 3.0f, 1.0f);
  XFOvalGroove3D other = oval.invert();
  for (float& v : other.majorDir) v = -v;
  other.halfStraight = 3.01f;
  EXPECT_TRUE(oval == other);
  std::copy(kY, kY + 3, other.majorDir);
  EXPECT_FALSE(oval == other);
  XFRoundGroove3D round(kOrigin, kZ, kX, 3.0f, 1.0f, 0.5f), rounder = round;
  rounder.cornerRadius = 0.52f;
  EXPECT_FALSE(round == rounder);
}

TEST(FlatRecords, LinesAndPlanesTakeTheShapeSizesInvertFlipsOnlyTheNormal) {
  const float c[3] = {1, 2, 3};
  const XFOvalGroove3D oval(c, kZ, kX, 1.5f, 2.0f);
  XFLine3D2 l[3];
  oval.getLine(l[0]);
  oval.getLineMajorDir(l[1]);
  XFRoundGroove3D(c, kZ, kX, 4, 1, 0.5f).getLineMajorDir(l[2]);
  const float* lineDirs[] = {kZ, kX, kX};
  const float lengths[] = {7, 7, 8};
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    ExpectNear3(l[i].center, c, 0.0);
    ExpectNear3(l[i].dir, lineDirs[i], 0.0);
    EXPECT_EQ(l[i].length, lengths[i]);
  }
  XFPlane p[3];  // the circle makes up its majorDir (kX), the rest keep kY
  XFCircle3D(c, kZ, kY, 2.0f).getPlane(p[0]);
  XFOvalGroove3D(c, kZ, kY, 1.5f, 2.0f).getPlane(p[1]);
  XFRectangle3D(c, kZ, kY, 3, 1).getPlane(p[2]);
  const float sizes[3][2] = {{4, 4}, {7, 4}, {6, 2}};
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    ExpectNear3(p[i].majorDir, i == 0 ? kX : kY, 0.0);
    EXPECT_TRUE(p[i].length == sizes[i][0] && p[i].width == sizes[i][1]);
  }
  const float n[3] = {0.36f, 0.48f, 0.8f}, m[3] = {0.8f, -0.6f, 0.1f};
  const auto flipped = [&](const auto& r) {
    const auto f = r.invert();
    return f.normal[0] == -n[0] && f.normal[2] == -n[2] &&
           f.majorDir[1] == m[1];
  };
  EXPECT_TRUE(flipped(XFPlane(c, n, m, 4, 2)));
  EXPECT_TRUE(flipped(XFCircle3D(c, n, m, 2)));
  EXPECT_TRUE(flipped(XFRoundGroove3D(c, n, m, 3, 1, 0.5f)));
}

TEST(XFCylinder, BuildsFromAxisOrEndsAndKeepsEndsWhenTheyCoincide) {
  const float base[3] = {1, 2, 3}, top[3] = {1, 8, 11};
  ExpectNear3(XFCylinder(base, kZ, 2.0f, 10.0f).top, cv::Point3f(1, 2, 13), 0);
  const XFCylinder cyl(base, top, 2.0f);
  ExpectNear3(cyl.axis, cv::Point3f(0, 0.6f, 0.8f), kTol);
  EXPECT_EQ(cyl.height, 10.0f);
  const XFCylinder turned = cyl.invert();
  ExpectNear3(turned.base, top, 0.0);
  const XFCylinder flat(base, base, 2.0f);
  EXPECT_TRUE(flat.axis[2] == 0 && flat.center[2] == 0 && flat.height == 0);
}

TEST(XFCone, ApexAndHalfAngleFollowFromTheRadii) {
  const float top[3] = {0, 0, 1};
  for (const XFCone& cone : {XFCone(kOrigin, kZ, 2.0f, 1.0f, 1.0f),
                             XFCone(kOrigin, top, 2.0f, 1.0f)}) {
    EXPECT_FLOAT_EQ(cone.halfAngle, static_cast<float>(std::atan(1.0)));
    ExpectNear3(cone.apex, cv::Point3f(0, 0, 2), kTol);
    ExpectNear3(cone.top, top, kTol);
    XFPoint middle;
    cone.getCenterPoint(middle);
    ExpectNear3(xyz(middle), cv::Point3f(0, 0, 0.5f), 0.0);
  }
  // Equal radii: no guard, the apex lies at infinity.
  EXPECT_FALSE(std::isfinite(XFCone(kOrigin, kZ, 1.0f, 1.0f, 1.0f).apex[2]));
  const XFCone flat(top, top, 2.0f, 1.0f);
  EXPECT_TRUE(flat.apex[2] == 0 && flat.halfAngle == 0);
}

TEST(VectorConstructors, ReadFieldsInDeclaredOrderAndIgnoreOtherSizes) {
  const XFCylinder cyl(iota(14));
  EXPECT_TRUE(cyl.radius == 7 && cyl.height == 8 && cyl.top[2] == 14);
  const XFCone cone(iota(16));
  EXPECT_TRUE(cone.halfAngle == 7 && cone.height == 14 && cone.topRadius == 16);
  // A wrong size reads nothing; the fields keep their zeroed defaults.
  EXPECT_EQ(XFCylinder(iota(15)).top[2], 0.0f);
}

TEST(XFPolyLine, BuildsFromTriplesReversesAndNeverMerges) {
  const float xyz[9] = {0, 0, 0, 1, 0, 0, 2, 0, 0};
  XFPolyLine poly(xyz, 3);
  ASSERT_EQ(poly.points.size(), 3u);
  EXPECT_TRUE(XFPolyLine(poly.points.data(), -1).points.empty());
  const XFPolyLine reversed = poly.invert();
  EXPECT_TRUE(reversed.points[0].x == 2 && reversed.points[2].x == 0);
  poly.merge(reversed);
  EXPECT_EQ(poly.points.size(), 3u);
}

TEST(XAngleAttributes, ConversionsRoundAsDocumented) {
  float out = 0.0f;
  // Degrees: float quotient first (not 0.890117943); radians: all in double.
  XAngleAttributes::Angle2Radian(51.0f, out);
  EXPECT_EQ(out, 0.890117884f);
  XAngleAttributes::Radian2Angle(0.17f, out);
  EXPECT_EQ(out, 9.74028301f);
}

TEST(XFBase, MembersForwardTheirArgumentsToTheFrameToolkit) {
  const float axis[3] = {0.3f, -1.2f, 2.0f}, pd[6] = {1, -2, 4, 0.6f, 0, 0.8f};
  double got[16], want[16];
  for (bool degrees : {true, false}) {
    EXPECT_EQ(XFBase::getRotationMatrix(axis, 1.3f, got, degrees), 0);
    toolkit::getRotationMatrix(cv::Vec3f(axis), 1.3f, want, degrees);
    ExpectNearArray(got, want, 9, 1e-12);
  }
  Access::getMatRT_LineSymmetry(pd, got);
  toolkit::getMatRT_LineSymmetry(pd, want);
  ExpectNearArray(got, want, 16, 1e-12);
  Access::getMatRT_PlaneSymmetry(pd, got);
  toolkit::getMatRT_PlaneSymmetry(pd, want);
  ExpectNearArray(got, want, 16, 1e-12);
  Access::getMatRT_PointSymmetry(pd, got);
  toolkit::getMatRT_PointSymmetry(pd, want);
  ExpectNearArray(got, want, 16, 1e-12);
}

}  // namespace
}  // namespace xgeofeature
