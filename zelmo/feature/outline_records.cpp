#include "zelmo/feature/outline_records.h"

#include <algorithm>

#include "zelmo/feature/perpendicular.h"

namespace xgeofeature {
namespace {

// The frame that the three outlines share, and up to three size fields,
// viewed in place so that one routine compares any of them.
struct OutlineView {
  const float* center;
  const float* normal;
  const float* majorDir;
  float sizes[3];
  int sizeCount;
};

// The equality of all three outline records: sizes and center coordinates
// within the inclusive coordinate tolerance, normal and majorDir on the same
// axes, either way round.
bool outlinesEqual(const OutlineView& a, const OutlineView& b) {
  using zelmo::detail::withinCoordTol;
  for (int k = 0; k < a.sizeCount; ++k)
    if (!withinCoordTol(a.sizes[k], b.sizes[k])) return false;
  for (int k = 0; k < 3; ++k)
    if (!withinCoordTol(a.center[k], b.center[k])) return false;
  return zelmo::detail::sameAxis(a.normal, b.normal) &&
         zelmo::detail::sameAxis(a.majorDir, b.majorDir);
}

void copyFrame(const float* const center,
               const float* const normal,
               const float* const majorDir,
               float* const toCenter,
               float* const toNormal,
               float* const toMajorDir) {
  std::copy_n(center, 3, toCenter);
  std::copy_n(normal, 3, toNormal);
  std::copy_n(majorDir, 3, toMajorDir);
}

// Copies the frame from the first nine floats of `v` and returns true when
// `v` holds exactly `count` floats; returns false and copies nothing
// otherwise.
bool readFrame(const std::vector<float>& v,
               size_t count,
               float* const center,
               float* const normal,
               float* const majorDir) {
  if (v.size() != count) return false;
  copyFrame(&v[0], &v[3], &v[6], center, normal, majorDir);
  return true;
}

void negate3(float* const v) {
  for (int k = 0; k < 3; ++k) v[k] = -v[k];
}

}  // namespace

// ---- XFOvalGroove3D ---------------------------------------------------------

XFOvalGroove3D::XFOvalGroove3D(const float* const center,
                               const float* const normal,
                               const float* const majorDir,
                               const float& halfStraight,
                               const float& radius)
    : halfStraight(halfStraight), radius(radius) {
  copyFrame(center, normal, majorDir, this->center, this->normal,
            this->majorDir);
}

XFOvalGroove3D::XFOvalGroove3D(const std::vector<float>& v) {
  if (!readFrame(v, 11, center, normal, majorDir)) return;
  halfStraight = v[9];
  radius = v[10];
}

GeoFeatureType XFOvalGroove3D::getFeatureType() const { return GeoOvalGroove; }

void XFOvalGroove3D::getCenterPoint(XFPoint& out) const {
  out = XFPoint(center);
}

void XFOvalGroove3D::getLine(XFLine3D2& out) const {
  out = XFLine3D2(center, normal, 2.0f * (halfStraight + radius));
}

void XFOvalGroove3D::getLineMajorDir(XFLine3D2& out) const {
  out = XFLine3D2(center, majorDir, 2.0f * (halfStraight + radius));
}

void XFOvalGroove3D::getPlane(XFPlane& out) const {
  out = XFPlane(center, normal, majorDir, 2.0f * halfStraight + 2.0f * radius,
                2.0f * radius);
}

void XFOvalGroove3D::inv() { negate3(normal); }

XFOvalGroove3D XFOvalGroove3D::invert() const {
  XFOvalGroove3D out(*this);
  out.inv();
  return out;
}

bool XFOvalGroove3D::operator==(const XFOvalGroove3D& other) {
  return outlinesEqual(
      {center, normal, majorDir, {halfStraight, radius, 0.0f}, 2},
      {other.center,
       other.normal,
       other.majorDir,
       {other.halfStraight, other.radius, 0.0f},
       2});
}

// ---- XFRectangle3D ----------------------------------------------------------

XFRectangle3D::XFRectangle3D(const float* const center,
                             const float* const normal,
                             const float* const majorDir,
                             const float& halfLength,
                             const float& halfWidth)
    : halfLength(halfLength), halfWidth(halfWidth) {
  copyFrame(center, normal, majorDir, this->center, this->normal,
            this->majorDir);
}

XFRectangle3D::XFRectangle3D(const std::vector<float>& v) {
  if (!readFrame(v, 11, center, normal, majorDir)) return;
  halfLength = v[9];
  halfWidth = v[10];
}

GeoFeatureType XFRectangle3D::getFeatureType() const { return GeoRectangle; }

void XFRectangle3D::getCenterPoint(XFPoint& out) const {
  out = XFPoint(center);
}

void XFRectangle3D::getLine(XFLine3D2& out) const {
  out = XFLine3D2(center, normal, 2.0f * halfLength);
}

void XFRectangle3D::getLineMajorDir(XFLine3D2& out) const {
  out = XFLine3D2(center, majorDir, 2.0f * halfLength);
}

void XFRectangle3D::getPlane(XFPlane& out) const {
  out = XFPlane(center, normal, majorDir, 2.0f * halfLength, 2.0f * halfWidth);
}

void XFRectangle3D::inv() { negate3(normal); }

XFRectangle3D XFRectangle3D::invert() const {
  XFRectangle3D out(*this);
  out.inv();
  return out;
}

bool XFRectangle3D::operator==(const XFRectangle3D& other) {
  return outlinesEqual(
      {center, normal, majorDir, {halfLength, halfWidth, 0.0f}, 2},
      {other.center,
       other.normal,
       other.majorDir,
       {other.halfLength, other.halfWidth, 0.0f},
       2});
}

// ---- XFRoundGroove3D --------------------------------------------------------

XFRoundGroove3D::XFRoundGroove3D(const float* const center,
                                 const float* const normal,
                                 const float* const majorDir,
                                 const float& halfLength,
                                 const float& halfWidth,
                                 const float& cornerRadius)
    : halfLength(halfLength), halfWidth(halfWidth), cornerRadius(cornerRadius) {
  copyFrame(center, normal, majorDir, this->center, this->normal,
            this->majorDir);
}

XFRoundGroove3D::XFRoundGroove3D(const std::vector<float>& v) {
  if (!readFrame(v, 12, center, normal, majorDir)) return;
  halfLength = v[9];
  halfWidth = v[10];
  cornerRadius = v[11];
}

GeoFeatureType XFRoundGroove3D::getFeatureType() const {
  return GeoRoundGroove;
}

void XFRoundGroove3D::getCenterPoint(XFPoint& out) const {
  out = XFPoint(center);
}

void XFRoundGroove3D::getLine(XFLine3D2& out) const {
  out = XFLine3D2(center, normal, 2.0f * halfLength);
}

void XFRoundGroove3D::getLineMajorDir(XFLine3D2& out) const {
  out = XFLine3D2(center, majorDir, 2.0f * halfLength);
}

void XFRoundGroove3D::getPlane(XFPlane& out) const {
  out = XFPlane(center, normal, majorDir, 2.0f * halfLength, 2.0f * halfWidth);
}

void XFRoundGroove3D::inv() { negate3(normal); }

XFRoundGroove3D XFRoundGroove3D::invert() const {
  XFRoundGroove3D out(*this);
  out.inv();
  return out;
}

bool XFRoundGroove3D::operator==(const XFRoundGroove3D& other) {
  return outlinesEqual(
      {center, normal, majorDir, {halfLength, halfWidth, cornerRadius}, 3},
      {other.center,
       other.normal,
       other.majorDir,
       {other.halfLength, other.halfWidth, other.cornerRadius},
       3});
}

}  // namespace xgeofeature
