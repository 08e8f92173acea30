#include "zelmo/measure/deviation_statistics.h"
#include "zelmo/measure/geo_tolerance.h"

namespace xgeomeasure {

using zelmo::measure::bandWidth;
using zelmo::measure::copyPoints2;
using zelmo::measure::copyPoints3;
using zelmo::measure::kMinStatisticsPoints;
using zelmo::measure::planeCoefficients;

double XGeoTolrance::calcFlatness(const Points& points,
                                  double* const plane,
                                  const bool& useSigmaBand,
                                  const double& sigmaFactor) {
  return bandWidth(
      [&](double* stats, std::vector<double>& deviations) {
        calcStatistics_PlanePoint2Plane(points, plane, stats, deviations);
      },
      useSigmaBand, sigmaFactor, kTooFewPoints);
}

double XGeoTolrance::calcStraightness(const Points& points,
                                      double* const line,
                                      const bool& useSigmaBand,
                                      const double& sigmaFactor) {
  return bandWidth(
      [&](double* stats, std::vector<double>& deviations) {
        calcStatistics_LinePoint2Line(points, line, stats, deviations);
      },
      useSigmaBand, sigmaFactor, kTooFewPoints);
}

double XGeoTolrance::calcCylindricity(const Points& points,
                                      double* const cylinder,
                                      const bool& useSigmaBand,
                                      const double& sigmaFactor) {
  return bandWidth(
      [&](double* stats, std::vector<double>& deviations) {
        calcStatistics_CylinderPoint2Cylinder(points, cylinder, stats,
                                              deviations);
      },
      useSigmaBand, sigmaFactor, kTooFewPoints);
}

double XGeoTolrance::calcSphericity(const Points& points,
                                    double* const sphere,
                                    const bool& useSigmaBand,
                                    const double& sigmaFactor) {
  return bandWidth(
      [&](double* stats, std::vector<double>& deviations) {
        calcStatistics_SpherePoint2Sphere(points, sphere, stats, deviations);
      },
      useSigmaBand, sigmaFactor, kTooFewPoints);
}

double XGeoTolrance::calcCircularity(const Points& points,
                                     double* const circle,
                                     const bool& useSigmaBand,
                                     const double& sigmaFactor) {
  // Too few points cannot span the in-plane frame; answer before trying.
  if (points.size() < static_cast<size_t>(kMinStatisticsPoints))
    return kTooFewPoints;
  double plane[4];
  planeCoefficients(circle, plane);
  std::vector<cv::Point2f> flat;
  double toPlane[16];
  projection2Plane_tranformed(points, plane, flat, toPlane);
  // The centre as given (not projected), mapped in double.
  const double cx = toPlane[0] * circle[0] + toPlane[1] * circle[1] +
                    toPlane[2] * circle[2] + toPlane[3];
  const double cy = toPlane[4] * circle[0] + toPlane[5] * circle[1] +
                    toPlane[6] * circle[2] + toPlane[7];
  return calcCircularity2D(flat, cx, cy, circle[6], useSigmaBand, sigmaFactor);
}

double XGeoTolrance::calcCircularity2D(
    const std::vector<cv::Point_<float>>& points,
    const double& centerX,
    const double& centerY,
    const double& radius,
    const bool& useSigmaBand,
    const double& sigmaFactor) {
  return bandWidth(
      [&](double* stats, std::vector<double>& deviations) {
        calcStatisticsCircle2D(points, centerX, centerY, radius, stats,
                               deviations);
      },
      useSigmaBand, sigmaFactor, kTooFewPoints);
}

// ---- Array forms: the points copied, the vector form called ------------

double XGeoTolrance::calcFlatness(const float* points,
                                  const int& count,
                                  double* const plane,
                                  const bool& useSigmaBand,
                                  const double& sigmaFactor) {
  return calcFlatness(copyPoints3(points, count), plane, useSigmaBand,
                      sigmaFactor);
}

double XGeoTolrance::calcStraightness(const float* points,
                                      const int& count,
                                      double* const line,
                                      const bool& useSigmaBand,
                                      const double& sigmaFactor) {
  return calcStraightness(copyPoints3(points, count), line, useSigmaBand,
                          sigmaFactor);
}

double XGeoTolrance::calcCylindricity(const float* points,
                                      const int& count,
                                      double* const cylinder,
                                      const bool& useSigmaBand,
                                      const double& sigmaFactor) {
  return calcCylindricity(copyPoints3(points, count), cylinder, useSigmaBand,
                          sigmaFactor);
}

double XGeoTolrance::calcSphericity(const float* points,
                                    const int& count,
                                    double* const sphere,
                                    const bool& useSigmaBand,
                                    const double& sigmaFactor) {
  return calcSphericity(copyPoints3(points, count), sphere, useSigmaBand,
                        sigmaFactor);
}

double XGeoTolrance::calcCircularity(const float* points,
                                     const int& count,
                                     double* const circle,
                                     const bool& useSigmaBand,
                                     const double& sigmaFactor) {
  return calcCircularity(copyPoints3(points, count), circle, useSigmaBand,
                         sigmaFactor);
}

double XGeoTolrance::calcCircularity2D(const float* points,
                                       const int& count,
                                       const double& centerX,
                                       const double& centerY,
                                       const double& radius,
                                       const bool& useSigmaBand,
                                       const double& sigmaFactor) {
  return calcCircularity2D(copyPoints2(points, count), centerX, centerY, radius,
                           useSigmaBand, sigmaFactor);
}

}  // namespace xgeomeasure
