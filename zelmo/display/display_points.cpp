#include "zelmo/display/display_points.h"

#include <cmath>

namespace zelmo {
namespace display {

LocalFramePlanes::LocalFramePlanes(const cv::Vec3d& origin,
                                   const cv::Vec3d& x,
                                   const cv::Vec3d& y,
                                   const cv::Vec3d& z)
    : targetNormals{x, y, z},
      targetPoints{cv::Point3d(origin), cv::Point3d(origin),
                   cv::Point3d(origin)},
      sourceNormals{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
      sourcePoints{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}} {}

cv::Vec3d widen(const float* const v) { return cv::Vec3d(v[0], v[1], v[2]); }

double angularStep(int count) { return 2.0 * CV_PI / count; }

float* writeLocalPoint(const double* rt, double x, double y, float* out) {
  for (int r = 0; r < 3; ++r) {
    const double* row = rt + 4 * r;
    out[r] = static_cast<float>(row[0] * x + row[1] * y +
                                row[3]);  // double inside, stored as float
  }
  return out + 3;
}

float* writeLocalArc(const double* rt,
                     double cx,
                     double cy,
                     double r,
                     double step,
                     int first,
                     int last,
                     float* out) {
  for (int i = first; i < last; ++i) {
    const double angle = i * step;
    out = writeLocalPoint(rt, cx + r * std::cos(angle),
                          cy + r * std::sin(angle), out);
  }
  return out;
}

}  // namespace display
}  // namespace zelmo
