// Cylinder fit by principal-axis start value and simplex descent.
#ifndef ZELMO_SIMPLEX_CYLINDER_FIT_H_
#define ZELMO_SIMPLEX_CYLINDER_FIT_H_

#include <gsl/gsl_multimin.h>

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"
#include "zelmo/simplex/fit_frame.h"

namespace x3dfit {

// Fits a cylinder to points. params: 8 doubles; the descent works on the
// first 7: axis point (0..2), axis direction (3..5), radius (6). After a
// fit: the center at mid height, the unit axis, the radius and the height
// (7). Dimension 7, iteration limit 10000. One object serves one thread at
// a time, and Fit2 one thread in the process (see m_optimal_value).
class ZELMO_API XCylinderFit : public X3DSimplexFit {
 public:
  XCylinderFit();

  // Fit()
  // Starts from the centroid, the axis of largest spread and the spread
  // about the smallest axis as radius, and descends on the sum of squared
  // terms (LeastSquare), the largest term (Chebyshev) or, for every other
  // value, the sum of terms. A point's term is | |q x u| - r |, or r for a
  // point within 0.01 of the axis point in every coordinate. Then makes the
  // axis unit and moves the center to mid height (calcCylinderHeight_Center).
  // Returns true always.
  bool Fit(const std::vector<cv::Point3f>& points,
           double* const params,
           FitMethod method);
  bool Fit(const float* points,
           const int& count,
           double* const params,
           FitMethod method);

  // Fit2()
  // Least squares from each of the three principal axes in turn (radius
  // start from the spread along that axis, step radius / 50), each run as
  // Fit ends it; keeps the run whose objective value at its last evaluation
  // is smallest, the earlier one on a tie. For short cylinders, whose axis
  // is not the axis of largest spread. Leaves the object with the iteration
  // limit 1000 and the least-squares objective. Returns true always.
  bool Fit2(const float* points, const int& count, double* const params);

  // The value of the least-squares objective at its latest evaluation, by
  // any object of the class; shared without a lock.
  static double m_optimal_value;

 private:
  bool getInitialValue(const std::vector<cv::Point3f>& points, double* const p);
  // p[7] = extent of the points along the axis, from the axis point rounded
  // to float; p[0..2] = the middle of that extent on the axis.
  void calcCylinderHeight_Center(const std::vector<cv::Point3f>& points,
                                 double* const p);
  // Ends a descent: unit axis, center and height.
  void finishDescent(const std::vector<cv::Point3f>& points, double* const p);

  static double Distance_LeastSquare(const gsl_vector* v, void* params);
  static double Distance_LeastAbsDev(const gsl_vector* v, void* params);
  static double Chebyshev_MaxDistance(const gsl_vector* v, void* params);
};

}  // namespace x3dfit

#endif  // ZELMO_SIMPLEX_CYLINDER_FIT_H_
