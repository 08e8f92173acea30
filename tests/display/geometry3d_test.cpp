// The solids of the display family: two rings of points each.
#include "zelmo/display/geometry3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/display/display_test_util.h"
#include "tests/support/tolerance.h"
#include "zelmo/display/cone.h"
#include "zelmo/display/cylinder.h"

namespace xgeometry {
namespace {

using zelmo::test::ExpectNear3;
using zelmo::test::GuardedBuffer;
using zelmo::test::kDisplayTol;

TEST(XSolidDisplay, RingsOfCountPointsAtRadiiHeightApartFromTheAuxiliaryDir) {
  std::mt19937 rng(77);
  std::uniform_real_distribution<double> size(0.5, 50);
  const int counts[] = {0, 1, 2, 3, 7, 13, 24};
  for (int trial = 0; trial < 14; ++trial) {
    SCOPED_TRACE(trial);
    const zelmo::test::Frame f = zelmo::test::RandomFrame(rng, 500);
    const cv::Vec3f p = f.origin, axis = f.w;
    const float h = float(size(rng)), r1 = float(size(rng)),
                r2 = float(size(rng) / 2);
    const bool cone = trial % 2 == 1;
    const int count = counts[trial % 7];
    GuardedBuffer first(count + 4), second(count + 4);
    zelmo::test::StdoutCapture capture;
    const int status =
        cone ? XCone(p.val, axis.val, h, r1, r2)
                   .getDisplayData(count, first.out(), second.out())
             : XCylinder(p.val, axis.val, h, r1)
                   .getDisplayData(count, first.out(), second.out());
    EXPECT_EQ(capture.Take(), "");
    EXPECT_EQ(status, 0);
    ASSERT_TRUE(first.Written() == count && second.Written() == count);
    const cv::Vec3d base = p, w = axis;
    for (int i = 0; i < count; ++i) {
      const cv::Vec3d d1 = first.Point(i) - base;
      EXPECT_NEAR(cv::norm(d1), r1, kDisplayTol);
      EXPECT_NEAR(d1.dot(w), 0, kDisplayTol);
      ExpectNear3(second.Point(i) - base - double(h) * w,
                  d1 * (double(cone ? r2 : r1) / r1), kDisplayTol);
      // A cylinder's second ring is the stored first one moved, bit for bit.
      for (int k = 0; !cone && k < 3; ++k)
        EXPECT_EQ(second.Point(i)[k],
                  float(first.Point(i)[k] + double(h) * axis[k]))
            << i << " " << k;
    }
  }
  const float p[3] = {1, -2, 3}, axis[3] = {0, 0, 1};
  const double k = 5 / std::sqrt(2.0);
  GuardedBuffer first(8), second(8);
  EXPECT_EQ(
      XCylinder(p, axis, 4, 5).getDisplayData(8, first.out(), second.out()), 0);
  ExpectNear3(first.Point(0), cv::Vec3d(1 + k, -2 + k, 3), kDisplayTol);
  ExpectNear3(first.Point(2), cv::Vec3d(1 - k, -2 + k, 3), kDisplayTol);
  ExpectNear3(second.Point(0), cv::Vec3d(1 + k, -2 + k, 7), kDisplayTol);
}

}  // namespace
}  // namespace xgeometry
