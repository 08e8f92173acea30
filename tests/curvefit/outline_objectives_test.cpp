#include <gsl/gsl_vector.h>
#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

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
                std::vector<cv::Point2f> points) {
  gsl_vector_view v = gsl_vector_view_array(p.data(), p.size());
  return f(&v.vector, &points);
}

TEST(OutlineDistances, KeepTheSignRulesOfEachShape) {
  // Oval groove a = 2, r = 1 at the origin along x: outside below the
  // center line counts negative, outside above positive, ends radial.
  const double oval[5] = {0, 0, 2, 1, 0};
  const OvalGrooveOutline o(oval);
  EXPECT_NEAR(o({0.0f, 1.5f}), 0.5, kDistTol);
  EXPECT_NEAR(o({0.0f, -1.5f}), -0.5, kDistTol);
  EXPECT_NEAR(o({0.5f, -0.25f}), 0.75, kDistTol);
  EXPECT_NEAR(o({4.0f, 0.0f}), 1.0, kDistTol);
  // At U = Uc - a exactly the straight rule holds, not the end circle.
  EXPECT_NEAR(o({-2.0f, -0.5f}), 0.5, kDistTol);

  // Rectangle a = 2, b = 1: the nearer side line, never negative.
  const double rect[5] = {0, 0, 2, 1, 0};
  const RectangleOutline r(rect);
  EXPECT_NEAR(r({10.0f, 3.0f}), 2.0, kDistTol);  // beyond the corner
  EXPECT_NEAR(r({0.5f, 0.2f}), 0.8, kDistTol);   // inside
  EXPECT_NEAR(r({-2.5f, 0.0f}), 0.5, kDistTol);

  // Round groove a = 3, b = 2, r = 0.5, turned by 90 degrees and moved:
  // long sides negative outside below, short sides negative outside left.
  const double round[6] = {10, 20, 3, 2, 0.5, std::acos(-1.0) / 2};
  const RoundGrooveOutline g(round);
  // Local (U, W) = (y, -x) about the center.
  auto at = [](float u, float w) { return cv::Point2f(10 - w, 20 + u); };
  EXPECT_NEAR(g(at(0, 2.5f)), 0.5, kDistTol);
  EXPECT_NEAR(g(at(0, -2.5f)), -0.5, kDistTol);
  EXPECT_NEAR(g(at(3.5f, 0)), 0.5, kDistTol);
  EXPECT_NEAR(g(at(-3.5f, 0)), -0.5, kDistTol);
  EXPECT_NEAR(g(at(4, 3)), std::sqrt(2 * 1.5 * 1.5) - 0.5, kDistTol);
  EXPECT_NEAR(g(at(-4, -3)), std::sqrt(2 * 1.5 * 1.5) - 0.5, kDistTol);
}

TEST(OutlineDistances, RoundOnlyThePointIntoTheLongAxisFrame) {
  // A point's long-axis coordinates are rounded to float, the center's are
  // not; either rounding moved elsewhere shifts e by about 1e-8 here, far
  // more than the few ulps EXPECT_DOUBLE_EQ allows.
  const double cx = 0.1, cy = 0.7, t = 0.3;
  const double C = std::cos(t), S = std::sin(t);
  const double Wc = cy * C - cx * S, Uc = cx * C + cy * S;
  const cv::Point2f above(0.31f, 2.13f), right(4.9f, 2.2f);
  const float Wa = static_cast<float>(above.y * C - above.x * S);
  const float Ur = static_cast<float>(right.x * C + right.y * S);

  const double oval[5] = {cx, cy, 2, 1, t};
  EXPECT_DOUBLE_EQ(OvalGrooveOutline(oval)(above), Wa - (Wc + 1));
  const double rect[5] = {cx, cy, 2, 1, t};
  EXPECT_DOUBLE_EQ(RectangleOutline(rect)(above), std::fabs(Wa - (Wc + 1)));
  const double round[6] = {cx, cy, 3, 2, 0.5, t};
  EXPECT_DOUBLE_EQ(RoundGrooveOutline(round)(right), Ur - (Uc + 3));
}

TEST(LongAxisStart, TurnsByNinetyDegreesInFloatUnlessTheWidthIsLonger) {
  // One square and two 2:1 rectangles at the same slant: the square ties
  // (w == h) and takes the turned angle, summed in float, which differs
  // from the double sum by 7e-8 radians here.
  const double kPi = std::acos(-1.0);
  const std::vector<std::vector<cv::Point2f>> boxes = {
      {{0, 0}, {3, 2}, {1, 5}, {-2, 3}},
      {{0, 0}, {6, 4}, {4, 7}, {-2, 3}},
      {{0, 0}, {3, 2}, {-1, 8}, {-4, 6}}};
  for (const std::vector<cv::Point2f>& points : boxes) {
    const cv::RotatedRect box = cv::minAreaRect(points);
    const float halfW = box.size.width / 2, halfH = box.size.height / 2;
    const LongAxisStart s = MinAreaStart(points);
    SCOPED_TRACE(testing::Message()
                 << "w " << box.size.width << " h " << box.size.height);
    const bool wide = halfW > halfH;
    EXPECT_EQ(s.longHalf, wide ? halfW : halfH);
    EXPECT_DOUBLE_EQ(
        s.t,
        (wide ? box.angle : static_cast<float>(box.angle + 90.0f)) * kPi / 180);
  }
  EXPECT_EQ(cv::minAreaRect(boxes[0]).size.width,
            cv::minAreaRect(boxes[0]).size.height);
}

TEST(OneSidedObjectives, FoldEveryMethodByItsTable) {
  // Unit circle; one point 1 outside, one 0.5 inside.
  const std::vector<double> c = {0, 0, 1};
  const std::vector<cv::Point2f> pts = {{2, 0}, {0, 0.5f}};
  auto value = [&](int method) {
    return Evaluate(SelectOneSided<CircleOutline>(method, nullptr), c, pts);
  };
  const double want[] = {1.25, 1.5, 1 + 1.5 * 10000, 1, 1.5 * 10000, 2 * 10000};
  for (int m = 0; m < 6; ++m) EXPECT_DOUBLE_EQ(value(m), want[m]) << m;
  EXPECT_EQ(SelectOneSided<CircleOutline>(6, &MaximumInscribedObjective),
            &MaximumInscribedObjective);
  EXPECT_EQ(SelectOneSided<CircleOutline>(-1, nullptr), nullptr);
  EXPECT_DOUBLE_EQ(value(1),
                   Evaluate(SelectOneSided<RectangleOutline>(1, nullptr),
                            {0, 0, 1, 1, 0}, {{2, 0}, {0, 0.5f}}));
  // Empty point sets: sums and maxima are 0.
  EXPECT_EQ(Evaluate(SelectOneSided<CircleOutline>(2, nullptr), c, {}), 0.0);
  EXPECT_EQ(Evaluate(SelectOneSided<CircleOutline>(5, nullptr), c, {}), 0.0);

  // Largest inscribed: smallest e -0.5 gives (1 + 0.5) x 10000, less r;
  // all points outside by 1 give (1 + 1) x 10000; r <= 0 costs 1e10 each.
  EXPECT_DOUBLE_EQ(Evaluate(&MaximumInscribedObjective, c, pts), 14999);
  EXPECT_DOUBLE_EQ(
      Evaluate(&MaximumInscribedObjective, {0, 0, 0.5}, {{1.5f, 0}}), 19999.5);
  EXPECT_DOUBLE_EQ(Evaluate(&MaximumInscribedObjective, {0, 0, -1}, {}),
                   (1e50 + 1) * 10000 + 2e10);
}

}  // namespace
}  // namespace curvefit
}  // namespace zelmo
