#include "zelmo/lmfit/cylinder_fit_lm.h"

#include <cmath>
#include <vector>

#include "zelmo/feature/solid_records.h"
#include "zelmo/lmfit/axis_geometry.h"
#include "zelmo/lmfit/console.h"
#include "zelmo/lmfit/sac_seed.h"
#include "zelmo/lmfit/stage_frame.h"

namespace zelmolm {
namespace {

namespace lm = zelmo::lmfit;

constexpr int kCylinderParams = lm::kSacCoefficients;  // point, axis, radius
constexpr int kMinPoints = 6;
constexpr int kSolverFailure = -2;
// The combined proportion filter drops a point from this much below the
// threshold on.
constexpr double kProportionAngleDropMargin = 1e-5;

}  // namespace

// The cylinder's part in the common stages: the signed distance from the
// surface, an inverted angle test (a normal must stand square to the axis),
// exact ties, no guard on the kept count, a store that measures the extent
// of the kept points only, -2 for a failed refit, and the kept count after
// the combined proportion stage.
class CylinderStages : public lm::StageShape {
 public:
  explicit CylinderStages(XCylinderFitLM& cylinder) : cylinder_(cylinder) {}

  int fitAll(const float* points, const float* normals, int count) override {
    return cylinder_.Fit1(points, normals, count);
  }
  void prepare() override {
    for (int k = 0; k < 3; ++k) {
      origin_[k] = cylinder_.center[k];
      axis_[k] = cylinder_.axis[k];
    }
    lm::unitOrZero(axis_, u_);
  }
  double residual(const float* point) const override {
    return lm::axialOffset(point, origin_, u_).radial -
           static_cast<double>(cylinder_.radius);
  }
  void statistics(const float* points,
                  int count,
                  float* stats,
                  std::vector<float>& residuals) override {
    lm::fillStatistics(*this, points, count,
                       lm::VarianceDivisor::kCountLessOneAboveTen, stats,
                       residuals);
  }
  bool angleHolds(const float*,
                  const float* normal,
                  double cosLimit) const override {
    const double dot =
        normal[0] * u_[0] + normal[1] * u_[1] + normal[2] * u_[2];
    return std::fabs(dot) <= cosLimit;
  }
  lm::TieRule tieRule(lm::Stage stage) const override {
    const double margin =
        stage == lm::Stage::kProportionAngle ? kProportionAngleDropMargin : 0.0;
    return lm::TieRule{true, true, margin};
  }
  int paramCount() const override { return kCylinderParams; }
  void seed(double* params) const override {
    for (int k = 0; k < 3; ++k) {
      params[k] = cylinder_.center[k];
      params[3 + k] = cylinder_.axis[k];
    }
    params[6] = cylinder_.radius;
  }
  bool refitAllowed(int) const override { return true; }
  int solve(const float* kept, int keptCount, double* params) override {
    return cylinder_.Fit_LM(kept, keptCount, params, nullptr, kCylinderParams);
  }
  void store(const double* params,
             const float* kept,
             int keptCount,
             const float*,
             const float* normals,
             int) override {
    cylinder_.store(params);
    cylinder_.getValue(kept, normals, keptCount);
  }
  int solverFailure() const override { return kSolverFailure; }

  void onRefitted(lm::Stage stage, int kept, int count) override {
    if (stage == lm::Stage::kProportionAngle) lm::printKept(kept, count);
  }

 private:
  XCylinderFitLM& cylinder_;
  double origin_[3] = {0, 0, 0};
  double axis_[3] = {0, 0, 0};
  double u_[3] = {0, 0, 0};  // unit axis of the first fit (zero if none)
};

int XCylinderFitLM::Fit(const float* points,
                        const float* normals,
                        const int& count,
                        const xfeaturefitfilter::FilterParam& param,
                        xfeaturefitfilter::FilterMethod method) {
  CylinderStages shape(*this);
  return lm::runFilter(shape, points, normals, count, param, method);
}

int XCylinderFitLM::Fit(const float* points,
                        const float* normals,
                        const int& count,
                        const float* const seed) {
  if (count < kMinPoints) return -1;
  residualFunction_ = Fit_Function;
  double params[kCylinderParams];
  for (int k = 0; k < kCylinderParams; ++k) params[k] = seed[k];
  const int result = solveAndStore(points, count, params);
  getValue(points, normals, count);
  return result < 0 ? kSolverFailure : 0;
}

void XCylinderFitLM::getCylinder(xgeofeature::XFCylinder& cylinder) {
  for (int k = 0; k < 3; ++k) {
    cylinder.center[k] = center[k];
    cylinder.axis[k] = axis[k];
    cylinder.base[k] = base[k];
    cylinder.top[k] = top[k];
  }
  cylinder.radius = radius;
  cylinder.height = height;
}

void XCylinderFitLM::Fit_Function(
    double* p, double* hx, int, int n, void* adata) {
  const float* pts = static_cast<const float*>(adata);
  double u[3];
  lm::unitOrZero(p + 3, u);
  const double r = static_cast<float>(p[6]);  // radius rounded to float
  for (int i = 0; i < n; ++i)
    hx[i] = lm::axialOffset(pts + 3 * i, p, u).radial - r;
}

int XCylinderFitLM::Fit1(const float* points,
                         const float* normals,
                         const int& count) {
  if (count < kMinPoints) return -1;
  residualFunction_ = Fit_Function;
  double params[kCylinderParams];
  if (lm::sampleConsensusSeed(lm::SacModel::kCylinder, points, normals, count,
                              params) < 0)
    return -1;
  lm::printSeed(params, kCylinderParams);
  const int result = solveAndStore(points, count, params);
  getValue(points, normals, count);
  return result < 0 ? kSolverFailure : 0;
}

int XCylinderFitLM::Fit2(const float* points,
                         const float* normals,
                         const int& count,
                         const float& value) {
  CylinderStages shape(*this);
  return lm::bandStage(shape, points, normals, count, value);
}

int XCylinderFitLM::Fit3(const float* points,
                         const float* normals,
                         const int& count,
                         const float& value) {
  CylinderStages shape(*this);
  return lm::proportionStage(shape, points, normals, count, value);
}

int XCylinderFitLM::Fit4(const float* points,
                         const float* normals,
                         const int& count,
                         const float& value) {
  CylinderStages shape(*this);
  return lm::angleStage(shape, points, normals, count, value);
}

int XCylinderFitLM::Fit5(const float* points,
                         const float* normals,
                         const int& count,
                         const float& value,
                         const float& angle) {
  CylinderStages shape(*this);
  return lm::bandAngleStage(shape, points, normals, count, value, angle);
}

int XCylinderFitLM::Fit6(const float* points,
                         const float* normals,
                         const int& count,
                         const float& value,
                         const float& angle) {
  CylinderStages shape(*this);
  return lm::proportionAngleStage(shape, points, normals, count, value, angle);
}

void XCylinderFitLM::calcStatistics(const float* points,
                                    const int& count,
                                    float* const stats,
                                    std::vector<float>& residuals) {
  CylinderStages shape(*this);
  shape.prepare();
  shape.statistics(points, count, stats, residuals);
}

void XCylinderFitLM::getValue(const float* points,
                              const float*,
                              const int& count) {
  const lm::AxialRange range = lm::axialRange(points, count, center, axis);
  const double extent = std::fabs(range.max - range.min);
  height = static_cast<float>(extent);
  const double half = extent * 0.5;
  const double shift = (range.max + range.min) * 0.5;
  for (int k = 0; k < 3; ++k)
    center[k] = static_cast<float>(center[k] + axis[k] * shift);
  for (int k = 0; k < 3; ++k) {
    top[k] = static_cast<float>(center[k] + axis[k] * half);
    base[k] = static_cast<float>(center[k] - axis[k] * half);
  }
}

int XCylinderFitLM::solveAndStore(const float* points,
                                  int count,
                                  double* params) {
  const int result = Fit_LM(points, count, params, nullptr, kCylinderParams);
  store(params);
  return result;
}

void XCylinderFitLM::store(const double* params) {
  lm::storeAxialModel(params, center, axis, &radius);
}

}  // namespace zelmolm
