#include "zelmo/lmfit/sphere_fit_lm.h"

#include <cmath>
#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/point_arrays.h"
#include "zelmo/feature/solid_records.h"
#include "zelmo/lmfit/console.h"
#include "zelmo/lmfit/stage_frame.h"
#include "zelmo/simplex/axis_geometry.h"

namespace zelmolm {
namespace {

namespace lm = zelmo::lmfit;

constexpr int kSphereParams = 4;  // x, y, z, r
constexpr int kMinPoints = 4;     // four points span a sphere
constexpr int kSolverFailure = -2;

// Distance of a float point from (c0, c1, c2) less r, in double.
double sphereResidual(const double* q, const float* pt) {
  const double dx = pt[0] - q[0], dy = pt[1] - q[1], dz = pt[2] - q[2];
  return std::sqrt(dx * dx + dy * dy + dz * dz) - q[3];
}

}  // namespace

// The sphere's part in the common stages: the signed distance from the
// surface, the angle between a normal and the radial direction, the
// plane's tie test, no guard on the kept count, -2 for a failed refit, and
// its console lines (band of the sigma stage; the threshold of the combined
// proportion stage, printed before it is checked and not flushed).
class SphereStages : public lm::StageShape {
 public:
  explicit SphereStages(XSphereFitLM& sphere) : sphere_(sphere) {}

  int fitAll(const float* points, const float* normals, int count) override {
    return sphere_.Fit1(points, normals, count);
  }
  double residual(const float* point) const override {
    const double q[4] = {sphere_.center[0], sphere_.center[1],
                         sphere_.center[2], sphere_.radius};
    return sphereResidual(q, point);
  }
  void statistics(const float* points,
                  int count,
                  float* stats,
                  std::vector<float>& residuals) override {
    sphere_.calcStatistics(points, count, stats, residuals);
  }
  // |n . e| against the limit, e the unit direction from the center to the
  // point (zero for a point at the center, which then fails any limit
  // above 0).
  bool angleHolds(const float* point,
                  const float* normal,
                  double cosLimit) const override {
    const cv::Vec3d d(point[0] - static_cast<double>(sphere_.center[0]),
                      point[1] - static_cast<double>(sphere_.center[1]),
                      point[2] - static_cast<double>(sphere_.center[2]));
    const cv::Vec3d e = zelmo::frame::unitOrZero(d);
    const double dot = normal[0] * e[0] + normal[1] * e[1] + normal[2] * e[2];
    return std::fabs(dot) >= cosLimit;
  }
  lm::TieRule tieRule(lm::Stage) const override {
    return lm::TieRule{false, false, 0.0};
  }
  int paramCount() const override { return kSphereParams; }
  void seed(double* params) const override {
    for (int k = 0; k < 3; ++k) params[k] = sphere_.center[k];
    params[3] = sphere_.radius;
  }
  bool refitAllowed(int) const override { return true; }
  int solve(const float* kept, int keptCount, double* params) override {
    return sphere_.Fit_LM(kept, keptCount, params, nullptr, kSphereParams);
  }
  void store(const double* params,
             const float*,
             int,
             const float*,
             const float*,
             int) override {
    sphere_.store(params);
  }
  int solverFailure() const override { return kSolverFailure; }

  void onBand(
      lm::Stage stage, float mean, float sd, double hi, double lo) override {
    if (stage == lm::Stage::kBand) lm::printBand(mean, sd, hi, lo);
  }
  void onThreshold(lm::Stage stage, float threshold) override {
    if (stage == lm::Stage::kProportionAngle)
      lm::printThreshold(threshold, false);
  }

 private:
  XSphereFitLM& sphere_;
};

int XSphereFitLM::Fit(const float* points,
                      const float* normals,
                      const int& count,
                      const xfeaturefitfilter::FilterParam& param,
                      xfeaturefitfilter::FilterMethod method) {
  SphereStages shape(*this);
  return lm::runFilter(shape, points, normals, count, param, method);
}

void XSphereFitLM::getSphere(xgeofeature::XFSphere& sphere) {
  for (int k = 0; k < 3; ++k) sphere.center[k] = center[k];
  sphere.radius = radius;
}

void XSphereFitLM::Fit_Function(
    double* p, double* hx, int, int n, void* adata) {
  const float* pts = static_cast<const float*>(adata);
  for (int i = 0; i < n; ++i) hx[i] = sphereResidual(p, pts + 3 * i);
}

int XSphereFitLM::Fit1(const float* points, const float*, const int& count) {
  if (count < kMinPoints) return -1;
  residualFunction_ = Fit_Function;
  double params[kSphereParams];
  zelmo::simplexfit::AlgebraicSphere(zelmo::copyPoints3(points, count), params,
                                     zelmo::simplexfit::SphereSums::kCubeFirst);
  const int result = Fit_LM(points, count, params, nullptr, kSphereParams);
  store(params);
  return result < 0 ? kSolverFailure : 0;
}

int XSphereFitLM::Fit2(const float* points,
                       const float* normals,
                       const int& count,
                       const float& value) {
  SphereStages shape(*this);
  return lm::bandStage(shape, points, normals, count, value);
}

int XSphereFitLM::Fit3(const float* points,
                       const float* normals,
                       const int& count,
                       const float& value) {
  SphereStages shape(*this);
  return lm::proportionStage(shape, points, normals, count, value);
}

int XSphereFitLM::Fit4(const float* points,
                       const float* normals,
                       const int& count,
                       const float& value) {
  SphereStages shape(*this);
  return lm::angleStage(shape, points, normals, count, value);
}

int XSphereFitLM::Fit5(const float* points,
                       const float* normals,
                       const int& count,
                       const float& value,
                       const float& angle) {
  SphereStages shape(*this);
  return lm::bandAngleStage(shape, points, normals, count, value, angle);
}

int XSphereFitLM::Fit6(const float* points,
                       const float* normals,
                       const int& count,
                       const float& value,
                       const float& angle) {
  SphereStages shape(*this);
  return lm::proportionAngleStage(shape, points, normals, count, value, angle);
}

void XSphereFitLM::calcStatistics(const float* points,
                                  const int& count,
                                  float* const stats,
                                  std::vector<float>& residuals) {
  SphereStages shape(*this);
  lm::fillStatistics(shape, points, count, lm::VarianceDivisor::kCount, stats,
                     residuals);
}

void XSphereFitLM::store(const double* params) {
  for (int k = 0; k < 3; ++k) center[k] = static_cast<float>(params[k]);
  radius = static_cast<float>(params[3]);
}

}  // namespace zelmolm
