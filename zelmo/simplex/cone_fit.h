// Cone fit by principal-axis start value and simplex descent.
#ifndef ZELMO_SIMPLEX_CONE_FIT_H_
#define ZELMO_SIMPLEX_CONE_FIT_H_

#include <gsl/gsl_multimin.h>

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"
#include "zelmo/simplex/fit_frame.h"

namespace x3dfit {

// Fits a cone to points. params: 8 doubles, of which the descent works on
// 7: apex (0..2), axis direction (3..5, unit after a fit), half angle in
// radians (6); p[7] has no meaning but is copied by Fit2. Dimension 7,
// iteration limit 5000. One object serves one thread at a time, and Fit2 one
// thread in the process (see m_optimal_value_cone).
class ZELMO_API XConeFit : public X3DSimplexFit {
 public:
  XConeFit();

  // Fit()
  // Starts with the apex at the centroid, the axis of largest spread and
  // the half angle atan2(largest distance from the axis, half the extent
  // along it), and descends on the sum of squared terms (LeastSquare) or of
  // terms (LeastAbsDev); any other method keeps the objective the object
  // holds. A point's term is | |q x u| - w | with w = |u . q| tan(h); a point
  // within 0.01 of the apex in every coordinate counts with the w of the
  // point before it (tan(h) for the first). Prints "iter:" and the
  // iterations made on the standard output, then makes the axis unit. The
  // half angle is free and may come out negative. Returns true always.
  bool Fit(const std::vector<cv::Point3f>& points,
           double* const params,
           FitMethod method);
  bool Fit(const float* points,
           const int& count,
           double* const params,
           FitMethod method);

  // Fit2()
  // Least squares from each of the three principal axes in turn, without
  // the print; keeps the run whose objective value at its last evaluation
  // is smallest, the earlier one on a tie. `method` is ignored. Leaves the
  // object with the least-squares objective. Returns true always.
  bool Fit2(const float* points,
            const int& count,
            double* const params,
            FitMethod method);

  // calcConeBasePoint_Center()
  // The extent of the points along the axis of params, from the apex
  // rounded to float: `height`, and its two ends `base` and `top` (3
  // doubles each). When the apex lies before `base` along the axis, swaps
  // base and top and negates the axis in params, so that the axis runs from
  // the base towards the apex; a second call then finds nothing to flip.
  void calcConeBasePoint_Center(const float* points,
                                const int& count,
                                double* const params,
                                double* const base,
                                double* const top,
                                double& height);

  // The value of the least-squares objective at its latest evaluation, by
  // any object of the class; shared without a lock.
  static double m_optimal_value_cone;

 private:
  bool getInitialValue(const std::vector<cv::Point3f>& points, double* const p);
  // Descends from p with the step of the cone; returns the iterations.
  int descendFrom(double* const p);

  static double Distance_LeastSquare(const gsl_vector* v, void* params);
  static double Distance_LeastAbsDev(const gsl_vector* v, void* params);
};

}  // namespace x3dfit

#endif  // ZELMO_SIMPLEX_CONE_FIT_H_
