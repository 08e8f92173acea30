// Caller's point arrays (interleaved floats) as point vectors.
//
// Internal to the library: not exported.
#ifndef ZELMO_FEATURE_POINT_ARRAYS_H_
#define ZELMO_FEATURE_POINT_ARRAYS_H_

#include <opencv2/core.hpp>
#include <vector>

namespace zelmo {

// copyPoints3(), copyPoints2()
// Interleaved x, y, z (or x, y) floats copied into a new vector of exactly
// `count` points; nothing is read for a count of 0 or less.
std::vector<cv::Point3f> copyPoints3(const float* xyz, int count);
std::vector<cv::Point2f> copyPoints2(const float* xy, int count);

}  // namespace zelmo

#endif  // ZELMO_FEATURE_POINT_ARRAYS_H_
