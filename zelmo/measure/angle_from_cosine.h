// The angle rule of the dimension classes: an angle from the cosine of two
// directions, clamped at the ends of [-1, 1] without calling acos there.
//
// Internal to the library: not exported.
#ifndef ZELMO_MEASURE_ANGLE_FROM_COSINE_H_
#define ZELMO_MEASURE_ANGLE_FROM_COSINE_H_

namespace zelmo {
namespace measure {

enum class AngleUnit { kDegrees, kRadians };

// angleFromCosine()
// acos(x) for |x| < 1, in degrees as acos(x) x 180 / pi. x at or above 1
// gives 0 and x at or below -1 a half turn (180 or pi), so that a dot product
// pushed past +/-1 by rounding still measures. A NaN gives the half turn.
double angleFromCosine(double x, AngleUnit unit);

}  // namespace measure
}  // namespace zelmo

#endif  // ZELMO_MEASURE_ANGLE_FROM_COSINE_H_
