#include "zelmo/feature/plane_frame.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"

namespace zelmo {
namespace frame {
namespace {

// The frame's x axis comes from float points: it is in the plane to this.
constexpr double kFloatAxisTol = 1e-6;

TEST(PlaneLocalFrame, AxisFromFirstOffCentrePointElseFallback) {
  const cv::Vec3d c(10, 20, 30);
  const std::vector<cv::Point3f> near = {{10.005f, 20, 30}, {9.995f, 20, 30}};
  // |n0| largest (ties included): the axis comes from t = (0, 1, 0).
  const cv::Vec3d n0(0.6, 0.6, 0.0), n2(0, 0.6, 0.8);
  const cv::Vec3d u0 = planeLocalAxis(near, c, cv::normalize(n0));
  test::ExpectSameDirection(
      u0,
      cv::normalize(cv::normalize(n0).cross(cv::Vec3d(0, 1, 0)))
          .cross(cv::normalize(n0)),
      test::kDoubleTol);
  const cv::Vec3d u2 = planeLocalAxis({}, c, n2);
  test::ExpectSameDirection(u2, n2.cross(cv::Vec3d(1, 0, 0)).cross(n2),
                            test::kDoubleTol);
  // The first point 0.01 or more away in some coordinate gives the axis.
  const std::vector<cv::Point3f> far = {
      {10.005f, 20, 30}, {10, 20.02f, 30}, {13, 20, 30}};
  test::ExpectSameDirection(planeLocalAxis(far, c, n2), cv::Vec3d(0, 1, 0),
                            1e-4);
}

TEST(PlaneLocalFrame, MovesPointsToTheLocalPlaneAndBack) {
  std::mt19937 rng(113);
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(testing::Message() << "seed 113 trial " << trial);
    const test::Frame f = test::RandomFrame(rng, 500.0);
    const test::Samples s = test::SamplePlane(f, 30, 20, 50, 0.0, rng);
    const double plane[4] = {f.w[0], f.w[1], f.w[2], -f.w.dot(f.origin)};
    PlaneFrame frame;
    planeLocalFrame(s.points, plane, frame);
    std::vector<cv::Point2f> local;
    toLocal2D(s.points, frame.toLocal, local);
    ASSERT_EQ(local.size(), s.points.size());
    for (size_t k = 0; k < local.size(); ++k)
      test::ExpectNear3(fromLocal2D(frame.toSpace, local[k].x, local[k].y),
                        s.points[k], 1e-3);
    // x runs towards the first point, the directions span the plane.
    EXPECT_GT(local[0].x, 0.0f);
    EXPECT_NEAR(local[0].y, 0.0f, 1e-3);
    const cv::Vec3d d = localDirection(frame.toSpace, 0.7);
    EXPECT_NEAR(d.dot(f.w), 0.0, kFloatAxisTol);
    EXPECT_NEAR(cv::norm(d), 1.0, test::kDoubleTol);
  }
}

}  // namespace
}  // namespace frame
}  // namespace zelmo
