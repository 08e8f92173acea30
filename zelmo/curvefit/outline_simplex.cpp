#include "zelmo/curvefit/outline_simplex.h"

#include "zelmo/solver/simplex_loop.h"

namespace zelmo {
namespace curvefit {

OutlineSimplex::OutlineSimplex(size_t dimension, Objective objective)
    : X3DSimplexFit(dimension, kOutlineMaxIter, objective) {}

void OutlineSimplex::descend(const std::vector<cv::Point2f>& points,
                             double* const p,
                             const double* steps) {
  m_function.params = const_cast<void*>(static_cast<const void*>(&points));
  setStartValue(p);
  solver::CopyToVector(steps, m_step);
  solver::RunSimplexLoop(m_minimizer, &m_function, m_start, m_step, m_maxIter);
  solver::CopyFromVector(gsl_multimin_fminimizer_x(m_minimizer), p);
}

}  // namespace curvefit
}  // namespace zelmo
