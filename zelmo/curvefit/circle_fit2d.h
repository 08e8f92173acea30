// The circle in the plane of the flat outline fits: its algebraic start,
// its largest-inscribed objective and its 2D fit.
//
// Internal to the library: not exported.
#ifndef ZELMO_CURVEFIT_CIRCLE_FIT2D_H_
#define ZELMO_CURVEFIT_CIRCLE_FIT2D_H_

#include <gsl/gsl_vector.h>

#include <cstddef>
#include <opencv2/core.hpp>
#include <vector>

namespace zelmo {
namespace curvefit {

// Fewer points are refused by the circle fits.
constexpr size_t kCircleMinPoints = 4;

// CircleStart()
// The algebraic (Kasa) circle of `points` from their power sums, in double:
// writes (cx, cy, r) into p. Returns false with p untouched only when
// A^2 + B^2 - 4C, four times the squared radius, is negative. Points
// exactly on one line make the division degenerate instead: the circle is
// then not a number, and is returned as the start all the same.
bool CircleStart(const std::vector<cv::Point2f>& points, double* const p);
// The same with the power sums taken over `points` while the formulas count
// `n` points; n = points.size() is the algebraic circle.
bool CircleStart(const std::vector<cv::Point2f>& points,
                 double n,
                 double* const p);

// MaximumInscribedObjective()
// For v = (cx, cy, r): with m the smallest signed distance of a point to
// the circle (from 1e50), (m + 1 for m >= 0, else 1 - m) x 10000, plus -r
// for r > 0 or (1 - r) x 1e10 otherwise. Its minimum is the largest circle
// that no point enters.
double MaximumInscribedObjective(const gsl_vector* v, void* params);

// FitCircle2D()
// false for fewer than kCircleMinPoints points or a failed start. Method
// LeastSquare gives the start; 1 to 5 descend on their one-sided
// objective, any other value on MaximumInscribedObjective, from the start
// with the step r / 50 in every component. p: cx, cy, r.
bool FitCircle2D(const std::vector<cv::Point2f>& points,
                 int method,
                 double* const p);

}  // namespace curvefit
}  // namespace zelmo

#endif  // ZELMO_CURVEFIT_CIRCLE_FIT2D_H_
