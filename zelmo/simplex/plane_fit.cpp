#include "zelmo/simplex/plane_fit.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/plane_frame.h"
#include "zelmo/simplex/axis_geometry.h"
#include "zelmo/simplex/residual_sums.h"
#include "zelmo/solver/simplex_loop.h"

namespace x3dfit {
namespace {

using zelmo::simplexfit::Accumulator;
using zelmo::simplexfit::Aggregate;

constexpr size_t kPlaneDimension = 4;
constexpr int kPlaneMaxIter = 10000;
constexpr int kPlaneMinPoints = 3;
// The step of the descent is the signed largest normal component over this.
constexpr double kPlaneStepDivisor = 100.0;

template <Aggregate kind>
double PlaneDistances(const gsl_vector* v, void* params) {
  const double a = gsl_vector_get(v, 0), b = gsl_vector_get(v, 1),
               c = gsl_vector_get(v, 2), d = gsl_vector_get(v, 3);
  Accumulator<kind> sum;
  for (const cv::Point3f& x : zelmo::simplexfit::PointsOf(params))
    sum.add(std::fabs(a * x.x + b * x.y + c * x.z + d));
  return sum.value() / std::sqrt(a * a + b * b + c * c);
}

}  // namespace

XPlaneFit::XPlaneFit()
    : X3DSimplexFit(kPlaneDimension, kPlaneMaxIter, &Distance_LeastAbsDev) {}

bool XPlaneFit::Fit(const std::vector<cv::Point3f>& points,
                    double* const params,
                    FitMethod method) {
  setPoints(points);
  getInitialValue(points, params);
  if (method == LeastSquare) return true;
  setObjective(method == Chebyshev ? &Chebyshev_MaxDistance
                                   : &Distance_LeastAbsDev);
  descend(params, zelmo::solver::SignedLargest3(params) / kPlaneStepDivisor);
  zelmo::solver::NormaliseByDirection(params, 4);
  return true;
}

bool XPlaneFit::Fit(const float* points,
                    const int& count,
                    double* const params,
                    FitMethod method) {
  return Fit(toPoints(points, count), params, method);
}

bool XPlaneFit::getInitialValue(const std::vector<cv::Point3f>& points,
                                double* const p) {
  if (points.size() < kPlaneMinPoints) return false;
  const cv::Vec3d c = zelmo::simplexfit::MeanInDouble(points);
  const cv::Mat M = zelmo::simplexfit::Scatter(
      points, c, zelmo::simplexfit::Subtraction::kInDouble);
  cv::Mat w, u, vt;
  cv::SVD::compute(M, w, u, vt, 0);
  for (int k = 0; k < 3; ++k) p[k] = vt.at<double>(2, k);
  p[3] = -(p[0] * c[0] + p[1] * c[1] + p[2] * c[2]);
  return true;
}

double XPlaneFit::Distance_LeastAbsDev(const gsl_vector* v, void* params) {
  return PlaneDistances<Aggregate::kSum>(v, params);
}

double XPlaneFit::Chebyshev_MaxDistance(const gsl_vector* v, void* params) {
  return PlaneDistances<Aggregate::kMax>(v, params);
}

void XPlaneFit::getFourCorner(const std::vector<cv::Point3f>& points,
                              double* const params,
                              float* const corners) {
  zelmo::frame::planeBoxCorners(points, params, zelmo::frame::AlignMode::kPlain,
                                corners, nullptr);
}

void XPlaneFit::getFourCorner(const float* points,
                              const int& count,
                              double* const params,
                              float* const corners) {
  getFourCorner(toPoints(points, count), params, corners);
}

}  // namespace x3dfit
