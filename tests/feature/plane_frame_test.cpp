#include "zelmo/feature/plane_frame.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/tolerance.h"

namespace zelmo {
namespace frame {
namespace {

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

}  // namespace
}  // namespace frame
}  // namespace zelmo
