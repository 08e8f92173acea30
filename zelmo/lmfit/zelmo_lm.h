// Base of the Levenberg-Marquardt fits: holds the residual function of the
// running fit and makes the one call of the damped least-squares solver.
#ifndef ZELMO_LMFIT_ZELMO_LM_H_
#define ZELMO_LMFIT_ZELMO_LM_H_

#include "zelmo/export.h"

namespace zelmolm {

// Residual function handed to the solver: writes hx[0..n-1], the signed
// residuals of the n points in `adata` (x, y, z floats) for parameters
// p[0..m-1].
using ResidualFunction =
    void (*)(double* p, double* hx, int m, int n, void* adata);

class ZELMO_API ZelmoLM {
 protected:
  // Fit_LM()
  // Drives the residuals of `count` points (x, y, z floats, read in place)
  // to zero from the start `params` (paramCount doubles, overwritten with
  // the solution), with at most 10000 iterations. `measurements` is never
  // read. Returns the iteration count, or a negative value when the solver
  // fails (fewer points than parameters, a singular step, a non-finite
  // residual); an exception inside is caught, printed as "catch error" and
  // returned as -1.
  int Fit_LM(const float* points,
             const int& count,
             double* params,
             double* measurements,
             const int& paramCount);

  // Set at the head of each fit; null after construction.
  ResidualFunction residualFunction_ = nullptr;
};

}  // namespace zelmolm

#endif  // ZELMO_LMFIT_ZELMO_LM_H_
