#include "zelmo/simplex/cylinder_fit.h"

#include <cmath>

#include "zelmo/simplex/axis_geometry.h"
#include "zelmo/simplex/principal_axes.h"
#include "zelmo/simplex/residual_sums.h"
#include "zelmo/solver/simplex_loop.h"

namespace x3dfit {
namespace {

using zelmo::simplexfit::Aggregate;

constexpr size_t kCylinderDimension = 7;
constexpr int kCylinderMaxIter = 10000;
// Fit2's iteration limit per axis; it stays with the object.
constexpr int kCylinderFit2MaxIter = 1000;
// The step of Fit is the radius over kFitStepDivisor, of Fit2 over
// kFit2StepDivisor.
constexpr double kFitStepDivisor = 10.0;
constexpr double kFit2StepDivisor = 50.0;

// Every point of a cylinder, also one at the axis point, expects radius r.
struct CylinderSurface {
  double r;
  double nearTerm() const { return r; }
  double radiusAt(double) const { return r; }
};

template <Aggregate kind>
double CylinderDistances(const gsl_vector* v, void* params) {
  CylinderSurface cylinder{gsl_vector_get(v, 6)};
  return zelmo::simplexfit::FoldAxialTerms<kind>(
      v, zelmo::simplexfit::PointsOf(params), cylinder);
}

// Axis point c, direction `axis`, radius from `eigenvalue`, the scatter
// along that axis, over the count.
void StartOnAxis(const cv::Point3f& c,
                 const double* axis,
                 double eigenvalue,
                 size_t count,
                 double* const p) {
  p[0] = c.x;
  p[1] = c.y;
  p[2] = c.z;
  for (int k = 0; k < 3; ++k) p[3 + k] = axis[k];
  p[6] = std::sqrt(eigenvalue / static_cast<double>(count));
}

}  // namespace

double XCylinderFit::m_optimal_value = 0.0;

XCylinderFit::XCylinderFit()
    : X3DSimplexFit(
          kCylinderDimension, kCylinderMaxIter, &Distance_LeastAbsDev) {}

bool XCylinderFit::Fit(const std::vector<cv::Point3f>& points,
                       double* const params,
                       FitMethod method) {
  setPoints(points);
  getInitialValue(points, params);
  if (method == LeastSquare)
    setObjective(&Distance_LeastSquare);
  else if (method == Chebyshev)
    setObjective(&Chebyshev_MaxDistance);
  else
    setObjective(&Distance_LeastAbsDev);
  descend(params, params[6] / kFitStepDivisor);
  finishDescent(points, params);
  return true;
}

bool XCylinderFit::Fit(const float* points,
                       const int& count,
                       double* const params,
                       FitMethod method) {
  return Fit(toPoints(points, count), params, method);
}

bool XCylinderFit::Fit2(const float* points,
                        const int& count,
                        double* const params) {
  const std::vector<cv::Point3f> pts = toPoints(points, count);
  setPoints(pts);
  zelmo::simplexfit::FitEachPrincipalAxis(
      pts, params,
      [&](const double* axis, double eigenvalue, const cv::Point3f& c,
          double* const p) {
        StartOnAxis(c, axis, eigenvalue, pts.size(), p);
        setObjective(&Distance_LeastSquare);
        setMaxIter(kCylinderFit2MaxIter);
        descend(p, p[6] / kFit2StepDivisor);
        finishDescent(pts, p);
        return m_optimal_value;
      });
  return true;
}

bool XCylinderFit::getInitialValue(const std::vector<cv::Point3f>& points,
                                   double* const p) {
  cv::Mat values, vectors;
  cv::Point3f c;
  computePrincipalAxes(points, values, vectors, c);
  StartOnAxis(c, vectors.ptr<double>(0), values.at<double>(2), points.size(),
              p);
  return true;
}

void XCylinderFit::calcCylinderHeight_Center(
    const std::vector<cv::Point3f>& points, double* const p) {
  const cv::Point3f origin(static_cast<float>(p[0]), static_cast<float>(p[1]),
                           static_cast<float>(p[2]));
  const zelmo::simplexfit::AxialSpan span =
      zelmo::simplexfit::MeasureAlongAxis(points, origin, p + 3);
  p[7] = std::fabs(span.tmax - span.tmin);
  const double mid = (span.tmax + span.tmin) * 0.5;
  p[0] = origin.x + p[3] * mid;
  p[1] = origin.y + p[4] * mid;
  p[2] = origin.z + p[5] * mid;
}

void XCylinderFit::finishDescent(const std::vector<cv::Point3f>& points,
                                 double* const p) {
  zelmo::solver::NormaliseByDirection(p + 3, 3);
  calcCylinderHeight_Center(points, p);
}

double XCylinderFit::Distance_LeastSquare(const gsl_vector* v, void* params) {
  m_optimal_value = CylinderDistances<Aggregate::kSumSquares>(v, params);
  return m_optimal_value;
}

double XCylinderFit::Distance_LeastAbsDev(const gsl_vector* v, void* params) {
  return CylinderDistances<Aggregate::kSum>(v, params);
}

double XCylinderFit::Chebyshev_MaxDistance(const gsl_vector* v, void* params) {
  return CylinderDistances<Aggregate::kMax>(v, params);
}

}  // namespace x3dfit
