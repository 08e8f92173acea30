#include "zelmo/simplex/line_fit.h"

#include "zelmo/simplex/axis_geometry.h"
#include "zelmo/simplex/residual_sums.h"
#include "zelmo/solver/simplex_loop.h"

namespace x3dfit {
namespace {

using zelmo::simplexfit::Aggregate;

constexpr size_t kLineDimension = 6;
constexpr int kLineMaxIter = 10000;
constexpr size_t kLineMinPoints = 3;
// The step of the descent is the largest |direction component| over this.
constexpr double kLineStepDivisor = 10.0;

// A line is an axial surface of radius 0.
struct LineSurface {
  double nearTerm() const { return 0.0; }
  double radiusAt(double) const { return 0.0; }
};

template <Aggregate kind>
double LineDistances(const gsl_vector* v, void* params) {
  LineSurface line;
  return zelmo::simplexfit::FoldAxialTerms<kind>(
      v, zelmo::simplexfit::PointsOf(params), line);
}

}  // namespace

XLine3DFit::XLine3DFit()
    : X3DSimplexFit(kLineDimension, kLineMaxIter, &Distance_LeastAbsDev) {}

bool XLine3DFit::Fit(const std::vector<cv::Point3f>& points,
                     double* const params,
                     FitMethod method) {
  if (points.size() < kLineMinPoints) return false;
  setPoints(points);
  getInitialValue(points, params);
  if (method == LeastSquare) setObjective(&Distance_LeastSquare);
  if (method == LeastAbsDev) setObjective(&Distance_LeastAbsDev);
  descend(params, zelmo::solver::LargestAbs3(params + 3) / kLineStepDivisor);
  zelmo::solver::NormaliseByDirection(params + 3, 3);
  return true;
}

bool XLine3DFit::Fit(const float* points,
                     const int& count,
                     double* const params,
                     FitMethod method) {
  return Fit(toPoints(points, count), params, method);
}

bool XLine3DFit::getInitialValue(const std::vector<cv::Point3f>& points,
                                 double* const p) {
  const cv::Point3f c = zelmo::simplexfit::MeanInFloat(points);
  const cv::Vec3d cd(c.x, c.y, c.z);
  const cv::Mat M = zelmo::simplexfit::Scatter(
      points, cd, zelmo::simplexfit::Subtraction::kInDouble);
  cv::Mat values, vectors;
  cv::eigen(M, values, vectors);
  for (int k = 0; k < 3; ++k) {
    p[k] = cd[k];
    p[3 + k] = vectors.at<double>(0, k);
  }
  return true;
}

double XLine3DFit::Distance_LeastSquare(const gsl_vector* v, void* params) {
  return LineDistances<Aggregate::kSumSquares>(v, params);
}

double XLine3DFit::Distance_LeastAbsDev(const gsl_vector* v, void* params) {
  return LineDistances<Aggregate::kSum>(v, params);
}

void XLine3DFit::getStart_End_Point(const float* points,
                                    const int& count,
                                    double* const params,
                                    float* const start,
                                    float* const end) {
  if (count < static_cast<int>(kLineMinPoints)) return;
  const cv::Point3f origin(static_cast<float>(params[0]),
                           static_cast<float>(params[1]),
                           static_cast<float>(params[2]));
  const zelmo::simplexfit::AxialSpan span = zelmo::simplexfit::MeasureAlongAxis(
      toPoints(points, count), origin, params + 3);
  for (int k = 0; k < 3; ++k) {
    start[k] = static_cast<float>(params[k] + span.tmin * params[3 + k]);
    end[k] = static_cast<float>(params[k] + span.tmax * params[3 + k]);
  }
}

}  // namespace x3dfit
