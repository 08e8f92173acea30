// Damped least squares with a finite-difference Jacobian: the library's own
// dlevmar_dif, call-compatible with levmar 2.6 (same arguments, constants,
// options, info entries, stopping rules and return values), so that fits
// written against levmar run unchanged and reproduce its figures.
//
// Internal to the library: not exported. Reentrant: every call keeps its
// state (work space, factorisation scratch) to itself.
#ifndef ZELMO_SOLVER_LEVMAR_H_
#define ZELMO_SOLVER_LEVMAR_H_

namespace zelmo {
namespace levmar {

// Counts of doubles in `opts` and `info` (levmar's LM_OPTS_SZ, LM_INFO_SZ).
constexpr int kOptsSize = 5;
constexpr int kInfoSize = 10;
// The failure return (LM_ERROR).
constexpr int kError = -1;
// Defaults used when `opts` is null (LM_INIT_MU, LM_STOP_THRESH,
// LM_DIFF_DELTA).
constexpr double kInitMu = 1e-3;
constexpr double kStopThresh = 1e-17;
constexpr double kDiffDelta = 1e-6;

// Doubles of caller-supplied work space needed for m parameters and n
// residuals (LM_DIF_WORKSZ).
constexpr int DifWorkSize(int m, int n) {
  return 4 * n + 4 * m + n * m + m * m;
}

// Why a run ended, as stored in info[6].
enum StopReason : int {
  kStopSmallGradient = 1,   // ||J^T e||inf <= eps1
  kStopSmallStep = 2,       // ||dp||^2 <= eps2^2 ||p||^2
  kStopIterationLimit = 3,  // itmax reached
  kStopSingular = 4,        // a huge step: the damped system is singular
  kStopNoReduction = 5,     // damping grew without bound, no progress left
  kStopSmallError = 6,      // ||e||^2 <= eps3
  kStopNotFinite = 7,       // func gave a NaN or Inf sum of squares
};

// Residual callback: writes the model values hx[0..n-1] for p[0..m-1].
// It may receive the caller's own `p` while one entry is perturbed.
using ModelFunction =
    void (*)(double* p, double* hx, int m, int n, void* adata);

// dlevmar_dif()
// Minimises ||x - hx(p)||^2 over the m parameters `p` (in/out: the start,
// overwritten by each accepted step) against n measurements `x` (null: all
// zero). `opts` (null: defaults) is tau, eps1, eps2, eps3, delta; delta < 0
// selects central differences of step |delta|. `info` (null allowed) gets
// the ten levmar entries: ||e||^2 at start and end, ||J^T e||inf, the last
// ||dp||^2, mu / max diag(J^T J), iterations, StopReason, evaluations of
// `func`, finite-difference Jacobians, linear systems attempted. `work`
// (null: allocated here) holds at least DifWorkSize(m, n) doubles. `covar`
// (null allowed) gets the m x m covariance estimate. `adata` goes to `func`.
// Returns the iteration count, or kError for n < m (prints a line, touches
// nothing, never calls func), a singular system, a non-finite error, or a
// failed allocation.
int dlevmar_dif(ModelFunction func,
                double* p,
                double* x,
                int m,
                int n,
                int itmax,
                double* opts,
                double* info,
                double* work,
                double* covar,
                void* adata);

}  // namespace levmar
}  // namespace zelmo

#endif  // ZELMO_SOLVER_LEVMAR_H_
