// Signed distances of local 2D points to the outlines fitted in a plane,
// read from the 2D fit parameters. Positive is outside, with the quirks of
// each shape kept as they are (see each class): the one-sided objectives
// take these values as they stand.
//
// Internal to the library: not exported.
#ifndef ZELMO_CURVEFIT_OUTLINE_DISTANCES_H_
#define ZELMO_CURVEFIT_OUTLINE_DISTANCES_H_

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>

namespace zelmo {
namespace curvefit {

// The distance of the offset (dx, dy) from an arc's center, less its
// radius r: sqrt(dx^2 + dy^2) - r in double.
inline double ArcDistance(double dx, double dy, double r) {
  return std::sqrt(dx * dx + dy * dy) - r;
}

// p = (cx, cy, r): |q - c| - r, in double.
class CircleOutline {
 public:
  explicit CircleOutline(const double* p) : cx_(p[0]), cy_(p[1]), r_(p[2]) {}
  double operator()(const cv::Point2f& q) const {
    return ArcDistance(q.x - cx_, q.y - cy_, r_);
  }

 private:
  double cx_, cy_, r_;
};

// The long-axis frame of an outline at angle t: a point (x, y) turns into
// U = x C + y S, W = y C - x S (C = cos t, S = sin t), each stored as a
// float; the center turns into Uc, Wc the same way but stays in double.
// Only the point's coordinates are rounded: results depend on it.
struct LongAxisFrame {
  LongAxisFrame(double cx, double cy, double t)
      : C(std::cos(t)),
        S(std::sin(t)),
        Uc(cx * C + cy * S),
        Wc(cy * C - cx * S) {}
  float U(const cv::Point2f& q) const {
    return static_cast<float>(q.x * C + q.y * S);
  }
  float W(const cv::Point2f& q) const {
    return static_cast<float>(q.y * C - q.x * S);
  }

  const double C, S;
  const double Uc, Wc;
};

// p = (cx, cy, a, r, t): a stadium of half straight length a and end
// radius r. Beyond the ends, the distance to the end circle; between them,
// W - (Wc + r) above the center line and W - (Wc - r) below it, so that a
// point outside below the center line counts negative.
class OvalGrooveOutline {
 public:
  explicit OvalGrooveOutline(const double* p)
      : f_(p[0], p[1], p[4]), a_(p[2]), r_(p[3]) {}
  double operator()(const cv::Point2f& q) const {
    const float U = f_.U(q), W = f_.W(q);
    const double dW = W - f_.Wc;
    if (U < f_.Uc - a_) return ArcDistance(U - (f_.Uc - a_), dW, r_);
    if (U > f_.Uc + a_) return ArcDistance(U - (f_.Uc + a_), dW, r_);
    return W > f_.Wc ? W - (f_.Wc + r_) : W - (f_.Wc - r_);
  }

 private:
  LongAxisFrame f_;
  double a_, r_;
};

// p = (cx, cy, a, b, t): a rectangle of half length a and half width b.
// The distance to the nearer of the two side lines facing the point, never
// negative: a point beyond a corner counts by its distance to the nearer
// side line, not to the corner.
class RectangleOutline {
 public:
  explicit RectangleOutline(const double* p)
      : f_(p[0], p[1], p[4]), a_(p[2]), b_(p[3]) {}
  double operator()(const cv::Point2f& q) const {
    const float U = f_.U(q), W = f_.W(q);
    const double dU = f_.Uc > U ? U - (f_.Uc - a_) : U - (f_.Uc + a_);
    const double dW = W > f_.Wc ? W - (f_.Wc + b_) : W - (f_.Wc - b_);
    return std::min(std::fabs(dU), std::fabs(dW));
  }

 private:
  LongAxisFrame f_;
  double a_, b_;
};

// p = (cx, cy, a, b, r, t): a rectangle of half length a and half width b
// with corner arcs of radius r. The straight parts end at Ua = Uc - a + r,
// Ub = Uc + a - r and Wa = Wc - b + r, Wb = Wc + b - r. Along the long
// sides the distance counts negative outside below the center line, along
// the left short side negative outside, as the oval groove does.
class RoundGrooveOutline {
 public:
  explicit RoundGrooveOutline(const double* p)
      : f_(p[0], p[1], p[5]),
        a_(p[2]),
        b_(p[3]),
        r_(p[4]),
        Ua_(f_.Uc - a_ + r_),
        Ub_(f_.Uc + a_ - r_),
        Wa_(f_.Wc - b_ + r_),
        Wb_(f_.Wc + b_ - r_) {}
  double operator()(const cv::Point2f& q) const {
    const float U = f_.U(q), W = f_.W(q);
    if (U >= Ua_ && U <= Ub_)
      return f_.Wc > W ? W - (f_.Wc - b_) : W - (f_.Wc + b_);
    const bool right = U > Ub_;
    const double Ue = right ? Ub_ : Ua_;
    if (W > Wb_) return ArcDistance(U - Ue, W - Wb_, r_);
    if (W < Wa_) return ArcDistance(U - Ue, W - Wa_, r_);
    return right ? U - (f_.Uc + a_) : U - (f_.Uc - a_);
  }

 private:
  LongAxisFrame f_;
  double a_, b_, r_;
  double Ua_, Ub_, Wa_, Wb_;
};

}  // namespace curvefit
}  // namespace zelmo

#endif  // ZELMO_CURVEFIT_OUTLINE_DISTANCES_H_
