// The frame of the simplex fits of namespace x3dfit: the method selector,
// the base class with the plane and frame routines, and the GSL members that
// every simplex fit holds.
#ifndef ZELMO_SIMPLEX_FIT_FRAME_H_
#define ZELMO_SIMPLEX_FIT_FRAME_H_

#include <gsl/gsl_multimin.h>

#include <cstddef>
#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/frame_members.h"

namespace x3dfit {

// The distance objective a simplex fit minimises. What each class makes of
// each value (closed form, objective kept from the last fit) is told at the
// class.
enum FitMethod {
  LeastSquare = 0,  // sum of squared distances, or the closed form
  LeastAbsDev = 1,  // sum of absolute distances
  Chebyshev = 2,    // largest absolute distance
};

// Base of the simplex fits. Holds no data; offers the plane and frame
// routines of the library to the fits, and projection2Plane_tranformed to
// the host.
class ZELMO_API X3DFit
    : public zelmo::FrameMembers<zelmo::AlignFlavour::kPlain> {
 public:
  X3DFit();
  ~X3DFit();

  // Maps `points` into a local frame of `plane` (a, b, c, d, unit normal):
  // origin at the centroid of the projected points, x along the first
  // projected point at least 0.01 from it in some coordinate, z along the
  // normal. Writes one 2D point per input point into `out`. When no point
  // gives an x axis the frame is degenerate and OpenCV's error of the
  // singular solve passes to the caller.
  void projection2Plane_tranformed(const std::vector<cv::Point3f>& points,
                                   double* const plane,
                                   std::vector<cv::Point2f>& out);
};

// The GSL members every simplex fit holds, in this order, and their
// handling. The objective's gsl_multimin_function stands first, so that the
// object's address is the gsl_multimin_function given to GSL.
//
// Copying copies the members as they stand: the copy shares the minimiser
// and both vectors with the original (the target's own ones are dropped, not
// freed), and only one of the two may be destroyed.
class ZELMO_API X3DSimplexFit : public X3DFit {
 public:
  X3DSimplexFit(const X3DSimplexFit&) = default;
  X3DSimplexFit& operator=(const X3DSimplexFit&) = default;

 protected:
  using Objective = double (*)(const gsl_vector* v, void* params);

  // Allocates the minimiser (GSL nmsimplex) and both vectors for
  // `dimension` parameters; `objective` until a fit selects another.
  X3DSimplexFit(size_t dimension, int maxIter, Objective objective);
  // Frees the minimiser and both vectors.
  ~X3DSimplexFit();

  void setMaxIter(const int& maxIter);
  // Copies p[0..dimension) into the start vector.
  void setStartValue(const double* const p);
  // The objectives read `points` until the next fit; the address is kept.
  void setPoints(const std::vector<cv::Point3f>& points);
  void setObjective(Objective objective);

  // Descends from p[0..dimension) with `stepSize` in every component of the
  // step vector, within the iteration limit, and writes the minimiser's
  // point back into p[0..dimension). Returns the iterations made.
  int descend(double* const p, double stepSize);

  // `count` x, y, z triples as points; empty for a count of 0 or less.
  static std::vector<cv::Point3f> toPoints(const float* points,
                                           const int& count);

  gsl_multimin_function m_function;
  gsl_multimin_fminimizer* m_minimizer;
  int m_maxIter;
  gsl_vector* m_start;
  gsl_vector* m_step;
};

}  // namespace x3dfit

#endif  // ZELMO_SIMPLEX_FIT_FRAME_H_
