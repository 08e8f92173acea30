#include "zelmo/feature/xf_base.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/tolerance.h"

namespace {

using xgeofeature::XFBase;
using zelmo::test::ExpectNearArray;

// Opens the protected symmetry statics to the tests.
struct SymmetryAccess : XFBase {
  using XFBase::getMatRT_LineSymmetry;
  using XFBase::getMatRT_PlaneSymmetry;
};

constexpr double kMatTol = 1e-6;

// The rigid transform of rotation R and translation p - R p.
void fixedPointTransform(const double R[9], const float* p, double rt[16]) {
  for (int r = 0; r < 3; ++r) {
    double t = p[r];
    for (int c = 0; c < 3; ++c) {
      rt[r * 4 + c] = R[r * 3 + c];
      t -= R[r * 3 + c] * p[c];
    }
    rt[r * 4 + 3] = t;
  }
  rt[12] = rt[13] = rt[14] = 0.0;
  rt[15] = 1.0;
}

TEST(XFBase, RotationMatrixTurnsAboutAnUnnormalisedAxis) {
  const float axis[3] = {0.0f, 0.0f, 2.0f};
  const double quarterTurnZ[9] = {0, -1, 0, 1, 0, 0, 0, 0, 1};
  double r[9];
  EXPECT_EQ(XFBase::getRotationMatrix(axis, 90.0f, r, true), 0);
  ExpectNearArray(r, quarterTurnZ, 9, kMatTol);
  const float halfPi = static_cast<float>(std::acos(0.0));
  XFBase::getRotationMatrix(axis, halfPi, r, false);
  ExpectNearArray(r, quarterTurnZ, 9, kMatTol);

  // A zero axis leaves only cos(angle) on the diagonal.
  const float none[3] = {0.0f, 0.0f, 0.0f};
  const double halfDiagonal[9] = {0.5, 0, 0, 0, 0.5, 0, 0, 0, 0.5};
  XFBase::getRotationMatrix(none, 60.0f, r, true);
  ExpectNearArray(r, halfDiagonal, 9, kMatTol);
}

TEST(XFBase, SymmetryMatricesEqualTheirClosedForms) {
  double rt[16], want[16], R[9];

  const float line[6] = {1.0f, 2.0f, 3.0f, 0.6f, 0.8f, 0.0f};
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c)
      R[r * 3 + c] = 2.0 * line[3 + r] * line[3 + c] - (r == c ? 1.0 : 0.0);
  fixedPointTransform(R, line, want);
  SymmetryAccess::getMatRT_LineSymmetry(line, rt);
  ExpectNearArray(rt, want, 16, kMatTol);

  const float plane[6] = {1.0f, 2.0f, 3.0f, 0.0f, 0.6f, 0.8f};
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c)
      R[r * 3 + c] = (r == c ? 1.0 : 0.0) - 2.0 * plane[3 + r] * plane[3 + c];
  fixedPointTransform(R, plane, want);
  SymmetryAccess::getMatRT_PlaneSymmetry(plane, rt);
  ExpectNearArray(rt, want, 16, kMatTol);

  const float point[3] = {1.0f, -2.0f, 4.0f};
  const double inversion[16] = {-1, 0, 0,  2, 0, -1, 0, -4,
                                0,  0, -1, 8, 0, 0,  0, 1};
  XFBase::getMatRT_PointSymmetry(point, rt);
  ExpectNearArray(rt, inversion, 16, kMatTol);
}

}  // namespace
