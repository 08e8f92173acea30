#include "zelmo/lmfit/cone_fit_lm.h"

#include <cmath>

#include "zelmo/feature/solid_records.h"
#include "zelmo/lmfit/axis_geometry.h"
#include "zelmo/lmfit/sac_seed.h"

namespace zelmolm {
namespace {

namespace lm = zelmo::lmfit;

constexpr int kConeParams = lm::kSacCoefficients;  // apex, axis, half angle
constexpr int kMinPoints = 6;

}  // namespace

int XConeFitLM::Fit(const float* points,
                    const float* normals,
                    const int& count) {
  if (count < kMinPoints) return -1;
  residualFunction_ = Fit_Function;
  double params[kConeParams];
  if (lm::sampleConsensusSeed(lm::SacModel::kCone, points, normals, count,
                              params) < 0)
    return -1;
  const int result = Fit_LM(points, count, params, nullptr, kConeParams);
  lm::storeAxialModel(params, apex, axis, &halfAngle);
  getValue(points, normals, count);
  return result;
}

void XConeFitLM::getCone(xgeofeature::XFCone& cone) {
  for (int k = 0; k < 3; ++k) {
    cone.apex[k] = apex[k];
    cone.axis[k] = axis[k];
    cone.base[k] = base[k];
    cone.top[k] = top[k];
  }
  cone.halfAngle = halfAngle;
  cone.height = height;
  cone.baseRadius = baseRadius;
  cone.topRadius = topRadius;
}

void XConeFitLM::Fit_Function(double* p, double* hx, int, int n, void* adata) {
  const float* pts = static_cast<const float*>(adata);
  double u[3];
  lm::unitOrZero(p + 3, u);
  const float slope = std::tan(static_cast<float>(p[6]));  // tanf
  for (int i = 0; i < n; ++i) {
    const lm::AxialOffset o = lm::axialOffset(pts + 3 * i, p, u);
    hx[i] = o.radial - static_cast<float>(std::fabs(o.along) * slope);
  }
}

void XConeFitLM::getValue(const float* points, const float*, const int& count) {
  const lm::AxialRange range = lm::axialRange(points, count, apex, axis);
  double far, near;
  bool turn;
  if (range.min >= 0) {
    far = range.max;
    near = range.min;
    turn = true;
  } else if (range.max <= 0) {
    far = range.min;
    near = range.max;
    turn = false;
  } else if (std::fabs(range.min) > range.max) {
    far = range.min;
    near = 0;
    turn = false;
  } else {
    far = range.max;
    near = 0;
    turn = true;
  }
  height = static_cast<float>(std::fabs(near - far));
  for (int k = 0; k < 3; ++k) {
    base[k] = static_cast<float>(apex[k] + axis[k] * far);
    top[k] = static_cast<float>(apex[k] + axis[k] * near);
  }
  const float slope = std::tan(halfAngle);  // tanf
  baseRadius = static_cast<float>(std::fabs(far) * slope);
  topRadius = static_cast<float>(std::fabs(near) * slope);
  if (turn)
    for (int k = 0; k < 3; ++k) axis[k] = -axis[k];
}

}  // namespace zelmolm
