// Circles fitted to points in a plane's local frame: the least-squares
// circle and the maximum inscribed circle, the 2D stages of XCircleFit3DLM.
//
// Internal to the library.
#ifndef ZELMO_LMFIT_CIRCLE_2D_LM_H_
#define ZELMO_LMFIT_CIRCLE_2D_LM_H_

#include "zelmo/lmfit/zelmo_lm.h"

namespace zelmolm {

// A circle (cx, cy, r) in the plane. `xy` arguments are `count` float
// pairs x, y.
class Circle2DLM : public ZelmoLM {
 public:
  // fitLeastSquares()
  // The circle minimising the squared distances of the points from it,
  // from the algebraic start. Returns 0, or -1 when the start fails or the
  // solver fails; the circle is then unchanged.
  int fitLeastSquares(const float* xy, int count);

  // fitInscribed()
  // The largest circle with no point inside: a penalised solver run from
  // the algebraic start, then an exchange of the three nearest points.
  // Returns 0; -1 for fewer than 10 points or a failed start (circle
  // unchanged); -2 when the exchange skips more than 0.4 of the point
  // count (the circle holds its last accepted state).
  int fitInscribed(const float* xy, int count);

  // leastSquaresResidual()
  // Solver residuals for p = (cx, cy, r): each point's distance from the
  // center less r.
  static void leastSquaresResidual(
      double* p, double* hx, int m, int n, void* adata);

  // inscribedResidual()
  // Solver residuals for p = (cx, cy, r) that reward a larger circle and
  // penalise points inside it. With r' = r limited (above 1000 it becomes
  // 100, below 0.1 it becomes 0.1) and w = 1 / r': w for a point at e >=
  // r' from the center, else (r' - e) g + w, the penalty g being 0.8 for
  // w <= 1, 100 for w <= 10, 1000 for w <= 100 and 1 beyond.
  static void inscribedResidual(
      double* p, double* hx, int m, int n, void* adata);

  float cx = 0;
  float cy = 0;
  float r = 0;

 private:
  // Exchanges the three points nearest the current circle for the circle
  // through them until the nearest point touches it; returns 0 or -2.
  int exchange(const float* xy, int count);
};

// algebraicCircleSeed()
// The start (cx, cy, r) of both fits, written into `p`: the algebraic
// circle of the power sums of the points. The sums advance two floats per
// step and stop at float index `count`, so they cover the first half of
// the points while the formulas count all `count`; the solver corrects the
// start, and the result depends on it. Returns false for fewer than 3
// points or a negative squared radius, `p` then unwritten; collinear sums
// give a start that is not a number, and it is returned all the same.
bool algebraicCircleSeed(const float* xy, int count, double* p);

}  // namespace zelmolm

#endif  // ZELMO_LMFIT_CIRCLE_2D_LM_H_
