#include "zelmo/measure/deviation_statistics.h"

#include <cmath>

namespace zelmo {
namespace measure {
namespace {

// The one pass shared by every deviation routine: deviation of each point
// in double, their extremes, mean and population variance.
template <typename Point, typename Deviation>
void collectStatistics(const std::vector<Point>& points,
                       Deviation deviation,
                       double* stats,
                       std::vector<double>& deviations) {
  const size_t count = points.size();
  if (count < static_cast<size_t>(kMinStatisticsPoints)) return;
  deviations.resize(count);
  double largest = kEmptyBandLargest, smallest = kEmptyBandSmallest;
  double sum = 0.0;
  for (size_t k = 0; k < count; ++k) {
    const double d = deviation(points[k]);
    deviations[k] = d;
    sum += d;
    if (d > largest) largest = d;
    if (d < smallest) smallest = d;
  }
  const double mean = sum / static_cast<double>(count);
  double squares = 0.0;
  for (const double d : deviations) squares += (d - mean) * (d - mean);
  stats[0] = largest;
  stats[1] = smallest;
  stats[2] = mean;
  stats[3] = squares / static_cast<double>(count);
}

cv::Vec3d widen(const cv::Point3f& p) { return cv::Vec3d(p.x, p.y, p.z); }

}  // namespace

void planeCoefficients(const double* pointNormal, double* abcd) {
  for (int k = 0; k < 3; ++k) abcd[k] = pointNormal[3 + k];
  abcd[3] =
      -(pointNormal[3] * pointNormal[0] + pointNormal[4] * pointNormal[1] +
        pointNormal[5] * pointNormal[2]);
}

void planeStatistics(const std::vector<cv::Point3f>& points,
                     const double* origin,
                     const double* normal,
                     double* stats,
                     std::vector<double>& deviations) {
  const cv::Vec3d n(normal[3], normal[4], normal[5]);
  const double D = -n.dot(cv::Vec3d(origin[0], origin[1], origin[2]));
  collectStatistics(
      points, [&](const cv::Point3f& p) { return n.dot(widen(p)) + D; }, stats,
      deviations);
}

void axisStatistics(const std::vector<cv::Point3f>& points,
                    const double* axis,
                    double radius,
                    bool signByAlong,
                    double* stats,
                    std::vector<double>& deviations) {
  const cv::Vec3d o(axis[0], axis[1], axis[2]), d(axis[3], axis[4], axis[5]);
  collectStatistics(
      points,
      [&](const cv::Point3f& p) {
        const cv::Vec3d v = widen(p) - o;
        if (std::fabs(v[0]) < kNearAxisPoint &&
            std::fabs(v[1]) < kNearAxisPoint &&
            std::fabs(v[2]) < kNearAxisPoint)
          return 0.0 - radius;  // on o: no cross product; +0 for a line
        const double r = cv::norm(v.cross(d));
        return (signByAlong && v.dot(d) < 0.0 ? -r : r) - radius;
      },
      stats, deviations);
}

void sphereStatistics(const std::vector<cv::Point3f>& points,
                      const double* sphere,
                      double* stats,
                      std::vector<double>& deviations) {
  const cv::Vec3d c(sphere[0], sphere[1], sphere[2]);
  collectStatistics(
      points,
      [&](const cv::Point3f& p) { return cv::norm(widen(p) - c) - sphere[3]; },
      stats, deviations);
}

void circle2DStatistics(const std::vector<cv::Point2f>& points,
                        double cx,
                        double cy,
                        double radius,
                        double* stats,
                        std::vector<double>& deviations) {
  collectStatistics(
      points,
      [&](const cv::Point2f& p) {
        const double dx = p.x - cx, dy = p.y - cy;
        return std::sqrt(dx * dx + dy * dy) - radius;
      },
      stats, deviations);
}

SigmaBand::SigmaBand(const double* stats, double factor) {
  const double s = std::sqrt(stats[3]);
  low = stats[2] - s * factor;
  high = stats[2] + s * factor;
}

bool reduceDeviations(const std::vector<double>& deviations,
                      const double* stats,
                      bool useSigmaBand,
                      double sigmaFactor,
                      DeviationExtremes* out) {
  if (deviations.size() < static_cast<size_t>(kMinStatisticsPoints))
    return false;
  if (!useSigmaBand) {
    out->largest = stats[0];
    out->smallest = stats[1];
    return true;
  }
  const SigmaBand band(stats, sigmaFactor);
  double largest = kEmptyBandLargest, smallest = kEmptyBandSmallest;
  for (const double d : deviations) {
    if (!band.contains(d)) continue;
    if (d > largest) largest = d;
    if (d < smallest) smallest = d;
  }
  out->largest = largest;
  out->smallest = smallest;
  return true;
}

}  // namespace measure
}  // namespace zelmo
