#include "zelmo/solver/levmar.h"

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Reference LAPACK, with the hidden lengths of the character arguments.
extern "C" {
void dsytrf_(const char* uplo,
             const int* n,
             double* a,
             const int* lda,
             int* ipiv,
             double* work,
             const int* lwork,
             int* info,
             std::size_t uplo_len);
void dsytrs_(const char* uplo,
             const int* n,
             const int* nrhs,
             const double* a,
             const int* lda,
             const int* ipiv,
             double* b,
             const int* ldb,
             int* info,
             std::size_t uplo_len);
void dgesvd_(const char* jobu,
             const char* jobvt,
             const int* m,
             const int* n,
             double* a,
             const int* lda,
             double* s,
             double* u,
             const int* ldu,
             double* vt,
             const int* ldvt,
             double* work,
             const int* lwork,
             int* info,
             std::size_t jobu_len,
             std::size_t jobvt_len);
}

namespace zelmo {
namespace levmar {
namespace {

// Relative finite-difference step: h = max(kRelativeDiffStep |p_j|, delta).
constexpr double kRelativeDiffStep = 1e-4;
// A step with ||dp||^2 >= (||p||^2 + eps2) / (kHugeStepEps * kHugeStepEps)
// means the damped system was singular.
constexpr double kHugeStepEps = 1e-12;
// The least factor by which an accepted step shrinks the damping.
constexpr double kMinDampingShrink = 0.3333333334;
// Damping counter value whose doubling would overflow a 32-bit int.
constexpr int kMaxDampingCounter = 1 << 30;
// Damping counter at start: above kFreshJacobianCounter, so that the first
// iteration builds a Jacobian.
constexpr int kStartDampingCounter = 20;
// Past this counter (four rejections after an accepted step) the Jacobian
// is rebuilt by differences instead of further Broyden updates.
constexpr int kFreshJacobianCounter = 16;
// Fewest Broyden updates between two finite-difference Jacobians.
constexpr int kMinBroydenUpdates = 10;
// Up to this many Jacobian entries the normal equations are summed from
// the last residual down; beyond it, from the first up.
constexpr int kSmallNormalEquations = 1024;

void printFewerMeasurements(int n, int m) {
  std::printf(
      "dlevmar_dif(): cannot solve a problem with fewer measurements [%d] "
      "than unknowns [%d]\n",
      n, m);
}

void printAllocationFailure() {
  std::printf("dlevmar_dif(): memory allocation request failed\n");
}

void printSingularBlock(int i) {
  std::printf(
      "LAPACK error: singular block diagonal matrix D fordsytrf_ in "
      "dAx_eq_b_BK() [D(%d, %d) is zero]\n",
      i, i);
}

// e = x - hx (or -hx for null x) and returns ||e||^2, summed into four
// accumulators: blocks of eight from the top down, then the tail upwards.
// The order is part of the result: it fixes the rounding of every iterate.
double errorSumOfSquares(const double* x, const double* hx, double* e, int n) {
  for (int i = 0; i < n; ++i) e[i] = x ? x[i] - hx[i] : -hx[i];
  double s[4] = {0.0, 0.0, 0.0, 0.0};
  const int blocked = (n / 8) * 8;
  for (int top = blocked - 1; top > 0; top -= 8)
    for (int t = 0; t < 8; ++t) s[t % 4] += e[top - t] * e[top - t];
  const int tail = n - blocked;
  for (int t = 0; t < tail; ++t)
    s[(7 - tail + t) % 4] += e[blocked + t] * e[blocked + t];
  return ((s[0] + s[1]) + s[2]) + s[3];
}

double squaredNorm(const double* v, int m) {
  double s = 0.0;
  for (int i = 0; i < m; ++i) s += v[i] * v[i];
  return s;
}

// Jacobian by differences into jac (n x m, row-major), perturbing p in
// place and restoring it. hx is f(p); fa and fb are n scratch values.
// Forward differences multiply by 1/h rather than divide by h. Returns the
// evaluations of func spent.
int differenceJacobian(ModelFunction func,
                       double* p,
                       const double* hx,
                       double* fa,
                       double* fb,
                       double* jac,
                       int m,
                       int n,
                       double delta,
                       bool central,
                       void* adata) {
  for (int j = 0; j < m; ++j) {
    const double pj = p[j];
    double h = std::fabs(kRelativeDiffStep * pj);
    if (h < delta) h = delta;
    if (central) {
      p[j] = pj - h;
      func(p, fb, m, n, adata);
      p[j] = pj + h;
      func(p, fa, m, n, adata);
      p[j] = pj;
      const double scale = 0.5 / h;
      for (int i = 0; i < n; ++i) jac[i * m + j] = (fa[i] - fb[i]) * scale;
    } else {
      p[j] = pj + h;
      func(p, fa, m, n, adata);
      p[j] = pj;
      const double scale = 1.0 / h;
      for (int i = 0; i < n; ++i) jac[i * m + j] = (fa[i] - hx[i]) * scale;
    }
  }
  return central ? 2 * m : m;
}

// A = J^T J and g = J^T e. Small systems sum from the last row down, large
// ones from the first row up (as a reference-BLAS product would).
void normalEquations(
    const double* jac, const double* e, int m, int n, double* A, double* g) {
  for (int k = 0; k < m * m; ++k) A[k] = 0.0;
  for (int i = 0; i < m; ++i) g[i] = 0.0;
  const bool downwards = n * m <= kSmallNormalEquations;
  for (int step = 0; step < n; ++step) {
    const int l = downwards ? n - 1 - step : step;
    const double* row = jac + l * m;
    for (int i = 0; i < m; ++i) {
      for (int j = 0; j <= i; ++j) A[i * m + j] += row[j] * row[i];
      g[i] += row[i] * e[l];
    }
  }
  for (int i = 0; i < m; ++i)
    for (int j = 0; j < i; ++j) A[j * m + i] = A[i * m + j];
}

// Symmetric-indefinite solve A x = b by Bunch-Kaufman LDL^T (lower), on a
// copy of A. The scratch belongs to one run of the solver.
class BunchKaufman {
 public:
  explicit BunchKaufman(int m) : m_(m) {
    int info = 0;
    const int query = -1;
    double optimal = 0.0;
    dsytrf_("L", &m_, nullptr, &m_, nullptr, &optimal, &query, &info, 1);
    lwork_ = static_cast<int>(optimal);
    if (lwork_ < 1) lwork_ = 1;
    const std::size_t doubles = static_cast<std::size_t>(m_) * m_ + lwork_;
    buffer_ = static_cast<double*>(std::malloc(doubles * sizeof(double)));
    ipiv_ = static_cast<int*>(std::malloc(m_ * sizeof(int)));
  }
  ~BunchKaufman() {
    std::free(buffer_);
    std::free(ipiv_);
  }
  BunchKaufman(const BunchKaufman&) = delete;
  BunchKaufman& operator=(const BunchKaufman&) = delete;

  bool allocated() const { return buffer_ != nullptr && ipiv_ != nullptr; }

  // Writes x and returns true; false (x undefined) when D has a zero block.
  bool solve(const double* A, const double* b, double* x) {
    double* a = buffer_;
    double* work = buffer_ + m_ * m_;
    std::memcpy(a, A, sizeof(double) * m_ * m_);
    int info = 0;
    dsytrf_("L", &m_, a, &m_, ipiv_, work, &lwork_, &info, 1);
    if (info != 0) {
      // info < 0 means a bad argument, impossible with these sizes.
      if (info > 0) printSingularBlock(info);
      return false;
    }
    for (int i = 0; i < m_; ++i) x[i] = b[i];
    const int nrhs = 1;
    dsytrs_("L", &m_, &nrhs, a, &m_, ipiv_, x, &m_, &info, 1);
    return info == 0;
  }

 private:
  int m_;
  int lwork_ = 1;
  double* buffer_ = nullptr;
  int* ipiv_ = nullptr;
};

// Work space that dlevmar_dif allocated itself, freed when the call ends.
struct OwnedWork {
  OwnedWork() = default;
  OwnedWork(const OwnedWork&) = delete;
  OwnedWork& operator=(const OwnedWork&) = delete;
  ~OwnedWork() { std::free(data); }
  double* data = nullptr;
};

// covar = pinv(A) * sumsq / (n - r), the pseudo-inverse from an SVD that
// drops singular values up to DBL_EPSILON times the largest, r the rank
// kept. Leaves covar unwritten when the SVD fails or memory runs out.
void covariance(const double* A, int m, int n, double sumsq, double* covar) {
  const std::size_t mm = static_cast<std::size_t>(m) * m;
  double* buf =
      static_cast<double*>(std::malloc(sizeof(double) * (3 * mm + m)));
  if (buf == nullptr) return;
  double* a = buf;
  double* u = a + mm;
  double* vt = u + mm;
  double* s = vt + mm;
  std::memcpy(a, A, sizeof(double) * mm);
  int info = 0;
  int lwork = -1;
  double optimal = 0.0;
  dgesvd_("A", "A", &m, &m, a, &m, s, u, &m, vt, &m, &optimal, &lwork, &info, 1,
          1);
  lwork = static_cast<int>(optimal);
  double* work = static_cast<double*>(
      std::malloc(sizeof(double) * (lwork > 1 ? lwork : 1)));
  if (work == nullptr) {
    std::free(buf);
    return;
  }
  dgesvd_("A", "A", &m, &m, a, &m, s, u, &m, vt, &m, work, &lwork, &info, 1, 1);
  std::free(work);
  if (info != 0) {
    std::free(buf);
    return;
  }
  // LAPACK is column-major: U(i, k) = u[i + k m], V(j, k) = vt[k + j m].
  const double cutoff = DBL_EPSILON * s[0];
  int rank = 0;
  for (int k = 0; k < m; ++k)
    if (s[k] > cutoff) ++rank;
  const double scale = sumsq / static_cast<double>(n - rank);
  for (int i = 0; i < m; ++i) {
    for (int j = 0; j < m; ++j) {
      double sum = 0.0;
      for (int k = 0; k < rank; ++k)
        sum += vt[k + i * m] * (1.0 / s[k]) * u[j + k * m];
      covar[i * m + j] = sum * scale;
    }
  }
  std::free(buf);
}

}  // namespace

int dlevmar_dif(ModelFunction func,
                double* p,
                double* x,
                int m,
                int n,
                int itmax,
                double* opts,
                double* info,
                double* work,
                double* covar,
                void* adata) {
  if (n < m) {
    printFewerMeasurements(n, m);
    return kError;
  }
  double tau = kInitMu, eps1 = kStopThresh, eps2 = kStopThresh,
         eps3 = kStopThresh, delta = kDiffDelta;
  bool central = false;
  if (opts != nullptr) {
    tau = opts[0];
    eps1 = opts[1];
    eps2 = opts[2];
    eps3 = opts[3];
    delta = opts[4];
    if (delta < 0.0) {
      delta = -delta;
      central = true;
    }
  }
  const double eps2sq = eps2 * eps2;

  // The work space allocated here is freed on every way out, also when
  // `func` throws: callers catch exceptions around the solver and go on.
  OwnedWork owned;
  if (work == nullptr) {
    owned.data = static_cast<double*>(std::malloc(
        sizeof(double) * static_cast<std::size_t>(DifWorkSize(m, n))));
    if (owned.data == nullptr) {
      printAllocationFailure();
      return kError;
    }
    work = owned.data;
  }
  BunchKaufman solver(m);
  if (!solver.allocated()) {
    printAllocationFailure();
    return kError;
  }
  // Work layout: 4 vectors of n, 4 of m, J (n x m), A (m x m).
  double* e = work;
  double* hx = e + n;
  double* eTrial = hx + n;
  double* hxTrial = eTrial + n;
  double* g = hxTrial + n;
  double* dp = g + m;
  double* diag = dp + m;
  double* pTrial = diag + m;
  double* jac = pTrial + m;
  double* A = jac + n * m;

  func(p, hx, m, n, adata);
  int nfev = 1;
  double sumsq = errorSumOfSquares(x, hx, e, n);
  const double sumsq0 = sumsq;
  int stop = std::isfinite(sumsq) ? 0 : kStopNotFinite;

  int k = 0;
  int nu = kStartDampingCounter;
  bool updp = true;
  int updjac = 0;
  bool newjac = false;
  bool builtA = false;
  const int maxUpdates = m > kMinBroydenUpdates ? m : kMinBroydenUpdates;
  double mu = 0.0, gInf = 0.0, pSq = 0.0, dpSq = DBL_MAX;
  int njap = 0, nlss = 0;

  while (k < itmax && stop == 0) {
    if (sumsq <= eps3) {
      stop = kStopSmallError;
      break;
    }
    if ((updp && nu > kFreshJacobianCounter) || updjac == maxUpdates) {
      nfev += differenceJacobian(func, p, hx, hxTrial, eTrial, jac, m, n, delta,
                                 central, adata);
      ++njap;
      nu = 2;
      updjac = 0;
      updp = false;
      newjac = true;
    }
    if (newjac) {
      newjac = false;
      normalEquations(jac, e, m, n, A, g);
      builtA = true;
      gInf = 0.0;
      for (int i = 0; i < m; ++i)
        if (std::fabs(g[i]) > gInf) gInf = std::fabs(g[i]);
      for (int i = 0; i < m; ++i) diag[i] = A[i * m + i];
      pSq = squaredNorm(p, m);
    }
    if (gInf <= eps1) {
      dpSq = 0.0;
      stop = kStopSmallGradient;
      break;
    }
    if (k == 0) {
      double maxDiag = -DBL_MAX;
      for (int i = 0; i < m; ++i)
        if (diag[i] > maxDiag) maxDiag = diag[i];
      mu = tau * maxDiag;
    }
    for (int i = 0; i < m; ++i) A[i * m + i] += mu;
    const bool solved = solver.solve(A, g, dp);
    ++nlss;
    if (solved) {
      for (int i = 0; i < m; ++i) pTrial[i] = p[i] + dp[i];
      dpSq = squaredNorm(dp, m);
      if (dpSq <= eps2sq * pSq) {
        stop = kStopSmallStep;
        break;
      }
      if (dpSq >= (pSq + eps2) / (kHugeStepEps * kHugeStepEps)) {
        stop = kStopSingular;
        break;
      }
      func(pTrial, hxTrial, m, n, adata);
      ++nfev;
      const double sumsqTrial = errorSumOfSquares(x, hxTrial, eTrial, n);
      if (!std::isfinite(sumsqTrial)) {
        stop = kStopNotFinite;
        break;
      }
      const double dF = sumsq - sumsqTrial;
      if (updp || dF > 0.0) {
        // Broyden rank-one update of J along dp, accepted step or not.
        for (int i = 0; i < n; ++i) {
          double s = 0.0;
          for (int l = 0; l < m; ++l) s += jac[i * m + l] * dp[l];
          const double r = ((hxTrial[i] - hx[i]) - s) / dpSq;
          for (int j = 0; j < m; ++j) jac[i * m + j] += r * dp[j];
        }
        ++updjac;
        newjac = true;
      }
      double dL = 0.0;
      for (int i = 0; i < m; ++i) dL += dp[i] * (mu * dp[i] + g[i]);
      if (dL > 0.0 && dF > 0.0) {
        double t = (2.0 * dF) / dL - 1.0;
        t = 1.0 - (t * t) * t;
        mu = mu * (t >= kMinDampingShrink ? t : kMinDampingShrink);
        nu = 2;
        for (int i = 0; i < m; ++i) p[i] = pTrial[i];
        for (int i = 0; i < n; ++i) {
          e[i] = eTrial[i];
          hx[i] = hxTrial[i];
        }
        sumsq = sumsqTrial;
        updp = true;
        ++k;
        continue;
      }
    }
    mu = mu * nu;
    if (nu == kMaxDampingCounter) {
      stop = kStopNoReduction;
      break;
    }
    nu = 2 * nu;
    for (int i = 0; i < m; ++i) A[i * m + i] = diag[i];
    ++k;
  }

  if (k >= itmax) stop = kStopIterationLimit;
  if (builtA)
    for (int i = 0; i < m; ++i) A[i * m + i] = diag[i];
  if (info != nullptr) {
    double maxDiag = -DBL_MAX;
    for (int i = 0; i < m; ++i)
      if (diag[i] > maxDiag) maxDiag = diag[i];
    info[0] = sumsq0;
    info[1] = sumsq;
    info[2] = gInf;
    info[3] = dpSq;
    info[4] = builtA ? mu / maxDiag : 0.0;
    info[5] = k;
    info[6] = stop;
    info[7] = nfev;
    info[8] = njap;
    info[9] = nlss;
  }
  if (covar != nullptr && builtA) covariance(A, m, n, sumsq, covar);
  return (stop == kStopSingular || stop == kStopNotFinite) ? kError : k;
}

}  // namespace levmar
}  // namespace zelmo
