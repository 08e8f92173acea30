#include "zelmo/simplex/principal_axes.h"

#include "zelmo/simplex/axis_geometry.h"

namespace x3dfit {

void computePrincipalAxes(const std::vector<cv::Point3f>& points,
                          cv::Mat& values,
                          cv::Mat& vectors,
                          cv::Point3f& center) {
  using zelmo::simplexfit::Subtraction;
  center = zelmo::simplexfit::MeanInFloat(points);
  const cv::Mat M = zelmo::simplexfit::Scatter(
      points, cv::Vec3d(center.x, center.y, center.z), Subtraction::kInFloat);
  cv::eigen(M, values, vectors);
}

}  // namespace x3dfit
