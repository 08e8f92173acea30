#include "zelmo/measure/geo_dimension.h"

#include <cmath>

#include "zelmo/measure/angle_from_cosine.h"

namespace xgeomeasure {
namespace {

// A point this close to a line's given point in every coordinate is on it.
constexpr double kOnLinePointTol = 0.001;

// The dot product of three floats of `a` and `b`, widened to double.
double dot3(const float* const a, const float* const b) {
  return double(a[0]) * b[0] + double(a[1]) * b[1] + double(a[2]) * b[2];
}

}  // namespace

double XGeoDimension::calcDistance_Point2Point(const float* const p,
                                               const float* const q) {
  const double dx = double(p[0]) - q[0];
  const double dy = double(p[1]) - q[1];
  const double dz = double(p[2]) - q[2];
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

double XGeoDimension::calcDistance_Point2Line(const float* const point,
                                              const float* const line) {
  const double v[3] = {double(point[0]) - line[0], double(point[1]) - line[1],
                       double(point[2]) - line[2]};
  if (std::fabs(v[0]) < kOnLinePointTol && std::fabs(v[1]) < kOnLinePointTol &&
      std::fabs(v[2]) < kOnLinePointTol)
    return 0.0;
  const float* const d = line + 3;
  const double cx = v[1] * d[2] - v[2] * d[1];
  const double cy = v[2] * d[0] - v[0] * d[2];
  const double cz = v[0] * d[1] - v[1] * d[0];
  return std::sqrt(cx * cx + cy * cy + cz * cz);
}

double XGeoDimension::calcDistance_Point2Plane(const float* const point,
                                               const float* const plane) {
  const double constant = -dot3(plane + 3, plane);
  return std::fabs(dot3(plane + 3, point) + constant);
}

double XGeoDimension::calcAngle_Line_Line(const float* const a,
                                          const float* const b) {
  return calcAngle(a, b);
}

double XGeoDimension::calcAngle_Line_Plane(const float* const line,
                                           const float* const plane) {
  return calcAngle(line, plane);
}

double XGeoDimension::calcAngle_Plane_Plane(const float* const a,
                                            const float* const b) {
  return calcAngle(a, b);
}

double XGeoDimension::calcAngle(const float* const a, const float* const b) {
  return zelmo::measure::angleFromCosine(dot3(a + 3, b + 3),
                                         zelmo::measure::AngleUnit::kDegrees);
}

}  // namespace xgeomeasure
