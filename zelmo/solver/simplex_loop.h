// The downhill-simplex descent shared by every simplex fit of the library,
// and the step and normalisation rules that several fits share.
//
// A fit owns its gsl_multimin_function (objective, dimension, params), its
// minimiser and its start and step vectors; these routines only drive them,
// so any objective with GSL's signature can use the same loop.
//
// Internal to the library: not exported.
#ifndef ZELMO_SOLVER_SIMPLEX_LOOP_H_
#define ZELMO_SOLVER_SIMPLEX_LOOP_H_

#include <gsl/gsl_multimin.h>

#include <cstddef>

namespace zelmo {
namespace solver {

// Simplex size at which a descent stops.
constexpr double kSimplexSizeTol = 1e-12;
// A direction shorter than this is left unscaled by NormaliseByDirection.
constexpr double kZeroNormEps = 1e-6;

// NewMinimiser()
// A GSL Nelder-Mead minimiser of the first variant (nmsimplex, not
// nmsimplex2) for `dimension` parameters; the caller frees it with
// gsl_multimin_fminimizer_free. Also makes sure, once per process, that a
// failing descent returns its status instead of aborting the host: GSL's
// default error handler (abort) is switched off unless the host has
// installed a handler of its own.
gsl_multimin_fminimizer* NewMinimiser(size_t dimension);

// CopyToVector() / CopyFromVector()
// Copy v->size doubles between `p` and `v`.
void CopyToVector(const double* p, gsl_vector* v);
void CopyFromVector(const gsl_vector* v, double* p);

// RunSimplexLoop()
// Sets `minimiser` on `function` from `start` with the steps `step`, then
// iterates, counting from 1: an iteration reporting GSL_ENOPROG ends the
// loop; otherwise the loop goes on while the simplex size is at least
// kSimplexSizeTol and fewer than `maxIter` iterations were made. Neither
// the status of the set nor other iteration statuses are looked at, and an
// exhausted limit is not reported. Returns the number of iterations made
// (at least 1). The result is read with gsl_multimin_fminimizer_x.
int RunSimplexLoop(gsl_multimin_fminimizer* minimiser,
                   gsl_multimin_function* function,
                   const gsl_vector* start,
                   const gsl_vector* step,
                   int maxIter);

// SignedLargest3()
// max(max(v[0], v[1]), v[2]) with signs kept: a direction with no positive
// component gives 0 or a negative value.
double SignedLargest3(const double* v);

// LargestAbs3()
// The largest of |v[0]|, |v[1]|, |v[2]|.
double LargestAbs3(const double* v);

// NormaliseByDirection()
// Divides p[0..count) by the length of (p[0], p[1], p[2]); a length below
// kZeroNormEps counts as 1, leaving p as it was. count is 3 for a bare
// direction, 4 for plane coefficients a, b, c, d.
void NormaliseByDirection(double* p, int count);

}  // namespace solver
}  // namespace zelmo

#endif  // ZELMO_SOLVER_SIMPLEX_LOOP_H_
