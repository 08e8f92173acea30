#include "zelmo/solver/simplex_loop.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zelmo {
namespace solver {
namespace {

// (x0 - 3)^2 + 3 (x1 + 2)^2.
double Bowl(const gsl_vector* v, void*) {
  const double a = gsl_vector_get(v, 0) - 3, b = gsl_vector_get(v, 1) + 2;
  return a * a + 3 * b * b;
}
double NotANumber(const gsl_vector*, void*) {
  return std::numeric_limits<double>::quiet_NaN();
}

// Runs the loop from (10, 10) with all steps `step`; x gets the end point.
int Descend(double (*f)(const gsl_vector*, void*),
            double step,
            int maxIter,
            double* x) {
  gsl_multimin_function function = {f, 2, nullptr};
  gsl_multimin_fminimizer* minimiser = NewMinimiser(2);
  gsl_vector *start = gsl_vector_alloc(2), *steps = gsl_vector_alloc(2);
  gsl_vector_set_all(start, 10.0);
  gsl_vector_set_all(steps, step);
  const int n = RunSimplexLoop(minimiser, &function, start, steps, maxIter);
  CopyFromVector(gsl_multimin_fminimizer_x(minimiser), x);
  gsl_vector_free(start);
  gsl_vector_free(steps);
  gsl_multimin_fminimizer_free(minimiser);
  return n;
}

TEST(RunSimplexLoop, StopsOnSizeAtTheLimitOrOnANonFiniteObjective) {
  double x[2];
  EXPECT_LT(Descend(&Bowl, 1.0, 10000, x), 10000);
  EXPECT_NEAR(std::hypot(x[0] - 3, x[1] + 2), 0.0, 1e-6);
  // The limit counts iterations, at least one whatever the limit.
  EXPECT_EQ(Descend(&Bowl, 1.0, 7, x), 7);
  EXPECT_GT(std::fabs(x[0] - 3.0), 1e-3);
  EXPECT_EQ(Descend(&Bowl, 1.0, 0, x), 1);
  // A zero step gives a degenerate simplex, which ends at once on the start.
  EXPECT_EQ(Descend(&Bowl, 0.0, 10000, x), 1);
  EXPECT_TRUE(x[0] == 10.0 && x[1] == 10.0) << x[0] << " " << x[1];
  // GSL's default handler would abort on a NaN; the descent returns.
  const int iterations = Descend(&NotANumber, 0.1, 50, x);
  EXPECT_TRUE(iterations >= 1 && iterations <= 50) << iterations;
}

TEST(SimplexRules, NormaliseByDirectionScalesTheCountGivenOrNothing) {
  double plane[4] = {0, 3, 4, 10}, axis[4] = {0, 3, 4, 10};
  double tiny[3] = {4e-7, 0, 3e-7};  // shorter than 1e-6: left as it is
  NormaliseByDirection(plane, 4);
  NormaliseByDirection(axis, 3);
  NormaliseByDirection(tiny, 3);
  const double want[4] = {0, 0.6, 0.8, 2.0};
  for (int i = 0; i < 4; ++i) EXPECT_DOUBLE_EQ(plane[i], want[i]);
  EXPECT_EQ(axis[3], 10.0);
  EXPECT_TRUE(tiny[0] == 4e-7 && tiny[2] == 3e-7);
}

}  // namespace
}  // namespace solver
}  // namespace zelmo
