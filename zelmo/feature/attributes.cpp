#include "zelmo/feature/attributes.h"

namespace xgeofeature {
namespace {

constexpr double kPi = 3.14159265358979323846;

}  // namespace

XAngleAttributes::XAngleAttributes(const float& angle) : angle(angle) {}

void XAngleAttributes::Angle2Radian(const float& in, float& out) {
  // The quotient is rounded to float before pi comes in; the result differs
  // from a wholly double conversion in the last bit for some angles, and
  // stored results depend on it.
  const float perDegree = in / 180.0f;
  out = static_cast<float>(perDegree * kPi);
}

void XAngleAttributes::Radian2Angle(const float& in, float& out) {
  out = static_cast<float>(in / kPi * 180.0);
}

}  // namespace xgeofeature
