#include "zelmo/display/oval_groove3d.h"

#include <algorithm>

#include "zelmo/display/display_points.h"

namespace xgeometry {

using zelmo::display::widen;
using zelmo::display::writeLocalArc;
using zelmo::display::writeLocalPoint;

XOvalGroove3D::XOvalGroove3D()
    : center_{0, 0, 0},
      normal_{0, 0, 0},
      major_dir_{0, 0, 0},
      half_straight_(0),
      radius_(0) {}

XOvalGroove3D::XOvalGroove3D(const float* const center,
                             const float* const normal,
                             const float* const majorDir,
                             const float& halfStraight,
                             const float& radius)
    : half_straight_(halfStraight), radius_(radius) {
  std::copy(center, center + 3, center_);
  std::copy(normal, normal + 3, normal_);
  std::copy(majorDir, majorDir + 3, major_dir_);
}

int XOvalGroove3D::getDisplayData(const int& count, float* const out) const {
  return getDisplayData(center_, normal_, major_dir_, half_straight_, radius_,
                        count, out);
}

int XOvalGroove3D::getDisplayData(const float* const center,
                                  const float* const normal,
                                  const float* const majorDir,
                                  const float& halfStraight,
                                  const float& radius,
                                  const int& count,
                                  float* const out) const {
  double rt[16];
  getLocalFrame(widen(center), widen(normal), widen(majorDir), rt);
  const int q = count / 4;
  const double s = zelmo::display::angularStep(count);
  const double L = halfStraight, r = radius;
  float* p = writeLocalArc(rt, L, 0.0, r, s, -q, q, out);
  p = writeLocalPoint(rt, L, r, p);
  p = writeLocalPoint(rt, -L, r, p);
  p = writeLocalArc(rt, -L, 0.0, r, s, q, 3 * q, p);
  p = writeLocalPoint(rt, -L, -r, p);
  writeLocalPoint(rt, L, -r, p);
  return 0;
}

}  // namespace xgeometry
