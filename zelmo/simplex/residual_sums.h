// How the simplex objectives of x3dfit fold per-point terms into one value,
// and the walk over points shared by the objectives of axial shapes (line,
// cylinder, cone). Internal to the library.
#ifndef ZELMO_SIMPLEX_RESIDUAL_SUMS_H_
#define ZELMO_SIMPLEX_RESIDUAL_SUMS_H_

#include <gsl/gsl_vector.h>

#include <cmath>
#include <opencv2/core.hpp>
#include <vector>

namespace zelmo {
namespace simplexfit {

// A point closer than this to the axis point in every coordinate has no
// usable distance to the axis; its shape says what it counts with.
constexpr double kNearAxisPoint = 0.01;

enum class Aggregate {
  kSumSquares,  // sum of squared terms
  kSum,         // sum of terms
  kMax,         // largest term, starting from 0
};

// Folds terms in the order given. Terms are added as they come: an
// objective that wants absolute values passes them.
template <Aggregate kind>
class Accumulator {
 public:
  void add(double term) {
    if (kind == Aggregate::kSumSquares) {
      value_ += term * term;
    } else if (kind == Aggregate::kSum) {
      value_ += term;
    } else if (term > value_) {
      value_ = term;
    }
  }
  double value() const { return value_; }

 private:
  double value_ = 0.0;
};

// The points that the objectives receive as GSL params.
inline const std::vector<cv::Point3f>& PointsOf(void* params) {
  return *static_cast<const std::vector<cv::Point3f>*>(params);
}

// Folds the axial terms of `points` for v = (Px, Py, Pz, dx, dy, dz, ...):
// with u = d / |d| and q = x - P in double, a point with every |q_k| below
// kNearAxisPoint counts with surface.nearTerm(); any other point counts
// with | |q x u| - surface.radiusAt(u . q) |. `Surface` may keep state
// between points (the cone does).
template <Aggregate kind, class Surface>
double FoldAxialTerms(const gsl_vector* v,
                      const std::vector<cv::Point3f>& points,
                      Surface& surface) {
  const double px = gsl_vector_get(v, 0), py = gsl_vector_get(v, 1),
               pz = gsl_vector_get(v, 2);
  const double dx = gsl_vector_get(v, 3), dy = gsl_vector_get(v, 4),
               dz = gsl_vector_get(v, 5);
  const double len = std::sqrt(dx * dx + dy * dy + dz * dz);
  const double ux = dx / len, uy = dy / len, uz = dz / len;
  Accumulator<kind> sum;
  for (const cv::Point3f& x : points) {
    const double qx = x.x - px, qy = x.y - py, qz = x.z - pz;
    if (std::fabs(qx) < kNearAxisPoint && std::fabs(qy) < kNearAxisPoint &&
        std::fabs(qz) < kNearAxisPoint) {
      sum.add(surface.nearTerm());
      continue;
    }
    const double cx = qy * uz - qz * uy, cy = qz * ux - qx * uz,
                 cz = qx * uy - qy * ux;
    const double dist = std::sqrt(cx * cx + cy * cy + cz * cz);
    sum.add(std::fabs(dist - surface.radiusAt(qx * ux + qy * uy + qz * uz)));
  }
  return sum.value();
}

}  // namespace simplexfit
}  // namespace zelmo

#endif  // ZELMO_SIMPLEX_RESIDUAL_SUMS_H_
