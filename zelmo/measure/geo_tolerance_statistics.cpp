#include "zelmo/measure/deviation_statistics.h"
#include "zelmo/measure/geo_tolerance.h"

namespace xgeomeasure {

namespace measure = zelmo::measure;

void XGeoTolrance::calcStatistics_PlanePoint2Plane(
    const Points& points,
    double* const plane,
    double* const stats,
    std::vector<double>& deviations) {
  measure::planeStatistics(points, plane, plane, stats, deviations);
}

void XGeoTolrance::calcStatistics_LinePoint2Plane(
    const Points& points,
    double* const position,
    double* const normal,
    double* const stats,
    std::vector<double>& deviations) {
  measure::planeStatistics(points, position, normal, stats, deviations);
}

void XGeoTolrance::calcStatistics_LinePoint2Line(
    const Points& points,
    double* const line,
    double* const stats,
    std::vector<double>& deviations) {
  measure::axisStatistics(points, line, 0.0, true, stats, deviations);
}

void XGeoTolrance::calcStatistics_CylinderPoint2Cylinder(
    const Points& points,
    double* const cylinder,
    double* const stats,
    std::vector<double>& deviations) {
  measure::axisStatistics(points, cylinder, cylinder[6], false, stats,
                          deviations);
}

void XGeoTolrance::calcStatistics_SpherePoint2Sphere(
    const Points& points,
    double* const sphere,
    double* const stats,
    std::vector<double>& deviations) {
  measure::sphereStatistics(points, sphere, stats, deviations);
}

void XGeoTolrance::calcStatisticsCircle2D(
    const std::vector<cv::Point_<float>>& points,
    const double& centerX,
    const double& centerY,
    const double& radius,
    double* const stats,
    std::vector<double>& deviations) {
  measure::circle2DStatistics(points, centerX, centerY, radius, stats,
                              deviations);
}

}  // namespace xgeomeasure
