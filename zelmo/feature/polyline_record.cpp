#include "zelmo/feature/polyline_record.h"

#include <algorithm>

namespace xgeofeature {

XFPolyLine::XFPolyLine(const std::vector<XFPoint>& points) : points(points) {}

XFPolyLine::XFPolyLine(const float* const xyz, const int& count) {
  if (count < 1) return;
  points.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) points.emplace_back(xyz + 3 * i);
}

XFPolyLine::XFPolyLine(const XFPoint* const points, const int& count) {
  if (count < 1) return;
  this->points.assign(points, points + count);
}

GeoFeatureType XFPolyLine::getFeatureType() const { return GeoPolyLine; }

void XFPolyLine::inv() { std::reverse(points.begin(), points.end()); }

XFPolyLine XFPolyLine::invert() const {
  XFPolyLine out(*this);
  out.inv();
  return out;
}

void XFPolyLine::merge(const XFPolyLine& /*other*/) {}

}  // namespace xgeofeature
