#include "zelmo/simplex/axis_geometry.h"

#include <algorithm>
#include <cmath>

#include "zelmo/simplex/principal_axes.h"

namespace zelmo {
namespace simplexfit {
namespace {

// Four points span a sphere.
constexpr size_t kAlgebraicSphereMinPoints = 4;

}  // namespace

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

bool AlgebraicSphere(const std::vector<cv::Point3f>& points,
                     double* const p,
                     SphereSums sums) {
  if (points.size() < kAlgebraicSphereMinPoints) return false;
  const bool cubeFirst = sums == SphereSums::kCubeFirst;
  const double n = static_cast<double>(points.size());
  cv::Vec3d m = MeanInDouble(points);
  if (cubeFirst) {
    double total[3] = {0, 0, 0};
    for (const cv::Point3f& pt : points) {
      total[0] += pt.x;
      total[1] += pt.y;
      total[2] += pt.z;
    }
    for (int k = 0; k < 3; ++k) m[k] = total[k] / n;
  }
  double sx = 0, sy = 0, sz = 0, sxx = 0, syy = 0, szz = 0, sxy = 0, sxz = 0,
         syz = 0, sxxx = 0, syyy = 0, szzz = 0, sxyy = 0, sxxy = 0, sxzz = 0,
         sxxz = 0, syyz = 0, syzz = 0;
  for (const cv::Point3f& pt : points) {
    const double x = pt.x - m[0], y = pt.y - m[1], z = pt.z - m[2];
    sx += x;
    sy += y;
    sz += z;
    sxx += x * x;
    syy += y * y;
    szz += z * z;
    sxy += x * y;
    sxz += x * z;
    syz += y * z;
    sxxx += x * x * x;
    syyy += y * y * y;
    szzz += z * z * z;
    sxyy += cubeFirst ? y * y * x : x * y * y;
    sxxy += x * x * y;
    sxzz += cubeFirst ? z * z * x : x * z * z;
    sxxz += x * x * z;
    syyz += y * y * z;
    syzz += cubeFirst ? z * z * y : y * z * z;
  }
  const cv::Mat A = (cv::Mat_<double>(4, 4) << sxx, sxy, sxz, sx,  //
                     sxy, syy, syz, sy,                            //
                     sxz, syz, szz, sz,                            //
                     sx, sy, sz, n);
  const cv::Mat b =
      cubeFirst
          ? (cv::Mat_<double>(4, 1) << -(sxxx + sxyy + sxzz),
             -(syyy + sxxy + syzz), -(szzz + sxxz + syyz), -(sxx + syy + szz))
          : (cv::Mat_<double>(4, 1) << -(sxxx + sxyy + sxzz),
             -(sxxy + syyy + syzz), -(sxxz + syyz + szzz), -(sxx + syy + szz));
  const cv::Mat s = A.inv() * b;  // D, E, F, G; zero when A is singular
  const double D = s.at<double>(0), E = s.at<double>(1), F = s.at<double>(2),
               G = s.at<double>(3);
  p[0] = m[0] - D / 2;
  p[1] = m[1] - E / 2;
  p[2] = m[2] - F / 2;
  p[3] = std::sqrt((D * D + E * E + F * F) * 0.25 - G);
  return true;
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
                           const double* axis,
                           Subtraction subtraction) {
  const bool inFloat = subtraction == Subtraction::kInFloat;
  AxialSpan span;
  for (const cv::Point3f& x : points) {
    const double ex = inFloat ? origin.x - x.x : double(origin.x) - x.x;
    const double ey = inFloat ? origin.y - x.y : double(origin.y) - x.y;
    const double ez = inFloat ? origin.z - x.z : double(origin.z) - x.z;
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
