// Direction rules shared by the feature records: the perpendicular rule that
// gives a plane or circle its major direction, and the tolerance tests of the
// records' operator==.
//
// Internal to the library: not exported, so record members that use these
// are defined out of line.
#ifndef ZELMO_FEATURE_PERPENDICULAR_H_
#define ZELMO_FEATURE_PERPENDICULAR_H_

namespace zelmo {
namespace detail {

// Inclusive bound on a coordinate or size difference in the records'
// approximate equality (all but XFLine3D, whose bound is strict).
constexpr double kCoordTol = 0.01;
// Bound on how far |n1 . n2| may stray from 1 for two directions to count as
// the same axis.
constexpr double kAxisTol = 0.02;

// largestAbsIndex()
// Index of the largest |v[k]|, testing k = 0, 1, 2 in order with a strict
// greater-than, so that the lowest index wins a tie.
int largestAbsIndex(const float* const v);

// perpendicularUnit()
// A unit vector orthogonal to the normal `n`, written into `out`. With i from
// largestAbsIndex(n): i = 0 gives (-n1 / n0, 1, 0), i = 1 gives
// (1, -n0 / n1, 0), i = 2 gives (1, 0, -n0 / n2); the vector is formed and
// scaled in double by 1 / norm (0 for a zero norm) and then stored as floats.
// Being a function of `n` alone, it is reproducible: a circle and the plane
// made from it get the same major direction.
void perpendicularUnit(const float* const n, float* const out);

// withinCoordTol()
// |a - b| <= kCoordTol, the difference taken in float and compared in
// double.
bool withinCoordTol(const float& a, const float& b);

// sameAxis()
// Two directions span the same axis when |n1 . n2|, formed in double, differs
// from 1 by no more than kAxisTol. Opposite directions pass; so do
// non-unit vectors whose dot product happens to land near 1.
bool sameAxis(const float* const n1, const float* const n2);

}  // namespace detail
}  // namespace zelmo

#endif  // ZELMO_FEATURE_PERPENDICULAR_H_
