#include "zelmo/simplex/fit_frame.h"

#include <cstddef>
#include <type_traits>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/point_arrays.h"
#include "zelmo/solver/simplex_loop.h"

namespace x3dfit {

X3DFit::X3DFit() {}

X3DFit::~X3DFit() {}

void X3DFit::projection2Plane_tranformed(const std::vector<cv::Point3f>& points,
                                         double* const plane,
                                         std::vector<cv::Point2f>& out) {
  zelmo::frame::projection2Plane_tranformed(points, plane, out, nullptr,
                                            zelmo::frame::AlignMode::kPlain);
}

X3DSimplexFit::X3DSimplexFit(size_t dimension, int maxIter, Objective objective)
    : m_function{objective, dimension, nullptr},
      m_minimizer(zelmo::solver::NewMinimiser(dimension)),
      m_maxIter(maxIter),
      m_start(gsl_vector_alloc(dimension)),
      m_step(gsl_vector_alloc(dimension)) {
  // GSL is handed &m_function, which must also be the object's address.
  static_assert(std::is_standard_layout<X3DSimplexFit>::value,
                "simplex fit members must keep a standard layout");
  static_assert(offsetof(X3DSimplexFit, m_function) == 0,
                "the objective must stand first in a simplex fit");
}

X3DSimplexFit::~X3DSimplexFit() {
  gsl_vector_free(m_start);
  gsl_vector_free(m_step);
  gsl_multimin_fminimizer_free(m_minimizer);
}

void X3DSimplexFit::setMaxIter(const int& maxIter) { m_maxIter = maxIter; }

void X3DSimplexFit::setStartValue(const double* const p) {
  zelmo::solver::CopyToVector(p, m_start);
}

void X3DSimplexFit::setPoints(const std::vector<cv::Point3f>& points) {
  m_function.params = const_cast<void*>(static_cast<const void*>(&points));
}

void X3DSimplexFit::setObjective(Objective objective) {
  m_function.f = objective;
}

int X3DSimplexFit::descend(double* const p, double stepSize) {
  setStartValue(p);
  gsl_vector_set_all(m_step, stepSize);
  const int iterations = zelmo::solver::RunSimplexLoop(
      m_minimizer, &m_function, m_start, m_step, m_maxIter);
  zelmo::solver::CopyFromVector(gsl_multimin_fminimizer_x(m_minimizer), p);
  return iterations;
}

std::vector<cv::Point3f> X3DSimplexFit::toPoints(const float* points,
                                                 const int& count) {
  return zelmo::copyPoints3(points, count);
}

}  // namespace x3dfit
