#include "zelmo/display/cylinder.h"

#include <algorithm>

namespace xgeometry {

XCylinder::XCylinder()
    : point_{0, 0, 0}, axis_{0, 0, 0}, height_(0), radius_(0) {}

XCylinder::XCylinder(const float* const point,
                     const float* const axis,
                     const float& height,
                     const float& radius)
    : height_(height), radius_(radius) {
  std::copy(point, point + 3, point_);
  std::copy(axis, axis + 3, axis_);
}

int XCylinder::getDisplayData(const int& count,
                              float* const first,
                              float* const second) const {
  return getRingData(point_, axis_, height_, radius_, radius_, count, first,
                     second);
}

}  // namespace xgeometry
