// Attribute records of measured values: an angle, and a distance with its
// per-axis components.
#ifndef ZELMO_FEATURE_ATTRIBUTES_H_
#define ZELMO_FEATURE_ATTRIBUTES_H_

#include "zelmo/export.h"

namespace xgeofeature {

// A measured angle, and the library's conversions between degrees and
// radians.
class ZELMO_API XAngleAttributes {
 public:
  XAngleAttributes() = default;
  explicit XAngleAttributes(const float& angle);

  // Degrees to radians: the float quotient in / 180 first, then the product
  // with pi in double, stored as float.
  static void Angle2Radian(const float& in, float& out);
  // Radians to degrees: in / pi x 180 wholly in double, stored as float.
  // Not the exact inverse of Angle2Radian(); a round trip can move the
  // value by an ulp, and both are kept as they are.
  static void Radian2Angle(const float& in, float& out);

  float angle = 0.0f;
};

// A measured distance between two points: the distance and the absolute
// differences along x, y and z, in that order.
class ZELMO_API XDistanceAttributes {
 public:
  float distance = 0.0f;
  float dx = 0.0f;
  float dy = 0.0f;
  float dz = 0.0f;
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_ATTRIBUTES_H_
