#include "zelmo/feature/perpendicular.h"

#include <cmath>

#include "zelmo/feature/frame_toolkit.h"

namespace zelmo {
namespace detail {

int largestAbsIndex(const float* const v) {
  return frame::largestAbsIndex(cv::Vec3d(v[0], v[1], v[2]));
}

void perpendicularUnit(const float* const n, float* const out) {
  const cv::Vec3d v =
      frame::perpendicularDirection(cv::Vec3d(n[0], n[1], n[2]));
  for (int k = 0; k < 3; ++k) out[k] = static_cast<float>(v[k]);
}

bool withinCoordTol(const float& a, const float& b) {
  const float diff = a - b;
  return std::fabs(static_cast<double>(diff)) <= kCoordTol;
}

bool sameAxis(const float* const n1, const float* const n2) {
  const double dot = static_cast<double>(n1[0]) * n2[0] +
                     static_cast<double>(n1[1]) * n2[1] +
                     static_cast<double>(n1[2]) * n2[2];
  return std::fabs(std::fabs(dot) - 1.0) <= kAxisTol;
}

}  // namespace detail
}  // namespace zelmo
