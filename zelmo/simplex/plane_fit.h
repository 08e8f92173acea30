// Plane fit by regression start value and simplex descent.
#ifndef ZELMO_SIMPLEX_PLANE_FIT_H_
#define ZELMO_SIMPLEX_PLANE_FIT_H_

#include <gsl/gsl_multimin.h>

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"
#include "zelmo/simplex/fit_frame.h"

namespace x3dfit {

// Fits a x + b y + c z + d = 0 to points. params: 4 doubles a, b, c, d.
// Dimension 4, iteration limit 10000. One object serves one thread at a
// time; it keeps only its GSL objects and the objective of the last fit.
class ZELMO_API XPlaneFit : public X3DSimplexFit {
 public:
  XPlaneFit();

  // Fit()
  // Writes the orthogonal regression plane into params (normal of unit
  // length, sign as the decomposition gives it). LeastSquare returns that;
  // LeastAbsDev (and any value that is not a FitMethod) descends on the
  // sum of distances, Chebyshev on the largest distance, from it; then
  // (a, b, c, d) are divided by |(a, b, c)|. The step is the signed largest
  // of a, b, c over 100, so a normal with no positive component starts a
  // degenerate simplex that returns the start value. Returns true always;
  // with fewer than 3 points params is not initialised and method 0 leaves
  // it as it was.
  bool Fit(const std::vector<cv::Point3f>& points,
           double* const params,
           FitMethod method);
  // The same on `count` x, y, z triples.
  bool Fit(const float* points,
           const int& count,
           double* const params,
           FitMethod method);

  // getFourCorner()
  // Writes into corners 12 floats, four x, y, z corners of the rectangle
  // that bounds the points projected into the plane params (a, b, c, d,
  // unit normal). The rectangle is parallel to the plane's local axes (x
  // along the first projected point at least 0.01 from the centroid in some
  // coordinate), not rotated to the smallest area. Corner order in local
  // (x, y): (+, +), (-, +), (-, -), (+, -) about the center.
  void getFourCorner(const std::vector<cv::Point3f>& points,
                     double* const params,
                     float* const corners);
  void getFourCorner(const float* points,
                     const int& count,
                     double* const params,
                     float* const corners);

 private:
  // Regression plane into p; false with p untouched below 3 points.
  bool getInitialValue(const std::vector<cv::Point3f>& points, double* const p);

  // Sum over points of |a x + b y + c z + d|, over |(a, b, c)|.
  static double Distance_LeastAbsDev(const gsl_vector* v, void* params);
  // Largest |a x + b y + c z + d| (from 0), over |(a, b, c)|.
  static double Chebyshev_MaxDistance(const gsl_vector* v, void* params);
};

}  // namespace x3dfit

#endif  // ZELMO_SIMPLEX_PLANE_FIT_H_
