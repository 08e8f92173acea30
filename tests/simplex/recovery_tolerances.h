// The bounds the simplex fits are held to when they recover a known shape
// from points sampled on it at offsets up to 500.
#ifndef ZELMO_TESTS_SIMPLEX_RECOVERY_TOLERANCES_H_
#define ZELMO_TESTS_SIMPLEX_RECOVERY_TOLERANCES_H_

namespace x3dfit {

// Exact points, rounded to float: positions and radii, and directions (rad).
constexpr double kExactPosTol = 1e-4;
constexpr double kExactDirTol = 1e-5;
// Points with Gaussian noise 0.01 along the surface normal.
constexpr double kNoisyPosTol = 0.01;
constexpr double kNoisyDirTol = 1e-3;

}  // namespace x3dfit

#endif  // ZELMO_TESTS_SIMPLEX_RECOVERY_TOLERANCES_H_
