#include "zelmo/simplex/cone_fit.h"

#include <cmath>
#include <iostream>
#include <utility>

#include "zelmo/simplex/axis_geometry.h"
#include "zelmo/simplex/principal_axes.h"
#include "zelmo/simplex/residual_sums.h"
#include "zelmo/solver/simplex_loop.h"

namespace x3dfit {
namespace {

using zelmo::simplexfit::Aggregate;

constexpr size_t kConeDimension = 7;
constexpr int kConeMaxIter = 5000;
// The step of the descent is the largest |axis component| over this.
constexpr double kConeStepDivisor = 10.0;

// The radius a cone of slope T expects at axial distance t is |t| T; a
// point at the apex expects the radius of the point before it.
struct ConeSurface {
  double slope;
  double lastRadius;
  double nearTerm() const { return lastRadius; }
  double radiusAt(double t) {
    lastRadius = std::fabs(t) * slope;
    return lastRadius;
  }
};

template <Aggregate kind>
double ConeDistances(const gsl_vector* v, void* params) {
  const double slope = std::tan(gsl_vector_get(v, 6));
  ConeSurface cone{slope, slope};
  return zelmo::simplexfit::FoldAxialTerms<kind>(
      v, zelmo::simplexfit::PointsOf(params), cone);
}

// Apex at the centroid c, the given axis, and the half angle under which
// the points' largest distance from the axis is seen over half their
// extent along it.
void StartOnAxis(const std::vector<cv::Point3f>& points,
                 const cv::Point3f& c,
                 const double* axis,
                 double* const p) {
  p[0] = c.x;
  p[1] = c.y;
  p[2] = c.z;
  for (int k = 0; k < 3; ++k) p[3 + k] = axis[k];
  const zelmo::simplexfit::AxialSpan span =
      zelmo::simplexfit::MeasureAlongAxis(points, c, axis);
  p[6] = std::atan2(span.rmax, std::fabs(span.tmax - span.tmin) * 0.5);
}

// The one debug line of the cone fit.
void PrintIterations(int iterations) {
  std::cout << "iter:" << iterations << std::endl;
}

}  // namespace

double XConeFit::m_optimal_value_cone = 0.0;

XConeFit::XConeFit()
    : X3DSimplexFit(kConeDimension, kConeMaxIter, &Distance_LeastAbsDev) {}

bool XConeFit::Fit(const std::vector<cv::Point3f>& points,
                   double* const params,
                   FitMethod method) {
  setPoints(points);
  getInitialValue(points, params);
  if (method == LeastSquare) setObjective(&Distance_LeastSquare);
  if (method == LeastAbsDev) setObjective(&Distance_LeastAbsDev);
  PrintIterations(descendFrom(params));
  zelmo::solver::NormaliseByDirection(params + 3, 3);
  return true;
}

bool XConeFit::Fit(const float* points,
                   const int& count,
                   double* const params,
                   FitMethod method) {
  return Fit(toPoints(points, count), params, method);
}

bool XConeFit::Fit2(const float* points,
                    const int& count,
                    double* const params,
                    FitMethod /*method*/) {
  const std::vector<cv::Point3f> pts = toPoints(points, count);
  setPoints(pts);
  zelmo::simplexfit::FitEachPrincipalAxis(
      pts, params,
      [&](const double* axis, double, const cv::Point3f& c, double* const p) {
        StartOnAxis(pts, c, axis, p);
        setObjective(&Distance_LeastSquare);
        setMaxIter(kConeMaxIter);
        descendFrom(p);
        zelmo::solver::NormaliseByDirection(p + 3, 3);
        return m_optimal_value_cone;
      });
  return true;
}

void XConeFit::calcConeBasePoint_Center(const float* points,
                                        const int& count,
                                        double* const params,
                                        double* const base,
                                        double* const top,
                                        double& height) {
  const cv::Point3f apex(static_cast<float>(params[0]),
                         static_cast<float>(params[1]),
                         static_cast<float>(params[2]));
  const double* u = params + 3;
  const zelmo::simplexfit::AxialSpan span =
      zelmo::simplexfit::MeasureAlongAxis(toPoints(points, count), apex, u);
  height = std::fabs(span.tmax - span.tmin);
  const double a[3] = {apex.x, apex.y, apex.z};
  for (int k = 0; k < 3; ++k) {
    base[k] = a[k] + u[k] * span.tmin;
    top[k] = a[k] + u[k] * span.tmax;
  }
  const double side = (params[0] - base[0]) * u[0] +
                      (params[1] - base[1]) * u[1] +
                      (params[2] - base[2]) * u[2];
  if (side < 0.0) {
    for (int k = 0; k < 3; ++k) {
      std::swap(base[k], top[k]);
      params[3 + k] = -params[3 + k];
    }
  }
}

bool XConeFit::getInitialValue(const std::vector<cv::Point3f>& points,
                               double* const p) {
  cv::Mat values, vectors;
  cv::Point3f c;
  computePrincipalAxes(points, values, vectors, c);
  StartOnAxis(points, c, vectors.ptr<double>(0), p);
  return true;
}

int XConeFit::descendFrom(double* const p) {
  return descend(p, zelmo::solver::LargestAbs3(p + 3) / kConeStepDivisor);
}

double XConeFit::Distance_LeastSquare(const gsl_vector* v, void* params) {
  m_optimal_value_cone = ConeDistances<Aggregate::kSumSquares>(v, params);
  return m_optimal_value_cone;
}

double XConeFit::Distance_LeastAbsDev(const gsl_vector* v, void* params) {
  return ConeDistances<Aggregate::kSum>(v, params);
}

}  // namespace x3dfit
