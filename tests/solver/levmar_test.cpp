// The solver against levmar 2.6's own runs, failure paths and call forms.
#include "zelmo/solver/levmar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

#include "tests/support/stdout_capture.h"

namespace zelmo {
namespace levmar {
namespace {

constexpr double kReferenceRelTol = 1e-9;  // the last printed digit
const double kOpts[5] = {1e-3, 1e-15, 1e-15, 1e-20, 1e-6};
const double kCentralOpts[5] = {1e-3, 1e-15, 1e-15, 1e-20, -1e-6};

void Rosenbrock(double* p, double* hx, int, int, void*) {
  hx[0] = 10.0 * (p[1] - p[0] * p[0]);
  hx[1] = 1.0 - p[0];
}
void Circle(double* p, double* hx, int, int n, void* adata) {
  const double* xy = static_cast<const double*>(adata);
  for (int i = 0; i < n; ++i)
    hx[i] = std::hypot(xy[2 * i] - p[0], xy[2 * i + 1] - p[1]) - p[2];
}
void Root(double* p, double* h, int, int, void*) { h[0] = std::sqrt(p[0]); }
void Huge(double* p, double* h, int, int, void*) { h[0] = 1e-6 * p[0] + 1; }
void Abs(double* p, double* h, int, int, void*) { h[0] = 1 + std::fabs(*p); }

// clang-format off
double kCircle[24] = {6.5, -0.5, 5.625, 1.375, 3.875, 2.375, 1.75, 2.75,
    -0.125, 1.875, -1.25, 0.125, -1.375, -1.875, -0.625, -3.875, 1.125, -5,
    3.125, -5.125, 5.125, -4.375, 6.375, -2.625};
// clang-format on

struct Reference {
  const char* name;
  ModelFunction func;
  void* adata;
  int m, n;
  const double* opts;
  std::vector<double> start;
  int ret;
  std::vector<double> p, info;
};

// One run per stop reason (info[6]), and central differences.
std::vector<Reference> References() {
  // clang-format off
  return {
      {"A", Rosenbrock, nullptr, 2, 2, kOpts, {-1.2, 1}, 24,
       {0.99999999999866562, 0.99999999999732581},
       {24.199999999999996, 1.783521581355263e-24, 1.7384533915272549e-10,
        8.7510501140278614e-19, 5.3023627583714342e-07, 24, 6, 31, 3, 24}},
      {"B1", Circle, kCircle, 3, 12, kOpts, {0, 0, 1}, 62,
       {2.5312526355145253, -1.2472360132473068, 4.0243792266043883},
       {191.94823602915665, 0.062019430041808439, 2.0192069054261914e-06,
        1.8871711894896795e-31, 400440986.68850982, 62, 2, 81, 6, 63}},
      {"E2", Root, nullptr, 1, 1, kOpts, {1}, -1, {1},
       {1, 1, 0.49998750062396624, 3.9922115821401785, 0.001, 0, 7, 3, 1, 1}},
      {"E3", Huge, nullptr, 1, 1, kOpts, {0}, -1, {0},
       {1, 1, 1.000088900582341e-06, 997825573569.73535, 0.001, 0, 4, 2, 1, 1}},
      {"E4", Abs, nullptr, 1, 1, kOpts, {0}, 29, {0},
       {1, 1, 0.99999999991773336, 1.2702926124709056e-256,
        9.5268205270873788e+136, 29, 5, 32, 1, 30}},
      {"E6", Rosenbrock, nullptr, 2, 2, kCentralOpts, {-1.2, 1}, 24,
       {0.99999999999876499, 0.99999999999752487},
       {24.199999999999996, 1.5278630402188874e-24, 1.6294705001048085e-10,
        7.647248515372883e-19, 5.2503658944567762e-07, 24, 6, 37, 3, 24}},
  };
  // clang-format on
}

// Exact counters, digits of p and errors; work space, zero x, no info.
TEST(Levmar, ReproducesReferenceRuns) {
  for (const Reference& r : References()) {
    SCOPED_TRACE(r.name);
    std::vector<double> p = r.start, q = r.start, zeros(r.n, 0.0);
    std::vector<double> work(DifWorkSize(r.m, r.n));
    double info[kInfoSize], *opts = const_cast<double*>(r.opts);
    EXPECT_EQ(dlevmar_dif(r.func, p.data(), nullptr, r.m, r.n, 10000, opts,
                          info, nullptr, nullptr, r.adata),
              r.ret);
    for (int i = 0; i < r.m; ++i)
      EXPECT_NEAR(p[i], r.p[i], kReferenceRelTol * std::fabs(r.p[i]));
    for (int i = 0; i < kInfoSize; ++i)
      EXPECT_NEAR(info[i], r.info[i],
                  i < 5 ? kReferenceRelTol * std::fabs(r.info[i]) : 0.0)
          << i;
    dlevmar_dif(r.func, q.data(), zeros.data(), r.m, r.n, 10000, opts, nullptr,
                work.data(), nullptr, r.adata);
    EXPECT_EQ(q, p);
  }
}

void Unused(double*, double*, int, int, void*) { ADD_FAILURE(); }
void NaN(double*, double* h, int, int n, void*) { std::fill(h, h + n, NAN); }
void Twin(double* p, double* h, int, int, void*) { *h = h[1] = *p + p[1] + 1; }

// n < m, a NaN at the start, and a singular system (LAPACK's line each).
TEST(Levmar, FailurePathsAndTheirReports) {
  double p[3] = {1, 2, 3}, info[kInfoSize];
  auto run = [&info](ModelFunction f, double* q, int m, int n, int itmax,
                     double* opts) {
    return dlevmar_dif(f, q, nullptr, m, n, itmax, opts, info, nullptr, nullptr,
                       nullptr);
  };
  std::fill(info, info + kInfoSize, -7.0);
  test::StdoutCapture fewer;
  EXPECT_EQ(run(Unused, p, 3, 2, 10000, nullptr), kError);
  EXPECT_EQ(fewer.Take(),
            "dlevmar_dif(): cannot solve a problem with fewer measurements "
            "[2] than unknowns [3]\n");
  EXPECT_EQ(std::vector<double>(p, p + 3), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(std::vector<double>(info, info + kInfoSize),
            std::vector<double>(kInfoSize, -7.0));

  EXPECT_EQ(run(NaN, p, 1, 3, 10000, nullptr), kError);
  EXPECT_TRUE(std::isnan(info[0]) && std::isnan(info[1]));
  EXPECT_EQ(std::vector<double>(info + 5, info + 10),
            (std::vector<double>{0, kStopNotFinite, 1, 0, 0}));
  EXPECT_EQ(run(NaN, p, 1, 3, 0, nullptr), 0);
  EXPECT_EQ(info[6], kStopIterationLimit);

  // No damping and a power-of-two delta: J = [1 1; 1 1] exactly.
  double opts[5] = {0.0, 1e-15, 1e-15, 1e-20, 0.0009765625}, q[2] = {0, 0};
  test::StdoutCapture singular;
  EXPECT_EQ(run(Twin, q, 2, 2, 10000, opts), 29);
  std::string want;
  for (int i = 0; i < 30; ++i)
    want +=
        "LAPACK error: singular block diagonal matrix D fordsytrf_ in "
        "dAx_eq_b_BK() [D(2, 2) is zero]\n";
  EXPECT_EQ(singular.Take(), want);
  EXPECT_EQ(info[6], kStopNoReduction);
  EXPECT_EQ(info[7], 3.0);      // start and two columns: no trial point
  EXPECT_EQ(info[3], DBL_MAX);  // no system was ever solved
}

void Mean(double* p, double* h, int, int n, void*) { std::fill(h, h + n, *p); }

// A constant model's covariance is sumsq / (n (n - 1)).
TEST(Levmar, CovarianceOfTheMean) {
  double x[4] = {1.5, 3.25, 4.75, 6.5}, mean[1] = {0}, covar[1], info[10];
  EXPECT_GE(dlevmar_dif(Mean, mean, x, 1, 4, 100, nullptr, info, nullptr, covar,
                        nullptr),
            0);
  EXPECT_NEAR(mean[0], 4.0, 1e-6);
  EXPECT_NEAR(covar[0], info[1] / 12, 1e-9);
}

}  // namespace
}  // namespace levmar
}  // namespace zelmo
