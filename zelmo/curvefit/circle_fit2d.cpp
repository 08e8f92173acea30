#include "zelmo/curvefit/circle_fit2d.h"

#include <cmath>

#include "zelmo/curvefit/one_sided_objectives.h"
#include "zelmo/curvefit/outline_distances.h"
#include "zelmo/curvefit/outline_frame.h"
#include "zelmo/curvefit/outline_simplex.h"

namespace zelmo {
namespace curvefit {
namespace {

constexpr size_t kCircleDimension = 3;
// The circle's start step is its radius over this, in every component.
constexpr double kCircleStepDivisor = 50.0;
// MaximumInscribedObjective: the smallest distance starts here, and a
// radius not above 0 costs (1 - r) times the weight.
constexpr double kNoPointYet = 1e50;
constexpr double kNonPositiveRadiusPenalty = 1e10;

bool AnyRadius(const float*) { return true; }

}  // namespace

const OutlineShape kCircleOutline = {kCircleMinPoints, 1, false, &FitCircle2D,
                                     &AnyRadius};

bool CircleStart(const std::vector<cv::Point2f>& points, double* const p) {
  return CircleStart(points, static_cast<double>(points.size()), p);
}

bool CircleStart(const std::vector<cv::Point2f>& points,
                 double n,
                 double* const p) {
  double Sx = 0, Sy = 0, Sxx = 0, Syy = 0, Sxy = 0;
  double Sxxx = 0, Syyy = 0, Sxyy = 0, Sxxy = 0;
  for (const cv::Point2f& q : points) {
    const double x = q.x, y = q.y;
    Sx += x;
    Sy += y;
    Sxx += x * x;
    Syy += y * y;
    Sxy += x * y;
    Sxxx += x * x * x;
    Syyy += y * y * y;
    Sxyy += x * y * y;
    Sxxy += x * x * y;
  }
  const double a1 = n * Sxx - Sx * Sx;
  const double b1 = n * Sxy - Sx * Sy;
  const double a2 = n * Syy - Sy * Sy;
  const double c1 = n * Sxxx + n * Sxyy - (Sxx + Syy) * Sx;
  const double c2 = n * Sxxy + n * Syyy - (Sxx + Syy) * Sy;
  const double A = (c2 * a1 - c1 * b1) / (b1 * b1 - a2 * a1);
  const double B = (c2 * b1 - a2 * c1) / (a2 * a1 - b1 * b1);
  const double C = -(A * Sy + B * Sx + Sxx + Syy) / n;
  const double q = A * A + B * B - 4.0 * C;
  // Only a negative q is refused. A degenerate division (points exactly on
  // one line) gives a q that is not a number, and its circle passes through
  // as the start, as every other unreported failure of the fit does.
  if (q < 0.0) return false;
  p[0] = -B / 2.0;
  p[1] = -A / 2.0;
  p[2] = std::sqrt(q) / 2.0;
  return true;
}

double MaximumInscribedObjective(const gsl_vector* v, void* params) {
  const OutlineParams p(v);
  const CircleOutline circle(p.p);
  double m = kNoPointYet;
  for (const cv::Point2f& q : LocalPointsOf(params)) {
    const double e = circle(q);
    if (e < m) m = e;
  }
  const double g = m >= 0.0 ? m + 1.0 : 1.0 - m;
  const double r = p.p[2];
  const double s = r > 0.0 ? -r : (1.0 - r) * kNonPositiveRadiusPenalty;
  return g * kOneSidedPenalty + s;
}

bool FitCircle2D(const std::vector<cv::Point2f>& points,
                 int method,
                 double* const p) {
  if (points.size() < kCircleMinPoints) return false;
  if (!CircleStart(points, p)) return false;
  if (method == xcurve3dfit::LeastSquare) return true;
  OutlineSimplex fit(kCircleDimension, SelectOneSided<CircleOutline>(
                                           method, &MaximumInscribedObjective));
  const double step = p[2] / kCircleStepDivisor;
  const double steps[kCircleDimension] = {step, step, step};
  fit.descend(points, p, steps);
  return true;
}

}  // namespace curvefit
}  // namespace zelmo
