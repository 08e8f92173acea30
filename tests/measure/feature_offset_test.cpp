// XGeoFConstructor: common tangents of two circles and tangent planes of
// three spheres.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/measure/measure_test_util.h"
#include "zelmo/measure/feature_constructor.h"

namespace xgeofeature {
namespace {

using namespace zelmo::test;
using C = XGeoFConstructor;

TEST(XGeoFConstructorOffsets, TangentLinesTouchBothCirclesFromOneSide) {
  std::mt19937 rng(81);
  std::uniform_real_distribution<double> radius(0, 30), coord(-40, 40);
  for (int trial = 0; trial < 30; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const XFPoint centers[2] = {Pt(f.At(coord(rng), coord(rng), 0)),
                                Pt(f.At(coord(rng) + 150, coord(rng), 0))};
    float radii[2] = {float(radius(rng)), float(radius(rng))};
    if (trial % 5 == 0) radii[1] = radii[0];
    if (trial % 7 == 0) radii[trial % 2] = 0.0f;  // tangents from a point
    const int large = radii[1] > radii[0] ? 1 : 0;
    XFLine3D2 lines[2];
    ASSERT_EQ(C::getLineOffset(centers, radii, Plane(f.origin, f.w), lines), 2);
    const cv::Vec3d across =
        f.w.cross(V(centers[1 - large]) - V(centers[large]));
    double sides[2];
    for (int k = 0; k < 2; ++k) {
      // In the plane, from the touch point on the larger circle to the one
      // on the smaller, both circles on the same side of it.
      const XFLine3D2& line = lines[k];
      EXPECT_NEAR(V(line.dir).dot(f.w), 0.0, kDirTol);
      XFPoint ends[2];
      line.getStartPoint(ends[large]);
      line.getEndPoint(ends[1 - large]);
      cv::Vec3d normal = f.w.cross(V(line.dir));
      if ((V(centers[large]) - V(ends[large])).dot(normal) < 0) normal *= -1;
      for (int i = 0; i < 2; ++i) {
        EXPECT_NEAR((V(centers[i]) - V(ends[i])).dot(normal), radii[i],
                    kPosTol);
        EXPECT_NEAR(cv::norm(V(centers[i]) - V(ends[i])), radii[i], kPosTol);
      }
      sides[k] = (V(line.center) - V(centers[large])).dot(across);
    }
    EXPECT_GT(sides[0], 0.0);  // out[0] on the side of normal x e
    EXPECT_LT(sides[1], 0.0);
  }
  const XFPlane ground = Plane({0, 0, 0}, {0, 0, 1});
  const XFPoint centers[2] = {XFPoint(0, 0, 0), XFPoint(2, 0, 0)};
  XFLine3D2 lines[2];
  const float inside[2] = {5, 3};  // touching from inside: one line
  ASSERT_EQ(C::getLineOffset(centers, inside, ground, lines), 1);
  ExpectLine(lines[0], {5, 0, 0}, {0, 1, 0}, 1);
  lines[0].length = kUnwritten;
  const float contained[2] = {5, 2.5f}, negative[2] = {-1, 1}, same[2] = {1, 1};
  EXPECT_EQ(C::getLineOffset(centers, contained, ground, lines), C::kNoTangent);
  EXPECT_EQ(C::getLineOffset(centers, negative, ground, lines),
            C::kNegativeRadius);
  // Centres stacked along the normal: unequal radii have no frame in the
  // plane and fail; equal radii still give their two lines, and coincident
  // centres of equal radii touch in one, all with a zero direction.
  const XFPoint stacked[2] = {XFPoint(0, 0, 0), XFPoint(0, 0, 4)};
  const float unequal[2] = {2, 1};
  EXPECT_EQ(C::getLineOffset(stacked, unequal, ground, lines), C::kNoTangent);
  EXPECT_EQ(lines[0].length, kUnwritten);
  ASSERT_EQ(C::getLineOffset(stacked, same, ground, lines), 2);
  for (const XFLine3D2& line : lines) ExpectLine(line, {0, 0, 0}, {0, 0, 0}, 0);
  const XFPoint twice[2] = {XFPoint(1, 2, 3), XFPoint(1, 2, 3)};
  ASSERT_EQ(C::getLineOffset(twice, same, ground, lines), 1);
  ExpectLine(lines[0], {1, 2, 0}, {0, 0, 0}, 1);
}

TEST(XGeoFConstructorOffsets, TangentPlanesKeepEachPointAtItsOffset) {
  std::mt19937 rng(82);
  std::uniform_real_distribution<double> offset(0, 12), jitter(-15, 15);
  for (int trial = 0; trial < 30; ++trial) {
    SCOPED_TRACE(trial);
    const Frame f = RandomFrame(rng, kMaxOffset);
    const XFPoint points[3] = {Pt(f.At(jitter(rng), jitter(rng), 0)),
                               Pt(f.At(100 + jitter(rng), jitter(rng), 0)),
                               Pt(f.At(jitter(rng), 90 + jitter(rng), 0))};
    float offsets[3] = {float(offset(rng)), float(offset(rng)),
                        float(offset(rng))};
    if (trial % 4 == 0) offsets[trial % 3] = 0.0f;
    if (trial % 5 == 0) offsets[1] = offsets[2] = offsets[0];
    XFPlane planes[2];
    ASSERT_EQ(C::getPlaneOffset(points, offsets, planes), 0);
    // The normal of the points' plane, taken upwards in space.
    const cv::Vec3d up = f.w[2] >= 0 ? f.w : -f.w;
    for (int s = 0; s < 2; ++s) {
      SCOPED_TRACE(s);
      EXPECT_GT(V(planes[s].normal).dot(up) * (s == 0 ? 1 : -1), 0.0);
      EXPECT_NEAR(cv::norm(V(planes[s].normal)), 1.0, kDirTol);
      for (int k = 0; k < 3; ++k)
        EXPECT_NEAR(SignedDistance(V(points[k]), planes[s]), -offsets[k],
                    kPosTol);
    }
  }
  // A sphere that holds another point leaves that pair no outer tangents;
  // a small sphere between two large ones sinks below their tangents.
  const struct {
    XFPoint points[3];
    float offsets[3];
    int code;
  } failing[] = {
      {{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}, {1, -1, 1}, C::kNegativeOffset},
      {{{0, 0, 0}, {1, 0, 0}, {0, 0, 0}}, {1, 1, 1}, C::kCoincidentPoints},
      {{{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}, {1, 1, 1}, C::kDegeneratePoints},
      {{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}, {20, 1, 1}, C::kNoTangentPlane},
      {{{-20, 0, 0}, {20, 0, 0}, {0, 0.5f, 0}},
       {10, 10, 1},
       C::kNoTangentPlane}};
  for (const auto& c : failing) {
    SCOPED_TRACE(&c - failing);
    XFPlane planes[2];
    planes[0].d = planes[1].d = kUnwritten;
    EXPECT_EQ(C::getPlaneOffset(c.points, c.offsets, planes), c.code);
    EXPECT_EQ(planes[0].d + planes[1].d, 2 * kUnwritten);
  }
}

}  // namespace
}  // namespace xgeofeature
