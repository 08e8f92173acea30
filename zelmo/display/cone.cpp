#include "zelmo/display/cone.h"

#include <algorithm>

namespace xgeometry {

XCone::XCone()
    : point_{0, 0, 0},
      axis_{0, 0, 0},
      height_(0),
      first_radius_(0),
      second_radius_(0) {}

XCone::XCone(const float* const point,
             const float* const axis,
             const float& height,
             const float& firstRadius,
             const float& secondRadius)
    : height_(height),
      first_radius_(firstRadius),
      second_radius_(secondRadius) {
  std::copy(point, point + 3, point_);
  std::copy(axis, axis + 3, axis_);
}

int XCone::getDisplayData(const int& count,
                          float* const first,
                          float* const second) const {
  return getRingData(point_, axis_, height_, first_radius_, second_radius_,
                     count, first, second);
}

}  // namespace xgeometry
