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

using zelmo::test::Frame;
using zelmo::test::Samples;

constexpr double kNoise = 0.01;        // radial deviation of the scan
constexpr double kFitTol = kNoise;     // center and radius of a fit
constexpr double kPlaneTolRad = 1e-4;  // normal of a fitted plane
constexpr double kInsideTol = 1e-3;    // a point touches within this

std::vector<float> PlaneOf(const Frame& f) {
  return {float(f.origin[0]), float(f.origin[1]), float(f.origin[2]),
          float(f.w[0]),      float(f.w[1]),      float(f.w[2])};
}

std::vector<float> Fields(const XCircleFit3DLM& c) {
  std::vector<float> v(c.center, c.center + 3);
  v.insert(v.end(), c.normal, c.normal + 3);
  v.insert(v.end(), c.majorDir, c.majorDir + 3);
  v.push_back(c.radius);
  return v;
}

// Distance of a point from the circle's center, in space.
double FromCenter(const XCircleFit3DLM& c, const cv::Point3f& p) {
  return cv::norm(cv::Vec3d(p.x, p.y, p.z) - zelmo::test::ToVec3d(c.center));
}

// Runs Fit (inscribed) or Fit2 (least squares) quietly.
int RunFit(XCircleFit3DLM& c,
           bool inscribed,
           const Samples& s,
           std::vector<float> plane,
           bool fitPlane,
           const std::vector<float>* normals = nullptr) {
  const std::vector<float> p = s.Xyz();
  const float* n = normals == nullptr ? nullptr : normals->data();
  zelmo::test::StdoutCapture quiet;
  return inscribed ? c.Fit(p.data(), n, s.Count(), plane.data(), fitPlane)
                   : c.Fit2(p.data(), n, s.Count(), plane.data(), fitPlane);
}

TEST(XCircleFit3DLM, LeastSquaresRecoversCirclesInGivenAndFittedPlanes) {
  for (int trial = 0; trial < 6; ++trial) {
    const unsigned seed = 6100 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const double arc = trial % 2 == 0 ? 2 * zelmo::test::kPi : zelmo::test::kPi;
    const Samples s =
        zelmo::test::SampleCircle(f, radius, 60, kNoise, rng, arc);
    // Normals of the face the circle lies on, for the plane fit; the given
    // plane needs none.
    std::vector<float> faceNormals;
    for (int i = 0; i < s.Count(); ++i)
      faceNormals.insert(faceNormals.end(),
                         {float(f.w[0]), float(f.w[1]), float(f.w[2])});
    for (bool fitPlane : {false, true}) {
      SCOPED_TRACE(fitPlane ? "fitted plane" : "given plane");
      XCircleFit3DLM c;
      const std::vector<float> plane =
          fitPlane ? std::vector<float>(6, 0.0f) : PlaneOf(f);
      ASSERT_EQ(RunFit(c, false, s, plane, fitPlane,
                       fitPlane ? &faceNormals : nullptr),
                0);
      zelmo::test::ExpectNear3(c.center, f.origin, kFitTol);
      EXPECT_NEAR(c.radius, radius, kFitTol);
      if (fitPlane)
        zelmo::test::ExpectSameDirection(c.normal, f.w, kPlaneTolRad);
      else
        zelmo::test::ExpectNear3(c.normal, &plane[3], 0.0);
      // majorDir: a unit axis of the plane, towards the first point.
      const cv::Vec3d x = zelmo::test::ToVec3d(c.majorDir);
      EXPECT_NEAR(cv::norm(x), 1.0, zelmo::test::kFloatOutTol);
      EXPECT_NEAR(x.dot(f.w), 0.0, kPlaneTolRad);
    }
  }
}

// The inscribed fit grows its circle while the reward of a larger radius,
// 2 n / r^3, outweighs the penalty of a point inside, 1.6 / r: the bores
// here are sampled densely enough (n > 0.8 r^2) for it to slide the center.
TEST(XCircleFit3DLM, InscribedCircleOfANoisyBoreTouchesWithoutEnclosing) {
  constexpr double kBand = 0.02;  // radial noise, uniform in +-kBand
  for (int trial = 0; trial < 6; ++trial) {
    const unsigned seed = 6200 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zelmo::test::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(3, 12)(rng);
    Samples s = zelmo::test::SampleCircle(f, radius, 400, 0.0, rng);
    std::uniform_real_distribution<double> band(-kBand, kBand);
    for (int i = 0; i < s.Count(); ++i) {
      const cv::Vec3d n(s.normals[i].x, s.normals[i].y, s.normals[i].z);
      const cv::Vec3d p = f.origin + (radius + band(rng)) * n;
      s.points[i] = cv::Point3f(float(p[0]), float(p[1]), float(p[2]));
    }
    XCircleFit3DLM leastSquares, inscribed;
    ASSERT_EQ(RunFit(leastSquares, false, s, PlaneOf(f), false), 0);
    ASSERT_EQ(RunFit(inscribed, true, s, PlaneOf(f), false), 0);
    int touching = 0;
    for (const cv::Point3f& p : s.points) {
      const double e = FromCenter(inscribed, p);
      EXPECT_GT(e, inscribed.radius - kInsideTol);
      if (e < inscribed.radius + kInsideTol) ++touching;
    }
    EXPECT_GE(touching, 3);
    EXPECT_GE(inscribed.radius, leastSquares.radius - kBand - kInsideTol);
    EXPECT_LE(inscribed.radius, leastSquares.radius);
  }
}

// From its start the inscribed fit grows the circle until the nearest point
// touches it; on points exactly on a circle the exchange then stops at
// once, with a circle tangent to the true one from inside.
TEST(XCircleFit3DLM, InscribedCircleOfExactPointsIsTangentFromInside) {
  for (int trial = 0; trial < 3; ++trial) {
    const unsigned seed = 6300 + trial;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    const Frame f = zelmo::test::RandomFrame(rng, 100.0);
    constexpr double kRadius = 12.0;
    const Samples s = zelmo::test::SampleCircle(f, kRadius, 60, 0.0, rng);
    XCircleFit3DLM c;
    ASSERT_EQ(RunFit(c, true, s, PlaneOf(f), false), 0);
    const double offset = cv::norm(zelmo::test::ToVec3d(c.center) - f.origin);
    // Between two samples the circle may reach a little beyond the true one.
    constexpr double kBetweenSamplesTol = 0.01;
    EXPECT_NEAR(offset + c.radius, kRadius, kBetweenSamplesTol);
    // The half-summed start lies off the center, so the circle is smaller.
    EXPECT_LT(c.radius, kRadius - 0.1);
    double nearest = 1e30;
    for (const cv::Point3f& p : s.points)
      nearest = std::min(nearest, FromCenter(c, p));
    EXPECT_NEAR(nearest, c.radius, kInsideTol);
  }
}

TEST(XCircleFit3DLM, TooFewPointsFailWithoutTouchingTheFields) {
  std::mt19937 rng(6400);
  const Frame f = zelmo::test::RandomFrame(rng, 100.0);
  Samples s = zelmo::test::SampleCircle(f, 8.0, 9, kNoise, rng);
  XCircleFit3DLM c;
  c.radius = 42.0f;
  // Nine points: too few for the inscribed circle, enough for least squares.
  EXPECT_EQ(RunFit(c, true, s, PlaneOf(f), false), -1);
  EXPECT_EQ(c.radius, 42.0f);
  ASSERT_EQ(RunFit(c, false, s, PlaneOf(f), false), 0);
  EXPECT_NEAR(c.radius, 8.0, kFitTol * 3);
  const std::vector<float> fitted = Fields(c);
  s.points.resize(2);
  for (bool inscribed : {false, true}) {
    EXPECT_EQ(RunFit(c, inscribed, s, PlaneOf(f), false), -1);
    EXPECT_EQ(Fields(c), fitted);
  }
}

}  // namespace
}  // namespace zelmolm
