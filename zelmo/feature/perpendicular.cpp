#include "zelmo/feature/perpendicular.h"

#include <cmath>

namespace zelmo {
namespace detail {

int largestAbsIndex(const float* const v) {
  int i = 0;
  if (std::fabs(v[1]) > std::fabs(v[i])) i = 1;
  if (std::fabs(v[2]) > std::fabs(v[i])) i = 2;
  return i;
}

void perpendicularUnit(const float* const n, float* const out) {
  const double n0 = n[0], n1 = n[1], n2 = n[2];
  double v[3];
  switch (largestAbsIndex(n)) {
    case 0:
      v[0] = -n1 / n0;
      v[1] = 1.0;
      v[2] = 0.0;
      break;
    case 1:
      v[0] = 1.0;
      v[1] = -n0 / n1;
      v[2] = 0.0;
      break;
    default:
      v[0] = 1.0;
      v[1] = 0.0;
      v[2] = -n0 / n2;
      break;
  }
  const double norm = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
  const double scale = norm == 0.0 ? 0.0 : 1.0 / norm;
  for (int k = 0; k < 3; ++k) out[k] = static_cast<float>(v[k] * scale);
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
