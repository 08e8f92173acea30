// Flat outline records: XFOvalGroove3D (a stadium), XFRectangle3D and
// XFRoundGroove3D (a rectangle with rounded corners). Each lies in the plane
// through `center` with normal `normal`, with its length along `majorDir`.
#ifndef ZELMO_FEATURE_OUTLINE_RECORDS_H_
#define ZELMO_FEATURE_OUTLINE_RECORDS_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/geo_feature_type.h"
#include "zelmo/feature/line_records.h"
#include "zelmo/feature/plane_record.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/xf_base.h"

namespace xgeofeature {

// Common to the three outlines:
//  - getLine() gives the normal line through the center, with a length
//    across the outline (its overall length along majorDir). That pairing
//    is long established and callers depend on it.
//  - getLineMajorDir() gives the center line along majorDir with the same
//    length.
//  - getPlane() gives the plane of the outline: center, normal, majorDir and
//    the overall length and width, with the equation from center and normal.
//  - inv() negates normal only; invert() is the same on a copy.
//  - operator== holds when each size field and each center coordinate
//    differs by at most 0.01 (differences in float, compared in double), and
//    both normal and majorDir pass the same-axis test: |n1 . n2| within 0.02
//    of 1, so reversed directions count as equal.

// A stadium: two end arcs of `radius` joined by straight sides of length
// 2 halfStraight. Overall 2 (halfStraight + radius) by 2 radius.
class ZELMO_API XFOvalGroove3D : public XFBase {
 public:
  XFOvalGroove3D() = default;
  XFOvalGroove3D(const float* const center,
                 const float* const normal,
                 const float* const majorDir,
                 const float& halfStraight,
                 const float& radius);
  // `v` holds center, normal, majorDir, halfStraight, radius (11 floats);
  // any other size leaves the fields unset.
  explicit XFOvalGroove3D(const std::vector<float>& v);

  // GeoOvalGroove.
  GeoFeatureType getFeatureType() const override;

  void getCenterPoint(XFPoint& out) const;
  // Length 2 (halfStraight + radius).
  void getLine(XFLine3D2& out) const;
  void getLineMajorDir(XFLine3D2& out) const;
  // length = 2 halfStraight + 2 radius, width = 2 radius.
  void getPlane(XFPlane& out) const;
  void inv();
  XFOvalGroove3D invert() const;
  bool operator==(const XFOvalGroove3D& other);

  float center[3] = {};
  float normal[3] = {};
  float majorDir[3] = {};
  float halfStraight = 0.0f;
  float radius = 0.0f;
};

// A rectangle of 2 halfLength along majorDir by 2 halfWidth.
class ZELMO_API XFRectangle3D : public XFBase {
 public:
  XFRectangle3D() = default;
  XFRectangle3D(const float* const center,
                const float* const normal,
                const float* const majorDir,
                const float& halfLength,
                const float& halfWidth);
  // `v` holds center, normal, majorDir, halfLength, halfWidth (11 floats);
  // any other size leaves the fields unset.
  explicit XFRectangle3D(const std::vector<float>& v);

  // GeoRectangle.
  GeoFeatureType getFeatureType() const override;

  void getCenterPoint(XFPoint& out) const;
  // Length 2 halfLength.
  void getLine(XFLine3D2& out) const;
  void getLineMajorDir(XFLine3D2& out) const;
  // length = 2 halfLength, width = 2 halfWidth.
  void getPlane(XFPlane& out) const;
  void inv();
  XFRectangle3D invert() const;
  bool operator==(const XFRectangle3D& other);

  float center[3] = {};
  float normal[3] = {};
  float majorDir[3] = {};
  float halfLength = 0.0f;
  float halfWidth = 0.0f;
};

// A rectangle of 2 halfLength along majorDir by 2 halfWidth whose corners
// are arcs of cornerRadius.
class ZELMO_API XFRoundGroove3D : public XFBase {
 public:
  XFRoundGroove3D() = default;
  XFRoundGroove3D(const float* const center,
                  const float* const normal,
                  const float* const majorDir,
                  const float& halfLength,
                  const float& halfWidth,
                  const float& cornerRadius);
  // `v` holds center, normal, majorDir, halfLength, halfWidth, cornerRadius
  // (12 floats); any other size leaves the fields unset.
  explicit XFRoundGroove3D(const std::vector<float>& v);

  // GeoRoundGroove.
  GeoFeatureType getFeatureType() const override;

  void getCenterPoint(XFPoint& out) const;
  // Length 2 halfLength.
  void getLine(XFLine3D2& out) const;
  void getLineMajorDir(XFLine3D2& out) const;
  // length = 2 halfLength, width = 2 halfWidth.
  void getPlane(XFPlane& out) const;
  void inv();
  XFRoundGroove3D invert() const;
  // Compares the three size fields.
  bool operator==(const XFRoundGroove3D& other);

  float center[3] = {};
  float normal[3] = {};
  float majorDir[3] = {};
  float halfLength = 0.0f;
  float halfWidth = 0.0f;
  float cornerRadius = 0.0f;
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_OUTLINE_RECORDS_H_
