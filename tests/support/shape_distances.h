// Distances from a point to fitted shapes, for recovery tests that compare a
// fit with the shape its points were sampled on.
#pragma once

#include "tests/support/samplers.h"

namespace zelmo::test {

// Distance of `q` from the plane a x + b y + c z + d = 0 (any scale).
inline double DistanceToPlane(const double* abcd, const cv::Vec3d& q) {
  const cv::Vec3d n(abcd[0], abcd[1], abcd[2]);
  return std::fabs(n.dot(q) + abcd[3]) / cv::norm(n);
}

// Distance of `q` from the line through `p` along `d` (any length).
inline double DistanceToLine(const cv::Vec3d& p,
                             const cv::Vec3d& d,
                             const cv::Vec3d& q) {
  return cv::norm((q - p).cross(d)) / cv::norm(d);
}

inline cv::Vec3d Vec3(const double* v) { return cv::Vec3d(v[0], v[1], v[2]); }
inline cv::Vec3d Vec3(const float* v) { return cv::Vec3d(v[0], v[1], v[2]); }

// The sum and the largest of distance(point) over `points`.
struct Spread {
  double sum = 0.0;
  double max = 0.0;
};
template <class Distance>
Spread SpreadOf(const std::vector<cv::Point3f>& points, Distance distance) {
  Spread s;
  for (const cv::Point3f& x : points) {
    const double e = distance(cv::Vec3d(x.x, x.y, x.z));
    s.sum += e;
    s.max = std::max(s.max, e);
  }
  return s;
}

}  // namespace zelmo::test
