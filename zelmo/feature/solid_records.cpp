#include "zelmo/feature/solid_records.h"

#include <algorithm>
#include <cmath>

namespace xgeofeature {
namespace {

// End points closer than this give no axis.
constexpr double kMinHeight = 1e-6;

// base + dir x t, in double, stored as float.
void alongAxis(const float* const base,
               const double* const dir,
               double t,
               float* const out) {
  for (int k = 0; k < 3; ++k) out[k] = static_cast<float>(base[k] + dir[k] * t);
}

// The unit direction from `from` to `to` in double into `dir`, and their
// distance. `dir` is left unwritten when the distance is not over
// kMinHeight.
double unitDirection(const float* const from,
                     const float* const to,
                     double* const dir) {
  const double diff[3] = {static_cast<double>(to[0]) - from[0],
                          static_cast<double>(to[1]) - from[1],
                          static_cast<double>(to[2]) - from[2]};
  const double h =
      std::sqrt(diff[0] * diff[0] + diff[1] * diff[1] + diff[2] * diff[2]);
  if (h > kMinHeight) {
    for (int k = 0; k < 3; ++k) dir[k] = diff[k] / h;
  }
  return h;
}

// The distance from the base to the apex of a cone, as a multiple of the
// unit axis. Equal radii divide by zero; the infinite or NaN result is
// passed on unguarded.
double apexOffset(const float& baseRadius,
                  const float& topRadius,
                  double height) {
  return height * topRadius / (static_cast<double>(baseRadius) - topRadius) +
         height;
}

}  // namespace

// ---- XFSphere ---------------------------------------------------------------

XFSphere::XFSphere(const float& x,
                   const float& y,
                   const float& z,
                   const float& radius)
    : center{x, y, z}, radius(radius) {}

XFSphere::XFSphere(const float* const center, const float& radius)
    : center{center[0], center[1], center[2]}, radius(radius) {}

XFSphere::XFSphere(const std::vector<float>& v) {
  if (v.size() != 4) return;
  std::copy_n(&v[0], 3, center);
  radius = v[3];
}

GeoFeatureType XFSphere::getFeatureType() const { return GeoSphere; }

void XFSphere::getCenterPoint(XFPoint& out) const { out = XFPoint(center); }

// ---- XFCylinder -------------------------------------------------------------

XFCylinder::XFCylinder(const float* const base,
                       const float* const axis,
                       const float& radius,
                       const float& height)
    : radius(radius), height(height) {
  const double dir[3] = {axis[0], axis[1], axis[2]};
  std::copy_n(axis, 3, this->axis);
  std::copy_n(base, 3, this->base);
  alongAxis(base, dir, height * 0.5, center);
  alongAxis(base, dir, height, top);
}

XFCylinder::XFCylinder(const float* const base,
                       const float* const top,
                       const float& radius)
    : radius(radius) {
  double dir[3];
  const double h = unitDirection(base, top, dir);
  if (h > kMinHeight) {
    for (int k = 0; k < 3; ++k) axis[k] = static_cast<float>(dir[k]);
    alongAxis(base, dir, h * 0.5, center);
  } else {
    center[2] = 0.0f;
    axis[2] = 0.0f;
  }
  height = static_cast<float>(h);
  std::copy_n(base, 3, this->base);
  std::copy_n(top, 3, this->top);
}

XFCylinder::XFCylinder(const std::vector<float>& v) {
  if (v.size() != 14) return;
  std::copy_n(&v[0], 3, center);
  std::copy_n(&v[3], 3, axis);
  radius = v[6];
  height = v[7];
  std::copy_n(&v[8], 3, base);
  std::copy_n(&v[11], 3, top);
}

GeoFeatureType XFCylinder::getFeatureType() const { return GeoCylinder; }

void XFCylinder::getCenterPoint(XFPoint& out) const { out = XFPoint(center); }

void XFCylinder::getBasePoint(XFPoint& out) const { out = XFPoint(base); }

void XFCylinder::getTopPoint(XFPoint& out) const { out = XFPoint(top); }

void XFCylinder::getLine(XFLine3D2& out) const {
  out = XFLine3D2(center, axis, height);
}

void XFCylinder::inv() {
  for (float& v : axis) v = -v;
  std::swap_ranges(base, base + 3, top);
}

XFCylinder XFCylinder::invert() const {
  XFCylinder out(*this);
  out.inv();
  return out;
}

// ---- XFCone -----------------------------------------------------------------

XFCone::XFCone(const float* const base,
               const float* const axis,
               const float& baseRadius,
               const float& topRadius,
               const float& height)
    : height(height), baseRadius(baseRadius), topRadius(topRadius) {
  const double dir[3] = {axis[0], axis[1], axis[2]};
  std::copy_n(axis, 3, this->axis);
  std::copy_n(base, 3, this->base);
  halfAngle = std::atan((baseRadius - topRadius) / height);
  alongAxis(base, dir, apexOffset(baseRadius, topRadius, height), apex);
  alongAxis(base, dir, height, top);
}

XFCone::XFCone(const float* const base,
               const float* const top,
               const float& baseRadius,
               const float& topRadius)
    : baseRadius(baseRadius), topRadius(topRadius) {
  double dir[3];
  const double h = unitDirection(base, top, dir);
  if (h > kMinHeight) {
    for (int k = 0; k < 3; ++k) axis[k] = static_cast<float>(dir[k]);
    // atanf, as for the other constructor: the quotient is narrowed to
    // float first.
    halfAngle = std::atan(static_cast<float>((baseRadius - topRadius) / h));
    alongAxis(base, dir, apexOffset(baseRadius, topRadius, h), apex);
  } else {
    apex[2] = 0.0f;
    axis[2] = 0.0f;
    halfAngle = 0.0f;
  }
  height = static_cast<float>(h);
  std::copy_n(base, 3, this->base);
  std::copy_n(top, 3, this->top);
}

XFCone::XFCone(const std::vector<float>& v) {
  if (v.size() != 16) return;
  std::copy_n(&v[0], 3, apex);
  std::copy_n(&v[3], 3, axis);
  halfAngle = v[6];
  std::copy_n(&v[7], 3, base);
  std::copy_n(&v[10], 3, top);
  height = v[13];
  baseRadius = v[14];
  topRadius = v[15];
}

GeoFeatureType XFCone::getFeatureType() const { return GeoCone; }

void XFCone::getCenterPoint(XFPoint& out) const {
  out.x = (base[0] + top[0]) * 0.5f;
  out.y = (base[1] + top[1]) * 0.5f;
  out.z = (base[2] + top[2]) * 0.5f;
}

void XFCone::getApexPoint(XFPoint& out) const { out = XFPoint(apex); }

void XFCone::getBasePoint(XFPoint& out) const { out = XFPoint(base); }

void XFCone::getTopPoint(XFPoint& out) const { out = XFPoint(top); }

void XFCone::getLine(XFLine3D2& out) const {
  XFPoint middle;
  getCenterPoint(middle);
  const float mid[3] = {middle.x, middle.y, middle.z};
  out = XFLine3D2(mid, axis, height);
}

}  // namespace xgeofeature
