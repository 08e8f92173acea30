// Sphere fit by algebraic least squares and simplex descent.
#ifndef ZELMO_SIMPLEX_SPHERE_FIT_H_
#define ZELMO_SIMPLEX_SPHERE_FIT_H_

#include <gsl/gsl_multimin.h>

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"
#include "zelmo/simplex/fit_frame.h"

namespace x3dfit {

// Fits a sphere to points. params: 4 doubles, center x, y, z and radius.
// Dimension 4, iteration limit 10000. One object serves one thread at a
// time.
class ZELMO_API XSphereFit : public X3DSimplexFit {
 public:
  XSphereFit();

  // Fit()
  // Writes the algebraic least-squares sphere into params. LeastSquare
  // returns that; Chebyshev descends on the largest | |x - c| - r |, every
  // other value on the sum of them, from it. The radius is a free
  // parameter and may come out negative. Returns true always; with fewer
  // than 4 points params is not initialised, method 0 leaves it as it was
  // and the others start from it. Coplanar points give a meaningless
  // result.
  bool Fit(const std::vector<cv::Point3f>& points,
           double* const params,
           FitMethod method);
  bool Fit(const float* points,
           const int& count,
           double* const params,
           FitMethod method);

 private:
  // The sphere x^2 + y^2 + z^2 + D x + E y + F z + G = 0 solved in
  // coordinates about the centroid, as center and radius into p; false
  // with p untouched below 4 points.
  bool leastSquareFit(const std::vector<cv::Point3f>& points, double* const p);

  static double Distance_LeastAbsDev(const gsl_vector* v, void* params);
  static double Chebyshev_MaxDistance(const gsl_vector* v, void* params);
};

}  // namespace x3dfit

#endif  // ZELMO_SIMPLEX_SPHERE_FIT_H_
