#include "zelmo/display/rectangle3d.h"

#include <algorithm>

#include "zelmo/display/display_points.h"

namespace xgeometry {

using zelmo::display::widen;
using zelmo::display::writeLocalPoint;

XRectangle3D::XRectangle3D()
    : center_{0, 0, 0},
      normal_{0, 0, 0},
      major_dir_{0, 0, 0},
      half_length_(0),
      half_width_(0) {}

XRectangle3D::XRectangle3D(const float* const center,
                           const float* const normal,
                           const float* const majorDir,
                           const float& halfLength,
                           const float& halfWidth)
    : half_length_(halfLength), half_width_(halfWidth) {
  std::copy(center, center + 3, center_);
  std::copy(normal, normal + 3, normal_);
  std::copy(majorDir, majorDir + 3, major_dir_);
}

int XRectangle3D::getDisplayData(float* const out) const {
  return getDisplayData(center_, normal_, major_dir_, half_length_, half_width_,
                        out);
}

int XRectangle3D::getDisplayData(const float* const center,
                                 const float* const normal,
                                 const float* const majorDir,
                                 const float& halfLength,
                                 const float& halfWidth,
                                 float* const out) const {
  double rt[16];
  getLocalFrame(widen(center), widen(normal), widen(majorDir), rt);
  const double a = halfLength, b = halfWidth;
  float* p = writeLocalPoint(rt, a, b, out);
  p = writeLocalPoint(rt, -a, b, p);
  p = writeLocalPoint(rt, -a, -b, p);
  writeLocalPoint(rt, a, -b, p);
  return 0;
}

}  // namespace xgeometry
