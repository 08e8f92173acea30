#include "zelmo/feature/frame_toolkit.h"

#include <cmath>
#include <iostream>

#include "zelmo/feature/plane_frame.h"

namespace zelmo {
namespace frame {
namespace {

constexpr double kPi = 3.14159265358979323846;

// The Rodrigues matrix of unit axis u, cosine c and sine s.
cv::Mat rodrigues(const cv::Vec3d& u, double c, double s) {
  const double t = 1.0 - c;
  return (cv::Mat_<double>(3, 3) << u[0] * u[0] * t + c,
          u[0] * u[1] * t - u[2] * s, u[0] * u[2] * t + u[1] * s,
          u[0] * u[1] * t + u[2] * s, u[1] * u[1] * t + c,
          u[1] * u[2] * t - u[0] * s, u[0] * u[2] * t - u[1] * s,
          u[1] * u[2] * t + u[0] * s, u[2] * u[2] * t + c);
}

cv::Vec3d mul(const cv::Mat& R, const cv::Vec3d& v) {
  cv::Mat r = R * cv::Mat(v);
  return cv::Vec3d(r.at<double>(0), r.at<double>(1), r.at<double>(2));
}

void printNormals(const cv::Vec3d* n) {
  std::cout << n[0] << "\n" << n[1] << "\n" << n[2] << std::endl;
}

// T for the symmetry matrices of a line or plane: the frame (d, h, g) at
// `p`, with d going to z, h to x and g to y.
cv::Mat symmetryFrame(const float* const pd) {
  const cv::Vec3d p(pd[0], pd[1], pd[2]);
  const cv::Vec3d d(pd[3], pd[4], pd[5]);
  const cv::Vec3d h = unitOrZero(auxiliaryOrthogonal(d));
  const cv::Vec3d g = unitOrZero(d.cross(h));
  const cv::Vec3d tn[3] = {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}};
  const cv::Point3d tp[3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
  const cv::Vec3d sn[3] = {d, h, g};
  const cv::Point3d sp[3] = {p, p, p};
  cv::Mat T(4, 4, CV_64F);
  alignBy3Plane(tn, tp, sn, sp, T.ptr<double>(), AlignMode::kGuarded);
  return T;
}

// rt = T^-1 D T for D = diag(dx, dy, dz, 1).
void conjugateDiagonal(
    const cv::Mat& T, double dx, double dy, double dz, double* const rt) {
  const cv::Mat D = (cv::Mat_<double>(4, 4) << dx, 0, 0, 0, 0, dy, 0, 0, 0, 0,
                     dz, 0, 0, 0, 0, 1);
  const cv::Mat M = T.inv() * D * T;
  for (int k = 0; k < 16; ++k) rt[k] = M.at<double>(k / 4, k % 4);
}

}  // namespace

cv::Vec3d unitOrZero(const cv::Vec3d& v) {
  const double n = cv::norm(v);
  // Divided component by component: cv::Vec's operator/ multiplies by the
  // reciprocal, which rounds once more.
  return n == 0.0 ? cv::Vec3d(0, 0, 0)
                  : cv::Vec3d(v[0] / n, v[1] / n, v[2] / n);
}

int largestAbsIndex(const cv::Vec3d& v) {
  int i = 0;
  if (std::fabs(v[1]) > std::fabs(v[i])) i = 1;
  if (std::fabs(v[2]) > std::fabs(v[i])) i = 2;
  return i;
}

cv::Vec3d auxiliaryOrthogonal(const cv::Vec3d& v) {
  switch (largestAbsIndex(v)) {
    case 0:
      return cv::Vec3d(-(v[1] + v[2]) / v[0], 1.0, 1.0);
    case 1:
      return cv::Vec3d(1.0, -(v[0] + v[2]) / v[1], 1.0);
    default:
      return cv::Vec3d(1.0, 1.0, -(v[0] + v[1]) / v[2]);
  }
}

cv::Vec3d perpendicularDirection(const cv::Vec3d& n) {
  cv::Vec3d v;
  switch (largestAbsIndex(n)) {
    case 0:
      v = cv::Vec3d(-n[1] / n[0], 1.0, 0.0);
      break;
    case 1:
      v = cv::Vec3d(1.0, -n[0] / n[1], 0.0);
      break;
    default:
      v = cv::Vec3d(1.0, 0.0, -n[0] / n[2]);
      break;
  }
  // Multiplied by the reciprocal norm, not divided: the rule's own rounding.
  const double norm = cv::norm(v);
  return v * (norm == 0.0 ? 0.0 : 1.0 / norm);
}

int Intersection3Planes(const cv::Vec3d* normals,
                        const cv::Point3d* points,
                        cv::Mat& out) {
  cv::Mat A(3, 3, CV_64F);
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c) A.at<double>(r, c) = normals[r][c];
  const double det = cv::determinant(A);
  if (det > -kDetZeroEps && det < kDetZeroEps) return 0;
  cv::Mat b(3, 1, CV_64F);
  for (int r = 0; r < 3; ++r)
    b.at<double>(r) = normals[r].dot(cv::Vec3d(points[r]));
  out = A.inv() * b;
  return 1;
}

void getMatRByVector(const cv::Vec3d& from, const cv::Vec3d& to, cv::Mat& R) {
  const cv::Vec3d c = from.cross(to);
  if (std::fabs(c[0]) < kParallelEps && std::fabs(c[1]) < kParallelEps &&
      std::fabs(c[2]) < kParallelEps) {
    const cv::Vec3d h = auxiliaryOrthogonal(from);
    cv::Mat first, second;
    getMatRByVector(from, h, first);
    getMatRByVector(h, to, second);
    R = second * first;
    return;
  }
  const double cosine = from.dot(to) / (cv::norm(from) * cv::norm(to));
  const double sine = std::sqrt(1.0 - cosine * cosine);
  const cv::Vec3d u = c / cv::norm(c);
  R = rodrigues(u, cosine, sine);
}

void alignBy3Plane(const cv::Vec3d* targetNormals,
                   const cv::Point3d* targetPoints,
                   const cv::Vec3d* sourceNormals,
                   const cv::Point3d* sourcePoints,
                   double* const rt,
                   AlignMode mode) {
  if (mode == AlignMode::kGuardedPrinting) {
    std::cout << "vec_model:\n";
    printNormals(targetNormals);
    std::cout << "vec_test\n";
    printNormals(sourceNormals);
  }
  cv::Mat PS;
  Intersection3Planes(sourceNormals, sourcePoints, PS);

  cv::Mat R1;
  getMatRByVector(sourceNormals[0], targetNormals[0], R1);
  const cv::Vec3d b0 = mul(R1, sourceNormals[0]);
  const cv::Vec3d b1 = mul(R1, sourceNormals[1]);
  const cv::Vec3d ct = targetNormals[0].cross(targetNormals[1]);
  const cv::Vec3d cs = b0.cross(b1);

  cv::Mat R2;
  const cv::Vec3d e = cs.cross(ct);
  if (mode != AlignMode::kPlain && std::fabs(e[0]) < kParallelEps &&
      std::fabs(e[1]) < kParallelEps && std::fabs(e[2]) < kParallelEps) {
    if (cs.dot(ct) >= 0.0)
      R2 = cv::Mat::eye(3, 3, CV_64F);
    else
      getMatrixR(b0, 180.0, R2, true);
  } else {
    getMatRByVector(cs, ct, R2);
  }
  const cv::Mat R = R2 * R1;
  if (mode == AlignMode::kGuardedPrinting) {
    std::cout << "R1" << std::endl << R1 << std::endl;
    std::cout << "R2" << std::endl << R2 << std::endl;
    std::cout << "R" << std::endl << R << std::endl;
  }

  const cv::Vec3d rotated[3] = {mul(R, sourceNormals[0]),
                                mul(R, sourceNormals[1]),
                                mul(R, sourceNormals[2])};
  cv::Mat P;
  Intersection3Planes(rotated, targetPoints, P);
  const cv::Mat t = P - R * PS;
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) rt[r * 4 + c] = R.at<double>(r, c);
    rt[r * 4 + 3] = t.at<double>(r);
  }
  rt[12] = rt[13] = rt[14] = 0.0;
  rt[15] = 1.0;
}

int convertMatrixRT(const double* const in, double* const out) {
  double m[16];
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c) m[r * 4 + c] = in[c * 4 + r];
  for (int r = 0; r < 3; ++r)
    m[r * 4 + 3] =
        -(m[r * 4 + 0] * in[3] + m[r * 4 + 1] * in[7] + m[r * 4 + 2] * in[11]);
  m[12] = m[13] = m[14] = 0.0;
  m[15] = 1.0;
  for (int k = 0; k < 16; ++k) out[k] = m[k];
  return 1;
}

void projection2Plane(const std::vector<cv::Point3f>& points,
                      const double* const plane,
                      std::vector<cv::Point3f>& out) {
  out.resize(points.size());
  const double a = plane[0], b = plane[1], c = plane[2], d = plane[3];
  for (size_t k = 0; k < points.size(); ++k) {
    const double x = points[k].x, y = points[k].y, z = points[k].z;
    const double e = a * x + b * y + c * z + d;
    out[k] = cv::Point3f(static_cast<float>(x - e * a),
                         static_cast<float>(y - e * b),
                         static_cast<float>(z - e * c));
  }
}

void projection2Plane_tranformed(const std::vector<cv::Point3f>& points,
                                 const double* const plane,
                                 std::vector<cv::Point2f>& out,
                                 double* const transform,
                                 AlignMode mode) {
  projectToPlaneFrame(points, plane, AxisFallback::kZero, mode, out, transform);
}

void getMatrixR(const cv::Vec3d& axis,
                const double& angle,
                cv::Mat& R,
                bool degrees) {
  const double a = degrees ? angle * kPi / 180.0 : angle;
  R = rodrigues(unitOrZero(axis), std::cos(a), std::sin(a));
}

void getRotationMatrix(const cv::Vec3d& axis,
                       double angle,
                       double* const r,
                       bool degrees) {
  cv::Mat R;
  getMatrixR(axis, angle, R, degrees);
  for (int k = 0; k < 9; ++k) r[k] = R.at<double>(k / 3, k % 3);
}

void getMatRT_LineSymmetry(const float* const line, double* const rt) {
  conjugateDiagonal(symmetryFrame(line), -1.0, -1.0, 1.0, rt);
}

void getMatRT_PlaneSymmetry(const float* const plane, double* const rt) {
  conjugateDiagonal(symmetryFrame(plane), 1.0, 1.0, -1.0, rt);
}

void getMatRT_PointSymmetry(const float* const point, double* const rt) {
  const cv::Mat T = (cv::Mat_<double>(4, 4) << 1, 0, 0, -point[0], 0, 1, 0,
                     -point[1], 0, 0, 1, -point[2], 0, 0, 0, 1);
  conjugateDiagonal(T, -1.0, -1.0, -1.0, rt);
}

}  // namespace frame
}  // namespace zelmo
