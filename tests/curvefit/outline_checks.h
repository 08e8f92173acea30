// Recovery checks shared by the outline fit suites: a fitted result (center,
// normal, majorDir, sizes) against the frame and sizes it was sampled with.
#ifndef ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_
#define ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_

#include <gtest/gtest.h>

#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/tolerance.h"
#include "zelmo/curvefit/fit_method.h"
#include "zelmo/curvefit/oval_groove_fit.h"
#include "zelmo/curvefit/rectangle_fit.h"
#include "zelmo/curvefit/round_groove_fit.h"

namespace zelmo {
namespace test {

// Recovery bounds at offsets up to 500 for exact points rounded to float
// and for Gaussian noise kOutlineNoise across the outline: positions and
// sizes, and majorDir in radians. The normal of points lying in a plane is
// exact up to float rounding.
constexpr double kOutlineNoise = 0.005, kNormalTol = 1e-4;
inline double SizeTol(bool noisy) { return noisy ? 0.02 : 2e-3; }
inline double DirTol(bool noisy) { return noisy ? 2e-3 : 1e-4; }
const xcurve3dfit::FitMethod kTwoSidedMethods[] = {
    xcurve3dfit::LeastSquare, xcurve3dfit::LeastAbsDev, xcurve3dfit::Chebyshev};

// `out` (center, normal, majorDir, sizes) describes the outline of frame
// `f` with sizes `s`: normal along w and, past a circle, majorDir along u,
// either sign.
inline void ExpectOutline(const float* out,
                          const Frame& f,
                          const std::vector<double>& s,
                          bool noisy) {
  ExpectNear3(out, f.origin, SizeTol(noisy));
  ExpectSameAxis(out + 3, f.w, kNormalTol);
  if (s.size() > 1) ExpectSameAxis(out + 6, f.u, DirTol(noisy));
  const cv::Vec3d n = ToVec3d(out + 3), m = ToVec3d(out + 6);
  EXPECT_NEAR(cv::norm(n), 1.0, kFloatOutTol);
  EXPECT_NEAR(cv::norm(m), 1.0, kFloatOutTol);
  EXPECT_NEAR(n.dot(m), 0.0, kFloatOutTol);
  for (size_t k = 0; k < s.size(); ++k)
    EXPECT_NEAR(out[9 + k], s[k], SizeTol(noisy)) << "size " << k;
}

// Fits samples of shape(frame, noise, rng, sizes), which writes the true
// sizes, in four random oblique frames, noise 0 and
// kOutlineNoise in turn, by the two-sided methods with normals along w;
// returns how many of the 12 fits were accepted. The first `exactMethods`
// are held to the full tolerances; the others may stop early in the valley
// where a corner radius trades against the half sizes, and keep only the
// plane, the axis within 0.01 and the center and first two sizes within 1.
template <class Fit, class Shape>
int Recovered(int seed, Shape shape, int exactMethods) {
  std::mt19937 rng(seed);
  int accepted = 0;
  for (int pose = 0; pose < 4; ++pose) {
    const double noise = pose % 2 * kOutlineNoise;
    const Frame f = RandomFrame(rng, 500.0);
    std::vector<double> sizes;
    const Samples s = shape(f, noise, rng, sizes);
    const std::vector<float> xyz = s.Xyz();
    std::vector<cv::Point3f> up(s.Count(), ToPoint3f(f.w));
    for (int m = 0; m < 3; ++m) {
      SCOPED_TRACE(testing::Message() << seed << '/' << pose << '/' << m);
      Fit fit;
      float out[12];
      if (!fit.Fit(xyz.data(), &up[0].x, s.Count(), out, kTwoSidedMethods[m]))
        continue;
      ++accepted;
      ExpectSameDirection(out + 3, f.w, kNormalTol);
      if (m < exactMethods) {
        ExpectOutline(out, f, sizes, noise > 0);
      } else {
        ExpectNear3(out, f.origin, 1.0);
        ExpectSameAxis(out + 6, f.u, 0.01);
        EXPECT_NEAR(out[9], sizes[0], 1.0);
        EXPECT_NEAR(out[10], sizes[1], 1.0);
      }
    }
  }
  return accepted;
}

// The center x and the sizes a fit object holds, read through its record.
inline std::vector<float> Held(const xcurve3dfit::XOvalGroove3DFit& fit) {
  xgeofeature::XFOvalGroove3D g;
  fit.getOvalGroove(g);
  return {g.center[0], g.halfStraight, g.radius};
}
inline std::vector<float> Held(const xcurve3dfit::XRoundGroove3DFit& fit) {
  xgeofeature::XFRoundGroove3D g;
  fit.getRoundGroove(g);
  return {g.center[0], g.halfLength, g.halfWidth, g.cornerRadius};
}

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_
