// The outlier filters of the Levenberg-Marquardt fits: which points a fit
// may drop after its first pass, and by how much.
#ifndef ZELMO_LMFIT_FILTER_PARAM_H_
#define ZELMO_LMFIT_FILTER_PARAM_H_

#include "zelmo/export.h"

namespace xfeaturefitfilter {

// Limits of the filters, in this order: `angle` (degrees) between a point's
// measured normal and the fitted surface; `sigmaFactor`, the half width of
// the kept band of residuals in standard deviations; `proportion` (0 to 1),
// the share of points with the largest residuals to drop.
class ZELMO_API FilterParam {
 public:
  FilterParam(const float& angle,
              const float& sigmaFactor,
              const float& proportion);

  float angle;
  float sigmaFactor;
  float proportion;
};

// Which filter a fit runs between its first pass and its one refit. Other
// values make a fit fail with -1.
enum FilterMethod : int {
  FilterNone = 0,             // first pass only
  FilterSigma = 1,            // residual outside mean +- sigmaFactor * sd
  FilterProportion = 2,       // the largest `proportion` of |residual|
  FilterAngle = 3,            // normal off the surface, at most half the points
  FilterSigmaAngle = 4,       // band or angle, no cap
  FilterProportionAngle = 5,  // angle first, then proportion of the rest
};

}  // namespace xfeaturefitfilter

#endif  // ZELMO_LMFIT_FILTER_PARAM_H_
