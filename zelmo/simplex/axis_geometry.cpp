#include "zelmo/simplex/axis_geometry.h"

#include <algorithm>
#include <cmath>

#include "zelmo/simplex/principal_axes.h"

namespace zelmo {
namespace simplexfit {

cv::Point3f MeanInFloat(const std::vector<cv::Point3f>& points) {
  float sx = 0.0f, sy = 0.0f, sz = 0.0f;
  for (const cv::Point3f& x : points) {
    sx += x.x;
    sy += x.y;
    sz += x.z;
  }
  const float n = static_cast<float>(points.size());
  return cv::Point3f(sx / n, sy / n, sz / n);
}

cv::Vec3d MeanInDouble(const std::vector<cv::Point3f>& points) {
  cv::Vec3d sum(0.0, 0.0, 0.0);
  for (const cv::Point3f& x : points) sum += cv::Vec3d(x.x, x.y, x.z);
  // Divided component by component: cv::Vec's operator/ scales by the
  // reciprocal, which rounds twice and can move the mean by one unit in the
  // last place.
  const double n = static_cast<double>(points.size());
  return cv::Vec3d(sum[0] / n, sum[1] / n, sum[2] / n);
}

cv::Mat Scatter(const std::vector<cv::Point3f>& points,
                const cv::Vec3d& c,
                Subtraction subtraction) {
  const float cxf = static_cast<float>(c[0]), cyf = static_cast<float>(c[1]),
              czf = static_cast<float>(c[2]);
  double m[3][3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
  for (const cv::Point3f& x : points) {
    double d[3];
    if (subtraction == Subtraction::kInFloat) {
      d[0] = x.x - cxf;  // float difference, widened
      d[1] = x.y - cyf;
      d[2] = x.z - czf;
    } else {
      d[0] = static_cast<double>(x.x) - c[0];
      d[1] = static_cast<double>(x.y) - c[1];
      d[2] = static_cast<double>(x.z) - c[2];
    }
    for (int r = 0; r < 3; ++r)
      for (int k = r; k < 3; ++k) m[r][k] += d[r] * d[k];
  }
  cv::Mat M(3, 3, CV_64F);
  for (int r = 0; r < 3; ++r)
    for (int k = 0; k < 3; ++k) M.at<double>(r, k) = k >= r ? m[r][k] : m[k][r];
  return M;
}

AxialSpan MeasureAlongAxis(const std::vector<cv::Point3f>& points,
                           const cv::Point3f& origin,
                           const double* axis) {
  AxialSpan span;
  for (const cv::Point3f& x : points) {
    const float ex = origin.x - x.x, ey = origin.y - x.y, ez = origin.z - x.z;
    double t = 0.0, radial = kRadialAtAxisOrigin;
    if (!(std::fabs(ex) < kAtAxisOrigin && std::fabs(ey) < kAtAxisOrigin &&
          std::fabs(ez) < kAtAxisOrigin)) {
      t = -(ex * axis[0] + ey * axis[1] + ez * axis[2]);
      const double cx = ey * axis[2] - ez * axis[1],
                   cy = ez * axis[0] - ex * axis[2],
                   cz = ex * axis[1] - ey * axis[0];
      radial = std::sqrt(cx * cx + cy * cy + cz * cz);
    }
    span.tmin = std::min(span.tmin, t);
    span.tmax = std::max(span.tmax, t);
    span.rmax = std::max(span.rmax, radial);
  }
  return span;
}

void FitEachPrincipalAxis(
    const std::vector<cv::Point3f>& points,
    double* const p,
    const std::function<double(const double* axis,
                               double eigenvalue,
                               const cv::Point3f& centroid,
                               double* const p)>& fitAxis) {
  constexpr int kParams = 8;
  cv::Mat values, vectors;
  cv::Point3f c;
  x3dfit::computePrincipalAxes(points, values, vectors, c);
  double best[kParams];
  double bestScore = 0.0;
  for (int i = 0; i < 3; ++i) {
    const double score =
        fitAxis(vectors.ptr<double>(i), values.at<double>(i), c, p);
    if (i == 0 || score < bestScore) {
      bestScore = score;
      std::copy(p, p + kParams, best);
    }
  }
  std::copy(best, best + kParams, p);
}

}  // namespace simplexfit
}  // namespace zelmo
