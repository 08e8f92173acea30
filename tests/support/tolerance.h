// Tolerance checks shared by the tests: triples of any of the forms the
// library passes around (float*, double*, cv::Vec3d, cv::Point3f, ...).
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/core.hpp>

namespace zelmo::test {

// Named bounds used across the suites.
constexpr double kFloatOutTol = 1e-4;   // float result of a double computation
constexpr double kDoubleTol = 1e-9;     // double computation, well conditioned
constexpr double kExactFloatTol = 0.0;  // bit-exact float results

inline double Component(const float* v, int i) { return v[i]; }
inline double Component(const double* v, int i) { return v[i]; }
template <typename T, int n>
double Component(const cv::Vec<T, n>& v, int i) {
  return static_cast<double>(v[i]);
}
template <typename T>
double Component(const cv::Point3_<T>& p, int i) {
  return static_cast<double>(i == 0 ? p.x : (i == 1 ? p.y : p.z));
}

template <typename A>
cv::Vec3d ToVec3d(const A& a) {
  return cv::Vec3d(Component(a, 0), Component(a, 1), Component(a, 2));
}

// Each of the three coordinates of `got` lies within `tol` of `want`.
template <typename A, typename B>
void ExpectNear3(const A& got, const B& want, double tol) {
  for (int i = 0; i < 3; ++i)
    EXPECT_NEAR(Component(got, i), Component(want, i), tol)
        << "component " << i;
}

// Angle in radians between the lines spanned by a and b (0 when they are
// parallel or opposite).
template <typename A, typename B>
double AxisAngle(const A& a, const B& b) {
  const cv::Vec3d u = ToVec3d(a), v = ToVec3d(b);
  const double c = std::fabs(u.dot(v)) / (cv::norm(u) * cv::norm(v));
  return std::acos(std::min(1.0, c));
}

// `got` spans the same line as `want` (either sign) within `tolRad` radians.
template <typename A, typename B>
void ExpectSameAxis(const A& got, const B& want, double tolRad) {
  EXPECT_LE(AxisAngle(got, want), tolRad)
      << "got " << ToVec3d(got) << " want " << ToVec3d(want);
}

// `got` points the same way as `want` within `tolRad` radians.
template <typename A, typename B>
void ExpectSameDirection(const A& got, const B& want, double tolRad) {
  const cv::Vec3d u = ToVec3d(got), v = ToVec3d(want);
  const double a = AxisAngle(u, v);  // the angle between the lines
  EXPECT_LE(u.dot(v) >= 0 ? a : CV_PI - a, tolRad)
      << "got " << u << " want " << v;
}

// Every entry of two row-major n-element arrays within `tol`.
inline void ExpectNearArray(const double* got,
                            const double* want,
                            int n,
                            double tol) {
  for (int i = 0; i < n; ++i)
    EXPECT_NEAR(got[i], want[i], tol) << "entry " << i;
}

}  // namespace zelmo::test
