#include "zelmo/solver/simplex_loop.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zelmo {
namespace solver {
namespace {

// (x0 - c0)^2 + 3 (x1 - c1)^2 with c in params.
double Bowl(const gsl_vector* v, void* params) {
  const double* c = static_cast<const double*>(params);
  const double a = gsl_vector_get(v, 0) - c[0];
  const double b = gsl_vector_get(v, 1) - c[1];
  return a * a + 3 * b * b;
}

double NotANumber(const gsl_vector*, void*) {
  return std::numeric_limits<double>::quiet_NaN();
}

// A two-parameter minimiser with its vectors, freed at scope end.
struct Descent {
  explicit Descent(double (*f)(const gsl_vector*, void*)) {
    function = {f, 2, centre};
  }
  ~Descent() {
    gsl_vector_free(start);
    gsl_vector_free(step);
    gsl_multimin_fminimizer_free(minimiser);
  }
  int Run(double s0, double s1, double stepSize, int maxIter) {
    const double p[2] = {s0, s1};
    CopyToVector(p, start);
    gsl_vector_set_all(step, stepSize);
    return RunSimplexLoop(minimiser, &function, start, step, maxIter);
  }
  double X(int i) const {
    return gsl_vector_get(gsl_multimin_fminimizer_x(minimiser), i);
  }

  double centre[2] = {3.0, -2.0};
  gsl_multimin_function function;
  gsl_multimin_fminimizer* minimiser = NewMinimiser(2);
  gsl_vector* start = gsl_vector_alloc(2);
  gsl_vector* step = gsl_vector_alloc(2);
};

TEST(RunSimplexLoop, StopsOnSizeAtTheLimitOrOnANonFiniteObjective) {
  Descent d(&Bowl);
  const int converged = d.Run(10, 10, 1.0, 10000);
  EXPECT_LT(converged, 10000);
  EXPECT_NEAR(d.X(0), 3.0, 1e-6);
  EXPECT_NEAR(d.X(1), -2.0, 1e-6);
  // The limit counts iterations: it cuts the same descent short.
  EXPECT_EQ(d.Run(10, 10, 1.0, 7), 7);
  EXPECT_GT(std::fabs(d.X(0) - 3.0), 1e-3);
  // At least one iteration is made whatever the limit.
  EXPECT_EQ(d.Run(10, 10, 1.0, 0), 1);
  // A zero step gives a degenerate simplex, which ends at once on the start.
  EXPECT_EQ(d.Run(10, 10, 0.0, 10000), 1);
  EXPECT_EQ(d.X(0), 10.0);
  EXPECT_EQ(d.X(1), 10.0);
  // GSL's default handler would abort on a NaN; the descent returns.
  Descent nan(&NotANumber);
  const int iterations = nan.Run(1, 1, 0.1, 50);
  EXPECT_GE(iterations, 1);
  EXPECT_LE(iterations, 50);
}

TEST(SimplexRules, NormaliseByDirectionScalesTheCountGivenOrNothing) {
  double plane[4] = {0, 3, 4, 10};
  NormaliseByDirection(plane, 4);
  EXPECT_DOUBLE_EQ(plane[1], 0.6);
  EXPECT_DOUBLE_EQ(plane[2], 0.8);
  EXPECT_DOUBLE_EQ(plane[3], 2.0);
  double axis[4] = {0, 3, 4, 10};
  NormaliseByDirection(axis, 3);
  EXPECT_EQ(axis[3], 10.0);
  // A direction shorter than 1e-6 is left as it is.
  double tiny[3] = {4e-7, 0, 3e-7};
  NormaliseByDirection(tiny, 3);
  EXPECT_EQ(tiny[0], 4e-7);
  EXPECT_EQ(tiny[2], 3e-7);
}

}  // namespace
}  // namespace solver
}  // namespace zelmo
