#include "zelmo/simplex/plane_fit.h"

#include "tests/simplex/simplex_checks.h"
#include "zelmo/simplex/axis_geometry.h"
#include "zelmo/simplex/principal_axes.h"

namespace x3dfit {
namespace {

Spread PlaneSpread(const std::vector<cv::Point3f>& pts, const double* p) {
  return SpreadOf(pts,
                  [p](const cv::Vec3d& q) { return DistanceToPlane(p, q); });
}

TEST(XPlaneFit, RecoversPlanesWithEveryMethod) {
  ForEachPose(11, [](const Frame& f, double noise, std::mt19937& rng) {
    const Samples s = SamplePlane(f, 40, 25, 300, noise, rng);
    for (FitMethod method : kAllMethods) {
      XPlaneFit fit;
      double p[4] = {0, 0, 0, 0};
      ASSERT_TRUE(fit.Fit(s.points, p, method)) << method;
      ExpectUnitAxis(p, f, DirTol(noise));
      EXPECT_LE(DistanceToPlane(p, f.origin), PosTol(noise));
    }
  });
}

// Plane z = 0 with four points lifted by 1: the sum of distances passes
// through the majority, the largest distance is balanced at 1/2. Under three
// points (either form) true and nothing written; a descent starts from the
// caller's p; three collinear points give a plane through them.
TEST(XPlaneFit, MethodSelectsObjectiveAndFewPointsStillReturnTrue) {
  std::vector<cv::Point3f> pts;
  for (int i = 0; i < 100; ++i)
    pts.emplace_back(i / 10, i % 10, i % 10 == 9 && i < 40 ? 1 : 0);
  const std::vector<cv::Point3f> two = {{0, 0, 1}, {1, 0, 1}};
  const std::vector<cv::Point3f> line = {{1, 2, 3}, {2, 4, 5}, {4, 8, 9}};
  double ls[4], lad[4], cheb[4], other[4], r[4] = {0};
  double p[4] = {0.1, 0.2, 0.3, 0.4}, q[4] = {0.01, 0, 1, -1};
  XPlaneFit fit;
  fit.Fit(pts, ls, LeastSquare);
  fit.Fit(pts, lad, LeastAbsDev);
  fit.Fit(pts, cheb, Chebyshev);
  fit.Fit(pts, other, static_cast<FitMethod>(7));  // runs the sum, to the bit
  EXPECT_GT(PlaneSpread(pts, ls).sum, PlaneSpread(pts, lad).sum + 0.1);
  EXPECT_NEAR(PlaneSpread(pts, lad).sum, 4.0, 1e-6);
  EXPECT_NEAR(PlaneSpread(pts, cheb).max, 0.5, 0.05);
  ExpectNearArray(other, lad, 4, 0.0);
  EXPECT_TRUE(fit.Fit(two, p, LeastSquare));
  EXPECT_TRUE(fit.Fit(&two[0].x, 0, p, LeastSquare));
  EXPECT_EQ(cv::Vec4d(p), cv::Vec4d(0.1, 0.2, 0.3, 0.4));
  EXPECT_TRUE(fit.Fit(two, q, LeastAbsDev));
  EXPECT_LE(PlaneSpread(two, q).max, 0.02);
  EXPECT_TRUE(fit.Fit(line, r, LeastSquare));
  EXPECT_LE(PlaneSpread(line, r).max, 1e-6);
}

// Plane and sphere centroids divide double sums by the count; the axial
// fits sum and divide in float.
TEST(SimplexStartValues, CentroidsRoundInTheirOwnPrecision) {
  // 5 / 3 = 1.6666666666666667, while 5 * (1 / 3) = 1.6666666666666665.
  EXPECT_EQ(zelmo::simplexfit::MeanInDouble({{1, 0, 5}, {2, 0, 0}, {2, 0, 0}}),
            cv::Vec3d(5.0 / 3.0, 0, 5.0 / 3.0));
  // In float 2^24 + 1 + 1 stays 2^24: the mean is 5592405.5, not 5592406.
  cv::Mat values, vectors;
  cv::Point3f c;
  computePrincipalAxes({{16777216, 0, 0}, {1, 0, 0}, {1, 0, 0}}, values,
                       vectors, c);
  EXPECT_EQ(c.x, 5592405.5f);
}

// A 7 x 7 grid in the plane through 7 n, n = (cos t, 0, sin t), its corners
// lifted by 1/4: the simplex step is the signed largest of a, b, c over 100,
// so a regression normal with no positive component keeps the start value.
TEST(XPlaneFit, NormalWithoutPositiveComponentKeepsTheStartValue) {
  for (double t : {0.3, 0.82}) {  // n = (-0.96, 0, -0.30), (.68, 0, .73)
    const cv::Vec3d n(std::cos(t), 0, std::sin(t)), a(0, 1, 0), b = n.cross(a);
    std::vector<cv::Point3f> pts;
    for (int k = 0; k < 49; ++k) {
      const int i = k / 7 - 3, j = k % 7 - 3, lift = std::abs(i * j) == 9;
      pts.push_back(ToPoint3f((7 + 0.25 * lift) * n + i * a + j * b));
    }
    XPlaneFit fit;
    double start[4], p[4];
    fit.Fit(pts, start, LeastSquare);
    fit.Fit(pts, p, LeastAbsDev);
    const bool positive = std::max({start[0], start[1], start[2]}) > 1e-15;
    EXPECT_EQ(positive, t > 0.5);
    EXPECT_EQ(std::fabs(p[3] - start[3]) > 1e-3, positive) << t;
    if (!positive) ExpectNearArray(p, start, 4, 1e-12);
  }
}

// The corners stand in the local frame, whose x axis comes from the first
// point off the centroid, else (a cluster within 0.01) from the normal.
TEST(XPlaneFit, FourCornersFollowTheLocalFrameNotTheShape) {
  const float h = 10 * std::sqrt(2.0f), a = 1.002f, b = .998f, c = 3.002f;
  const std::vector<cv::Point3f> square = {
      {10, 10, 2}, {-10, 10, 2}, {-10, -10, 2}, {10, -10, 2}, {0, 0, 2}};
  const std::vector<cv::Point3f> cluster = {
      {5, a, c}, {5, b, c}, {5, b, 2.998f}, {5, a, 2.998f}};
  double z2[4] = {0, 0, 1, -2}, x5[4] = {1, 0, 0, -5};
  float got[12], onAxes[12] = {0, h, 2, -h, 0, 2, 0, -h, 2, h, 0, 2};
  XPlaneFit fit;
  fit.getFourCorner(square, z2, got);  // the first point on the diagonal
  for (int k = 0; k < 12; ++k) EXPECT_NEAR(got[k], onAxes[k], 1e-3) << k;
  fit.getFourCorner(cluster, x5, got);  // n = +x: local x = +y world
  for (int k = 0; k < 12; ++k)
    EXPECT_NEAR(got[k], Component(cluster[k / 3], k % 3), 1e-5) << k;
}

}  // namespace
}  // namespace x3dfit
