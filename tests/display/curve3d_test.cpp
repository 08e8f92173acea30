// The flat display outlines: list lengths, frame lines, points on outlines.
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
using zelmo::test::Quietly;

TEST(XCurve3DDisplay, WritesExactlyTheListLengthForCountsZeroToThirteen) {
  const float c[3] = {10, -20, 30}, n[3] = {0, 0.6f, 0.8f}, m[3] = {1, 0, 0};
  const XCicle3D circle(c, n, m, 5);
  const XOvalGroove3D oval(c, n, m, 8, 3);
  const XRectangle3D rectangle(c, n, m, 8, 3);
  const XRoundGroove3D round(c, n, m, 8, 4, 1.5f);
  int calls = 0;
  zelmo::test::StdoutCapture capture;
  for (int count = 0; count <= 13; ++count) {
    SCOPED_TRACE(count);
    const int q = count / 4;
    const auto expect = [&](int want, const auto& write) {
      GuardedBuffer buffer(24);
      EXPECT_EQ(write(buffer.out()), 0);
      EXPECT_EQ(buffer.Written(), want);
      ++calls;
    };
    // Each list by the object's fields and by arguments.
    expect(count, [&](float* o) { return circle.getDisplayData(count, o); });
    expect(count, [&](float* o) {
      return circle.getDisplayData(c, n, m, 5, count, o);
    });
    expect(count,
           [&](float* o) { return circle.getDisplayData2(c, n, 5, count, o); });
    expect(4 * q + 4, [&](float* o) { return oval.getDisplayData(count, o); });
    expect(4 * q + 4, [&](float* o) {
      return oval.getDisplayData(c, n, m, 8, 3, count, o);
    });
    expect(4, [&](float* o) { return rectangle.getDisplayData(o); });
    expect(4, [&](float* o) {
      return rectangle.getDisplayData(c, n, m, 8, 3, o);
    });
    expect(4 * q + 8, [&](float* o) { return round.getDisplayData(count, o); });
    expect(4 * q + 8, [&](float* o) {
      return round.getDisplayData(c, n, m, 8, 4, 1.5f, count, o);
    });
  }
  // Every call prints its frame once, also the ones that write no point.
  const std::string out = capture.Take();
  int blocks = 0;
  for (size_t at = out.find("vec_model:\n"); at != std::string::npos;
       at = out.find("vec_model:\n", at + 1))
    ++blocks;
  EXPECT_EQ(blocks, calls);
}

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

TEST(XCurve3DDisplay, OutlinePointsRunCounterClockwiseInListOrder) {
  std::mt19937 rng(31);
  std::uniform_real_distribution<double> size(2, 40), share(0.05, 0.95);
  const int counts[] = {3, 4, 10, 13, 36, 1, 24};
  for (int trial = 0; trial < 28; ++trial) {
    SCOPED_TRACE(trial);
    const FlatPose pose(zelmo::test::RandomFrame(rng, 500));
    const float a = float(size(rng)), b = float(size(rng));
    const float r = float(std::min(a, b) * share(rng));
    const int count = counts[trial % 7], q = count / 4, shape = trial % 4;
    const double s = 2 * zelmo::test::kPi / count;
    // Arcs about the centre (circle), about (+-a, 0) (oval groove) or about
    // the corners (+-A, +-B) (round groove), cut to q steps each; a
    // rectangle has bare corners.
    const double A = shape == 0 ? 0 : shape == 3 ? a - r : a;
    const double B = shape < 2 ? 0 : shape == 3 ? b - r : b;
    const double arc = shape == 2 ? 0 : r;
    std::vector<cv::Vec2d> want;
    GuardedBuffer buffer(4 * q + 8);
    int status = -1;
    if (shape == 0) {
      const XCicle3D circle(pose.center, pose.normal, pose.majorDir, r);
      status =
          Quietly([&] { return circle.getDisplayData(count, buffer.out()); });
      AppendArc(want, 0, 0, r, s, 0, count);
    } else if (shape == 1) {
      const XOvalGroove3D oval(pose.center, pose.normal, pose.majorDir, a, r);
      status =
          Quietly([&] { return oval.getDisplayData(count, buffer.out()); });
      AppendArc(want, a, 0, r, s, -q, q);
      want.insert(want.end(), {{a, r}, {-a, r}});
      AppendArc(want, -a, 0, r, s, q, 3 * q);
      want.insert(want.end(), {{-a, -r}, {a, -r}});
    } else if (shape == 2) {
      const XRectangle3D rectangle(pose.center, pose.normal, pose.majorDir, a,
                                   b);
      status = Quietly([&] { return rectangle.getDisplayData(buffer.out()); });
      want = {{a, b}, {-a, b}, {-a, -b}, {a, -b}};
    } else {
      const XRoundGroove3D round(pose.center, pose.normal, pose.majorDir, a, b,
                                 r);
      status =
          Quietly([&] { return round.getDisplayData(count, buffer.out()); });
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
    // Groove arcs meet their sides only in whole quarters: then every point
    // is on the outline. Other counts keep their index ranges (see above).
    const bool onOutline = shape == 0 || shape == 2 || count % 4 == 0;
    for (int i = 0; onOutline && i < buffer.Written(); ++i) {
      const cv::Vec3d local = pose.Local(buffer.Point(i));
      EXPECT_NEAR(zelmo::test::OutlineGap(local, A, B, arc), 0, kDisplayTol);
    }
  }
}

}  // namespace
}  // namespace xgeometry
