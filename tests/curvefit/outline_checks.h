// Recovery checks shared by the outline fit suites: a fitted result (center,
// normal, majorDir, sizes) against the frame and sizes it was sampled with.
#ifndef ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_
#define ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"
#include "zelmo/curvefit/fit_method.h"

namespace zelmo {
namespace test {

// Exact points, rounded to float, at offsets up to 500.
constexpr double kExactPosTol = 2e-3;
constexpr double kExactSizeTol = 2e-3;
constexpr double kExactDirTol = 1e-4;
// Points with Gaussian noise of kOutlineNoise across the outline.
constexpr double kOutlineNoise = 0.005;
constexpr double kNoisyPosTol = 0.02;
constexpr double kNoisySizeTol = 0.02;
constexpr double kNoisyDirTol = 2e-3;
// How far the plane of the fit may be from that of the points (which lie in
// it): the plane fit is exact up to float rounding.
constexpr double kNormalTol = 1e-4;

// The methods whose result is the outline itself on points sampled on it.
const xcurve3dfit::FitMethod kTwoSidedMethods[] = {
    xcurve3dfit::LeastSquare, xcurve3dfit::LeastAbsDev, xcurve3dfit::Chebyshev};

// `out` (center, normal, majorDir, sizes) describes the outline of frame
// `f` with `sizes`: normal along w and, when `withMajor`, majorDir along u,
// either sign.
inline void ExpectOutline(const float* out,
                          const Frame& f,
                          const std::vector<double>& sizes,
                          bool noisy,
                          bool withMajor) {
  const double posTol = noisy ? kNoisyPosTol : kExactPosTol;
  const double sizeTol = noisy ? kNoisySizeTol : kExactSizeTol;
  const double dirTol = noisy ? kNoisyDirTol : kExactDirTol;
  ExpectNear3(out, f.origin, posTol);
  ExpectSameAxis(out + 3, f.w, kNormalTol);
  if (withMajor) ExpectSameAxis(out + 6, f.u, dirTol);
  const cv::Vec3d n = ToVec3d(out + 3), m = ToVec3d(out + 6);
  EXPECT_NEAR(cv::norm(n), 1.0, kFloatOutTol);
  EXPECT_NEAR(cv::norm(m), 1.0, kFloatOutTol);
  EXPECT_NEAR(n.dot(m), 0.0, kFloatOutTol);
  for (size_t k = 0; k < sizes.size(); ++k)
    EXPECT_NEAR(out[9 + k], sizes[k], sizeTol) << "size " << k;
}

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_
