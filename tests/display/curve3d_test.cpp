// The flat display outlines: frame prints, list lengths, points on outlines.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/display/display_test_util.h"
#include "tests/support/tolerance.h"
#include "zelmo/display/circle3d.h"
#include "zelmo/display/oval_groove3d.h"
#include "zelmo/display/rectangle3d.h"
#include "zelmo/display/round_groove3d.h"

namespace xgeometry {
namespace {

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
  // q = count / 4 steps per groove arc; corner arc j, then the side to j + 1.
  const int counts[] = {0, 1, 2, 3, 4, 7, 10, 13, 36};
  for (int trial = 0; trial < 36; ++trial) {
    SCOPED_TRACE(trial);
    const zelmo::test::Frame f = zelmo::test::RandomFrame(rng, 500);
    const cv::Vec3f fc = f.origin, fn = f.w, fm = f.u;
    const float *c = fc.val, *n = fn.val, *m = fm.val;
    const float a = float(size(rng)), b = float(size(rng));
    const float r = float(std::min(a, b) * share(rng));
    const int count = counts[trial % 9], q = count / 4, shape = trial % 4;
    const double s = 2 * zelmo::test::kPi / count;
    std::vector<cv::Vec2d> want;
    const auto arc = [&](double x, double y, int from, int to) {
      for (int i = from; i < to; ++i)
        want.emplace_back(x + r * std::cos(i * s), y + r * std::sin(i * s));
    };
    GuardedBuffer buffer(4 * q + 8);
    const auto run = [&](const auto& outline, auto... size) {
      EXPECT_EQ(PrintingOneFrame([&] {
                  return outline.getDisplayData(size..., buffer.out());
                }),
                0);
    };
    if (shape == 0) {
      run(XCicle3D(c, n, m, r), count);
      arc(0, 0, 0, count);
    } else if (shape == 1) {
      run(XOvalGroove3D(c, n, m, a, r), count);
      arc(a, 0, -q, q);
      want.insert(want.end(), {{a, r}, {-a, r}});
      arc(-a, 0, q, 3 * q);
      want.insert(want.end(), {{-a, -r}, {a, -r}});
    } else if (shape == 2) {
      run(XRectangle3D(c, n, m, a, b));
      want = {{a, b}, {-a, b}, {-a, -b}, {a, -b}};
    } else {
      run(XRoundGroove3D(c, n, m, a, b, r), count);
      const double A = a - r, B = b - r, sx[5] = {1, -1, -1, 1, 1},
                   sy[5] = {1, 1, -1, -1, 1};
      for (int j = 0; j < 4; ++j) {
        arc(sx[j] * A, sy[j] * B, j * q, (j + 1) * q);
        const double x = j % 2 ? a : A, y = j % 2 ? B : b;
        want.insert(want.end(),
                    {{sx[j] * x, sy[j] * y}, {sx[j + 1] * x, sy[j + 1] * y}});
      }
    }
    ASSERT_EQ(buffer.Written(), static_cast<int>(want.size()));
    for (int i = 0; i < buffer.Written(); ++i)
      EXPECT_LE(cv::norm(buffer.Point(i) - f.At(want[i][0], want[i][1], 0)),
                kDisplayTol)
          << i;
  }
}

TEST(XCicle3D, MadeUpMajorDirTakesTheLargestNormalComponentLowestOnTies) {
  // The first point lies along the made-up direction (x wins an x-y tie).
  const cv::Vec3d normals[] = {
      {0.8, 0.36, -0.48}, {0.36, -0.8, 0.48}, {0.48, 0.36, 0.8}, {1, 1, 0.5}};
  const cv::Vec3d firstDirs[] = {
      {-0.45, 1, 0}, {1, 0.45, 0}, {1, 0, -0.6}, {-1, 1, 0}};
  const float c[3] = {-300, 120, 45}, r = 7;
  for (int k = 0; k < 4; ++k) {
    SCOPED_TRACE(k);
    const cv::Vec3f n = normals[k];
    GuardedBuffer buffer(8);
    ASSERT_EQ(PrintingOneFrame([&] {
                return XCicle3D().getDisplayData2(c, n.val, r, 8, buffer.out());
              }),
              0);
    ASSERT_EQ(buffer.Written(), 8);
    const cv::Vec3d centre(c[0], c[1], c[2]);
    zelmo::test::ExpectNear3(
        buffer.Point(0), centre + r * cv::normalize(firstDirs[k]), kDisplayTol);
    const cv::Vec3d a = buffer.Point(0) - centre, b = buffer.Point(2) - centre;
    EXPECT_NEAR(a.cross(b).dot(cv::normalize(normals[k])) / (r * r), 1.0,
                kDisplayTol);
  }
}

}  // namespace
}  // namespace xgeometry
