#include "zelmo/feature/plane_record.h"

#include <algorithm>
#include <cmath>

#include "zelmo/feature/perpendicular.h"

namespace xgeofeature {
namespace {}  // namespace

XFPlane::XFPlane(const float* const center,
                 const float* const normal,
                 const float* const majorDir,
                 const float& length,
                 const float& width)
    : length(length), width(width) {
  std::copy_n(center, 3, this->center);
  std::copy_n(normal, 3, this->normal);
  std::copy_n(majorDir, 3, this->majorDir);
  a = normal[0];
  b = normal[1];
  c = normal[2];
  // In float, left to right: d must come out the same wherever a plane
  // record is built from a center and a normal.
  d = -center[0] * normal[0] - center[1] * normal[1] - center[2] * normal[2];
}

XFPlane::XFPlane(const float* const center, const float* const normal) {
  float majorDir[3];
  zelmo::detail::perpendicularUnit(normal, majorDir);
  *this = XFPlane(center, normal, majorDir, 1.0f, 1.0f);
}

XFPlane::XFPlane(const float* const abcd)
    : length(1.0f),
      width(1.0f),
      a(abcd[0]),
      b(abcd[1]),
      c(abcd[2]),
      d(abcd[3]) {
  std::copy_n(abcd, 3, normal);
  const int i = zelmo::detail::largestAbsIndex(normal);
  center[0] = center[1] = center[2] = 0.0f;
  center[i] = -d / normal[i];
  zelmo::detail::perpendicularUnit(normal, majorDir);
}

GeoFeatureType XFPlane::getFeatureType() const { return GeoPlane; }

void XFPlane::getCenterPoint(XFPoint& out) const { out = XFPoint(center); }

void XFPlane::getCornerPoint(XFPoint* const corners) const {
  const float halfLength = length * 0.5f;
  const float halfWidth = width * 0.5f;
  double along[3];
  for (int k = 0; k < 3; ++k)
    along[k] = static_cast<double>(majorDir[k]) * halfLength;

  const double n0 = normal[0], n1 = normal[1], n2 = normal[2];
  const double m0 = majorDir[0], m1 = majorDir[1], m2 = majorDir[2];
  const double cross[3] = {n1 * m2 - n2 * m1, n2 * m0 - n0 * m2,
                           n0 * m1 - n1 * m0};
  const double norm = std::sqrt(cross[0] * cross[0] + cross[1] * cross[1] +
                                cross[2] * cross[2]);
  const double scale = norm == 0.0 ? 0.0 : 1.0 / norm;
  double across[3];
  for (int k = 0; k < 3; ++k) across[k] = cross[k] * scale * halfWidth;

  // Signs of (a, b) for p0..p3: counter-clockwise about the normal.
  static constexpr double kSigns[4][2] = {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}};
  for (int p = 0; p < 4; ++p) {
    float out[3];
    for (int k = 0; k < 3; ++k) {
      // center +/- a is rounded to float before b is added: corner points
      // are reproduced bit for bit only with this order.
      const float edge =
          static_cast<float>(center[k] + kSigns[p][0] * along[k]);
      out[k] = static_cast<float>(edge + kSigns[p][1] * across[k]);
    }
    corners[p] = XFPoint(out);
  }
}

void XFPlane::inv() {
  for (float& v : normal) v = -v;
  a = -a;
  b = -b;
  c = -c;
  d = -d;
}

XFPlane XFPlane::invert() const {
  XFPlane out(*this);
  out.inv();
  return out;
}

}  // namespace xgeofeature
