// The flat display outlines: frame prints, list lengths, points on outlines.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/display/display_test_util.h"
#include "tests/support/tolerance.h"
#include "zelmo/display/circle3d.h"
#include "zelmo/display/oval_groove3d.h"
#include "zelmo/display/rectangle3d.h"
#include "zelmo/display/round_groove3d.h"

namespace xgeometry {
namespace {

using zelmo::test::AppendArc;
using zelmo::test::FlatPose;
using zelmo::test::GuardedBuffer;
using zelmo::test::kDisplayTol;
using zelmo::test::PrintingOneFrame;

TEST(XCurve3DDisplay, PrintsTheFrameNormalsAndRotations) {
  // majorDir y and normal z: local x goes to y, local y to -x.
  const float c[3] = {1, 2, 3}, n[3] = {0, 0, 1}, m[3] = {0, 1, 0};
  zelmo::test::StdoutCapture capture;
  EXPECT_EQ(XCicle3D().getDisplayData(c, n, m, 2, 0, nullptr), 0);
  EXPECT_EQ(capture.Take(),
            "vec_model:\n[0, 1, 0]\n[-1, 0, 0]\n[0, 0, 1]\n"
            "vec_test\n[1, 0, 0]\n[0, 1, 0]\n[0, 0, 1]\n"
            "R1\n[0, -1, 0;\n 1, 0, 0;\n 0, 0, 1]\n"
            "R2\n[1, 0, 0;\n 0, 1, 0;\n 0, 0, 1]\n"
            "R\n[0, -1, 0;\n 1, 0, 0;\n 0, 0, 1]\n");
}

TEST(XCurve3DDisplay, ListsRunCounterClockwiseWithLengthsByCount) {
  std::mt19937 rng(31);
  std::uniform_real_distribution<double> size(2, 40), share(0.05, 0.95);
  // Every count with every shape; q = count / 4 steps per groove arc.
  const int counts[] = {0, 1, 2, 3, 4, 7, 10, 13, 36};
  for (int trial = 0; trial < 36; ++trial) {
    SCOPED_TRACE(trial);
    const FlatPose pose(zelmo::test::RandomFrame(rng, 500));
    const float a = float(size(rng)), b = float(size(rng));
    const float r = float(std::min(a, b) * share(rng));
    const int count = counts[trial % 9], q = count / 4, shape = trial % 4;
    const double s = 2 * zelmo::test::kPi / count;
    // Arcs of q steps about the centre, (+-a, 0) or the corners (+-A, +-B).
    const double A = shape == 0 ? 0 : shape == 3 ? a - r : a;
    const double B = shape < 2 ? 0 : shape == 3 ? b - r : b;
    const double arc = shape == 2 ? 0 : r;
    std::vector<cv::Vec2d> want;
    GuardedBuffer buffer(4 * q + 8);
    int status = -1;
    if (shape == 0) {
      const XCicle3D circle(pose.center, pose.normal, pose.majorDir, r);
      status = PrintingOneFrame(
          [&] { return circle.getDisplayData(count, buffer.out()); });
      AppendArc(want, 0, 0, r, s, 0, count);
    } else if (shape == 1) {
      const XOvalGroove3D oval(pose.center, pose.normal, pose.majorDir, a, r);
      status = PrintingOneFrame(
          [&] { return oval.getDisplayData(count, buffer.out()); });
      AppendArc(want, a, 0, r, s, -q, q);
      want.insert(want.end(), {{a, r}, {-a, r}});
      AppendArc(want, -a, 0, r, s, q, 3 * q);
      want.insert(want.end(), {{-a, -r}, {a, -r}});
    } else if (shape == 2) {
      const XRectangle3D rectangle(pose.center, pose.normal, pose.majorDir, a,
                                   b);
      status = PrintingOneFrame(
          [&] { return rectangle.getDisplayData(buffer.out()); });
      want = {{a, b}, {-a, b}, {-a, -b}, {a, -b}};
    } else {
      const XRoundGroove3D round(pose.center, pose.normal, pose.majorDir, a, b,
                                 r);
      status = PrintingOneFrame(
          [&] { return round.getDisplayData(count, buffer.out()); });
      AppendArc(want, A, B, r, s, 0, q);
      want.insert(want.end(), {{A, b}, {-A, b}});
      AppendArc(want, -A, B, r, s, q, 2 * q);
      want.insert(want.end(), {{-a, B}, {-a, -B}});
      AppendArc(want, -A, -B, r, s, 2 * q, 3 * q);
      want.insert(want.end(), {{-A, -b}, {A, -b}});
      AppendArc(want, A, -B, r, s, 3 * q, 4 * q);
      want.insert(want.end(), {{a, -B}, {a, B}});
    }
    EXPECT_EQ(status, 0);
    zelmo::test::ExpectLocalList(buffer, pose, want);
    // Groove arcs meet their sides only in whole quarters.
    const bool onOutline = shape == 0 || shape == 2 || count % 4 == 0;
    for (int i = 0; onOutline && i < buffer.Written(); ++i) {
      const cv::Vec3d local = pose.Local(buffer.Point(i));
      EXPECT_NEAR(zelmo::test::OutlineGap(local, A, B, arc), 0, kDisplayTol);
    }
  }
}

}  // namespace
}  // namespace xgeometry
