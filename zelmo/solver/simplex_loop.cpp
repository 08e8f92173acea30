#include "zelmo/solver/simplex_loop.h"

#include <gsl/gsl_errno.h>

#include <algorithm>
#include <cmath>
#include <mutex>

namespace zelmo {
namespace solver {
namespace {

// GSL's default handler aborts the process on a non-finite objective
// value; a library inside a host must return instead. A handler that the
// host installed itself is put back and kept.
void QuietGslAbortOnce() {
  static std::once_flag once;
  std::call_once(once, [] {
    gsl_error_handler_t* previous = gsl_set_error_handler_off();
    if (previous != nullptr) gsl_set_error_handler(previous);
  });
}

}  // namespace

gsl_multimin_fminimizer* NewMinimiser(size_t dimension) {
  QuietGslAbortOnce();
  return gsl_multimin_fminimizer_alloc(gsl_multimin_fminimizer_nmsimplex,
                                       dimension);
}

void CopyToVector(const double* p, gsl_vector* v) {
  for (size_t i = 0; i < v->size; ++i) gsl_vector_set(v, i, p[i]);
}

void CopyFromVector(const gsl_vector* v, double* p) {
  for (size_t i = 0; i < v->size; ++i) p[i] = gsl_vector_get(v, i);
}

int RunSimplexLoop(gsl_multimin_fminimizer* minimiser,
                   gsl_multimin_function* function,
                   const gsl_vector* start,
                   const gsl_vector* step,
                   int maxIter) {
  gsl_multimin_fminimizer_set(minimiser, function, start, step);
  int iterations = 0;
  int status;
  do {
    ++iterations;
    status = gsl_multimin_fminimizer_iterate(minimiser);
    if (status == GSL_ENOPROG) break;
    status = gsl_multimin_test_size(gsl_multimin_fminimizer_size(minimiser),
                                    kSimplexSizeTol);
  } while (status == GSL_CONTINUE && iterations < maxIter);
  return iterations;
}

double SignedLargest3(const double* v) {
  return std::max(std::max(v[0], v[1]), v[2]);
}

double LargestAbs3(const double* v) {
  return std::max(std::max(std::fabs(v[0]), std::fabs(v[1])), std::fabs(v[2]));
}

void NormaliseByDirection(double* p, int count) {
  double norm = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
  if (norm < kZeroNormEps) norm = 1.0;
  for (int i = 0; i < count; ++i) p[i] /= norm;
}

}  // namespace solver
}  // namespace zelmo
