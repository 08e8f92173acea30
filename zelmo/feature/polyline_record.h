// XFPolyLine: an open or closed chain of points.
#ifndef ZELMO_FEATURE_POLYLINE_RECORD_H_
#define ZELMO_FEATURE_POLYLINE_RECORD_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/geo_feature_type.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/xf_base.h"

namespace xgeofeature {

// A poly line through `points` in order. Copies are deep. Classes that
// trace a poly line derive from it and fill `points`.
class ZELMO_API XFPolyLine : public XFBase {
 public:
  // Empty.
  XFPolyLine() = default;
  explicit XFPolyLine(const std::vector<XFPoint>& points);
  // `xyz` holds `count` x, y, z triples; a count below 1 gives an empty line.
  XFPolyLine(const float* const xyz, const int& count);
  // Copies `count` points; a count below 1 gives an empty line.
  XFPolyLine(const XFPoint* const points, const int& count);

  // GeoPolyLine.
  GeoFeatureType getFeatureType() const override;

  // Reverses the order of the points.
  void inv();
  // A copy with the points in reverse order.
  XFPolyLine invert() const;

  // Does nothing to either line. It is exported and hosts call it, so it
  // stays, and stays empty.
  void merge(const XFPolyLine& other);

  std::vector<XFPoint> points;
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_POLYLINE_RECORD_H_
