// Signed deviations of points from an ideal feature, their statistics, and
// the reduction of those to a tolerance band. Internal to the library: the
// tolerance classes offer these through their own members.
//
// Statistics are four doubles: largest deviation, smallest deviation, mean,
// population variance (divided by the count, not by one less).
#ifndef ZELMO_MEASURE_DEVIATION_STATISTICS_H_
#define ZELMO_MEASURE_DEVIATION_STATISTICS_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/feature/point_arrays.h"

namespace zelmo {
namespace measure {

// Fewer points than this give no statistics: outputs are left as they were.
constexpr int kMinStatisticsPoints = 3;
// A point within this of an axis's given point in every coordinate is taken
// as lying on that point: its deviation needs no cross product.
constexpr double kNearAxisPoint = 0.01;
// Start values of the running extremes; an empty band leaves them, and its
// width is then kEmptyBandLargest - kEmptyBandSmallest = -2e10.
constexpr double kEmptyBandLargest = -1e10;
constexpr double kEmptyBandSmallest = 1e10;

// Plane coefficients a, b, c, d of the plane through pointNormal[0..2]
// with normal pointNormal[3..5]: (a, b, c) is the normal as given.
void planeCoefficients(const double* pointNormal, double* abcd);

using zelmo::copyPoints2;
using zelmo::copyPoints3;

// Each routine writes the signed deviation of every point, in point order,
// into `deviations` (resized to the count) and the four statistics into
// `stats`. With fewer than kMinStatisticsPoints points both stay untouched.
//
// planeStatistics: n . p + D with n = normal[3..5] and D = -(n . o),
// o = origin[0..2]; n is used as given (a unit normal gives distances).
void planeStatistics(const std::vector<cv::Point3f>& points,
                     const double* origin,
                     const double* normal,
                     double* stats,
                     std::vector<double>& deviations);
// axisStatistics: |(p - o) x d| - radius for the axis o = axis[0..2],
// d = axis[3..5] (unit; the length is not divided out). With `signByAlong`
// the distance is negated when (p - o) . d < 0, so its sign tells whether p
// lies behind o along d ((p - o) . d of exactly 0 stays positive). A point
// within kNearAxisPoint of o in every coordinate gives -radius. Lines use
// radius 0 with the sign, cylinders their radius without it.
void axisStatistics(const std::vector<cv::Point3f>& points,
                    const double* axis,
                    double radius,
                    bool signByAlong,
                    double* stats,
                    std::vector<double>& deviations);
// sphereStatistics: |p - centre| - radius (entry 3).
void sphereStatistics(const std::vector<cv::Point3f>& points,
                      const double* sphere,
                      double* stats,
                      std::vector<double>& deviations);
// circle2DStatistics: |p - (cx, cy)| - radius in the plane.
void circle2DStatistics(const std::vector<cv::Point2f>& points,
                        double cx,
                        double cy,
                        double radius,
                        double* stats,
                        std::vector<double>& deviations);

// The inclusive band mean -/+ factor * sqrt(variance) of a statistics array.
// A NaN limit excludes nothing.
struct SigmaBand {
  SigmaBand(const double* stats, double factor);
  bool contains(double d) const { return !(low > d || d > high); }
  double low;
  double high;
};

// Largest and smallest deviation that count toward a tolerance.
struct DeviationExtremes {
  double largest;
  double smallest;
};

// reduceDeviations()
// Without the band: the statistics' own extremes. With it: the extremes of
// the deviations inside SigmaBand(stats, sigmaFactor), found in one pass
// from the start values kEmptyBandLargest / kEmptyBandSmallest (so an empty
// band keeps them). Returns false, `out` unwritten, when `deviations` holds
// fewer than kMinStatisticsPoints entries, i.e. no statistics were made.
bool reduceDeviations(const std::vector<double>& deviations,
                      const double* stats,
                      bool useSigmaBand,
                      double sigmaFactor,
                      DeviationExtremes* out);

// reduceStatistics()
// Runs `statistics(stats, deviations)` (one of the routines above, bound to
// its points and feature) on fresh outputs and reduces the result with
// reduceDeviations. Returns false when there were too few points.
template <typename Statistics>
bool reduceStatistics(Statistics statistics,
                      bool useSigmaBand,
                      double sigmaFactor,
                      DeviationExtremes* out) {
  std::vector<double> deviations;
  double stats[4] = {0, 0, 0, 0};
  statistics(stats, deviations);
  return reduceDeviations(deviations, stats, useSigmaBand, sigmaFactor, out);
}

// bandWidth()
// The tolerance of reduceStatistics: largest minus smallest counted
// deviation, or `tooFewPoints` when no statistics were made.
template <typename Statistics>
double bandWidth(Statistics statistics,
                 bool useSigmaBand,
                 double sigmaFactor,
                 double tooFewPoints) {
  DeviationExtremes e;
  if (!reduceStatistics(statistics, useSigmaBand, sigmaFactor, &e))
    return tooFewPoints;
  return e.largest - e.smallest;
}

}  // namespace measure
}  // namespace zelmo

#endif  // ZELMO_MEASURE_DEVIATION_STATISTICS_H_
