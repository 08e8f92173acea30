#include "zelmo/display/circle3d.h"

#include <gtest/gtest.h>

#include "tests/display/display_test_util.h"
#include "tests/support/tolerance.h"

namespace xgeometry {
namespace {

using zelmo::test::GuardedBuffer;
using zelmo::test::PrintingOneFrame;

TEST(XCicle3D, MadeUpMajorDirTakesTheLargestNormalComponentLowestOnTies) {
  // Normals led by x, y, z and an x-y tie (x wins): the first point lies
  // along the made-up direction, whose zero entry shows the rule.
  const cv::Vec3d normals[] = {
      {0.8, 0.36, -0.48}, {0.36, -0.8, 0.48}, {0.48, 0.36, 0.8}, {1, 1, 0.5}};
  const cv::Vec3d firstDirs[] = {
      {-0.45, 1, 0}, {1, 0.45, 0}, {1, 0, -0.6}, {-1, 1, 0}};
  const float c[3] = {-300, 120, 45}, r = 7;
  const XCicle3D circle;
  for (int k = 0; k < 4; ++k) {
    SCOPED_TRACE(k);
    const float n[3] = {float(normals[k][0]), float(normals[k][1]),
                        float(normals[k][2])};
    GuardedBuffer buffer(8);
    ASSERT_EQ(PrintingOneFrame([&] {
                return circle.getDisplayData2(c, n, r, 8, buffer.out());
              }),
              0);
    ASSERT_EQ(buffer.Written(), 8);
    const cv::Vec3d centre(c[0], c[1], c[2]);
    zelmo::test::ExpectNear3(buffer.Point(0),
                             centre + r * cv::normalize(firstDirs[k]),
                             zelmo::test::kDisplayTol);
    // Two points on, a quarter turn counter-clockwise about the normal.
    const cv::Vec3d a = buffer.Point(0) - centre, b = buffer.Point(2) - centre;
    EXPECT_NEAR(a.cross(b).dot(cv::normalize(normals[k])) / (r * r), 1.0,
                zelmo::test::kDisplayTol);
  }
}

}  // namespace
}  // namespace xgeometry
