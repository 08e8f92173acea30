#include "zelmo/lmfit/axis_geometry.h"

#include <cmath>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/point_arrays.h"
#include "zelmo/simplex/axis_geometry.h"

namespace zelmo {
namespace lmfit {
namespace {

// Below this float length the axis is stored as it came.
constexpr float kAxisScaleGuard = 0.0001f;

void storeUnitAxis(const double* direction, float* axis) {
  float v[3];
  for (int k = 0; k < 3; ++k) v[k] = static_cast<float>(direction[k]);
  const float norm = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
  const float scale = kAxisScaleGuard > norm ? 1.0f : 1.0f / norm;
  for (int k = 0; k < 3; ++k) axis[k] = v[k] * scale;
}

}  // namespace

void unitOrZero(const double* v, double* u) {
  const cv::Vec3d unit = frame::unitOrZero(cv::Vec3d(v[0], v[1], v[2]));
  for (int k = 0; k < 3; ++k) u[k] = unit[k];
}

AxialOffset axialOffset(const float* point,
                        const double* origin,
                        const double* u) {
  const double d[3] = {point[0] - origin[0], point[1] - origin[1],
                       point[2] - origin[2]};
  const double c[3] = {d[1] * u[2] - d[2] * u[1], d[2] * u[0] - d[0] * u[2],
                       d[0] * u[1] - d[1] * u[0]};
  return AxialOffset{std::sqrt(c[0] * c[0] + c[1] * c[1] + c[2] * c[2]),
                     d[0] * u[0] + d[1] * u[1] + d[2] * u[2]};
}

void storeAxialModel(const double* params,
                     float* point,
                     float* axis,
                     float* value) {
  storeUnitAxis(params + 3, axis);
  for (int k = 0; k < 3; ++k) point[k] = static_cast<float>(params[k]);
  *value = static_cast<float>(params[6]);
}

AxialRange axialRange(const float* points,
                      int count,
                      const float* origin,
                      const float* axis) {
  const double u[3] = {axis[0], axis[1], axis[2]};
  const simplexfit::AxialSpan span = simplexfit::MeasureAlongAxis(
      copyPoints3(points, count), cv::Point3f(origin[0], origin[1], origin[2]),
      u, simplexfit::Subtraction::kInDouble);
  return AxialRange{span.tmin, span.tmax};
}

}  // namespace lmfit
}  // namespace zelmo
