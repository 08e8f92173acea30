// Display suite helpers: sentinel-guarded buffers, flat poses, local lists.
#ifndef ZELMO_TESTS_DISPLAY_DISPLAY_TEST_UTIL_H_
#define ZELMO_TESTS_DISPLAY_DISPLAY_TEST_UTIL_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/stdout_capture.h"

namespace zelmo {
namespace test {

// Float outputs of double frames at offsets up to 500 and sizes up to 50.
constexpr double kDisplayTol = 5e-4;

// Room for `triples` x, y, z triples between guard zones of sentinels.
class GuardedBuffer {
 public:
  static constexpr float kSentinel = -9.5e30f;
  static constexpr int kGuard = 12;
  explicit GuardedBuffer(int triples)
      : data_(3 * triples + 2 * kGuard, kSentinel) {}
  float* out() { return data_.data() + kGuard; }
  // Triples written as a prefix of the room; -1 if not a whole prefix.
  int Written() const {
    const auto room = data_.begin() + kGuard;
    const auto isSentinel = [](float v) { return v == kSentinel; };
    const auto end = std::find_if(room, data_.end(), isSentinel);
    const bool prefix = std::all_of(data_.begin(), room, isSentinel) &&
                        std::all_of(end, data_.end(), isSentinel);
    const int written = static_cast<int>(end - room);
    return prefix && written % 3 == 0 ? written / 3 : -1;
  }
  cv::Vec3d Point(int i) const {
    const float* p = data_.data() + kGuard + 3 * i;
    return cv::Vec3d(p[0], p[1], p[2]);
  }

 private:
  std::vector<float> data_;
};

// A flat pose: normal = w, majorDir = u, so local y runs along v.
struct FlatPose {
  explicit FlatPose(const Frame& frame) : f(frame) {
    for (int k = 0; k < 3; ++k) {
      center[k] = static_cast<float>(f.origin[k]);
      normal[k] = static_cast<float>(f.w[k]);
      majorDir[k] = static_cast<float>(f.u[k]);
    }
  }
  cv::Vec3d Local(const cv::Vec3d& p) const {
    const cv::Vec3d d = p - f.origin;
    return cv::Vec3d(d.dot(f.u), d.dot(f.v), d.dot(f.w));
  }
  Frame f;
  float center[3], normal[3], majorDir[3];
};

// Runs `call`, expecting it to print exactly one frame block, and drops
// the print.
template <typename Call>
int PrintingOneFrame(const Call& call) {
  StdoutCapture capture;
  const int status = call();
  const std::string out = capture.Take();
  EXPECT_EQ(out.find("vec_model:\n"), 0u);
  EXPECT_EQ(out.find("vec_model:\n", 1), std::string::npos);
  return status;
}

// Appends (cx + r cos(i s), cy + r sin(i s)) for i in [from, to).
inline void AppendArc(std::vector<cv::Vec2d>& list,
                      double cx,
                      double cy,
                      double r,
                      double s,
                      int from,
                      int to) {
  for (int i = from; i < to; ++i)
    list.emplace_back(cx + r * std::cos(i * s), cy + r * std::sin(i * s));
}

// The buffer holds exactly the local (x, y, 0) points of `list`, in order.
inline void ExpectLocalList(const GuardedBuffer& buffer,
                            const FlatPose& pose,
                            const std::vector<cv::Vec2d>& list) {
  ASSERT_EQ(buffer.Written(), static_cast<int>(list.size()));
  for (size_t i = 0; i < list.size(); ++i) {
    SCOPED_TRACE(i);
    const cv::Vec3d local = pose.Local(buffer.Point(static_cast<int>(i)));
    EXPECT_NEAR(cv::norm(local - cv::Vec3d(list[i][0], list[i][1], 0)), 0,
                kDisplayTol);
  }
}

// Signed distance from the outline at r around [-A, A] x [-B, B].
inline double OutlineGap(const cv::Vec3d& local, double A, double B, double r) {
  return std::hypot(std::max(std::fabs(local[0]) - A, 0.0),
                    std::max(std::fabs(local[1]) - B, 0.0)) -
         r;
}

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_DISPLAY_DISPLAY_TEST_UTIL_H_
