// Display suite helpers: sentinel-guarded buffers, one-frame prints.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/stdout_capture.h"

namespace zelmo::test {

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

}  // namespace zelmo::test
