#include "zelmo/feature/point_arrays.h"

namespace zelmo {
namespace {

template <typename Point, int kDims>
std::vector<Point> copyInterleaved(const float* values, int count) {
  std::vector<Point> points;
  if (count <= 0) return points;
  points.reserve(static_cast<size_t>(count));
  for (int k = 0; k < count; ++k)
    points.emplace_back(
        cv::Vec<float, kDims>(values + static_cast<size_t>(kDims) * k));
  return points;
}

}  // namespace

std::vector<cv::Point3f> copyPoints3(const float* xyz, int count) {
  return copyInterleaved<cv::Point3f, 3>(xyz, count);
}

std::vector<cv::Point2f> copyPoints2(const float* xy, int count) {
  return copyInterleaved<cv::Point2f, 2>(xy, count);
}

}  // namespace zelmo
