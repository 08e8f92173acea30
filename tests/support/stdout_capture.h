// Captures what the library prints on the standard output while in scope.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace zelmo::test {

// Starts capturing at construction; Take() ends the capture and returns the
// text. Only one capture may be active at a time.
class StdoutCapture {
 public:
  StdoutCapture() { testing::internal::CaptureStdout(); }
  ~StdoutCapture() {
    if (active_) Take();
  }
  StdoutCapture(const StdoutCapture&) = delete;
  StdoutCapture& operator=(const StdoutCapture&) = delete;

  std::string Take() {
    std::cout.flush();
    std::fflush(stdout);
    active_ = false;
    return testing::internal::GetCapturedStdout();
  }

 private:
  bool active_ = true;
};

}  // namespace zelmo::test
