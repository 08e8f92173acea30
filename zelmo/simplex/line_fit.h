// Straight line fit by principal-axis start value and simplex descent.
#ifndef ZELMO_SIMPLEX_LINE_FIT_H_
#define ZELMO_SIMPLEX_LINE_FIT_H_

#include <gsl/gsl_multimin.h>

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"
#include "zelmo/simplex/fit_frame.h"

namespace x3dfit {

// Fits a line to points. params: 6 doubles, a point on the line, then its
// direction (unit after a fit). Dimension 6, iteration limit 10000. One
// object serves one thread at a time.
class ZELMO_API XLine3DFit : public X3DSimplexFit {
 public:
  XLine3DFit();

  // Fit()
  // Starts from the centroid and the axis of largest spread, and descends
  // on the sum of squared distances (LeastSquare) or of distances
  // (LeastAbsDev); any other method keeps the objective the object holds:
  // the sum of distances on a fresh object, else that of the last fit. A
  // point within 0.01 of the line point in every coordinate counts 0. The
  // direction is then made unit; the point stays as the descent left it.
  // Returns false, params and object untouched, below 3 points; else true.
  bool Fit(const std::vector<cv::Point3f>& points,
           double* const params,
           FitMethod method);
  bool Fit(const float* points,
           const int& count,
           double* const params,
           FitMethod method);

  // getStart_End_Point()
  // The ends of the fitted segment, 3 floats each: `start` at the smallest
  // and `end` at the largest position of the points along the direction,
  // measured from the line point rounded to float. Writes nothing below 3
  // points.
  void getStart_End_Point(const float* points,
                          const int& count,
                          double* const params,
                          float* const start,
                          float* const end);

 private:
  // Centroid (float sums, widened) and the axis of largest spread into p.
  bool getInitialValue(const std::vector<cv::Point3f>& points, double* const p);

  static double Distance_LeastSquare(const gsl_vector* v, void* params);
  static double Distance_LeastAbsDev(const gsl_vector* v, void* params);
};

}  // namespace x3dfit

#endif  // ZELMO_SIMPLEX_LINE_FIT_H_
