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
// frame::largestAbsIndex of a float triple.
int largestAbsIndex(const float* const v);

// perpendicularUnit()
// frame::perpendicularDirection of the float normal `n`, formed in double
// and stored as floats into `out`.
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
