#include "zelmo/feature/frame_toolkit.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"
#include "zelmo/feature/plane_frame.h"

namespace zelmo::frame {
namespace {

using test::ExpectNear3;
using test::ExpectNearArray;

constexpr double kTol = 1e-9;

cv::Vec3d Apply(const double* rt, const cv::Vec3d& p) {
  return cv::Matx34d(rt) * cv::Vec4d(p[0], p[1], p[2], 1);
}

cv::Vec3d Rotate(const double* rt, const cv::Vec3d& v) {
  return Apply(rt, v) - cv::Vec3d(rt[3], rt[7], rt[11]);
}

// Orthonormal with determinant +1.
bool IsRotation(const cv::Mat& R) {
  const double orthogonality = cv::norm(R * R.t(), cv::Mat::eye(3, 3, CV_64F));
  return orthogonality <= kTol && std::fabs(cv::determinant(R) - 1) <= kTol;
}

TEST(GetMatRByVector, CarriesFromOntoToIncludingParallelAndOpposite) {
  std::mt19937 rng(7);
  std::normal_distribution<double> g(0, 1);
  cv::Mat R;
  for (int trial = 0; trial < 3; ++trial) {
    const cv::Vec3d from(g(rng), g(rng), g(rng)), to(g(rng), g(rng), g(rng));
    getMatRByVector(from, to, R);
    EXPECT_TRUE(IsRotation(R)) << trial;
    ExpectNear3(cv::Matx33d(R) * cv::normalize(from), cv::normalize(to), kTol);
  }
  // Equal vectors give the identity; opposite ones a half-turn.
  getMatRByVector(cv::Vec3d(0, 0, 2), cv::Vec3d(0, 0, 1), R);
  EXPECT_LE(cv::norm(R - cv::Mat::eye(3, 3, CV_64F), cv::NORM_INF), kTol);
  const cv::Vec3d from(0.3, -1.0, 0.2);
  getMatRByVector(from, -from, R);
  EXPECT_TRUE(IsRotation(R));
  ExpectNear3(cv::Matx33d(R) * from, -from, kTol);
}

TEST(Intersection3Planes, SolvesAtTheDeterminantLimitAndRejectsBelow) {
  const cv::Point3d p[3] = {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}};
  // det = 1e-6 is not strictly inside the band: solved; 0.9e-6 is rejected.
  cv::Vec3d n[3] = {{1e-6, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  cv::Mat out;
  ASSERT_EQ(Intersection3Planes(n, p, out), 1);
  ExpectNear3(cv::Vec3d(out), cv::Vec3d(1, 2, 3), 1e-6);
  n[0][0] = 0.9e-6;
  cv::Mat untouched = (cv::Mat_<double>(1, 1) << 42.0);
  EXPECT_EQ(Intersection3Planes(n, p, untouched), 0);
  EXPECT_EQ(untouched.at<double>(0), 42.0);
}

TEST(AlignBy3Plane, CarriesSourcePlanesOntoTargetPlanesGuardedOnOpposites) {
  std::mt19937 rng(11);
  double rt[16];
  for (int trial = 0; trial < 3; ++trial) {
    const test::Frame src = test::RandomFrame(rng, 500);
    const test::Frame dst = test::RandomFrame(rng, 500);
    const cv::Vec3d sn[3] = {src.u, src.v, src.w},
                    tn[3] = {dst.u, dst.v, dst.w};
    const cv::Point3d sp[3] = {src.At(3, 0, 0), src.At(0, -2, 0),
                               src.At(0, 0, 7)};
    const cv::Point3d tp[3] = {dst.At(3, 5, 1), dst.At(1, -2, 0),
                               dst.At(4, 0, 7)};
    for (AlignMode mode : {AlignMode::kPlain, AlignMode::kGuarded}) {
      alignBy3Plane(tn, tp, sn, sp, rt, mode);
      for (int k = 0; k < 3; ++k) {
        ExpectNear3(Rotate(rt, sn[k]), tn[k], kTol);
        EXPECT_NEAR(tn[k].dot(Apply(rt, cv::Vec3d(sp[k])) - cv::Vec3d(tp[k])),
                    0.0, kTol);
      }
      EXPECT_TRUE(rt[12] == 0 && rt[15] == 1);
    }
  }
  // Opposite second normals: only the guarded form turns about the first.
  const cv::Vec3d tn[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const cv::Vec3d sn[3] = {{1, 0, 0}, {0, -1, 0}, {0, 0, -1}};
  const cv::Point3d o[3] = {};
  alignBy3Plane(tn, o, sn, o, rt, AlignMode::kPlain);
  EXPECT_GT(cv::norm(Rotate(rt, sn[0]) - tn[0]), 0.5);
  alignBy3Plane(tn, o, sn, o, rt, AlignMode::kGuarded);
  for (int k = 0; k < 3; ++k) ExpectNear3(Rotate(rt, sn[k]), tn[k], kTol);
}

TEST(ConvertMatrixRT, InvertsAlsoInPlace) {
  std::mt19937 rng(3);
  const test::Frame f = test::RandomFrame(rng, 500);
  const double rt[16] = {
      f.u[0], f.v[0], f.w[0], f.origin[0], f.u[1], f.v[1], f.w[1], f.origin[1],
      f.u[2], f.v[2], f.w[2], f.origin[2], 0,      0,      0,      1};
  double inv[16], copy[16];
  EXPECT_EQ(convertMatrixRT(rt, inv), 1);
  const cv::Vec3d p(12, -7, 300);
  ExpectNear3(Apply(inv, Apply(rt, p)), p, 1e-10);
  std::copy(rt, rt + 16, copy);
  convertMatrixRT(copy, copy);
  ExpectNearArray(copy, inv, 16, 0.0);
}

TEST(Projection2Plane, ProjectsAndMapsIntoThePlaneFrame) {
  std::mt19937 rng(5);
  const test::Frame f = test::RandomFrame(rng, 500);
  const double plane[4] = {f.w[0], f.w[1], f.w[2], -f.w.dot(f.origin)};
  std::vector<cv::Point3f> pts, projected;
  for (int i = 0; i < 6; ++i)
    pts.push_back(test::ToPoint3f(f.At(10 * i - 20, 3 * i * i - 30, 5 - i)));
  std::vector<cv::Point2f> flat;
  double T[16];
  projection2Plane(pts, plane, projected);
  projection2Plane_tranformed(pts, plane, flat, T, AlignMode::kGuarded);
  ASSERT_TRUE(projected.size() == 6 && flat.size() == 6);
  // Rigid in the plane, centroid to the origin, first point on +x.
  cv::Point2f sum(0, 0);
  for (size_t i = 0; i < flat.size(); ++i) {
    sum += flat[i];
    EXPECT_NEAR(f.w.dot(test::ToVec3d(projected[i]) - f.origin), 0.0, 1e-3);
    for (size_t j = 0; j < i; ++j)
      EXPECT_NEAR(cv::norm(flat[i] - flat[j]),
                  cv::norm(projected[i] - projected[j]), 1e-3);
  }
  EXPECT_NEAR(cv::norm(sum), 0.0, 1e-3);
  EXPECT_TRUE(std::fabs(flat[0].y) <= 1e-3 && flat[0].x > 0) << flat[0];
  ExpectNear3(Rotate(T, f.w), cv::Vec3d(0, 0, 1), 1e-6);
}

TEST(GetMatrixR, DegreesRadiansAndZeroAxis) {
  cv::Mat Rd, Rr;
  getMatrixR(cv::Vec3d(0, 0, 5), 90.0, Rd, true);
  getMatrixR(cv::Vec3d(0, 0, 1), test::kPi / 2, Rr, false);
  EXPECT_LE(cv::norm(Rd - Rr, cv::NORM_INF), 1e-15);
  ExpectNear3(cv::Matx33d(Rd) * cv::Vec3d(1, 0, 0), cv::Vec3d(0, 1, 0), 1e-15);
  // A zero axis leaves cos(angle) on the diagonal and zeros elsewhere.
  double r[9];
  getRotationMatrix(cv::Vec3d(0, 0, 0), 60.0, r, true);
  const double want[9] = {0.5, 0, 0, 0, 0.5, 0, 0, 0, 0.5};
  ExpectNearArray(r, want, 9, 1e-15);
}

TEST(SymmetryMatrices, MirrorAboutThePointLineAndPlaneThroughIt) {
  std::mt19937 rng(13);
  std::uniform_real_distribution<double> off(-500, 500);
  for (int trial = 0; trial < 3; ++trial) {
    float pd[6];
    for (float& v : pd) v = float(off(rng));
    const cv::Vec3d p(pd[0], pd[1], pd[2]), q(off(rng), off(rng), off(rng));
    const cv::Vec3d d = cv::normalize(cv::Vec3d(pd[3], pd[4], pd[5]));
    const cv::Vec3d x = q - p, along = d * x.dot(d);  // q about p, along d
    double rt[16];
    getMatRT_LineSymmetry(pd, rt);
    ExpectNear3(Apply(rt, q), p + 2 * along - x, 1e-7);
    getMatRT_PlaneSymmetry(pd, rt);
    ExpectNear3(Apply(rt, q), p + x - 2 * along, 1e-7);
    getMatRT_PointSymmetry(pd, rt);
    ExpectNear3(Apply(rt, q), p - x, 1e-7);
    EXPECT_TRUE(rt[12] == 0 && rt[15] == 1) << trial;
  }
}

TEST(PlaneLocalFrame, AxisFromFirstOffCentrePointElseFallback) {
  const cv::Vec3d c(10, 20, 30);
  // The first point 0.01 off, else t by the largest |n| (lowest on ties).
  const std::vector<cv::Point3f> near = {{10.005f, 20, 30}, {9.995f, 20, 30}};
  const cv::Vec3d n0 = cv::normalize(cv::Vec3d(0.6, 0.6, 0)), n2(0, 0.6, 0.8);
  const cv::Vec3d u0 = planeLocalAxis(near, c, n0), t0(0, 1, 0), t2(1, 0, 0);
  EXPECT_LE(cv::norm(u0 - cv::normalize(n0.cross(t0).cross(n0))), kTol);
  const cv::Vec3d u2 = planeLocalAxis({}, c, n2);
  EXPECT_LE(cv::norm(u2 - cv::normalize(n2.cross(t2).cross(n2))), kTol);
  const std::vector<cv::Point3f> far = {
      {10.005f, 20, 30}, {10, 20.02f, 30}, {13, 20, 30}};
  EXPECT_LE(cv::norm(planeLocalAxis(far, c, n2) - cv::Vec3d(0, 1, 0)), 1e-4);
}

}  // namespace
}  // namespace zelmo::frame
