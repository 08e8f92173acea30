#include "zelmo/feature/line_records.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace xgeofeature {
namespace {

// Below this length an XFLine3D's difference vector is not made unit.
constexpr double kMinLength = 1e-6;
// XFLine3D's equality bound. It is strict, unlike the inclusive 0.01 of the
// other records. The differences are floats and the bound is the double
// 0.01, which no float equals, so on real data the two rules agree; the
// strict form is the established contract and stays.
constexpr double kLineCoordTol = 0.01;

// Each coordinate of a and b differs by strictly less than kLineCoordTol.
bool strictlyClose3(const float* const a, const float* const b) {
  for (int k = 0; k < 3; ++k) {
    const float diff = a[k] - b[k];
    if (!(std::fabs(static_cast<double>(diff)) < kLineCoordTol)) return false;
  }
  return true;
}

// center + sign x dir x half, in double, stored as float.
void alongDir(const float* const center,
              const float* const dir,
              double signedHalf,
              float* const out) {
  for (int k = 0; k < 3; ++k)
    out[k] = static_cast<float>(center[k] + dir[k] * signedHalf);
}

}  // namespace

// ---- XFLine3D ---------------------------------------------------------------

XFLine3D::XFLine3D(const float* const start, const float* const end) {
  std::copy_n(start, 3, this->start);
  std::copy_n(end, 3, this->end);
}

XFLine3D::XFLine3D(const std::vector<float>& v) {
  if (v.size() != 6) return;
  std::copy_n(&v[0], 3, start);
  std::copy_n(&v[3], 3, end);
}

XFLine3D::XFLine3D(const XFLine3D2& line) { line.getLine(*this); }

XFLine3D& XFLine3D::operator=(const XFLine3D2& line) {
  line.getLine(*this);
  return *this;
}

GeoFeatureType XFLine3D::getFeatureType() const { return GeoLine; }

void XFLine3D::getCenterPoint(XFPoint& out) const {
  out.x = (start[0] + end[0]) * 0.5f;
  out.y = (start[1] + end[1]) * 0.5f;
  out.z = (start[2] + end[2]) * 0.5f;
}

void XFLine3D::getStartPoint(XFPoint& out) const { out = XFPoint(start); }

void XFLine3D::getEndPoint(XFPoint& out) const { out = XFPoint(end); }

void XFLine3D::getLine(XFLine3D2& out) const {
  float dir[3];
  for (int k = 0; k < 3; ++k) {
    out.center[k] = (start[k] + end[k]) * 0.5f;
    dir[k] = end[k] - start[k];
  }
  // sqrtf of a float sum: the length is a float computation throughout.
  const float length =
      std::sqrt(dir[0] * dir[0] + dir[1] * dir[1] + dir[2] * dir[2]);
  if (length > kMinLength) {
    for (int k = 0; k < 3; ++k) dir[k] = dir[k] / length;
  }
  std::copy_n(dir, 3, out.dir);
  out.length = length;
}

void XFLine3D::inv() {
  for (int k = 0; k < 3; ++k) std::swap(start[k], end[k]);
}

XFLine3D XFLine3D::invert() const {
  XFLine3D out(*this);
  out.inv();
  return out;
}

bool XFLine3D::operator==(const XFLine3D& other) {
  return (strictlyClose3(start, other.start) &&
          strictlyClose3(end, other.end)) ||
         (strictlyClose3(start, other.end) && strictlyClose3(end, other.start));
}

// ---- XFLine3D2 --------------------------------------------------------------

XFLine3D2::XFLine3D2(const float* const center,
                     const float* const dir,
                     const float& length)
    : length(length) {
  std::copy_n(center, 3, this->center);
  std::copy_n(dir, 3, this->dir);
}

XFLine3D2::XFLine3D2(const float* const start,
                     const float* const dir,
                     const float& length,
                     const int&)
    : length(length) {
  alongDir(start, dir, 0.5 * length, center);
  std::copy_n(dir, 3, this->dir);
}

XFLine3D2::XFLine3D2(const std::vector<float>& v) {
  if (v.size() != 7) return;
  std::copy_n(&v[0], 3, center);
  std::copy_n(&v[3], 3, dir);
  length = v[6];
}

XFLine3D2::XFLine3D2(const XFLine3D& line) { line.getLine(*this); }

XFLine3D2& XFLine3D2::operator=(const XFLine3D& line) {
  line.getLine(*this);
  return *this;
}

GeoFeatureType XFLine3D2::getFeatureType() const { return GeoLine; }

void XFLine3D2::getCenterPoint(XFPoint& out) const { out = XFPoint(center); }

void XFLine3D2::getStartPoint(XFPoint& out) const {
  float p[3];
  alongDir(center, dir, -(length * 0.5), p);
  out = XFPoint(p);
}

void XFLine3D2::getEndPoint(XFPoint& out) const {
  float p[3];
  alongDir(center, dir, length * 0.5, p);
  out = XFPoint(p);
}

void XFLine3D2::getLine(XFLine3D& out) const {
  alongDir(center, dir, -(length * 0.5), out.start);
  alongDir(center, dir, length * 0.5, out.end);
}

void XFLine3D2::inv() {
  for (float& c : dir) c = -c;
}

XFLine3D2 XFLine3D2::invert() const {
  XFLine3D2 out(*this);
  out.inv();
  return out;
}

}  // namespace xgeofeature
