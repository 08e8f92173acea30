// Line records: XFLine3D, a segment by its two ends, and XFLine3D2, a
// segment by its middle, direction and length; with the conversions between
// the two forms.
#ifndef ZELMO_FEATURE_LINE_RECORDS_H_
#define ZELMO_FEATURE_LINE_RECORDS_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/geo_feature_type.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/xf_base.h"

namespace xgeofeature {

class XFLine3D2;

// A segment from `start` to `end`.
class ZELMO_API XFLine3D : public XFBase {
 public:
  XFLine3D() = default;
  XFLine3D(const float* const start, const float* const end);
  // `v` holds start, end (6 floats); any other size leaves the fields unset.
  explicit XFLine3D(const std::vector<float>& v);
  // The ends of `line`: center -/+ dir x (length x 0.5).
  explicit XFLine3D(const XFLine3D2& line);
  XFLine3D& operator=(const XFLine3D2& line);

  // GeoLine.
  GeoFeatureType getFeatureType() const override;

  // (start + end) x 0.5.
  void getCenterPoint(XFPoint& out) const;
  void getStartPoint(XFPoint& out) const;
  void getEndPoint(XFPoint& out) const;
  // The XFLine3D2 form: center (start + end) x 0.5, dir = end - start,
  // length = sqrtf of the float sum of squares of dir; dir is divided by
  // length when that is over 1e-6 and stays the raw difference otherwise, so
  // a segment of coincident ends gives a zero dir and a length of 0.
  void getLine(XFLine3D2& out) const;

  // Swaps start and end.
  void inv();
  // A copy with start and end swapped.
  XFLine3D invert() const;

  // True when each of the six coordinates differs from the other line's by
  // strictly less than 0.01 (differences in float, compared in double),
  // pairing start with start and end with end, or start with end and end
  // with start: a segment equals its reversed twin.
  bool operator==(const XFLine3D& other);

  float start[3] = {};
  float end[3] = {};
};

// A segment by its middle `center`, its direction `dir` (unit, but never made
// so here) and its whole `length`: the ends are center -/+ dir x length / 2.
class ZELMO_API XFLine3D2 : public XFBase {
 public:
  XFLine3D2() = default;
  // Stores; `dir` is not normalised.
  XFLine3D2(const float* const center,
            const float* const dir,
            const float& length);
  // From the start point: center = start + dir x (0.5 length). The int only
  // selects this overload and is never read; dir and length are stored as
  // given.
  XFLine3D2(const float* const start,
            const float* const dir,
            const float& length,
            const int&);
  // `v` holds center, dir, length (7 floats); any other size leaves the
  // fields unset.
  explicit XFLine3D2(const std::vector<float>& v);
  // As XFLine3D::getLine().
  explicit XFLine3D2(const XFLine3D& line);
  XFLine3D2& operator=(const XFLine3D& line);

  // GeoLine.
  GeoFeatureType getFeatureType() const override;

  void getCenterPoint(XFPoint& out) const;
  // center - dir x (length x 0.5).
  void getStartPoint(XFPoint& out) const;
  // center + dir x (length x 0.5).
  void getEndPoint(XFPoint& out) const;
  // The XFLine3D of getStartPoint() and getEndPoint().
  void getLine(XFLine3D& out) const;

  // Negates dir; center and length stay.
  void inv();
  // A copy with dir negated.
  XFLine3D2 invert() const;

  float center[3] = {};
  float dir[3] = {};
  float length = 0.0f;
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_LINE_RECORDS_H_
