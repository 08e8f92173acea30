#include "zelmo/simplex/plane_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "tests/simplex/recovery_tolerances.h"
#include "tests/support/samplers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/tolerance.h"
#include "zelmo/simplex/axis_geometry.h"
#include "zelmo/simplex/principal_axes.h"

namespace x3dfit {
namespace {

using zelmo::test::DistanceToPlane;
using zelmo::test::Frame;
using zelmo::test::Samples;
using zelmo::test::Vec3;

const FitMethod kMethods[] = {LeastSquare, LeastAbsDev, Chebyshev};

zelmo::test::Spread PlaneSpread(const std::vector<cv::Point3f>& pts,
                                const double* p) {
  return zelmo::test::SpreadOf(
      pts, [p](const cv::Vec3d& q) { return DistanceToPlane(p, q); });
}

TEST(XPlaneFit, RecoversPlanesWithEveryMethod) {
  std::mt19937 rng(11);
  for (int trial = 0; trial < 6; ++trial) {
    for (double noise : {0.0, 0.01}) {
      const Frame f = zelmo::test::RandomFrame(rng, 500.0);
      const Samples s = zelmo::test::SamplePlane(f, 40, 25, 300, noise, rng);
      for (FitMethod method : kMethods) {
        SCOPED_TRACE(testing::Message()
                     << "seed 11 trial " << trial << " noise " << noise
                     << " method " << method);
        XPlaneFit fit;
        double p[4] = {0, 0, 0, 0};
        ASSERT_TRUE(fit.Fit(s.points, p, method));
        EXPECT_NEAR(cv::norm(Vec3(p)), 1.0, 1e-12);
        const bool exact = noise == 0.0;
        zelmo::test::ExpectSameAxis(Vec3(p), f.w,
                                    exact ? kExactDirTol : kNoisyDirTol);
        EXPECT_LE(DistanceToPlane(p, f.origin),
                  exact ? kExactPosTol : kNoisyPosTol);
      }
    }
  }
}

// Plane z = 0 with four points lifted by 1: the regression plane tilts
// towards them, the sum of distances passes through the majority, the
// largest distance is balanced at 1/2.
TEST(XPlaneFit, MethodSelectsObjective) {
  std::vector<cv::Point3f> pts;
  for (int i = 0; i < 10; ++i)
    for (int j = 0; j < 10; ++j)
      pts.emplace_back(static_cast<float>(i), static_cast<float>(j), 0.0f);
  for (int k = 0; k < 4; ++k) pts[k * 10 + 9].z = 1.0f;

  double ls[4], lad[4], cheb[4], other[4];
  XPlaneFit fit;
  fit.Fit(pts, ls, LeastSquare);
  fit.Fit(pts, lad, LeastAbsDev);
  fit.Fit(pts, cheb, Chebyshev);
  fit.Fit(pts, other, static_cast<FitMethod>(7));

  EXPECT_GT(PlaneSpread(pts, ls).sum, PlaneSpread(pts, lad).sum + 0.1);
  EXPECT_NEAR(PlaneSpread(pts, lad).sum, 4.0, 1e-6);
  EXPECT_NEAR(PlaneSpread(pts, cheb).max, PlaneSpread(pts, lad).max / 2, 0.05);
  EXPECT_LT(PlaneSpread(pts, cheb).max, PlaneSpread(pts, ls).max);
  // A value outside the enum runs the sum of distances, to the bit.
  zelmo::test::ExpectNearArray(other, lad, 4, 0.0);
}

TEST(XPlaneFit, FewOrCollinearPointsStillReturnTrue) {
  const std::vector<cv::Point3f> two = {{0, 0, 1}, {1, 0, 1}};
  XPlaneFit fit;
  double p[4] = {0.1, 0.2, 0.3, 0.4};
  const double before[4] = {0.1, 0.2, 0.3, 0.4};
  EXPECT_TRUE(fit.Fit(two, p, LeastSquare));
  zelmo::test::ExpectNearArray(p, before, 4, 0.0);

  // Float form, counts 2, 0 and below: nothing to start from either.
  const float xyz[6] = {0, 0, 1, 1, 0, 1};
  for (int count : {2, 0, -3}) {
    EXPECT_TRUE(fit.Fit(xyz, count, p, LeastSquare));
    zelmo::test::ExpectNearArray(p, before, 4, 0.0);
  }

  // A descent starts from what the caller left: z = 1 tilted slightly.
  double q[4] = {0.01, 0.0, 1.0, -1.0};
  EXPECT_TRUE(fit.Fit(two, q, LeastAbsDev));
  EXPECT_NEAR(cv::norm(Vec3(q)), 1.0, 1e-12);
  for (const cv::Point3f& x : two)
    EXPECT_LE(DistanceToPlane(q, cv::Vec3d(x.x, x.y, x.z)), 0.02);

  // Three collinear points are enough: some plane through their line.
  const std::vector<cv::Point3f> line = {{1, 2, 3}, {2, 4, 5}, {4, 8, 9}};
  double r[4] = {0, 0, 0, 0};
  EXPECT_TRUE(fit.Fit(line, r, LeastSquare));
  EXPECT_NEAR(cv::norm(Vec3(r)), 1.0, 1e-12);
  for (const cv::Point3f& x : line)
    EXPECT_LE(DistanceToPlane(r, cv::Vec3d(x.x, x.y, x.z)), 1e-6);
}

// The plane and sphere start values take the centroid in double, the sums
// divided by the count; the axial fits sum and divide in float.
TEST(SimplexStartValues, CentroidsRoundInTheirOwnPrecision) {
  // 5 / 3 = 1.6666666666666667, while 5 * (1 / 3) = 1.6666666666666665.
  const std::vector<cv::Point3f> fifths = {{1, 0, 5}, {2, 0, 0}, {2, 0, 0}};
  ASSERT_NE(5.0 / 3.0, 5.0 * (1.0 / 3.0));
  const cv::Vec3d m = zelmo::simplexfit::MeanInDouble(fifths);
  EXPECT_EQ(m[0], 5.0 / 3.0);
  EXPECT_EQ(m[2], 5.0 / 3.0);

  // In float 2^24 + 1 + 1 stays 2^24, so the mean is 5592405.5, not the
  // 5592406 of a double sum.
  const std::vector<cv::Point3f> big = {{16777216, 0, 0}, {1, 0, 0}, {1, 0, 0}};
  cv::Mat values, vectors;
  cv::Point3f c;
  computePrincipalAxes(big, values, vectors, c);
  EXPECT_EQ(c.x, 5592405.5f);
}

// A grid in the plane through 7 n, with n = (cos t, 0, sin t); its four
// corners are lifted by 1/4 along n, which keeps the scatter free of y
// coupling but moves the regression plane off the majority of points.
std::vector<cv::Point3f> LiftedGrid(double t) {
  const cv::Vec3d n(std::cos(t), 0, std::sin(t)), a(0, 1, 0), b = n.cross(a);
  std::vector<cv::Point3f> pts;
  for (int i = -3; i <= 3; ++i)
    for (int j = -3; j <= 3; ++j) {
      const double lift = (std::abs(i) == 3 && std::abs(j) == 3) ? 0.25 : 0;
      pts.push_back(zelmo::test::ToPoint3f((7.0 + lift) * n + i * a + j * b));
    }
  return pts;
}

// The step is the signed largest of a, b, c over 100. A regression normal
// whose largest component is (about) 0 gives a degenerate simplex, which
// ends at once on the start value; a positive one lets the descent move.
TEST(XPlaneFit, NormalWithoutPositiveComponentKeepsTheStartValue) {
  constexpr double kAtStart = 1e-12;
  constexpr double kMoved = 1e-3;
  // The decomposition gives (-0.96, ~0, -0.30) for t = 0.3 and
  // (+0.68, ~0, +0.73) for t = 0.82.
  XPlaneFit fit;
  double start[4], p[4];
  const std::vector<cv::Point3f> flat = LiftedGrid(0.3);
  fit.Fit(flat, start, LeastSquare);
  ASSERT_LE(std::max({start[0], start[1], start[2]}), 1e-15);
  fit.Fit(flat, p, LeastAbsDev);
  zelmo::test::ExpectNearArray(p, start, 4, kAtStart);

  const std::vector<cv::Point3f> tilted = LiftedGrid(0.82);
  fit.Fit(tilted, start, LeastSquare);
  ASSERT_GT(std::max({start[0], start[1], start[2]}), 0.5);
  fit.Fit(tilted, p, LeastAbsDev);
  EXPECT_GT(std::fabs(p[3] - start[3]), kMoved);
}

// The first point off the centroid lies on the square's diagonal; the
// rectangle keeps the square's size but stands along the diagonal frame.
TEST(XPlaneFit, FourCornersIgnoreTheRectangleAngle) {
  std::vector<cv::Point3f> pts = {
      {10, 10, 2}, {-10, 10, 2}, {-10, -10, 2}, {10, -10, 2}, {0, 0, 2}};
  double p[4] = {0, 0, 1, -2};
  XPlaneFit fit;
  float corners[12];
  fit.getFourCorner(pts, p, corners);
  // Local axes u = (1, 1, 0) / sqrt 2, v = (-1, 1, 0) / sqrt 2; the corners
  // (+-10, +-10) in them fall on the world axes, not on the square.
  const double h = 10 * std::sqrt(2.0);
  const double want[12] = {0, h, 2, -h, 0, 2, 0, -h, 2, h, 0, 2};
  for (int k = 0; k < 12; ++k) EXPECT_NEAR(corners[k], want[k], 1e-3) << k;
}

// Points all within 0.01 of their mean: the x axis comes from the largest
// normal component's rule, here n = +x, so x local = +y world.
TEST(XPlaneFit, FourCornersOfAClusterUseTheFallbackAxis) {
  const std::vector<cv::Point3f> pts = {{5, 1.002f, 3.002f},
                                        {5, 0.998f, 3.002f},
                                        {5, 0.998f, 2.998f},
                                        {5, 1.002f, 2.998f}};
  double p[4] = {1, 0, 0, -5};
  XPlaneFit fit;
  float corners[12];
  fit.getFourCorner(pts, p, corners);
  const float want[12] = {5, 1.002f, 3.002f, 5, 0.998f, 3.002f,
                          5, 0.998f, 2.998f, 5, 1.002f, 2.998f};
  for (int k = 0; k < 12; ++k) EXPECT_NEAR(corners[k], want[k], 1e-5) << k;
}

}  // namespace
}  // namespace x3dfit
