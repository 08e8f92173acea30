#include "zelmo/feature/point_records.h"

#include <cmath>

namespace xgeofeature {

XFPoint::XFPoint(const float& x, const float& y, const float& z)
    : x(x), y(y), z(z) {}

XFPoint::XFPoint(const float* const p) : x(p[0]), y(p[1]), z(p[2]) {}

GeoFeatureType XFPoint::getFeatureType() const { return GeoPoint; }

double XFPoint::Distance(const XFPoint& other) const {
  return std::sqrt(SqrDistance(other));
}

double XFPoint::SqrDistance(const XFPoint& other) const {
  // Float differences, rounded once; a pair far from the origin can thus
  // lose its low bits here, and that rounding is part of the result.
  const float dx = x - other.x;
  const float dy = y - other.y;
  const float dz = z - other.z;
  return static_cast<double>(dx) * dx + static_cast<double>(dy) * dy +
         static_cast<double>(dz) * dz;
}

XFPointN::XFPointN(const float& x,
                   const float& y,
                   const float& z,
                   const float& nx,
                   const float& ny,
                   const float& nz)
    : point{x, y, z}, normal{nx, ny, nz} {}

XFPointN::XFPointN(const float* const point, const float* const normal)
    : point{point[0], point[1], point[2]},
      normal{normal[0], normal[1], normal[2]} {}

GeoFeatureType XFPointN::getFeatureType() const { return GeoPoint; }

}  // namespace xgeofeature
