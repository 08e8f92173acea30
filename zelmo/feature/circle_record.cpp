#include "zelmo/feature/circle_record.h"

#include <algorithm>

#include "zelmo/feature/perpendicular.h"

namespace xgeofeature {
namespace {}  // namespace

XFCircle3D::XFCircle3D(const float* const center,
                       const float* const normal,
                       const float* const majorDir,
                       const float& radius)
    : radius(radius) {
  std::copy_n(center, 3, this->center);
  std::copy_n(normal, 3, this->normal);
  std::copy_n(majorDir, 3, this->majorDir);
}

XFCircle3D::XFCircle3D(const float* const center,
                       const float* const normal,
                       const float& radius)
    : radius(radius) {
  std::copy_n(center, 3, this->center);
  std::copy_n(normal, 3, this->normal);
  zelmo::detail::perpendicularUnit(normal, majorDir);
}

XFCircle3D::XFCircle3D(const std::vector<float>& v) {
  if (v.size() != 10) return;
  std::copy_n(&v[0], 3, center);
  std::copy_n(&v[3], 3, normal);
  std::copy_n(&v[6], 3, majorDir);
  radius = v[9];
}

GeoFeatureType XFCircle3D::getFeatureType() const { return GeoCircle; }

void XFCircle3D::getCenterPoint(XFPoint& out) const { out = XFPoint(center); }

void XFCircle3D::getLine(XFLine3D2& out) const {
  out = XFLine3D2(center, normal, 2.0f * radius);
}

void XFCircle3D::getPlane(XFPlane& out) const {
  float planeMajorDir[3];
  zelmo::detail::perpendicularUnit(normal, planeMajorDir);
  const float size = 2.0f * radius;
  out = XFPlane(center, normal, planeMajorDir, size, size);
}

void XFCircle3D::inv() {
  for (float& v : normal) v = -v;
}

XFCircle3D XFCircle3D::invert() const {
  XFCircle3D out(*this);
  out.inv();
  return out;
}

bool XFCircle3D::operator==(const XFCircle3D& other) {
  using zelmo::detail::withinCoordTol;
  return withinCoordTol(radius, other.radius) &&
         withinCoordTol(center[0], other.center[0]) &&
         withinCoordTol(center[1], other.center[1]) &&
         withinCoordTol(center[2], other.center[2]) &&
         zelmo::detail::sameAxis(normal, other.normal);
}

}  // namespace xgeofeature
