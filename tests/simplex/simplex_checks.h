// Bounds, loops and checks shared by the simplex fit suites.
#ifndef ZELMO_TESTS_SIMPLEX_SIMPLEX_CHECKS_H_
#define ZELMO_TESTS_SIMPLEX_SIMPLEX_CHECKS_H_

#include <gtest/gtest.h>

#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/stdout_capture.h"
#include "tests/support/tolerance.h"
#include "zelmo/simplex/fit_frame.h"

namespace x3dfit {

using namespace zelmo::test;  // NOLINT: the suites' own helpers

// Recovery bounds at offsets up to 500 for exact points rounded to float
// and for Gaussian noise 0.01: positions and radii, directions in radians.
inline double PosTol(double noise) { return noise == 0.0 ? 1e-4 : 0.01; }
inline double DirTol(double noise) { return noise == 0.0 ? 1e-5 : 1e-3; }

const FitMethod kAllMethods[] = {LeastSquare, LeastAbsDev, Chebyshev};

// check(frame, noise, rng) for four random frames, noise 0 and 0.01 in turn.
template <class Check>
void ForEachPose(int seed, Check check) {
  std::mt19937 rng(seed);
  for (int pose = 0; pose < 4; ++pose) {
    SCOPED_TRACE(testing::Message() << "seed " << seed << " pose " << pose);
    check(RandomFrame(rng, 500.0), pose % 2 * 0.01, rng);
  }
}

// A fitted direction is unit and spans the axis w of `f` within `tol`.
inline void ExpectUnitAxis(const double* d, const Frame& f, double tol) {
  EXPECT_NEAR(cv::norm(Vec3(d)), 1.0, 1e-12);
  ExpectSameAxis(Vec3(d), f.w, tol);
}

// Chebyshev, which the fit has no objective for, reruns the objective the
// object holds: the sum of distances when fresh, else the last fit's, to the
// bit. Returns how far the two objectives' params differ.
template <class Fit>
double ChebyshevRerunsHeldObjective(const std::vector<cv::Point3f>& pts) {
  using V8 = cv::Vec<double, 8>;
  V8 ls, lad, kept, fresh;  // zeros past the params a fit writes
  Fit a, b, c;
  StdoutCapture quiet;
  a.Fit(pts, ls.val, LeastSquare);
  a.Fit(pts, kept.val, Chebyshev);
  b.Fit(pts, lad.val, LeastAbsDev);
  c.Fit(pts, fresh.val, Chebyshev);
  EXPECT_EQ(kept, ls);
  EXPECT_EQ(fresh, lad);
  return cv::norm(ls - lad, cv::NORM_INF);
}

}  // namespace x3dfit

#endif  // ZELMO_TESTS_SIMPLEX_SIMPLEX_CHECKS_H_
