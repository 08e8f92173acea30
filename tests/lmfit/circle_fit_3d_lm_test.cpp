#include "zelmo/lmfit/circle_fit_3d_lm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/stdout_capture.h"
#include "tests/support/tolerance.h"

namespace zelmolm {
namespace {

namespace zt = zelmo::test;
using zt::Frame;
using zt::Samples;

constexpr double kNoise = 0.01;        // radial deviation of the scan
constexpr double kFitTol = kNoise;     // center and radius of a fit
constexpr double kPlaneTolRad = 1e-4;  // normal of a fitted plane
constexpr double kInsideTol = 1e-3;    // a point touches within this

std::vector<float> Fields(const XCircleFit3DLM& c) {
  return std::vector<float>(c.center, &c.radius + 1);
}

// Fit (inscribed) or Fit2 (least squares), quietly, in the plane of f or,
// with `faceNormals`, in the plane fitted to points and normals.
int RunFit(XCircleFit3DLM& c,
           bool inscribed,
           const Samples& s,
           const Frame& f,
           const std::vector<float>* faceNormals = nullptr) {
  std::vector<float> plane = {float(f.origin[0]), float(f.origin[1]),
                              float(f.origin[2]), float(f.w[0]),
                              float(f.w[1]),      float(f.w[2])};
  const bool fitPlane = faceNormals != nullptr;
  if (fitPlane) std::fill(plane.begin(), plane.end(), 0.0f);
  const float* n = fitPlane ? faceNormals->data() : nullptr;
  zt::StdoutCapture quiet;
  return inscribed
             ? c.Fit(s.Xyz().data(), n, s.Count(), plane.data(), fitPlane)
             : c.Fit2(s.Xyz().data(), n, s.Count(), plane.data(), fitPlane);
}

TEST(XCircleFit3DLM, LeastSquaresRecoversCirclesInGivenAndFittedPlanes) {
  for (int trial = 0; trial < 4; ++trial) {
    const unsigned seed = 6100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const Samples s =
        zt::SampleCircle(f, radius, 60, kNoise, rng, zt::kPi * (2 - trial % 2));
    std::vector<float> face;  // the face's normals steer the plane fit
    for (int i = 0; i < s.Count(); ++i)
      face.insert(face.end(), {float(f.w[0]), float(f.w[1]), float(f.w[2])});
    for (bool fitPlane : {false, true}) {
      XCircleFit3DLM c;
      ASSERT_EQ(RunFit(c, false, s, f, fitPlane ? &face : nullptr), 0);
      zt::ExpectNear3(c.center, f.origin, kFitTol);
      EXPECT_NEAR(c.radius, radius, kFitTol);
      zt::ExpectSameDirection(c.normal, f.w, kPlaneTolRad);
      // majorDir: a unit axis in the plane.
      EXPECT_NEAR(cv::norm(zt::ToVec3d(c.majorDir)), 1.0, 1e-6);
      EXPECT_NEAR(zt::ToVec3d(c.majorDir).dot(f.w), 0.0, kPlaneTolRad);
    }
  }
}

// The inscribed circle grows while a larger radius pays (2 n / r^3 against
// 1.6 / r per inside point): dense bores (n > 0.8 r^2) let it slide. On 60
// exact points of a circle of 12 it stops once the nearest point touches.
TEST(XCircleFit3DLM, InscribedCircleTouchesFromInsideWithoutEnclosing) {
  constexpr double kBand = 0.02;  // radial noise, uniform in +-kBand
  for (int trial = 0; trial < 6; ++trial) {
    const unsigned seed = 6200 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(3, 12)(rng);
    Samples s = zt::SampleCircle(f, radius, 400, 0.0, rng);
    std::uniform_real_distribution<double> band(-kBand, kBand);
    for (int i = 0; i < s.Count(); ++i) {
      const cv::Vec3d p =
          f.origin + (radius + band(rng)) * zt::ToVec3d(s.normals[i]);
      s.points[i] = cv::Point3f(cv::Point3d(p));
    }
    XCircleFit3DLM leastSquares, inscribed;
    ASSERT_EQ(RunFit(leastSquares, false, s, f), 0);
    ASSERT_EQ(RunFit(inscribed, true, s, f), 0);
    int touching = 0;
    for (const cv::Point3f& p : s.points) {
      const double e = cv::norm(zt::ToVec3d(p) - zt::ToVec3d(inscribed.center));
      EXPECT_GT(e, inscribed.radius - kInsideTol);
      touching += e < inscribed.radius + kInsideTol;
    }
    EXPECT_GE(touching, 3);
    EXPECT_GE(inscribed.radius, leastSquares.radius - kBand - kInsideTol);
    EXPECT_LE(inscribed.radius, leastSquares.radius);
  }
  std::mt19937 rng(6300);
  const Frame f = zt::RandomFrame(rng, 100.0);
  XCircleFit3DLM c;
  ASSERT_EQ(RunFit(c, true, zt::SampleCircle(f, 12.0, 60, 0.0, rng), f), 0);
  const double offset = cv::norm(zt::ToVec3d(c.center) - f.origin);
  // Between two samples the circle may reach a little beyond the true one.
  EXPECT_NEAR(offset + c.radius, 12.0, 0.01);
  EXPECT_LT(c.radius, 12.0 - 0.1);
}

TEST(XCircleFit3DLM, TooFewPointsFailWithoutTouchingTheFields) {
  std::mt19937 rng(6400);
  const Frame f = zt::RandomFrame(rng, 100.0);
  Samples s = zt::SampleCircle(f, 8.0, 9, kNoise, rng);
  XCircleFit3DLM c;
  // Nine points: too few for the inscribed circle, enough for least squares.
  EXPECT_EQ(RunFit(c, true, s, f), -1);
  EXPECT_EQ(Fields(c), std::vector<float>(10, 0.0f));
  ASSERT_EQ(RunFit(c, false, s, f), 0);
  EXPECT_NEAR(c.radius, 8.0, 3 * kFitTol);
  const std::vector<float> fitted = Fields(c);
  s.points.resize(2);
  for (bool inscribed : {false, true}) {
    EXPECT_EQ(RunFit(c, inscribed, s, f), -1);
    EXPECT_EQ(Fields(c), fitted);
  }
}

}  // namespace
}  // namespace zelmolm
