#include "zelmo/feature/plane_frame.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "zelmo/feature/frame_toolkit.h"

namespace zelmo {
namespace frame {
cv::Vec3d planeLocalAxis(const std::vector<cv::Point3f>& projected,
                         const cv::Vec3d& c,
                         const cv::Vec3d& n,
                         AxisFallback fallback) {
  for (const cv::Point3f& q : projected) {
    const cv::Vec3d diff = cv::Vec3d(q.x, q.y, q.z) - c;
    if (!(std::fabs(diff[0]) < kFrameAxisMinOffset) ||
        !(std::fabs(diff[1]) < kFrameAxisMinOffset) ||
        !(std::fabs(diff[2]) < kFrameAxisMinOffset))
      return unitOrZero(diff);
  }
  if (fallback == AxisFallback::kZero) return cv::Vec3d(0, 0, 0);
  const bool firstLargest =
      std::fabs(n[0]) >= std::fabs(n[1]) && std::fabs(n[0]) >= std::fabs(n[2]);
  const cv::Vec3d t = firstLargest ? cv::Vec3d(0, 1, 0) : cv::Vec3d(1, 0, 0);
  return unitOrZero(unitOrZero(n.cross(t)).cross(n));
}

void planeLocalFrame(const std::vector<cv::Point3f>& projected,
                     const double* const plane,
                     PlaneFrame& frame,
                     AlignMode mode,
                     AxisFallback fallback) {
  cv::Vec3d c(0, 0, 0);
  for (const cv::Point3f& q : projected) c += cv::Vec3d(q.x, q.y, q.z);
  if (!projected.empty()) {
    // A true division per component (cv::Vec's /= multiplies by 1 / n).
    const double n = static_cast<double>(projected.size());
    c = cv::Vec3d(c[0] / n, c[1] / n, c[2] / n);
  }
  const cv::Vec3d n(plane[0], plane[1], plane[2]);
  const cv::Vec3d u = planeLocalAxis(projected, c, n, fallback);
  const cv::Vec3d v = unitOrZero(n.cross(u));

  const cv::Vec3d targetNormals[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const cv::Point3d targetPoints[3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
  const cv::Vec3d sourceNormals[3] = {u, v, n};
  const cv::Point3d sourcePoints[3] = {cv::Point3d(c), cv::Point3d(c),
                                       cv::Point3d(c)};
  alignBy3Plane(targetNormals, targetPoints, sourceNormals, sourcePoints,
                frame.toLocal, mode);
  convertMatrixRT(frame.toLocal, frame.toSpace);
}

void projectToPlaneFrame(const std::vector<cv::Point3f>& points,
                         const double* const plane,
                         AxisFallback fallback,
                         AlignMode mode,
                         std::vector<cv::Point2f>& out,
                         double* const transform) {
  std::vector<cv::Point3f> projected;
  projection2Plane(points, plane, projected);
  PlaneFrame frame;
  planeLocalFrame(projected, plane, frame, mode, fallback);
  toLocal2D(projected, frame.toLocal, out);
  if (transform != nullptr)
    for (int k = 0; k < 16; ++k) transform[k] = frame.toLocal[k];
}

cv::RotatedRect planeBoxCorners(const std::vector<cv::Point3f>& points,
                                const double* const plane,
                                AlignMode mode,
                                float* const corners,
                                double* const toSpace) {
  std::vector<cv::Point2f> local;
  double T[16], I[16];
  projectToPlaneFrame(points, plane, AxisFallback::kSeedAxis, mode, local, T);
  convertMatrixRT(T, I);
  const cv::RotatedRect box = cv::minAreaRect(local);
  const double cx = box.center.x, cy = box.center.y;
  const double hw = box.size.width / 2.0, hh = box.size.height / 2.0;
  const double cornerX[4] = {cx + hw, cx - hw, cx - hw, cx + hw};
  const double cornerY[4] = {cy + hh, cy + hh, cy - hh, cy - hh};
  for (int k = 0; k < 4; ++k) {
    const cv::Vec3d p = fromLocal2D(I, cornerX[k], cornerY[k]);
    for (int r = 0; r < 3; ++r) corners[3 * k + r] = static_cast<float>(p[r]);
  }
  if (toSpace != nullptr)
    for (int k = 0; k < 16; ++k) toSpace[k] = I[k];
  return box;
}

void toLocal2D(const std::vector<cv::Point3f>& points,
               const double* const toLocal,
               std::vector<cv::Point2f>& out) {
  const double* T = toLocal;
  out.resize(points.size());
  for (size_t k = 0; k < points.size(); ++k) {
    const double x = points[k].x, y = points[k].y, z = points[k].z;
    out[k] =
        cv::Point2f(static_cast<float>(T[0] * x + T[1] * y + T[2] * z + T[3]),
                    static_cast<float>(T[4] * x + T[5] * y + T[6] * z + T[7]));
  }
}

cv::Vec3d fromLocal2D(const double* const toSpace, double x, double y) {
  const double* I = toSpace;
  return cv::Vec3d(I[0] * x + I[1] * y + I[3], I[4] * x + I[5] * y + I[7],
                   I[8] * x + I[9] * y + I[11]);
}

cv::Vec3d localDirection(const double* const toSpace, double angle) {
  const double* I = toSpace;
  const double C = std::cos(angle), S = std::sin(angle);
  return cv::Vec3d(C * I[0] + S * I[1], C * I[4] + S * I[5],
                   C * I[8] + S * I[9]);
}

}  // namespace frame
}  // namespace zelmo
