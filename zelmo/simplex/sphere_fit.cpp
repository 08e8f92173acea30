#include "zelmo/simplex/sphere_fit.h"

#include <cmath>

#include "zelmo/simplex/axis_geometry.h"
#include "zelmo/simplex/residual_sums.h"

namespace x3dfit {
namespace {

using zelmo::simplexfit::Accumulator;
using zelmo::simplexfit::Aggregate;

constexpr size_t kSphereDimension = 4;
constexpr int kSphereMaxIter = 10000;
// The step of the descent is the radius over this.
constexpr double kSphereStepDivisor = 100.0;

template <Aggregate kind>
double SphereDistances(const gsl_vector* v, void* params) {
  const double cx = gsl_vector_get(v, 0), cy = gsl_vector_get(v, 1),
               cz = gsl_vector_get(v, 2), r = gsl_vector_get(v, 3);
  Accumulator<kind> sum;
  for (const cv::Point3f& x : zelmo::simplexfit::PointsOf(params)) {
    const double dx = x.x - cx, dy = x.y - cy, dz = x.z - cz;
    sum.add(std::fabs(std::sqrt(dx * dx + dy * dy + dz * dz) - r));
  }
  return sum.value();
}

}  // namespace

XSphereFit::XSphereFit()
    : X3DSimplexFit(kSphereDimension, kSphereMaxIter, &Distance_LeastAbsDev) {}

bool XSphereFit::Fit(const std::vector<cv::Point3f>& points,
                     double* const params,
                     FitMethod method) {
  setPoints(points);
  leastSquareFit(points, params);
  if (method == LeastSquare) return true;
  setObjective(method == Chebyshev ? &Chebyshev_MaxDistance
                                   : &Distance_LeastAbsDev);
  descend(params, params[3] / kSphereStepDivisor);
  return true;
}

bool XSphereFit::Fit(const float* points,
                     const int& count,
                     double* const params,
                     FitMethod method) {
  return Fit(toPoints(points, count), params, method);
}

bool XSphereFit::leastSquareFit(const std::vector<cv::Point3f>& points,
                                double* const p) {
  return zelmo::simplexfit::AlgebraicSphere(points, p);
}

double XSphereFit::Distance_LeastAbsDev(const gsl_vector* v, void* params) {
  return SphereDistances<Aggregate::kSum>(v, params);
}

double XSphereFit::Chebyshev_MaxDistance(const gsl_vector* v, void* params) {
  return SphereDistances<Aggregate::kMax>(v, params);
}

}  // namespace x3dfit
