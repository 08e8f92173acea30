#include "zelmo/feature/records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <opencv2/core.hpp>
#include <vector>

#include "tests/support/tolerance.h"

namespace xgeofeature {
namespace {

using zelmo::test::ExpectNear3;

constexpr double kTol = 1e-6;
const float kOrigin[3] = {0, 0, 0}, kX[3] = {1, 0, 0}, kY[3] = {0, 1, 0},
            kZ[3] = {0, 0, 1};

cv::Point3f xyz(const XFPoint& p) { return cv::Point3f(p.x, p.y, p.z); }

float above(float v) {
  return std::nextafter(v, std::numeric_limits<float>::infinity());
}

std::vector<float> iota(int n) {
  std::vector<float> v(static_cast<size_t>(n));
  std::iota(v.begin(), v.end(), 1.0f);
  return v;
}

int type(const XFBase& r) { return static_cast<int>(r.getFeatureType()); }

TEST(GeoFeatureType, EachRecordReportsItsFixedValue) {
  const int got[] = {
      type(XFPoint()),        type(XFPointN()),        type(XFLine3D()),
      type(XFLine3D2()),      type(XFPlane()),         type(XFCircle3D()),
      type(XFSphere()),       type(XFCylinder()),      type(XFCone()),
      type(XFOvalGroove3D()), type(XFRoundGroove3D()), type(XFRectangle3D()),
      type(XFPolyLine())};
  const int want[] = {0, 0, 1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  for (int i = 0; i < 13; ++i) EXPECT_EQ(got[i], want[i]) << i;
}

TEST(XFPoint, DistanceTakesFloatDifferencesThenSquaresInDouble) {
  // 1e8 - 1 is not a float: the difference rounds to 1e8.
  EXPECT_EQ(XFPoint(1e8f, 0, 0).Distance(XFPoint(1, 0, 0)), 1e8);
  // (2^24 - 1)^2 needs 48 bits: exact only when squared in double.
  EXPECT_EQ(XFPoint(16777215.0f, 0, 0).SqrDistance(XFPoint(kOrigin)),
            281474943156225.0);
  EXPECT_EQ(XFPoint(3, 4, 12).Distance(XFPoint(kOrigin)), 13.0);
}

TEST(PerpendicularRule, LowestIndexWinsATieAndTheResultIsUnit) {
  const float tieXY[3] = {1.0f, 1.0f, 0.0f};
  const float s = static_cast<float>(1.0 / std::sqrt(2.0));
  const float wantXY[3] = {-s, s, 0.0f};
  ExpectNear3(XFCircle3D(kOrigin, tieXY, 1.0f).majorDir, wantXY, kTol);
  ExpectNear3(XFPlane(kOrigin, tieXY).majorDir, wantXY, kTol);

  const float tieXZ[3] = {1.0f, 0.0f, 1.0f};
  ExpectNear3(XFCircle3D(kOrigin, tieXZ, 1.0f).majorDir, kY, kTol);

  const float tilted[3] = {1.0f, 2.0f, 0.5f};
  const float m = static_cast<float>(1.0 / std::sqrt(1.25));
  const float wantTilted[3] = {m, -0.5f * m, 0.0f};
  ExpectNear3(XFPlane(kOrigin, tilted).majorDir, wantTilted, kTol);
}

TEST(XFPlane, EquationComesFromCenterAndNormalInFloat) {
  const float center[3] = {15.07f, 32.01f, 5.83f};
  const float normal[3] = {0.6f, 0.48f, 0.64f};
  const XFPlane p(center, normal);
  EXPECT_EQ(p.d, -28.1379986f);  // summed in double: -28.1380005
  EXPECT_EQ(p.length, 1.0f);
  EXPECT_EQ(p.width, 1.0f);
  const XFPlane f = p.invert();
  EXPECT_TRUE(f.a == -p.a && f.b == -p.b && f.c == -p.c && f.d == -p.d);
}

TEST(XFPlane, FromEquationKeepsTheUnnormalisedNormal) {
  const float equation[4] = {0.0f, 0.0f, 2.0f, -4.0f};
  const XFPlane plane(equation);
  ExpectNear3(plane.normal, cv::Point3f(0, 0, 2), 0.0);
  ExpectNear3(plane.center, cv::Point3f(0, 0, 2), 0.0);
  EXPECT_EQ(plane.d, -4.0f);
  ExpectNear3(plane.majorDir, kX, 0.0);

  // |a| = |b|: the center goes on the x axis.
  const float tie[4] = {3.0f, -3.0f, 0.0f, 6.0f};
  ExpectNear3(XFPlane(tie).center, cv::Point3f(-2, 0, 0), 0.0);
}

TEST(XFPlane, CornersRunCounterClockwiseAndRoundCenterPlusHalfLengthFirst) {
  XFPoint p[4];
  XFPlane(kOrigin, kZ, kX, 4.0f, 2.0f).getCornerPoint(p);
  const float want[4][3] = {{2, 1, 0}, {-2, 1, 0}, {-2, -1, 0}, {2, -1, 0}};
  for (int i = 0; i < 4; ++i) ExpectNear3(xyz(p[i]), want[i], 0.0);

  // Float step 1 at 1e7: (1e7 + 0.5) rounds to 1e7, + 0.3 stays; one
  // rounding of 1e7 + 0.8 would give 1e7 + 1.
  const float center[3] = {1e7f, 0.0f, 0.0f}, down[3] = {0.0f, 0.0f, -1.0f};
  const float diagonal[3] = {1.0f, 1.0f, 0.0f};
  const float width = static_cast<float>(0.6 * std::sqrt(2.0));
  XFPlane(center, down, diagonal, 1.0f, width).getCornerPoint(p);
  EXPECT_EQ(p[0].x, 1e7f);
}

TEST(XFLine3D, CenterFormNormalisesOnlyAboveOneMillionth) {
  const float start[3] = {1, 2, 3};
  const float end[3] = {1, 5, 7};
  XFLine3D2 line(XFLine3D(start, end));
  ExpectNear3(line.center, cv::Point3f(1, 3.5f, 5), 0.0);
  ExpectNear3(line.dir, cv::Point3f(0, 0.6f, 0.8f), kTol);
  EXPECT_EQ(line.length, 5.0f);

  const float near[3] = {1.0f + 5e-7f, 2.0f, 3.0f};
  line = XFLine3D(start, near);
  EXPECT_LE(line.length, 1e-6f);
  EXPECT_EQ(line.dir[0], near[0] - start[0]) << "raw difference, not unit";

  XFLine3D(start, start).getLine(line);
  EXPECT_EQ(line.length, 0.0f);
  ExpectNear3(line.dir, kOrigin, 0.0);
}

TEST(XFLine3D2, StartFormCentersHalfALengthAlongTheGivenDir) {
  const float start[3] = {1, 1, 1};
  const float dir[3] = {0, 0, 2};  // stored as given, not made unit
  const XFLine3D2 line(start, dir, 3.0f, 0);
  ExpectNear3(line.center, cv::Point3f(1, 1, 4), 0.0);
  ExpectNear3(line.dir, dir, 0.0);
  XFPoint a, b;
  line.getStartPoint(a);
  line.getEndPoint(b);
  ExpectNear3(xyz(a), start, 0.0);
  ExpectNear3(xyz(b), cv::Point3f(1, 1, 7), 0.0);

  ExpectNear3(XFLine3D(line).start, start, 0.0);
  ExpectNear3(line.invert().dir, cv::Point3f(0, 0, -2), 0.0);
}

TEST(XFLine3D, EqualityIsStrictAtOneHundredthAndAcceptsSwappedEnds) {
  const float start[3] = {0, 0, 0};
  const float end[3] = {1, 2, 3};
  XFLine3D line(start, end);
  XFLine3D other = line;
  // 0.01f is just below the double 0.01: inside. The next float is out.
  other.start[0] = 0.01f;
  EXPECT_TRUE(line == other);
  other.start[0] = above(0.01f);
  EXPECT_FALSE(line == other);

  // Exactly the difference exceeds 0.01; rounded to float it is 0.01f.
  XFLine3D shifted = line;
  shifted.start[0] = 6e-10f;
  ASSERT_GT(static_cast<double>(other.start[0]) - shifted.start[0], 0.01);
  EXPECT_TRUE(other == shifted);

  EXPECT_TRUE(line == line.invert());
  XFLine3D mixed = line;
  std::fill_n(mixed.end, 3, 0.0f);  // end now equals start: no pairing fits
  EXPECT_FALSE(line == mixed);
}

TEST(XFCircle3D, EqualityIsInclusiveAndTreatsOppositeNormalsAsOne) {
  const float center[3] = {5, 5, 5};
  XFCircle3D circle(center, kZ, kX, 2.0f);
  XFCircle3D other(center, kZ, kY, 2.0f + 0.01f);  // majorDir not compared
  EXPECT_TRUE(circle == other);
  other.radius = above(2.01f);
  EXPECT_FALSE(circle == other);

  other = circle;
  const float within[][3] = {{0, 0, -1}, {0, 0, 0.985f}, {0, 0, 1.015f}};
  for (const auto& n : within) {
    std::copy(n, n + 3, other.normal);
    EXPECT_TRUE(circle == other) << n[2];
  }
  const float outside[][3] = {{0, 0, 0.975f}, {0, 0, -1.03f}, {0, 1, 0}};
  for (const auto& n : outside) {
    std::copy(n, n + 3, other.normal);
    EXPECT_FALSE(circle == other) << n[1] << " " << n[2];
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

  XFRectangle3D rect(kOrigin, kZ, kX, 3.0f, 1.0f);
  XFRectangle3D wider = rect;
  wider.halfWidth = 1.02f;
  EXPECT_FALSE(rect == wider);

  XFRoundGroove3D round(kOrigin, kZ, kX, 3.0f, 1.0f, 0.5f);
  XFRoundGroove3D rounder = round;
  rounder.cornerRadius = 0.52f;
  EXPECT_FALSE(round == rounder);
  rounder.cornerRadius = 0.505f;
  EXPECT_TRUE(round == rounder);
}

TEST(FlatRecords, LinesAndPlanesTakeTheShapeSizes) {
  const float c[3] = {1, 2, 3};
  const XFOvalGroove3D oval(c, kZ, kX, 1.5f, 2.0f);
  XFLine3D2 l[5];
  XFCircle3D(c, kZ, kX, 2.0f).getLine(l[0]);
  oval.getLine(l[1]);
  oval.getLineMajorDir(l[2]);
  XFRectangle3D(c, kZ, kX, 3, 1).getLine(l[3]);
  XFRoundGroove3D(c, kZ, kX, 4, 1, 0.5f).getLineMajorDir(l[4]);
  const float* lineDirs[] = {kZ, kZ, kX, kZ, kX};
  const float lengths[] = {4, 7, 7, 6, 8};
  for (int i = 0; i < 5; ++i) {
    SCOPED_TRACE(i);
    ExpectNear3(l[i].center, c, 0.0);
    ExpectNear3(l[i].dir, lineDirs[i], 0.0);
    EXPECT_EQ(l[i].length, lengths[i]);
  }

  XFPlane p[4];  // the circle makes up its majorDir (kX), the rest keep kY
  XFCircle3D(c, kZ, kY, 2.0f).getPlane(p[0]);
  XFOvalGroove3D(c, kZ, kY, 1.5f, 2.0f).getPlane(p[1]);
  XFRectangle3D(c, kZ, kY, 3, 1).getPlane(p[2]);
  XFRoundGroove3D(c, kZ, kY, 3, 1, 0.5f).getPlane(p[3]);
  const float* majorDirs[] = {kX, kY, kY, kY};
  const float sizes[4][2] = {{4, 4}, {7, 4}, {6, 2}, {6, 2}};
  for (int i = 0; i < 4; ++i) {
    SCOPED_TRACE(i);
    ExpectNear3(p[i].majorDir, majorDirs[i], 0.0);
    EXPECT_EQ(p[i].length, sizes[i][0]);
    EXPECT_EQ(p[i].width, sizes[i][1]);
    EXPECT_EQ(p[i].d, -3.0f);
  }
}

TEST(FlatRecords, InvertFlipsOnlyTheNormal) {
  const float c[3] = {1, 2, 3}, n[3] = {0.36f, 0.48f, 0.8f},
              m[3] = {0.8f, -0.6f, 0.1f};
  const auto expectFlipped = [](const auto& r) {
    const auto f = r.invert();
    for (int k = 0; k < 3; ++k)
      EXPECT_TRUE(f.normal[k] == -r.normal[k] &&
                  f.majorDir[k] == r.majorDir[k]);
  };
  expectFlipped(XFPlane(c, n, m, 4, 2));
  expectFlipped(XFCircle3D(c, n, m, 2));
  expectFlipped(XFOvalGroove3D(c, n, m, 1, 1));
  expectFlipped(XFRectangle3D(c, n, m, 3, 1));
  expectFlipped(XFRoundGroove3D(c, n, m, 3, 1, 0.5f));
}

TEST(XFCylinder, BuildsFromAxisOrEndsAndKeepsEndsWhenTheyCoincide) {
  const float base[3] = {1, 2, 3};
  XFCylinder cyl(base, kZ, 2.0f, 10.0f);
  ExpectNear3(cyl.center, cv::Point3f(1, 2, 8), 0.0);
  ExpectNear3(cyl.top, cv::Point3f(1, 2, 13), 0.0);

  const float top[3] = {1, 8, 11};
  cyl = XFCylinder(base, top, 2.0f);
  ExpectNear3(cyl.axis, cv::Point3f(0, 0.6f, 0.8f), kTol);
  ExpectNear3(cyl.center, cv::Point3f(1, 5, 7), kTol);
  EXPECT_EQ(cyl.height, 10.0f);
  XFLine3D2 line;
  cyl.getLine(line);
  EXPECT_EQ(line.length, 10.0f);

  const XFCylinder turned = cyl.invert();
  ExpectNear3(turned.base, top, 0.0);
  ExpectNear3(turned.top, base, 0.0);
  ExpectNear3(turned.axis, cv::Point3f(0, -0.6f, -0.8f), kTol);

  const XFCylinder flat(base, base, 2.0f);
  EXPECT_EQ(flat.axis[2], 0.0f);
  EXPECT_EQ(flat.center[2], 0.0f);
  EXPECT_EQ(flat.height, 0.0f);
}

TEST(XFCone, ApexAndHalfAngleFollowFromTheRadii) {
  const float top[3] = {0, 0, 1};
  for (const XFCone& cone : {XFCone(kOrigin, kZ, 2.0f, 1.0f, 1.0f),
                             XFCone(kOrigin, top, 2.0f, 1.0f)}) {
    EXPECT_FLOAT_EQ(cone.halfAngle, static_cast<float>(std::atan(1.0)));
    ExpectNear3(cone.apex, cv::Point3f(0, 0, 2), kTol);
    ExpectNear3(cone.top, top, kTol);
    XFPoint middle;
    cone.getCenterPoint(middle);  // between base and top, not the apex
    ExpectNear3(xyz(middle), cv::Point3f(0, 0, 0.5f), 0.0);
    XFLine3D2 line;
    cone.getLine(line);
    ExpectNear3(line.center, xyz(middle), 0.0);
    EXPECT_EQ(line.length, 1.0f);
  }
  // Equal radii: no guard, the apex lies at infinity.
  EXPECT_FALSE(std::isfinite(XFCone(kOrigin, kZ, 1.0f, 1.0f, 1.0f).apex[2]));

  const XFCone flat(top, top, 2.0f, 1.0f);
  EXPECT_EQ(flat.apex[2], 0.0f);
  EXPECT_EQ(flat.halfAngle, 0.0f);
}

TEST(VectorConstructors, ReadFieldsInDeclaredOrderAndIgnoreOtherSizes) {
  EXPECT_EQ(XFLine3D(iota(6)).end[0], 4.0f);
  EXPECT_EQ(XFLine3D2(iota(7)).length, 7.0f);
  EXPECT_EQ(XFCircle3D(iota(10)).majorDir[0], 7.0f);
  EXPECT_EQ(XFSphere(iota(4)).radius, 4.0f);
  const XFCylinder cyl(iota(14));
  EXPECT_EQ(cyl.radius, 7.0f);
  EXPECT_EQ(cyl.height, 8.0f);
  EXPECT_EQ(cyl.top[2], 14.0f);
  const XFCone cone(iota(16));
  EXPECT_EQ(cone.halfAngle, 7.0f);
  EXPECT_EQ(cone.height, 14.0f);
  EXPECT_EQ(cone.topRadius, 16.0f);
  EXPECT_EQ(XFOvalGroove3D(iota(11)).halfStraight, 10.0f);
  EXPECT_EQ(XFRectangle3D(iota(11)).halfWidth, 11.0f);
  EXPECT_EQ(XFRoundGroove3D(iota(12)).cornerRadius, 12.0f);

  // A wrong size reads nothing; the fields keep their zeroed defaults.
  const XFCylinder rejected(iota(15));
  EXPECT_EQ(rejected.center[0], 0.0f);
  EXPECT_EQ(rejected.top[2], 0.0f);
  EXPECT_EQ(XFRoundGroove3D(iota(11)).normal[0], 0.0f);
}

TEST(XFPolyLine, BuildsFromTriplesReversesAndNeverMerges) {
  const float xyz[9] = {0, 0, 0, 1, 0, 0, 2, 0, 0};
  XFPolyLine poly(xyz, 3);
  ASSERT_EQ(poly.points.size(), 3u);
  EXPECT_EQ(poly.points[2].x, 2.0f);
  EXPECT_TRUE(XFPolyLine(xyz, 0).points.empty());
  EXPECT_TRUE(XFPolyLine(poly.points.data(), -1).points.empty());

  const XFPolyLine reversed = poly.invert();
  EXPECT_EQ(reversed.points[0].x, 2.0f);
  EXPECT_EQ(reversed.points[2].x, 0.0f);
  poly.merge(reversed);
  EXPECT_EQ(poly.points.size(), 3u);
}

TEST(XAngleAttributes, ConversionsRoundAsDocumentedAndAreNotInverses) {
  float out = 0.0f;
  // Float quotient 51 / 180 first; all in double would give 0.890117943.
  XAngleAttributes::Angle2Radian(51.0f, out);
  EXPECT_EQ(out, 0.890117884f);
  // All in double; a float quotient 0.17 / pi would give 9.74028206.
  XAngleAttributes::Radian2Angle(0.17f, out);
  EXPECT_EQ(out, 9.74028301f);

  XAngleAttributes::Angle2Radian(13.0f, out);
  XAngleAttributes::Radian2Angle(out, out);
  EXPECT_EQ(out, 13.000001f);
}

}  // namespace
}  // namespace xgeofeature
