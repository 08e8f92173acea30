// The two-dimensional fit object of the flat outline fits: the members of
// a simplex fit (objective, minimiser, iteration limit, start and step
// vectors) for one outline, made for one fit and dropped after it.
//
// Internal to the library: not exported.
#ifndef ZELMO_CURVEFIT_OUTLINE_SIMPLEX_H_
#define ZELMO_CURVEFIT_OUTLINE_SIMPLEX_H_

#include <cstddef>
#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/simplex/fit_frame.h"

namespace zelmo {
namespace curvefit {

// Iteration limit of every outline descent.
constexpr int kOutlineMaxIter = 10000;

class OutlineSimplex : public x3dfit::X3DSimplexFit {
 public:
  using X3DSimplexFit::Objective;
  // `dimension` parameters, limit kOutlineMaxIter, minimising `objective`.
  OutlineSimplex(size_t dimension, Objective objective);

  // descend()
  // Descends on `points` (kept by address for the objective) from
  // p[0..dimension) with steps[k] for component k, by the library's simplex
  // loop, and writes the minimiser's point back into p. A failing descent
  // is not reported.
  void descend(const std::vector<cv::Point2f>& points,
               double* const p,
               const double* steps);
};

}  // namespace curvefit
}  // namespace zelmo

#endif  // ZELMO_CURVEFIT_OUTLINE_SIMPLEX_H_
