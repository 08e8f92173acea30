#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "zelmo/measure/deviation_statistics.h"
#include "zelmo/measure/geo_tolerance.h"

namespace xgeomeasure {

namespace measure = zelmo::measure;
using measure::copyPoints3;

namespace {

// The short side of the minAreaRect of fewer than two points.
constexpr double kDegenerateWidth = 0.0;

// A reference feature that borrows its position from `measured` (entries
// 0-2) and its direction from `datum` (entries 3-5).
void borrowDirection(const double* const measured,
                     const double* const datum,
                     double* const reference) {
  for (int k = 0; k < 3; ++k) {
    reference[k] = measured[k];
    reference[3 + k] = datum[3 + k];
  }
}

}  // namespace

double XGeoTolrance::calcParallelism_Line_Line(const Points& points,
                                               double* const line,
                                               double* const datumLine,
                                               const bool& useSigmaBand,
                                               const double& sigmaFactor) {
  double reference[6];
  borrowDirection(line, datumLine, reference);
  return calcStraightness(points, reference, useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcParallelism_Line_Plane(const Points& points,
                                                double* const line,
                                                double* const datumPlane,
                                                const bool& useSigmaBand,
                                                const double& sigmaFactor) {
  return measure::bandWidth(
      [&](double* stats, std::vector<double>& deviations) {
        calcStatistics_LinePoint2Plane(points, line, datumPlane, stats,
                                       deviations);
      },
      useSigmaBand, sigmaFactor, kTooFewPoints);
}

double XGeoTolrance::calcParallelism_Plane_Plane(const Points& points,
                                                 double* const plane,
                                                 double* const datumPlane,
                                                 const bool& useSigmaBand,
                                                 const double& sigmaFactor) {
  double reference[6];
  borrowDirection(plane, datumPlane, reference);
  return calcFlatness(points, reference, useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcPerpendicularity_Line_Line(const Points& points,
                                                    double* const line,
                                                    double* const datumLine,
                                                    const bool& useSigmaBand,
                                                    const double& sigmaFactor) {
  const cv::Vec3d d1(line[3], line[4], line[5]);
  const cv::Vec3d d2(datumLine[3], datumLine[4], datumLine[5]);
  const cv::Vec3d c = d1.cross(d2);
  // Exact comparison: only exactly parallel directions fail.
  if (c[0] == 0.0 && c[1] == 0.0 && c[2] == 0.0) return kParallelLines;
  cv::Vec3d r = d2.cross(c);
  const double length = cv::norm(r);
  if (length != 0.0) r *= 1.0 / length;
  double reference[6] = {line[0], line[1], line[2], r[0], r[1], r[2]};
  return calcParallelism_Line_Line(points, line, reference, useSigmaBand,
                                   sigmaFactor);
}

double XGeoTolrance::calcPerpendicularity_Line_Plane(
    const Points& points,
    double* const line,
    double* const datumPlane,
    const bool& useSigmaBand,
    const double& sigmaFactor) {
  double reference[6];
  borrowDirection(line, datumPlane, reference);
  return calcStraightness(points, reference, useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcPerpendicularity_Plane_Plane(
    const Points& points,
    double* const plane,
    double* const datumPlane,
    const bool& useSigmaBand,
    const double& sigmaFactor) {
  if (points.size() < static_cast<size_t>(measure::kMinStatisticsPoints))
    return kTooFewPoints;
  double datum[4];
  measure::planeCoefficients(datumPlane, datum);
  Points kept;
  const Points* chosen = &points;
  if (useSigmaBand) {
    std::vector<double> deviations;
    double stats[4] = {0, 0, 0, 0};
    calcStatistics_PlanePoint2Plane(points, plane, stats, deviations);
    const measure::SigmaBand band(stats, sigmaFactor);
    for (size_t k = 0; k < points.size(); ++k)
      if (band.contains(deviations[k])) kept.push_back(points[k]);
    chosen = &kept;
  }
  // One point or none spans no frame in the datum plane.
  if (chosen->size() < 2) return kDegenerateWidth;
  std::vector<cv::Point2f> flat;
  double toPlane[16];
  projection2Plane_tranformed(*chosen, datum, flat, toPlane);
  const cv::RotatedRect box = cv::minAreaRect(flat);
  return static_cast<double>(std::min(box.size.width, box.size.height));
}

double XGeoTolrance::calcConcentricity(const Points& points,
                                       double* const /*feature*/,
                                       double* const datumAxis,
                                       const bool& useSigmaBand,
                                       const double& sigmaFactor) {
  measure::DeviationExtremes e;
  if (!measure::reduceStatistics(
          [&](double* stats, std::vector<double>& deviations) {
            calcStatistics_LinePoint2Line(points, datumAxis, stats, deviations);
          },
          useSigmaBand, sigmaFactor, &e))
    return kTooFewPoints;
  return std::fabs(std::fabs(e.largest) - std::fabs(e.smallest));
}

// ---- Array forms: the points copied, the vector form called ------------

double XGeoTolrance::calcParallelism_Line_Line(const float* points,
                                               const int& count,
                                               double* const line,
                                               double* const datumLine,
                                               const bool& useSigmaBand,
                                               const double& sigmaFactor) {
  return calcParallelism_Line_Line(copyPoints3(points, count), line, datumLine,
                                   useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcParallelism_Line_Plane(const float* points,
                                                const int& count,
                                                double* const line,
                                                double* const datumPlane,
                                                const bool& useSigmaBand,
                                                const double& sigmaFactor) {
  return calcParallelism_Line_Plane(copyPoints3(points, count), line,
                                    datumPlane, useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcParallelism_Plane_Plane(const float* points,
                                                 const int& count,
                                                 double* const plane,
                                                 double* const datumPlane,
                                                 const bool& useSigmaBand,
                                                 const double& sigmaFactor) {
  return calcParallelism_Plane_Plane(copyPoints3(points, count), plane,
                                     datumPlane, useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcPerpendicularity_Line_Line(const float* points,
                                                    const int& count,
                                                    double* const line,
                                                    double* const datumLine,
                                                    const bool& useSigmaBand,
                                                    const double& sigmaFactor) {
  return calcPerpendicularity_Line_Line(copyPoints3(points, count), line,
                                        datumLine, useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcPerpendicularity_Line_Plane(
    const float* points,
    const int& count,
    double* const line,
    double* const datumPlane,
    const bool& useSigmaBand,
    const double& sigmaFactor) {
  return calcPerpendicularity_Line_Plane(copyPoints3(points, count), line,
                                         datumPlane, useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcPerpendicularity_Plane_Plane(
    const float* points,
    const int& count,
    double* const plane,
    double* const datumPlane,
    const bool& useSigmaBand,
    const double& sigmaFactor) {
  return calcPerpendicularity_Plane_Plane(
      copyPoints3(points, count), plane, datumPlane, useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcConcentricity(const float* points,
                                       const int& count,
                                       double* const feature,
                                       double* const datumAxis,
                                       const bool& useSigmaBand,
                                       const double& sigmaFactor) {
  return calcConcentricity(copyPoints3(points, count), feature, datumAxis,
                           useSigmaBand, sigmaFactor);
}

}  // namespace xgeomeasure
