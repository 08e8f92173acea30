// The solver against levmar 2.6's own runs, failure paths and call forms.
#include "zelmo/solver/levmar.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

#include "tests/support/stdout_capture.h"

namespace zelmo {
namespace levmar {
namespace {

// Absorbs only the last printed digit of the reference figures.
constexpr double kReferenceRelTol = 1e-9;

const double kOpts[5] = {1e-3, 1e-15, 1e-15, 1e-20, 1e-6};
const double kCentralOpts[5] = {1e-3, 1e-15, 1e-15, 1e-20, -1e-6};

// ---- Reference problems: adata is a flat array of point coordinates ----

void Rosenbrock(double* p, double* hx, int, int, void*) {
  hx[0] = 10.0 * (p[1] - p[0] * p[0]);
  hx[1] = 1.0 - p[0];
}
void Circle(double* p, double* hx, int, int n, void* adata) {
  const double* xy = static_cast<const double*>(adata);
  for (int i = 0; i < n; ++i)
    hx[i] = std::hypot(xy[2 * i] - p[0], xy[2 * i + 1] - p[1]) - p[2];
}
void Plane(double* p, double* hx, int, int n, void* adata) {
  const double* xyz = static_cast<const double*>(adata);
  const double norm = std::sqrt((p[0] * p[0] + p[1] * p[1]) + p[2] * p[2]);
  const double s = 0.0001 > norm ? 1.0 : 1.0 / norm;
  const double a = p[0] * s, b = p[1] * s, c = p[2] * s, d = p[3] * s;
  for (int i = 0; i < n; ++i)
    hx[i] = ((a * xyz[3 * i] + b * xyz[3 * i + 1]) + c * xyz[3 * i + 2]) + d;
}
void ExactLine(double* p, double* hx, int, int n, void*) {
  for (int i = 0; i < n; ++i) hx[i] = p[0] + p[1] * i - (1 + 2 * i);
}
void SquareRoot(double* p, double* hx, int, int, void*) {
  hx[0] = std::sqrt(p[0]);
}
void HugeStep(double* p, double* hx, int, int, void*) {
  hx[0] = 1e-6 * p[0] + 1;
}
void AbsPlusOne(double* p, double* hx, int, int, void*) {
  hx[0] = std::fabs(p[0]) + 1;
}

// clang-format off
double kCircle[24] = {6.5, -0.5, 5.625, 1.375, 3.875, 2.375, 1.75, 2.75,
    -0.125, 1.875, -1.25, 0.125, -1.375, -1.875, -0.625, -3.875, 1.125, -5,
    3.125, -5.125, 5.125, -4.375, 6.375, -2.625};
double kPlane[30] = {-3, -2, 2.3125, -1.5, 2.5, 0.3125, 0, 0, 2, 1, -1, 2.875,
    2.5, 1.5, 1.8125, 3.5, -2.5, 4.125, -2, 3, 0.0625, 0.5, -3.5, 3.75, 4, 0.5,
    2.8125, -4, 1, 0.4375};
// clang-format on

// 400 points near the circle of center (-3, 7), radius 10.
double* WideCircle() {
  static std::vector<double> xy = [] {
    std::vector<double> r;
    for (int i = 0; i < 400; ++i) {
      const double t = (i - 200) / 50.0, q = 1 + t * t;
      const double z = ((37 * i % 17) - 8) / 1000.0;
      r.push_back(-3 + (10 + z) * ((1 - t * t) / q));
      r.push_back(7 + (10 + z) * (2 * t / q));
    }
    return r;
  }();
  return xy.data();
}

struct Reference {
  const char* name;
  ModelFunction func;
  void* adata;
  int m, n;
  const double* opts;
  std::vector<double> start;
  int ret;
  std::vector<double> p;
  std::vector<double> info;
};

std::vector<Reference> References() {
  void* circle = kCircle;
  void* wide = WideCircle();
  void* plane = kPlane;
  // clang-format off
  return {
      {"A", Rosenbrock, nullptr, 2, 2, kOpts, {-1.2, 1}, 24,
       {0.99999999999866562, 0.99999999999732581},
       {24.199999999999996, 1.783521581355263e-24, 1.7384533915272549e-10,
        8.7510501140278614e-19, 5.3023627583714342e-07, 24, 6, 31, 3, 24}},
      {"B1", Circle, circle, 3, 12, kOpts, {0, 0, 1}, 62,
       {2.5312526355145253, -1.2472360132473068, 4.0243792266043883},
       {191.94823602915665, 0.062019430041808439, 2.0192069054261914e-06,
        1.8871711894896795e-31, 400440986.68850982, 62, 2, 81, 6, 63}},
      {"B2", Circle, circle, 3, 12, kOpts, {2, -1, 3.5}, 50,
       {2.5312523272613268, -1.2472359876966255, 4.0243792492329922},
       {5.6385196096300065, 0.062019430040779741, 2.3641481149694332e-06,
        5.2203963068765359e-30, 117024145.97489525, 50, 2, 66, 5, 51}},
      {"C1", Plane, plane, 4, 10, kOpts, {0, 0, 1, 0}, 30,
       {-0.25711839481038357, 0.50416570284903051, 1.0141391658626746,
        -2.0280651359984354},
       {60.1796875, 0.040974446504715947, 2.1795066817986708e-07,
        1.7442989225533183e-33, 121592172.09934454, 30, 2, 47, 4, 31}},
      {"C2", Plane, plane, 4, 10, kOpts, {0.1, -0.2, 2, -3}, 43,
       {-0.41866702698073338, 0.82093519112226732, 1.6513272652892184,
        -3.3023073971904475},
       {28.893518518518523, 0.040974446504697053, 4.6864703028004495e-07,
        5.0103899582723233e-30, 11662102.970723378, 43, 2, 68, 6, 44}},
      {"E1", ExactLine, nullptr, 2, 5, kOpts, {0, 0}, 4,
       {0.99999999994217914, 2.0000000000202802},
       {165, 5.6025197321496478e-21, 1.1660918130680345e-07,
        6.7715919743330565e-15, 1.2345679024397771e-05, 4, 6, 7, 1, 4}},
      {"E2", SquareRoot, nullptr, 1, 1, kOpts, {1}, -1, {1},
       {1, 1, 0.49998750062396624, 3.9922115821401785, 0.001, 0, 7, 3, 1, 1}},
      {"E3", HugeStep, nullptr, 1, 1, kOpts, {0}, -1, {0},
       {1, 1, 1.000088900582341e-06, 997825573569.73535, 0.001, 0, 4, 2, 1, 1}},
      {"E4", AbsPlusOne, nullptr, 1, 1, kOpts, {0}, 29, {0},
       {1, 1, 0.99999999991773336, 1.2702926124709056e-256,
        9.5268205270873788e+136, 29, 5, 32, 1, 30}},
      {"E5", Circle, wide, 3, 400, kOpts, {0, 0, 1}, 25,
       {-2.9999400414702189, 7.0000061211990756, 9.9999827188445707},
       {61650.650301877366, 0.0096079386118374036, 2.5463255930228924e-07,
        2.358660141595954e-30, 415561.07533893728, 25, 2, 35, 3, 26}},
      {"E6", Rosenbrock, nullptr, 2, 2, kCentralOpts, {-1.2, 1}, 24,
       {0.99999999999876499, 0.99999999999752487},
       {24.199999999999996, 1.5278630402188874e-24, 1.6294705001048085e-10,
        7.647248515372883e-19, 5.2503658944567762e-07, 24, 6, 37, 3, 24}},
      {"E7", Circle, circle, 3, 12, kCentralOpts, {0, 0, 1}, 62,
       {2.531252192455085, -1.2472361267464551, 4.0243792326321017},
       {191.94823602915665, 0.062019430040550806, 1.4833231982980255e-08,
        1.9521779805647396e-29, 279939.28281656431, 62, 2, 105, 7, 63}},
  };
  // clang-format on
}

int RunReference(const Reference& r,
                 double* p,
                 double* info,
                 double* x = nullptr) {
  return dlevmar_dif(r.func, p, x, r.m, r.n, 10000, const_cast<double*>(r.opts),
                     info, nullptr, nullptr, r.adata);
}

// Return value and counters exactly, parameters and errors to the digit.
TEST(Levmar, ReproducesReferenceRuns) {
  for (const Reference& r : References()) {
    SCOPED_TRACE(r.name);
    std::vector<double> p = r.start;
    double info[kInfoSize];
    EXPECT_EQ(RunReference(r, p.data(), info), r.ret);
    for (int i = 0; i < r.m; ++i)
      EXPECT_NEAR(p[i], r.p[i], kReferenceRelTol * std::fabs(r.p[i]));
    for (int i = 0; i < 5; ++i)
      EXPECT_NEAR(info[i], r.info[i], kReferenceRelTol * std::fabs(r.info[i]));
    for (int i = 5; i < kInfoSize; ++i) EXPECT_EQ(info[i], r.info[i]) << i;
  }
}

int g_calls = 0;
void CountingSum(double* p, double* hx, int, int, void*) {
  ++g_calls;
  hx[0] = p[0] + p[1] + p[2] - 1;
  hx[1] = p[0] - p[2];
}
void NotANumber(double*, double* hx, int, int n, void*) {
  for (int i = 0; i < n; ++i) hx[i] = std::nan("");
}
void TwinResiduals(double* p, double* hx, int, int, void*) {
  hx[0] = hx[1] = p[0] + p[1] + 1;
}

// Fewer residuals than parameters: a line, -1, nothing touched or called.
// A NaN at the start ends the run (with itmax 0 the limit is reported). A
// singular system prints LAPACK's line per rejected step until damping
// overflows.
TEST(Levmar, FailurePathsAndTheirReports) {
  double p[3] = {1, 2, 3}, info[kInfoSize];
  std::fill(info, info + kInfoSize, -7.0);
  test::StdoutCapture fewer;
  EXPECT_EQ(dlevmar_dif(CountingSum, p, nullptr, 3, 2, 10000, nullptr, info,
                        nullptr, nullptr, nullptr),
            kError);
  EXPECT_EQ(fewer.Take(),
            "dlevmar_dif(): cannot solve a problem with fewer measurements "
            "[2] than unknowns [3]\n");
  EXPECT_EQ(g_calls, 0);
  EXPECT_EQ(std::vector<double>(p, p + 3), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(std::vector<double>(info, info + kInfoSize),
            std::vector<double>(kInfoSize, -7.0));

  EXPECT_EQ(dlevmar_dif(NotANumber, p, nullptr, 1, 3, 10000, nullptr, info,
                        nullptr, nullptr, nullptr),
            kError);
  EXPECT_TRUE(std::isnan(info[0]) && std::isnan(info[1]));
  const double nanCounts[5] = {0, kStopNotFinite, 1, 0, 0};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(info[5 + i], nanCounts[i]) << i;
  EXPECT_EQ(dlevmar_dif(NotANumber, p, nullptr, 1, 3, 0, nullptr, info, nullptr,
                        nullptr, nullptr),
            0);
  EXPECT_EQ(info[6], kStopIterationLimit);

  // No damping (tau 0) and a power-of-two delta: J = [1 1; 1 1] exactly.
  double opts[5] = {0.0, 1e-15, 1e-15, 1e-20, 0.0009765625};
  double q[2] = {0, 0};
  test::StdoutCapture singular;
  EXPECT_EQ(dlevmar_dif(TwinResiduals, q, nullptr, 2, 2, 10000, opts, info,
                        nullptr, nullptr, nullptr),
            29);
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

void Constant(double* p, double* hx, int, int n, void*) {
  for (int i = 0; i < n; ++i) hx[i] = p[0];
}

// Null x is zeros; null info and a caller's work space change nothing;
// x ~ hx(p), and a constant model's covariance is sumsq / (n (n - 1)).
TEST(Levmar, CallConventionsAgree) {
  const Reference ref = References()[1];  // B1
  std::vector<double> base = ref.start, p = ref.start, zeros(ref.n, 0.0);
  double infoBase[kInfoSize], infoZero[kInfoSize];
  RunReference(ref, base.data(), infoBase);
  RunReference(ref, p.data(), infoZero, zeros.data());
  EXPECT_EQ(p, base);
  for (int i = 0; i < kInfoSize; ++i) EXPECT_EQ(infoZero[i], infoBase[i]);
  p = ref.start;
  std::vector<double> work(DifWorkSize(ref.m, ref.n));
  EXPECT_EQ(dlevmar_dif(ref.func, p.data(), nullptr, ref.m, ref.n, 10000,
                        const_cast<double*>(kOpts), nullptr, work.data(),
                        nullptr, ref.adata),
            ref.ret);
  EXPECT_EQ(p, base);

  double x[4] = {1.5, 3.25, 4.75, 6.5}, mean[1] = {0}, covar[1], info[10];
  EXPECT_GE(dlevmar_dif(Constant, mean, x, 1, 4, 100, nullptr, info, nullptr,
                        covar, nullptr),
            0);
  EXPECT_NEAR(mean[0], 4.0, 1e-6);
  EXPECT_NEAR(covar[0], info[1] / 12, 1e-9);
}

}  // namespace
}  // namespace levmar
}  // namespace zelmo
