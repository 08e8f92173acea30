// Centroids, scatter matrices and extents along an axis, shared by the
// start values and post-steps of the x3dfit classes. Internal to the library.
#ifndef ZELMO_SIMPLEX_AXIS_GEOMETRY_H_
#define ZELMO_SIMPLEX_AXIS_GEOMETRY_H_

#include <functional>
#include <opencv2/core.hpp>
#include <vector>

namespace zelmo {
namespace simplexfit {

// A point closer than this to the axis origin in every coordinate sits at
// t = 0 of MeasureAlongAxis.
constexpr double kAtAxisOrigin = 1e-6;
// The radial distance MeasureAlongAxis gives a point at the axis origin.
constexpr double kRadialAtAxisOrigin = 0.1;

// How AlgebraicSphere rounds its sums; the two fit families that use it
// differ, and their results depend on it.
enum class SphereSums {
  // Centroid by MeanInDouble; mixed moments x y y, x x y, x z z, x x z,
  // y y z, y z z; right side rows Sxxx + Sxyy + Sxzz, Sxxy + Syyy + Syzz,
  // Sxxz + Syyz + Szzz.
  kAxisOrder,
  // Centroid by a true division of the sums; mixed moments square first
  // (y y x, x x y, z z x, x x z, y y z, z z y); each right side row summed
  // from its cube: Sxxx + Syyx + Szzx, Syyy + Sxxy + Szzy,
  // Szzz + Sxxz + Syyz.
  kCubeFirst,
};

// AlgebraicSphere()
// The sphere x^2 + y^2 + z^2 + D x + E y + F z + G = 0 of least algebraic
// error, solved (cv::Mat::inv, LU) in coordinates about the centroid in
// double, as center and radius into p[0..3]. False with p untouched below
// 4 points; coplanar points make the system singular, and the zero inverse
// gives the centroid with a meaningless radius.
bool AlgebraicSphere(const std::vector<cv::Point3f>& points,
                     double* const p,
                     SphereSums sums = SphereSums::kAxisOrder);

// MeanInFloat(): the centroid with the sums and the division in float.
// MeanInDouble(): the centroid in double, the sums divided by the count
// (not scaled by its reciprocal). Both are NaN for no points.
cv::Point3f MeanInFloat(const std::vector<cv::Point3f>& points);
cv::Vec3d MeanInDouble(const std::vector<cv::Point3f>& points);

// How Scatter forms x - c: in float (c must then be a float value, as from
// MeanInFloat) and widened after, or in double.
enum class Subtraction { kInFloat, kInDouble };

// Scatter()
// The 3 x 3 double matrix A^T A, A holding one row x - c per point.
// Zero for no points.
cv::Mat Scatter(const std::vector<cv::Point3f>& points,
                const cv::Vec3d& c,
                Subtraction subtraction);

// The extent of points along an axis, and their largest distance from it.
struct AxialSpan {
  double tmin = 1e10;
  double tmax = -1e10;
  double rmax = 0.0;
};

// MeasureAlongAxis()
// For each point x, e = origin - x, formed as `subtraction` says; when
// every |e_k| is below kAtAxisOrigin the point sits at t = 0 with radial
// distance kRadialAtAxisOrigin, otherwise t = -(e . axis) and the radial
// distance is |e x axis|, both in double. No points give the initial span.
AxialSpan MeasureAlongAxis(const std::vector<cv::Point3f>& points,
                           const cv::Point3f& origin,
                           const double* axis,
                           Subtraction subtraction = Subtraction::kInFloat);

// FitEachPrincipalAxis()
// Runs `fitAxis(axis, eigenvalue, centroid, p)` for the three principal
// axes of `points` in order of decreasing spread; each run leaves its result
// in p[0..8) and returns its score. p then receives the eight doubles of the
// run with the smallest score, the earliest on a tie.
void FitEachPrincipalAxis(
    const std::vector<cv::Point3f>& points,
    double* const p,
    const std::function<double(const double* axis,
                               double eigenvalue,
                               const cv::Point3f& centroid,
                               double* const p)>& fitAxis);

}  // namespace simplexfit
}  // namespace zelmo

#endif  // ZELMO_SIMPLEX_AXIS_GEOMETRY_H_
