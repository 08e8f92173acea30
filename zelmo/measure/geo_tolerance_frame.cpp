#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/measure/geo_tolerance.h"

namespace xgeomeasure {

int XGeoTolrance::Intersection3Planes(const cv::Vec3d* normals,
                                      const cv::Point3d* points,
                                      cv::Mat& out) {
  return zelmo::frame::Intersection3Planes(normals, points, out);
}

void XGeoTolrance::getMatRByVector(const cv::Vec3d& from,
                                   const cv::Vec3d& to,
                                   cv::Mat& R) {
  zelmo::frame::getMatRByVector(from, to, R);
}

void XGeoTolrance::alignBy3Plane(const cv::Vec3d* targetNormals,
                                 const cv::Point3d* targetPoints,
                                 const cv::Vec3d* sourceNormals,
                                 const cv::Point3d* sourcePoints,
                                 double* const rt) {
  zelmo::frame::alignBy3Plane(targetNormals, targetPoints, sourceNormals,
                              sourcePoints, rt,
                              zelmo::frame::AlignMode::kGuarded);
}

int XGeoTolrance::convertMatrixRT(const double* const in, double* const out) {
  return zelmo::frame::convertMatrixRT(in, out);
}

void XGeoTolrance::projection2Plane(const std::vector<cv::Point3f>& points,
                                    double* const plane,
                                    std::vector<cv::Point3f>& out) {
  zelmo::frame::projection2Plane(points, plane, out);
}

void XGeoTolrance::projection2Plane_tranformed(
    const std::vector<cv::Point3f>& points,
    double* const plane,
    std::vector<cv::Point2f>& out,
    double* const transform) {
  zelmo::frame::projection2Plane_tranformed(points, plane, out, transform,
                                            zelmo::frame::AlignMode::kGuarded);
}

}  // namespace xgeomeasure
