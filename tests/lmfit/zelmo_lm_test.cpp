#include "zelmo/lmfit/zelmo_lm.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/stdout_capture.h"

namespace zelmolm {
namespace {

class OpenLM : public ZelmoLM {
 public:
  int Run(ResidualFunction f, const float* pts, int count, double* p) {
    residualFunction_ = f;
    return Fit_LM(pts, count, p, nullptr, 1);
  }
};

void Throws(double*, double*, int, int, void*) {
  throw std::runtime_error("residual failed");
}
void ShiftByMean(double* p, double* hx, int, int n, void* adata) {
  const float* pts = static_cast<const float*>(adata);
  for (int i = 0; i < n; ++i) hx[i] = pts[3 * i] - p[0];
}

// The solver drives the residuals to zero with the points as adata, and
// every exception inside is caught, printed and returned as -1.
TEST(ZelmoLM, SolvesOnThePointsAndCatchesEverything) {
  const float pts[9] = {1, 0, 0, 2, 0, 0, 6, 0, 0};
  OpenLM lm;
  double p[1] = {0};
  EXPECT_GE(lm.Run(ShiftByMean, pts, 3, p), 0);
  EXPECT_NEAR(p[0], 3.0, 1e-6);
  zelmo::test::StdoutCapture capture;
  EXPECT_EQ(lm.Run(Throws, pts, 3, p), -1);
  EXPECT_EQ(lm.Run(ShiftByMean, pts, -1, p), -1);  // no vector of -1 zeros
  EXPECT_EQ(capture.Take(), "catch error\ncatch error\n");
}

}  // namespace
}  // namespace zelmolm
