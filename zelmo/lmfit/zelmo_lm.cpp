#include "zelmo/lmfit/zelmo_lm.h"

#include <vector>

#include "zelmo/lmfit/console.h"
#include "zelmo/solver/levmar.h"

namespace zelmolm {
namespace {

// Solver options: initial damping scale, then the stop thresholds on the
// gradient, the relative step and the squared error, then the smallest
// finite-difference step (forward differences).
constexpr double kInitialDamping = 1e-3;
constexpr double kGradientStop = 1e-15;
constexpr double kStepStop = 1e-15;
constexpr double kErrorStop = 1e-20;
constexpr double kDifferenceStep = 1e-6;
constexpr int kMaxIterations = 10000;

}  // namespace

int ZelmoLM::Fit_LM(const float* points,
                    const int& count,
                    double* params,
                    double* /*measurements*/,
                    const int& paramCount) {
  try {
    // Zero measurements: the solver drives the residuals themselves to 0.
    std::vector<double> zeros(count, 0.0);
    double opts[zelmo::levmar::kOptsSize] = {
        kInitialDamping, kGradientStop, kStepStop, kErrorStop, kDifferenceStep};
    double info[zelmo::levmar::kInfoSize];
    return zelmo::levmar::dlevmar_dif(residualFunction_, params, zeros.data(),
                                      paramCount, count, kMaxIterations, opts,
                                      info, nullptr, nullptr,
                                      const_cast<float*>(points));
  } catch (...) {
    zelmo::lmfit::printCatchError();
    return -1;
  }
}

}  // namespace zelmolm
