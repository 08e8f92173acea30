#include "zelmo/lmfit/circle_fit_3d_lm.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/stdout_capture.h"
#include "tests/support/tolerance.h"

namespace zelmolm {
namespace {

namespace zt = zelmo::test;
using zt::Frame;
using zt::Samples;

constexpr double kFitTol = 0.01;     // center and radius, the scan's noise
constexpr double kInsideTol = 1e-3;  // a point touches within this

std::vector<float> Fields(const XCircleFit3DLM& c) {
  return std::vector<float>(c.center, &c.radius + 1);
}

// Fit (inscribed) or Fit2 (least squares), quietly, in the plane of f or,
// with `fp`, in the plane fitted to the points and normals +w.
int Fit(XCircleFit3DLM& c, bool in, const Samples& s, const Frame& f, bool fp) {
  std::vector<float> plane(6, 0.0f), n, p = s.Xyz();
  for (int i = 0; i < 3 && !fp; ++i)
    plane[i] = float(f.origin[i]), plane[3 + i] = float(f.w[i]);
  for (int i = 0; i < s.Count(); ++i) n.insert(n.end(), f.w.val, f.w.val + 3);
  zt::StdoutCapture quiet;
  auto fit = in ? &XCircleFit3DLM::Fit : &XCircleFit3DLM::Fit2;
  return (c.*fit)(p.data(), fp ? n.data() : nullptr, s.Count(), plane.data(),
                  fp);
}

// A full circle and a half, in the given plane and in a fitted one.
TEST(XCircleFit3DLM, LeastSquaresRecoversCirclesInGivenAndFittedPlanes) {
  for (int trial = 0; trial < 2; ++trial) {
    std::mt19937 rng(6100 + trial);
    const Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const Samples s =
        zt::SampleCircle(f, radius, 60, kFitTol, rng, zt::kPi * (2 - trial));
    for (bool fitPlane : {false, true}) {
      SCOPED_TRACE(testing::Message() << trial << "/" << fitPlane);
      XCircleFit3DLM c;
      ASSERT_EQ(Fit(c, false, s, f, fitPlane), 0);
      zt::ExpectNear3(c.center, f.origin, kFitTol);
      EXPECT_NEAR(c.radius, radius, kFitTol);
      zt::ExpectSameDirection(c.normal, f.w, 1e-4);
      EXPECT_NEAR(cv::norm(zt::ToVec3d(c.majorDir)), 1.0, 1e-6);
      EXPECT_NEAR(zt::ToVec3d(c.majorDir).dot(f.w), 0.0, 1e-4);
    }
  }
}

// In a band of +-0.02 the inscribed circle touches three points from inside
// and lies within the band below the least-squares one.
TEST(XCircleFit3DLM, InscribedCircleTouchesFromInsideWithoutEnclosing) {
  std::mt19937 rng(6200);
  const Frame f = zt::RandomFrame(rng, 500.0);
  Samples s = zt::SampleCircle(f, 8.0, 400, 0.0, rng);
  std::uniform_real_distribution<double> band(-0.02, 0.02);
  for (int i = 0; i < s.Count(); ++i)
    s.points[i] =
        zt::ToPoint3f(f.origin + (8 + band(rng)) * zt::ToVec3d(s.normals[i]));
  XCircleFit3DLM leastSquares, inscribed;
  ASSERT_EQ(Fit(leastSquares, false, s, f, false), 0);
  ASSERT_EQ(Fit(inscribed, true, s, f, false), 0);
  int touching = 0;
  for (const cv::Point3f& p : s.points) {
    const double e = cv::norm(zt::ToVec3d(p) - zt::ToVec3d(inscribed.center));
    EXPECT_GT(e, inscribed.radius - kInsideTol);
    touching += e < inscribed.radius + kInsideTol;
  }
  EXPECT_GE(touching, 3);
  EXPECT_GE(inscribed.radius, leastSquares.radius - 0.02 - kInsideTol);
  EXPECT_LE(inscribed.radius, leastSquares.radius);
}

// Nine points: too few for the inscribed circle, enough for least squares;
// two fail both. Failures leave the fields alone.
TEST(XCircleFit3DLM, TooFewPointsFailWithoutTouchingTheFields) {
  std::mt19937 rng(6400);
  const Frame f = zt::RandomFrame(rng, 100.0);
  Samples s = zt::SampleCircle(f, 8.0, 9, kFitTol, rng);
  XCircleFit3DLM c;
  EXPECT_EQ(Fit(c, true, s, f, false), -1);
  EXPECT_EQ(Fields(c), std::vector<float>(10, 0.0f));
  ASSERT_EQ(Fit(c, false, s, f, false), 0);
  const std::vector<float> fitted = Fields(c);
  s.points.resize(2);
  for (bool in : {false, true}) EXPECT_EQ(Fit(c, in, s, f, false), -1);
  EXPECT_EQ(Fields(c), fitted);
}

}  // namespace
}  // namespace zelmolm
