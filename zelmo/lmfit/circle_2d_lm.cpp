#include "zelmo/lmfit/circle_2d_lm.h"

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>
#include <utility>
#include <vector>

#include "zelmo/curvefit/circle_fit2d.h"

namespace zelmolm {
namespace {

constexpr int kCircleParams = 3;  // cx, cy, r
constexpr int kSeedMinPoints = 3;
constexpr int kInscribedMinPoints = 10;

// Limits of the radius the inscribed residual works with: a runaway radius
// is pulled back hard, a vanishing one held at the floor.
constexpr double kRunawayRadius = 1000.0;
constexpr double kRunawayReplacement = 100.0;
constexpr double kRadiusFloor = 0.1;

// The solver is run again while it stops after fewer iterations than
// this, at most kExtraSolves more times: early stops are the penalty's
// kinks, not convergence.
constexpr int kMinSolverIterations = 5;
constexpr int kExtraSolves = 3;
// A solver radius beyond this multiple of the start's has escaped the
// bore; the start is taken instead.
constexpr double kRunawayFactor = 2.0;

// Exchange: the nearest point touches the circle within kTouchTol; the
// search stops after kMaxExchanges passes, or when the circle moved less
// than kStillTol in each value with the same pair of points; it fails when
// more than kMaxSkipShare of the point count were skipped.
constexpr float kTouchTol = 0.001f;
constexpr int kMaxExchanges = 1000;
constexpr float kStillTol = 0.0001f;
constexpr float kMaxSkipShare = 0.4f;
// A circle through three points is taken only between this share of the
// current radius and the current radius.
constexpr double kMinShrink = 0.75;
// Added to the nearest point's distance to keep it out of the next pass's
// choice after a skipped circle.
constexpr float kPushOut = 12345678.0f;

double distance(const float* q, double x, double y) {
  const double dx = q[0] - x, dy = q[1] - y;
  return std::sqrt(dx * dx + dy * dy);
}

// Whether the triangle with squared sides ab, ac, bc has an obtuse angle.
bool obtuse(double ab, double ac, double bc) {
  return ab > ac + bc || ac > ab + bc || bc > ab + ac;
}

double squaredDistance(const float* p, const float* q) {
  const double dx = static_cast<double>(p[0]) - q[0];
  const double dy = static_cast<double>(p[1]) - q[1];
  return dx * dx + dy * dy;
}

// The circle through a, b and c: the center from the chord bisectors
// (rows a - b and b - c), the radius from a. Collinear points give the
// zero inverse of a singular system.
void circleThrough(const float* a,
                   const float* b,
                   const float* c,
                   double* out) {
  const double ax = a[0], ay = a[1], bx = b[0], by = b[1];
  const double cx = c[0], cy = c[1];
  const cv::Mat M = (cv::Mat_<double>(2, 2) << ax - bx, ay - by,  //
                     bx - cx, by - cy);
  const cv::Mat rhs =
      (cv::Mat_<double>(2, 1) << (ax * ax + ay * ay - (bx * bx + by * by)) / 2,
       (bx * bx + by * by - (cx * cx + cy * cy)) / 2);
  const cv::Mat center = M.inv() * rhs;
  out[0] = center.at<double>(0);
  out[1] = center.at<double>(1);
  out[2] = distance(a, out[0], out[1]);
}

}  // namespace

bool algebraicCircleSeed(const float* xy, int count, double* p) {
  if (count < kSeedMinPoints) return false;
  // Deliberately a pair per step up to float index count: the first half.
  std::vector<cv::Point2f> summed;
  for (int i = 0; i < count; i += 2) summed.emplace_back(xy[i], xy[i + 1]);
  return zelmo::curvefit::CircleStart(summed, count, p);
}

void Circle2DLM::leastSquaresResidual(
    double* p, double* hx, int, int n, void* adata) {
  const float* xy = static_cast<const float*>(adata);
  for (int i = 0; i < n; ++i) hx[i] = distance(xy + 2 * i, p[0], p[1]) - p[2];
}

void Circle2DLM::inscribedResidual(
    double* p, double* hx, int, int n, void* adata) {
  const float* xy = static_cast<const float*>(adata);
  double r = p[2];
  if (r > kRunawayRadius)
    r = kRunawayReplacement;
  else if (r < kRadiusFloor)
    r = kRadiusFloor;
  const double w = 1.0 / r;
  const double g = w <= 1 ? 0.8 : w <= 10 ? 100.0 : w <= 100 ? 1000.0 : 1.0;
  for (int i = 0; i < n; ++i) {
    const double e = distance(xy + 2 * i, p[0], p[1]);
    hx[i] = e >= r ? w : (r - e) * g + w;
  }
}

int Circle2DLM::fitLeastSquares(const float* xy, int count) {
  double p[kCircleParams];
  if (!algebraicCircleSeed(xy, count, p)) return -1;
  residualFunction_ = leastSquaresResidual;
  if (Fit_LM(xy, count, p, nullptr, kCircleParams) < 0) return -1;
  cx = static_cast<float>(p[0]);
  cy = static_cast<float>(p[1]);
  r = static_cast<float>(p[2]);
  return 0;
}

int Circle2DLM::fitInscribed(const float* xy, int count) {
  if (count < kInscribedMinPoints) return -1;
  double seed[kCircleParams];
  if (!algebraicCircleSeed(xy, count, seed)) return -1;
  residualFunction_ = inscribedResidual;
  double p[kCircleParams] = {seed[0], seed[1], seed[2]};
  int iterations = Fit_LM(xy, count, p, nullptr, kCircleParams);
  for (int extra = 0; extra < kExtraSolves && iterations < kMinSolverIterations;
       ++extra)
    iterations = Fit_LM(xy, count, p, nullptr, kCircleParams);
  const double* start = p[2] > kRunawayFactor * seed[2] ? seed : p;
  cx = static_cast<float>(start[0]);
  cy = static_cast<float>(start[1]);
  r = static_cast<float>(start[2]);
  return exchange(xy, count);
}

int Circle2DLM::exchange(const float* xy, int count) {
  std::vector<std::pair<float, int>> order(count);
  bool pushFirst = false, pushSecond = false;
  int skips = 0;
  int passes = 0;
  float previous[3] = {cx, cy, r};
  int previousA = -1, previousB = -1;
  for (;;) {
    for (int i = 0; i < count; ++i) {
      const float dx = xy[2 * i] - cx, dy = xy[2 * i + 1] - cy;
      order[i] = {std::sqrt(dx * dx + dy * dy), i};  // in float
    }
    std::sort(order.begin(), order.end());
    for (bool* flag : {&pushFirst, &pushSecond}) {
      if (!*flag) continue;
      order[0].first += kPushOut;
      *flag = false;
      std::sort(order.begin(), order.end());
    }
    if (std::fabs(order[0].first - r) < kTouchTol) return 0;
    if (passes > kMaxExchanges) return 0;
    ++passes;
    if (static_cast<float>(skips) / static_cast<float>(count) > kMaxSkipShare)
      return -2;

    // A and B: the farthest apart of the three nearest, ties in the order
    // (0, 1), (0, 2), (1, 2); C the third.
    const int n0 = order[0].second, n1 = order[1].second, n2 = order[2].second;
    const double d01 = squaredDistance(xy + 2 * n0, xy + 2 * n1);
    const double d02 = squaredDistance(xy + 2 * n0, xy + 2 * n2);
    const double d12 = squaredDistance(xy + 2 * n1, xy + 2 * n2);
    int a = n1, b = n2, c = n0;
    if (d01 >= d02 && d01 >= d12) {
      a = n0, b = n1, c = n2;
    } else if (d02 >= d12) {
      a = n0, b = n2, c = n1;
    }
    const bool samePair = (a == previousA && b == previousB) ||
                          (a == previousB && b == previousA);
    if (samePair && std::fabs(cx - previous[0]) < kStillTol &&
        std::fabs(cy - previous[1]) < kStillTol &&
        std::fabs(r - previous[2]) < kStillTol)
      return 0;

    // From C on through the farther points, the first candidate that makes
    // a triangle without an obtuse angle; else the last one.
    const float* pa = xy + 2 * a;
    const float* pb = xy + 2 * b;
    const double ab = squaredDistance(pa, pb);
    for (int j = 3;; ++j) {
      const float* pc = xy + 2 * c;
      if (!obtuse(ab, squaredDistance(pa, pc), squaredDistance(pb, pc)) ||
          j >= count)
        break;
      c = order[j].second;
    }
    previousA = a;
    previousB = b;
    previous[0] = cx;
    previous[1] = cy;
    previous[2] = r;

    double next[3];
    circleThrough(pa, pb, xy + 2 * c, next);
    if (kMinShrink * r > next[2]) {
      pushFirst = true;
      ++skips;
    } else if (next[2] > r) {
      pushSecond = true;
      ++skips;
    } else {
      cx = static_cast<float>(next[0]);
      cy = static_cast<float>(next[1]);
      r = static_cast<float>(next[2]);
    }
  }
}

}  // namespace zelmolm
