#include "zelmo/display/round_groove3d.h"

#include <algorithm>

#include "zelmo/display/display_points.h"

namespace xgeometry {

using zelmo::display::widen;
using zelmo::display::writeLocalArc;
using zelmo::display::writeLocalPoint;

XRoundGroove3D::XRoundGroove3D()
    : center_{0, 0, 0},
      normal_{0, 0, 0},
      major_dir_{0, 0, 0},
      half_length_(0),
      half_width_(0),
      corner_radius_(0) {}

XRoundGroove3D::XRoundGroove3D(const float* const center,
                               const float* const normal,
                               const float* const majorDir,
                               const float& halfLength,
                               const float& halfWidth,
                               const float& cornerRadius)
    : half_length_(halfLength),
      half_width_(halfWidth),
      corner_radius_(cornerRadius) {
  std::copy(center, center + 3, center_);
  std::copy(normal, normal + 3, normal_);
  std::copy(majorDir, majorDir + 3, major_dir_);
}

int XRoundGroove3D::getDisplayData(const int& count, float* const out) const {
  return getDisplayData(center_, normal_, major_dir_, half_length_, half_width_,
                        corner_radius_, count, out);
}

int XRoundGroove3D::getDisplayData(const float* const center,
                                   const float* const normal,
                                   const float* const majorDir,
                                   const float& halfLength,
                                   const float& halfWidth,
                                   const float& cornerRadius,
                                   const int& count,
                                   float* const out) const {
  double rt[16];
  getLocalFrame(widen(center), widen(normal), widen(majorDir), rt);
  const int q = count / 4;
  const double s = zelmo::display::angularStep(count);
  const double a = halfLength, b = halfWidth, r = cornerRadius;
  const double A = a - r, B = b - r;
  float* p = writeLocalArc(rt, A, B, r, s, 0, q, out);
  p = writeLocalPoint(rt, A, b, p);
  p = writeLocalPoint(rt, -A, b, p);
  p = writeLocalArc(rt, -A, B, r, s, q, 2 * q, p);
  p = writeLocalPoint(rt, -a, B, p);
  p = writeLocalPoint(rt, -a, -B, p);
  p = writeLocalArc(rt, -A, -B, r, s, 2 * q, 3 * q, p);
  p = writeLocalPoint(rt, -A, -b, p);
  p = writeLocalPoint(rt, A, -b, p);
  p = writeLocalArc(rt, A, -B, r, s, 3 * q, 4 * q, p);
  p = writeLocalPoint(rt, a, -B, p);
  writeLocalPoint(rt, a, B, p);
  return 0;
}

}  // namespace xgeometry
