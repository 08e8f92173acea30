// Recovery checks shared by the outline fit suites: a fitted result (center,
// normal, majorDir, sizes) against the frame and sizes it was sampled with.
#ifndef ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_
#define ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"
#include "zelmo/curvefit/circle_fit.h"
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
  ExpectNear3(out, f.origin, SizeTol(noisy));
  ExpectSameAxis(out + 3, f.w, kNormalTol);
  if (withMajor) ExpectSameAxis(out + 6, f.u, DirTol(noisy));
  const cv::Vec3d n = ToVec3d(out + 3), m = ToVec3d(out + 6);
  EXPECT_NEAR(cv::norm(n), 1.0, kFloatOutTol);
  EXPECT_NEAR(cv::norm(m), 1.0, kFloatOutTol);
  EXPECT_NEAR(n.dot(m), 0.0, kFloatOutTol);
  for (size_t k = 0; k < sizes.size(); ++k)
    EXPECT_NEAR(out[9 + k], sizes[k], SizeTol(noisy)) << "size " << k;
}

// Samples of a shape in a frame at a noise level; writes the true sizes.
using Shape = std::function<Samples(
    const Frame&, double, std::mt19937&, std::vector<double>&)>;

// Fits samples of `shape` in `trials` random oblique frames by the two-sided
// methods with normals along w. The first `exactMethods` are held to the full
// tolerances; the others may stop early in the valley where a corner radius
// trades against the half sizes, and keep only the plane, the axis within
// 0.01 and the center and first two sizes within 1.
template <class Fit>
void ExpectRecovered(int seed,
                     int trials,
                     const Shape& shape,
                     int exactMethods,
                     bool withMajor = true) {
  std::mt19937 rng(seed);
  for (int trial = 0; trial < trials; ++trial) {
    for (double noise : {0.0, kOutlineNoise}) {
      const Frame f = RandomFrame(rng, 500.0);
      std::vector<double> sizes;
      const Samples s = shape(f, noise, rng, sizes);
      const std::vector<float> xyz = s.Xyz();
      std::vector<float> up;
      for (int i = 0; i < s.Count(); ++i)
        up.insert(up.end(), {float(f.w[0]), float(f.w[1]), float(f.w[2])});
      for (int m = 0; m < 3; ++m) {
        const xcurve3dfit::FitMethod method = kTwoSidedMethods[m];
        SCOPED_TRACE(testing::Message()
                     << "seed " << seed << " trial " << trial << " noise "
                     << noise << " method " << method);
        Fit fit;
        float out[12];
        ASSERT_TRUE(fit.Fit(xyz.data(), up.data(), s.Count(), out, method));
        ExpectSameDirection(out + 3, f.w, kNormalTol);
        if (m < exactMethods) {
          ExpectOutline(out, f, sizes, noise > 0, withMajor);
        } else {
          ExpectNear3(out, f.origin, 1.0);
          ExpectSameAxis(out + 6, f.u, 0.01);
          EXPECT_NEAR(out[9], sizes[0], 1.0);
          EXPECT_NEAR(out[10], sizes[1], 1.0);
        }
      }
    }
  }
}

// The floats a fit object holds, read through its record in output order.
template <class Record>
std::vector<float> Floats(const Record& g, std::vector<float> sizes) {
  std::vector<float> v(g.center, g.center + 3);
  v.insert(v.end(), g.normal, g.normal + 3);
  v.insert(v.end(), g.majorDir, g.majorDir + 3);
  v.insert(v.end(), sizes.begin(), sizes.end());
  return v;
}
inline std::vector<float> Held(const xcurve3dfit::XCircle3DFit& fit) {
  xgeofeature::XFCircle3D g;
  fit.getCircle(g);
  return Floats(g, {g.radius});
}
inline std::vector<float> Held(const xcurve3dfit::XOvalGroove3DFit& fit) {
  xgeofeature::XFOvalGroove3D g;
  fit.getOvalGroove(g);
  return Floats(g, {g.halfStraight, g.radius});
}
inline std::vector<float> Held(const xcurve3dfit::XRectangle3DFit& fit) {
  xgeofeature::XFRectangle3D g;
  fit.getRectangle(g);
  return Floats(g, {g.halfLength, g.halfWidth});
}
inline std::vector<float> Held(const xcurve3dfit::XRoundGroove3DFit& fit) {
  xgeofeature::XFRoundGroove3D g;
  fit.getRoundGroove(g);
  return Floats(g, {g.halfLength, g.halfWidth, g.cornerRadius});
}

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_CURVEFIT_OUTLINE_CHECKS_H_
