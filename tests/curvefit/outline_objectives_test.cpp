#include <gsl/gsl_vector.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/support/samplers.h"
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

TEST(OneSidedObjectives, FoldEveryMethodByItsTable) {
  // Unit circle; one point 1 outside, one 0.5 inside.
  const std::vector<double> c = {0, 0, 1};
  const std::vector<cv::Point2f> pts = {{2, 0}, {0, 0.5f}};
  auto value = [&](int method) {
    return Evaluate(SelectOneSided<CircleOutline>(method, nullptr), c, pts);
  };
  EXPECT_DOUBLE_EQ(value(0), 1.25);
  EXPECT_DOUBLE_EQ(value(1), 1.5);
  EXPECT_DOUBLE_EQ(value(2), 1 + 1.5 * 10000);
  EXPECT_DOUBLE_EQ(value(3), 1);
  EXPECT_DOUBLE_EQ(value(4), 1.5 * 10000);
  EXPECT_DOUBLE_EQ(value(5), 2 * 10000);
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

TEST(CircleStart, AlgebraicCircleOrRefusalForCollinearPoints) {
  std::vector<cv::Point2f> pts;
  for (int i = 0; i < 7; ++i) {
    const double a = 0.4 + i * 0.3;  // an arc
    pts.emplace_back(-30 + 7 * std::cos(a), 12 + 7 * std::sin(a));
  }
  double p[3] = {0, 0, -1};
  ASSERT_TRUE(CircleStart(pts, p));
  EXPECT_NEAR(p[0], -30, 1e-4);
  EXPECT_NEAR(p[1], 12, 1e-4);
  EXPECT_NEAR(p[2], 7, 1e-4);

  const std::vector<cv::Point2f> line = {{0, 0}, {1, 0}, {2, 0}, {5, 0}};
  double q[3] = {1, 2, 3};
  EXPECT_FALSE(CircleStart(line, q));
  EXPECT_FALSE(FitCircle2D(line, 1, q));
  EXPECT_EQ(q[0], 1);
  EXPECT_EQ(q[2], 3);
}

TEST(MinAreaStart, LongAxisWhicheverSideOpenCvCallsWidth) {
  std::mt19937 rng(107);
  std::uniform_real_distribution<double> angle(-3.2, 3.2);
  for (int trial = 0; trial < 12; ++trial) {
    const double t = angle(rng);
    SCOPED_TRACE(testing::Message()
                 << "seed 107 trial " << trial << " t " << t);
    const double c = std::cos(t), s = std::sin(t);
    std::vector<cv::Point2f> pts;
    for (int i = 0; i <= 20; ++i) {
      const double u = -6 + 0.6 * i;
      for (double w : {-2.0, 2.0})
        pts.emplace_back(5 + u * c - w * s, -4 + u * s + w * c);
    }
    const LongAxisStart st = MinAreaStart(pts);
    EXPECT_NEAR(st.cx, 5, 1e-3);
    EXPECT_NEAR(st.cy, -4, 1e-3);
    EXPECT_NEAR(st.longHalf, 6, 1e-3);
    EXPECT_NEAR(st.shortHalf, 2, 1e-3);
    // The start's direction spans the long side (either sign).
    EXPECT_NEAR(std::fabs(std::cos(st.t) * c + std::sin(st.t) * s), 1, 1e-6);
  }
}

}  // namespace
}  // namespace curvefit
}  // namespace zelmo
