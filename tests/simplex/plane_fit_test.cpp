#include "zelmo/simplex/plane_fit.h"

#include "tests/simplex/simplex_checks.h"
#include "zelmo/simplex/axis_geometry.h"
#include "zelmo/simplex/principal_axes.h"

namespace x3dfit {
namespace {

using zelmo::test::DistanceToPlane;

zelmo::test::Spread PlaneSpread(const std::vector<cv::Point3f>& pts,
                                const double* p) {
  return zelmo::test::SpreadOf(
      pts, [p](const cv::Vec3d& q) { return DistanceToPlane(p, q); });
}

TEST(XPlaneFit, RecoversPlanesWithEveryMethod) {
  ForEachPose(11, 6, [](const Frame& f, double noise, std::mt19937& rng) {
    const Samples s = zelmo::test::SamplePlane(f, 40, 25, 300, noise, rng);
    for (FitMethod method : kAllMethods) {
      SCOPED_TRACE(testing::Message() << "method " << method);
      XPlaneFit fit;
      double p[4] = {0, 0, 0, 0};
      ASSERT_TRUE(fit.Fit(s.points, p, method));
      ExpectUnitAxis(p, f, DirTol(noise));
      EXPECT_LE(DistanceToPlane(p, f.origin), PosTol(noise));
    }
  });
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
  // Under three points (either form, any count) nothing is written.
  const std::vector<cv::Point3f> two = {{0, 0, 1}, {1, 0, 1}};
  const float xyz[6] = {0, 0, 1, 1, 0, 1};
  const double before[4] = {0.1, 0.2, 0.3, 0.4};
  XPlaneFit fit;
  double p[4] = {0.1, 0.2, 0.3, 0.4};
  EXPECT_TRUE(fit.Fit(two, p, LeastSquare));
  for (int count : {2, 0, -3})
    EXPECT_TRUE(fit.Fit(xyz, count, p, LeastSquare)) << count;
  zelmo::test::ExpectNearArray(p, before, 4, 0.0);

  // A descent starts from what the caller left: z = 1 tilted slightly.
  double q[4] = {0.01, 0.0, 1.0, -1.0};
  EXPECT_TRUE(fit.Fit(two, q, LeastAbsDev));
  EXPECT_NEAR(cv::norm(Vec3(q)), 1.0, 1e-12);
  EXPECT_LE(PlaneSpread(two, q).max, 0.02);

  // Three collinear points are enough: some plane through their line.
  const std::vector<cv::Point3f> line = {{1, 2, 3}, {2, 4, 5}, {4, 8, 9}};
  double r[4] = {0, 0, 0, 0};
  EXPECT_TRUE(fit.Fit(line, r, LeastSquare));
  EXPECT_NEAR(cv::norm(Vec3(r)), 1.0, 1e-12);
  EXPECT_LE(PlaneSpread(line, r).max, 1e-6);
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

  // In float 2^24 + 1 + 1 stays 2^24: the mean is 5592405.5, not 5592406.
  const std::vector<cv::Point3f> big = {{16777216, 0, 0}, {1, 0, 0}, {1, 0, 0}};
  cv::Mat values, vectors;
  cv::Point3f c;
  computePrincipalAxes(big, values, vectors, c);
  EXPECT_EQ(c.x, 5592405.5f);
}

// A 7 x 7 grid in the plane through 7 n, n = (cos t, 0, sin t), its corners
// lifted by 1/4 along n: the regression plane leaves the majority.
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

// The step is the signed largest of a, b, c over 100: a regression normal
// with no positive component gives a degenerate simplex that ends on the
// start value, a positive one lets the descent move.
TEST(XPlaneFit, NormalWithoutPositiveComponentKeepsTheStartValue) {
  XPlaneFit fit;
  double start[4], p[4];
  const std::vector<cv::Point3f> flat = LiftedGrid(0.3);  // (-0.96, 0, -0.30)
  fit.Fit(flat, start, LeastSquare);
  ASSERT_LE(std::max({start[0], start[1], start[2]}), 1e-15);
  fit.Fit(flat, p, LeastAbsDev);
  zelmo::test::ExpectNearArray(p, start, 4, 1e-12);

  const std::vector<cv::Point3f> tilted = LiftedGrid(0.82);  // (.68, 0, .73)
  fit.Fit(tilted, start, LeastSquare);
  ASSERT_GT(std::max({start[0], start[1], start[2]}), 0.5);
  fit.Fit(tilted, p, LeastAbsDev);
  EXPECT_GT(std::fabs(p[3] - start[3]), 1e-3);
}

void ExpectFourCorners(const std::vector<cv::Point3f>& pts,
                       std::vector<double> plane,
                       const std::vector<double>& want,
                       double tol) {
  XPlaneFit fit;
  float corners[12];
  fit.getFourCorner(pts, plane.data(), corners);
  for (int k = 0; k < 12; ++k) EXPECT_NEAR(corners[k], want[k], tol) << k;
}

// The box stands in the local frame, whose x axis comes from the first
// point off the centroid, else (a cluster within 0.01) from the largest
// normal component's rule.
TEST(XPlaneFit, FourCornersFollowTheLocalFrameNotTheShape) {
  // A square whose first point lies on its diagonal: corners on the axes.
  const double h = 10 * std::sqrt(2.0);
  ExpectFourCorners(
      {{10, 10, 2}, {-10, 10, 2}, {-10, -10, 2}, {10, -10, 2}, {0, 0, 2}},
      {0, 0, 1, -2}, {0, h, 2, -h, 0, 2, 0, -h, 2, h, 0, 2}, 1e-3);
  // A cluster with n = +x: local x = +y world.
  ExpectFourCorners({{5, 1.002f, 3.002f},
                     {5, 0.998f, 3.002f},
                     {5, 0.998f, 2.998f},
                     {5, 1.002f, 2.998f}},
                    {1, 0, 0, -5},
                    {5, 1.002f, 3.002f, 5, 0.998f, 3.002f, 5, 0.998f, 2.998f, 5,
                     1.002f, 2.998f},
                    1e-5);
}

}  // namespace
}  // namespace x3dfit
