// Outliers that normal-based filters can tell apart: points moved off the
// surface whose measured normal is turned as well.
#pragma once

#include <functional>

#include "tests/support/samplers.h"

namespace zelmo::test {

// Moves every k-th point (k = 1 / fraction) `distance` along its normal
// and replaces the normal by turn(normal).
inline void AddTurnedOutliers(
    Samples& s,
    double fraction,
    double distance,
    const std::function<cv::Vec3d(const cv::Vec3d&)>& turn) {
  const size_t step = static_cast<size_t>(1.0 / fraction);
  for (size_t i = 0; i < s.points.size(); i += step) {
    const cv::Vec3d n(s.normals[i].x, s.normals[i].y, s.normals[i].z);
    const cv::Vec3d p(s.points[i].x, s.points[i].y, s.points[i].z);
    s.points[i] = cv::Point3f(cv::Point3d(p + distance * n));
    s.normals[i] = cv::Point3f(cv::Point3d(turn(n)));
  }
}

// A unit vector square to `n`: turns a surface normal into the surface.
inline cv::Vec3d SquareTo(const cv::Vec3d& n) {
  const cv::Vec3d t =
      n.cross(std::fabs(n[0]) < 0.5 ? cv::Vec3d(1, 0, 0) : cv::Vec3d(0, 1, 0));
  return t * (1.0 / cv::norm(t));
}

}  // namespace zelmo::test
