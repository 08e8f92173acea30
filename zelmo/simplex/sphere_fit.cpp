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
constexpr size_t kSphereMinPoints = 4;
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
  if (points.size() < kSphereMinPoints) return false;
  const cv::Vec3d m = zelmo::simplexfit::MeanInDouble(points);
  double sx = 0, sy = 0, sz = 0, sxx = 0, syy = 0, szz = 0, sxy = 0, sxz = 0,
         syz = 0, sxxx = 0, syyy = 0, szzz = 0, sxyy = 0, sxxy = 0, sxzz = 0,
         sxxz = 0, syyz = 0, syzz = 0;
  for (const cv::Point3f& pt : points) {
    const double x = pt.x - m[0], y = pt.y - m[1], z = pt.z - m[2];
    sx += x;
    sy += y;
    sz += z;
    sxx += x * x;
    syy += y * y;
    szz += z * z;
    sxy += x * y;
    sxz += x * z;
    syz += y * z;
    sxxx += x * x * x;
    syyy += y * y * y;
    szzz += z * z * z;
    sxyy += x * y * y;
    sxxy += x * x * y;
    sxzz += x * z * z;
    sxxz += x * x * z;
    syyz += y * y * z;
    syzz += y * z * z;
  }
  const double n = static_cast<double>(points.size());
  const cv::Mat A = (cv::Mat_<double>(4, 4) << sxx, sxy, sxz, sx,  //
                     sxy, syy, syz, sy,                            //
                     sxz, syz, szz, sz,                            //
                     sx, sy, sz, n);
  const cv::Mat b =
      (cv::Mat_<double>(4, 1) << -(sxxx + sxyy + sxzz), -(sxxy + syyy + syzz),
       -(sxxz + syyz + szzz), -(sxx + syy + szz));
  const cv::Mat s = A.inv() * b;  // D, E, F, G; zero when A is singular
  const double D = s.at<double>(0), E = s.at<double>(1), F = s.at<double>(2),
               G = s.at<double>(3);
  p[0] = m[0] - D / 2;
  p[1] = m[1] - E / 2;
  p[2] = m[2] - F / 2;
  p[3] = std::sqrt((D * D + E * E + F * F) * 0.25 - G);
  return true;
}

double XSphereFit::Distance_LeastAbsDev(const gsl_vector* v, void* params) {
  return SphereDistances<Aggregate::kSum>(v, params);
}

double XSphereFit::Chebyshev_MaxDistance(const gsl_vector* v, void* params) {
  return SphereDistances<Aggregate::kMax>(v, params);
}

}  // namespace x3dfit
