// Bounds, loops and checks shared by the simplex fit suites.
#ifndef ZELMO_TESTS_SIMPLEX_SIMPLEX_CHECKS_H_
#define ZELMO_TESTS_SIMPLEX_SIMPLEX_CHECKS_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/stdout_capture.h"
#include "tests/support/tolerance.h"
#include "zelmo/simplex/fit_frame.h"

namespace x3dfit {

using zelmo::test::Frame;
using zelmo::test::Samples;
using zelmo::test::Vec3;

// Recovery bounds at offsets up to 500 for exact points rounded to float
// and for Gaussian noise 0.01 along the normal: positions and radii, and
// directions in radians.
inline double PosTol(double noise) { return noise == 0.0 ? 1e-4 : 0.01; }
inline double DirTol(double noise) { return noise == 0.0 ? 1e-5 : 1e-3; }

const FitMethod kAllMethods[] = {LeastSquare, LeastAbsDev, Chebyshev};

// check(frame, noise, rng) for `trials` random frames, each with exact
// points (noise 0) and with noise 0.01.
template <class Check>
void ForEachPose(int seed, int trials, Check check) {
  std::mt19937 rng(seed);
  for (int trial = 0; trial < trials; ++trial)
    for (double noise : {0.0, 0.01}) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << " trial " << trial
                                      << " noise " << noise);
      check(zelmo::test::RandomFrame(rng, 500.0), noise, rng);
    }
}

// A fitted direction is unit and spans the axis w of `f` within `tol`.
inline void ExpectUnitAxis(const double* d, const Frame& f, double tol) {
  EXPECT_NEAR(cv::norm(Vec3(d)), 1.0, 1e-12);
  zelmo::test::ExpectSameAxis(Vec3(d), f.w, tol);
}

// Chebyshev, which the fit has no objective for, reruns the objective the
// object holds: the sum of distances when fresh, else the last fit's. The
// first n of the params are compared to the bit.
template <class Fit>
void ExpectChebyshevRerunsHeldObjective(const std::vector<cv::Point3f>& pts,
                                        int n) {
  double ls[8], lad[8], kept[8], fresh[8];
  Fit a, b, c;
  zelmo::test::StdoutCapture quiet;
  a.Fit(pts, ls, LeastSquare);
  a.Fit(pts, kept, Chebyshev);
  b.Fit(pts, lad, LeastAbsDev);
  c.Fit(pts, fresh, Chebyshev);
  quiet.Take();
  double gap = 0;  // the two objectives must reach different params
  for (int i = 0; i < n; ++i) gap = std::max(gap, std::fabs(ls[i] - lad[i]));
  ASSERT_GT(gap, 1e-3);
  zelmo::test::ExpectNearArray(kept, ls, n, 0.0);
  zelmo::test::ExpectNearArray(fresh, lad, n, 0.0);
}

}  // namespace x3dfit

#endif  // ZELMO_TESTS_SIMPLEX_SIMPLEX_CHECKS_H_
