#include <gsl/gsl_vector.h>
#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "zelmo/curvefit/angled_fit2d.h"
#include "zelmo/curvefit/circle_fit2d.h"
#include "zelmo/curvefit/one_sided_objectives.h"
#include "zelmo/curvefit/outline_distances.h"

namespace zelmo {
namespace curvefit {
namespace {

constexpr double kDistTol = 1e-5;  // distances through float coordinates

double Evaluate(Objective f,
                std::vector<double> p,
                std::vector<cv::Point2f> x) {
  gsl_vector_view v = gsl_vector_view_array(p.data(), p.size());
  return f(&v.vector, &x);
}

// Oval groove and rectangle a = 2, b = 1 along x; round groove a = 3, b = 2,
// r = 0.5 turned by 90 degrees about (10, 20), local (U, W) = (y, -x).
TEST(OutlineDistances, KeepTheSignRulesOfEachShape) {
  const double ab[5] = {0, 0, 2, 1, 0};
  const double round[6] = {10, 20, 3, 2, 0.5, std::acos(-1.0) / 2};
  const RoundGrooveOutline g(round);
  auto at = [](float u, float w) { return cv::Point2f(10 - w, 20 + u); };
  // Oval: outside below the center line negative, above positive, the ends
  // radial, at U = Uc - a exactly still the straight rule.
  EXPECT_NEAR(OvalGrooveOutline(ab)({0.0f, 1.5f}), 0.5, kDistTol);
  EXPECT_NEAR(OvalGrooveOutline(ab)({0.0f, -1.5f}), -0.5, kDistTol);
  EXPECT_NEAR(OvalGrooveOutline(ab)({0.5f, -0.25f}), 0.75, kDistTol);
  EXPECT_NEAR(OvalGrooveOutline(ab)({4.0f, 0.0f}), 1.0, kDistTol);
  EXPECT_NEAR(OvalGrooveOutline(ab)({-2.0f, -0.5f}), 0.5, kDistTol);
  // Rectangle: the nearer side line, never negative, beyond a corner too.
  EXPECT_NEAR(RectangleOutline(ab)({10.0f, 3.0f}), 2.0, kDistTol);
  EXPECT_NEAR(RectangleOutline(ab)({0.5f, 0.2f}), 0.8, kDistTol);
  // Round groove: long sides negative outside below, short sides outside
  // left, corners radial.
  EXPECT_NEAR(g(at(0, -2.5f)), -0.5, kDistTol);
  EXPECT_NEAR(g(at(-3.5f, 0)), -0.5, kDistTol);
  EXPECT_NEAR(g(at(-4, -3)), std::sqrt(2 * 1.5 * 1.5) - 0.5, kDistTol);
}

// A point's long-axis coordinates are rounded to float, the center's are
// not; either rounding moved elsewhere shifts e by about 1e-8 here.
TEST(OutlineDistances, RoundOnlyThePointIntoTheLongAxisFrame) {
  const double cx = 0.1, cy = 0.7, t = 0.3, C = std::cos(t), S = std::sin(t);
  const cv::Point2f above(0.31f, 2.13f);
  const float Wa = static_cast<float>(above.y * C - above.x * S);
  const double oval[5] = {cx, cy, 2, 1, t};
  EXPECT_DOUBLE_EQ(OvalGrooveOutline(oval)(above), Wa - (cy * C - cx * S + 1));
}

// A square ties (w == h) and takes the turned angle, summed in float, which
// differs from the double sum by 7e-8 radians here; a 2:1 box either way.
TEST(LongAxisStart, TurnsByNinetyDegreesInFloatUnlessTheWidthIsLonger) {
  const std::vector<std::vector<cv::Point2f>> boxes = {
      {{0, 0}, {3, 2}, {1, 5}, {-2, 3}},
      {{0, 0}, {6, 4}, {4, 7}, {-2, 3}},
      {{0, 0}, {3, 2}, {-1, 8}, {-4, 6}}};
  ASSERT_EQ(cv::minAreaRect(boxes[0]).size.width,
            cv::minAreaRect(boxes[0]).size.height);
  for (const std::vector<cv::Point2f>& points : boxes) {
    const cv::RotatedRect box = cv::minAreaRect(points);
    const bool wide = box.size.width > box.size.height;
    const LongAxisStart s = MinAreaStart(points);
    EXPECT_EQ(s.longHalf, (wide ? box.size.width : box.size.height) / 2);
    EXPECT_DOUBLE_EQ(s.t, (wide ? box.angle : float(box.angle + 90.0f)) *
                              std::acos(-1.0) / 180);
  }
}

// Unit circle; one point 1 outside, one 0.5 inside: each method's fold, the
// largest inscribed objective, and 0 on no points.
TEST(OneSidedObjectives, FoldEveryMethodByItsTable) {
  const std::vector<double> c = {0, 0, 1};
  const std::vector<cv::Point2f> pts = {{2, 0}, {0, 0.5f}};
  const double want[] = {1.25, 1.5, 1 + 1.5 * 10000, 1, 1.5 * 10000, 2 * 10000};
  auto fold = [](int m) { return SelectOneSided<CircleOutline>(m, nullptr); };
  for (int m = 0; m < 6; ++m)
    EXPECT_DOUBLE_EQ(Evaluate(fold(m), c, pts), want[m]) << m;
  EXPECT_EQ(fold(-1), nullptr);
  EXPECT_EQ(SelectOneSided<CircleOutline>(6, &MaximumInscribedObjective),
            &MaximumInscribedObjective);
  // Sums and maxima over no points are 0.
  EXPECT_EQ(Evaluate(fold(2), c, {}) + Evaluate(fold(5), c, {}), 0.0);
  // Smallest e -0.5 gives (1 + 0.5) x 10000, less r; all outside by 1 give
  // (1 + 1) x 10000; r <= 0 costs 1e10 each.
  EXPECT_DOUBLE_EQ(Evaluate(&MaximumInscribedObjective, c, pts), 14999);
  EXPECT_DOUBLE_EQ(
      Evaluate(&MaximumInscribedObjective, {0, 0, 0.5}, {{1.5f, 0}}), 19999.5);
  EXPECT_DOUBLE_EQ(Evaluate(&MaximumInscribedObjective, {0, 0, -1}, {}),
                   (1e50 + 1) * 10000 + 2e10);
}

}  // namespace
}  // namespace curvefit
}  // namespace zelmo
