#include "zelmo/feature/frame_toolkit.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/samplers.h"
#include "tests/support/tolerance.h"

namespace zelmo {
namespace frame {
namespace {

using test::ExpectNear3;
using test::ExpectNearArray;

constexpr double kTol = 1e-9;

cv::Vec3d Apply(const double* rt, const cv::Vec3d& p) {
  return cv::Vec3d(rt[0] * p[0] + rt[1] * p[1] + rt[2] * p[2] + rt[3],
                   rt[4] * p[0] + rt[5] * p[1] + rt[6] * p[2] + rt[7],
                   rt[8] * p[0] + rt[9] * p[1] + rt[10] * p[2] + rt[11]);
}

cv::Vec3d Rotate(const double* rt, const cv::Vec3d& v) {
  return Apply(rt, v) - cv::Vec3d(rt[3], rt[7], rt[11]);
}

cv::Vec3d Mul(const cv::Mat& R, const cv::Vec3d& v) {
  cv::Mat r = R * cv::Mat(v);
  return cv::Vec3d(r.at<double>(0), r.at<double>(1), r.at<double>(2));
}

void ExpectRotation(const cv::Mat& R, double tol) {
  ASSERT_EQ(R.rows, 3);
  ASSERT_EQ(R.cols, 3);
  const cv::Mat I = R * R.t();
  EXPECT_LE(cv::norm(I - cv::Mat::eye(3, 3, CV_64F), cv::NORM_INF), tol);
  EXPECT_NEAR(cv::determinant(R), 1.0, tol);
}

TEST(GetMatRByVector, CarriesFromOntoToIncludingParallelAndOpposite) {
  std::mt19937 rng(7);
  std::normal_distribution<double> g(0, 1);
  for (int trial = 0; trial < 50; ++trial) {
    SCOPED_TRACE(trial);
    const cv::Vec3d from(g(rng), g(rng), g(rng)), to(g(rng), g(rng), g(rng));
    cv::Mat R;
    getMatRByVector(from, to, R);
    ExpectRotation(R, kTol);
    ExpectNear3(Mul(R, from) * (1 / cv::norm(from)), to * (1 / cv::norm(to)),
                kTol);
  }
  // Equal vectors: two quarter turns through the auxiliary vector.
  cv::Mat R;
  getMatRByVector(cv::Vec3d(0, 0, 2), cv::Vec3d(0, 0, 1), R);
  EXPECT_LE(cv::norm(R - cv::Mat::eye(3, 3, CV_64F), cv::NORM_INF), kTol);
  // Opposite vectors: a half-turn about an axis orthogonal to `from`.
  const cv::Vec3d from(0.3, -1.0, 0.2);
  getMatRByVector(from, -from, R);
  ExpectRotation(R, kTol);
  ExpectNear3(Mul(R, from), -from, kTol);
  EXPECT_NEAR(cv::trace(R)[0], -1.0, kTol);  // a half-turn
}

TEST(Intersection3Planes, SolvesAtTheDeterminantLimitAndRejectsBelow) {
  const cv::Point3d p[3] = {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}};
  // det = 1e-6 exactly is not strictly inside the band: solved.
  const cv::Vec3d n[3] = {{1e-6, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  cv::Mat out;
  ASSERT_EQ(Intersection3Planes(n, p, out), 1);
  ExpectNear3(
      cv::Vec3d(out.at<double>(0), out.at<double>(1), out.at<double>(2)),
      cv::Vec3d(1, 2, 3), 1e-6);
  // Just inside the band: no single point, out untouched.
  const cv::Vec3d m[3] = {{0.9e-6, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  cv::Mat untouched = (cv::Mat_<double>(1, 1) << 42.0);
  EXPECT_EQ(Intersection3Planes(m, p, untouched), 0);
  EXPECT_EQ(untouched.at<double>(0), 42.0);
}

TEST(AlignBy3Plane, CarriesSourcePlanesOntoTargetPlanes) {
  std::mt19937 rng(11);
  for (int trial = 0; trial < 30; ++trial) {
    SCOPED_TRACE(trial);
    const test::Frame src = test::RandomFrame(rng, 500);
    const test::Frame dst = test::RandomFrame(rng, 500);
    const cv::Vec3d sn[3] = {src.u, src.v, src.w};
    const cv::Point3d sp[3] = {cv::Point3d(src.At(3, 0, 0)),
                               cv::Point3d(src.At(0, -2, 0)),
                               cv::Point3d(src.At(0, 0, 7))};
    const cv::Vec3d tn[3] = {dst.u, dst.v, dst.w};
    const cv::Point3d tp[3] = {cv::Point3d(dst.At(3, 5, 1)),
                               cv::Point3d(dst.At(1, -2, 0)),
                               cv::Point3d(dst.At(4, 0, 7))};
    for (AlignMode mode : {AlignMode::kPlain, AlignMode::kGuarded}) {
      double rt[16];
      alignBy3Plane(tn, tp, sn, sp, rt, mode);
      for (int k = 0; k < 3; ++k) ExpectNear3(Rotate(rt, sn[k]), tn[k], kTol);
      // Each source plane's point lands in its target plane.
      for (int k = 0; k < 3; ++k)
        EXPECT_NEAR(tn[k].dot(Apply(rt, cv::Vec3d(sp[k])) - cv::Vec3d(tp[k])),
                    0.0, 1e-9);
      EXPECT_EQ(rt[12], 0.0);
      EXPECT_EQ(rt[15], 1.0);
    }
  }
}

TEST(AlignBy3Plane, GuardedFormKeepsFirstNormalWhenSecondPairIsOpposite) {
  // Opposite second normals: only the guarded form turns about the first.
  const cv::Vec3d tn[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const cv::Vec3d sn[3] = {{1, 0, 0}, {0, -1, 0}, {0, 0, -1}};
  const cv::Point3d o[3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
  double guarded[16], plain[16];
  alignBy3Plane(tn, o, sn, o, guarded, AlignMode::kGuarded);
  alignBy3Plane(tn, o, sn, o, plain, AlignMode::kPlain);
  for (int k = 0; k < 3; ++k) ExpectNear3(Rotate(guarded, sn[k]), tn[k], kTol);
  EXPECT_GT(cv::norm(Rotate(plain, sn[0]) - tn[0]), 0.5);
}

TEST(ConvertMatrixRT, InvertsAlsoInPlace) {
  std::mt19937 rng(3);
  for (int trial = 0; trial < 10; ++trial) {
    const test::Frame f = test::RandomFrame(rng, 500);
    const double rt[16] = {f.u[0], f.v[0], f.w[0], f.origin[0],
                           f.u[1], f.v[1], f.w[1], f.origin[1],
                           f.u[2], f.v[2], f.w[2], f.origin[2],
                           0,      0,      0,      1};
    double inv[16], copy[16];
    EXPECT_EQ(convertMatrixRT(rt, inv), 1);
    const cv::Vec3d p(12, -7, 300);
    ExpectNear3(Apply(inv, Apply(rt, p)), p, 1e-10);
    EXPECT_TRUE(inv[12] == 0 && inv[13] == 0 && inv[14] == 0 && inv[15] == 1);
    std::copy(rt, rt + 16, copy);
    convertMatrixRT(copy, copy);
    ExpectNearArray(copy, inv, 16, 0.0);
  }
}

TEST(Projection2Plane, ProjectsAndMapsIntoThePlaneFrame) {
  std::mt19937 rng(5);
  const test::Frame f = test::RandomFrame(rng, 500);
  const double plane[4] = {f.w[0], f.w[1], f.w[2], -f.w.dot(f.origin)};
  std::vector<cv::Point3f> pts;
  for (int i = 0; i < 6; ++i) {
    const cv::Vec3d p = f.At(10.0 * i - 20, 3.0 * i * i - 30, 5.0 - i);
    pts.emplace_back(float(p[0]), float(p[1]), float(p[2]));
  }
  std::vector<cv::Point3f> projected;
  projection2Plane(pts, plane, projected);
  ASSERT_EQ(projected.size(), pts.size());
  for (const cv::Point3f& q : projected)
    EXPECT_NEAR(f.w.dot(test::ToVec3d(q) - f.origin), 0.0, 1e-3);

  std::vector<cv::Point2f> flat;
  double T[16];
  projection2Plane_tranformed(pts, plane, flat, T, AlignMode::kGuarded);
  ASSERT_EQ(flat.size(), pts.size());
  // Rigid in the plane, centroid to the origin, first point on +x.
  cv::Point2f sum(0, 0);
  for (size_t i = 0; i < flat.size(); ++i) {
    sum += flat[i];
    for (size_t j = 0; j < i; ++j)
      EXPECT_NEAR(cv::norm(flat[i] - flat[j]),
                  cv::norm(projected[i] - projected[j]), 1e-3);
  }
  EXPECT_NEAR(sum.x, 0.0, 1e-3);
  EXPECT_NEAR(sum.y, 0.0, 1e-3);
  EXPECT_NEAR(flat[0].y, 0.0, 1e-3);
  EXPECT_GT(flat[0].x, 0.0f);
  // u comes from float points: orthogonal to w only to ~1e-8.
  ExpectNear3(Rotate(T, f.w), cv::Vec3d(0, 0, 1), 1e-6);
}

TEST(GetMatrixR, DegreesRadiansAndZeroAxis) {
  cv::Mat Rd, Rr;
  getMatrixR(cv::Vec3d(0, 0, 5), 90.0, Rd, true);
  getMatrixR(cv::Vec3d(0, 0, 1), 3.14159265358979323846 / 2, Rr, false);
  EXPECT_LE(cv::norm(Rd - Rr, cv::NORM_INF), 1e-15);
  ExpectNear3(Mul(Rd, cv::Vec3d(1, 0, 0)), cv::Vec3d(0, 1, 0), 1e-15);
  // A zero axis leaves cos(angle) on the diagonal and zeros elsewhere.
  double r[9];
  getRotationMatrix(cv::Vec3d(0, 0, 0), 60.0, r, true);
  const double want[9] = {0.5, 0, 0, 0, 0.5, 0, 0, 0, 0.5};
  ExpectNearArray(r, want, 9, 1e-15);
}

TEST(SymmetryMatrices, EqualTheClosedForms) {
  std::mt19937 rng(13);
  std::normal_distribution<double> g(0, 1);
  std::uniform_real_distribution<double> off(-500, 500);
  for (int trial = 0; trial < 30; ++trial) {
    SCOPED_TRACE(trial);
    const float pd[6] = {float(off(rng)), float(off(rng)), float(off(rng)),
                         float(g(rng)),   float(g(rng)),   float(g(rng))};
    const cv::Vec3d p(pd[0], pd[1], pd[2]);
    cv::Vec3d d(pd[3], pd[4], pd[5]);
    d *= 1.0 / cv::norm(d);
    const cv::Matx33d ddT = d * d.t();
    const cv::Matx33d I = cv::Matx33d::eye();
    struct Case {
      void (*fn)(const float* const, double* const);
      cv::Matx33d R;
    };
    const Case cases[3] = {{getMatRT_LineSymmetry, 2 * ddT - I},
                           {getMatRT_PlaneSymmetry, I - 2 * ddT},
                           {getMatRT_PointSymmetry, -I}};
    for (const Case& c : cases) {
      double rt[16];
      c.fn(pd, rt);
      const cv::Vec3d t = p - c.R * p;
      for (int r = 0; r < 3; ++r) {
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(rt[r * 4 + k], c.R(r, k), 1e-9);
        EXPECT_NEAR(rt[r * 4 + 3], t[r], 1e-7);
      }
      EXPECT_NEAR(rt[15], 1.0, 1e-12);
    }
  }
}

}  // namespace
}  // namespace frame
}  // namespace zelmo
