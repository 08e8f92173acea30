#include "zelmo/measure/angle_from_cosine.h"

#include <cmath>

namespace zelmo {
namespace measure {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kHalfTurnDegrees = 180.0;

}  // namespace

double angleFromCosine(double x, AngleUnit unit) {
  const bool degrees = unit == AngleUnit::kDegrees;
  if (std::fabs(x) < 1.0) {
    const double radians = std::acos(x);
    // Times 180, then divided by pi: the degrees hosts have always stored.
    return degrees ? radians * kHalfTurnDegrees / kPi : radians;
  }
  if (x >= 1.0) return 0.0;
  return degrees ? kHalfTurnDegrees : kPi;
}

}  // namespace measure
}  // namespace zelmo
