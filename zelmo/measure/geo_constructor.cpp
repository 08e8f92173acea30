#include "zelmo/measure/geo_constructor.h"

#include <cmath>
#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/measure/record_math.h"

namespace xgeomeasure {
namespace {

using zelmo::measure::isSmall;
using zelmo::measure::store;
using zelmo::measure::unitOrZero;
using zelmo::measure::vec;
// |direction . normal| below this means a line runs parallel to a plane.
constexpr double kParallelDot = 1e-6;
// A determinant below this in magnitude means four points are coplanar.
constexpr double kSphereDetEps = 1e-6;
// Two non-parallel lines farther apart than this (in units of the length of
// the cross product of their directions) are skew.
constexpr double kSkewDistance = 1e-5;

// The square of a coordinate, taken in float as the circle and sphere
// constructions require.
double floatSquare(float x) { return static_cast<double>(x * x); }

double floatSquaredNorm(const float* const p) {
  return floatSquare(p[0]) + floatSquare(p[1]) + floatSquare(p[2]);
}

// Six floats of a line or plane from a point and a direction.
void makeLine(const float* const point,
              const float* const dir,
              float* const line) {
  for (int k = 0; k < 3; ++k) {
    line[k] = point[k];
    line[3 + k] = dir[k];
  }
}

}  // namespace

int XGeoConstructor::Circle3D_3Point(const float* const points3,
                                     float* const circle) {
  const cv::Vec3d p0 = vec(points3);
  const cv::Vec3d a = vec(points3 + 3) - p0;
  const cv::Vec3d b = vec(points3 + 6) - p0;
  if (isSmall(a) || isSmall(b)) return kFailed;
  const cv::Vec3d c = a.cross(b);
  if (isSmall(c)) return kFailed;
  const cv::Vec3d normal = unitOrZero(c);
  const cv::Vec3d reference = unitOrZero(a);

  double plane[4] = {normal[0], normal[1], normal[2], -normal.dot(p0)};
  const std::vector<cv::Point3f> points = {
      cv::Point3f(points3[0], points3[1], points3[2]),
      cv::Point3f(points3[3], points3[4], points3[5]),
      cv::Point3f(points3[6], points3[7], points3[8])};
  std::vector<cv::Point2f> q;
  double toPlane[16];
  zelmo::frame::projection2Plane_tranformed(points, plane, q, toPlane,
                                            zelmo::frame::AlignMode::kGuarded);

  const cv::Mat A = (cv::Mat_<double>(2, 2) << double(q[0].x) - q[1].x,
                     double(q[0].y) - q[1].y, double(q[1].x) - q[2].x,
                     double(q[1].y) - q[2].y);
  const cv::Mat rhs = (cv::Mat_<double>(2, 1)
                           << 0.5 * (floatSquare(q[0].x) - floatSquare(q[1].x) +
                                     floatSquare(q[0].y) - floatSquare(q[1].y)),
                       0.5 * (floatSquare(q[1].x) - floatSquare(q[2].x) +
                              floatSquare(q[1].y) - floatSquare(q[2].y)));
  const cv::Mat inverse = A.inv();  // explicit inverse, then the product
  const cv::Mat centre2 = inverse * rhs;
  const double cx = centre2.at<double>(0), cy = centre2.at<double>(1);
  const double radius =
      std::sqrt((cx - q[0].x) * (cx - q[0].x) + (cy - q[0].y) * (cy - q[0].y));

  double toWorld[16];
  zelmo::frame::convertMatrixRT(toPlane, toWorld);
  for (int r = 0; r < 3; ++r)
    circle[r] = static_cast<float>(
        toWorld[4 * r] * cx + toWorld[4 * r + 1] * cy + toWorld[4 * r + 3]);
  store(normal, circle + 3);
  store(reference, circle + 6);
  circle[9] = static_cast<float>(radius);
  return kOk;
}

int XGeoConstructor::Plane_3Point(const float* const points3,
                                  float* const plane) {
  float a[3], b[3];
  for (int k = 0; k < 3; ++k) {
    a[k] = points3[3 + k] - points3[k];  // difference rounded to float
    b[k] = points3[6 + k] - points3[k];
  }
  if (isSmall(vec(a)) || isSmall(vec(b))) return kFailed;
  const cv::Vec3d c = vec(a).cross(vec(b));
  if (isSmall(c)) return kFailed;
  for (int k = 0; k < 3; ++k) plane[k] = points3[k];
  store(unitOrZero(c), plane + 3);
  return kOk;
}

int XGeoConstructor::Sphere_4Point(const float* const points4,
                                   float* const sphere) {
  cv::Mat A(3, 3, CV_64F), rhs(3, 1, CV_64F);
  for (int r = 0; r < 3; ++r) {
    const float* const p = points4 + 3 * r;
    const float* const q = points4 + 3 * (r + 1);
    for (int k = 0; k < 3; ++k)
      A.at<double>(r, k) = p[k] - q[k];  // difference rounded to float
    rhs.at<double>(r) = 0.5 * (floatSquaredNorm(p) - floatSquaredNorm(q));
  }
  if (std::fabs(cv::determinant(A)) < kSphereDetEps) return kFailed;
  const cv::Mat inverse = A.inv();  // explicit inverse, then the product
  const cv::Mat centre = inverse * rhs;
  for (int k = 0; k < 3; ++k)
    sphere[k] = static_cast<float>(centre.at<double>(k));
  // The radius is measured from the centre as stored, in float.
  const cv::Vec3d d = vec(sphere) - vec(points4);
  sphere[3] = static_cast<float>(cv::norm(d));
  return kOk;
}

int XGeoConstructor::Intersection_Line_Line(const float* const line1,
                                            const float* const line2,
                                            float* const point) {
  const cv::Vec3d p = vec(line1), u = vec(line1 + 3);
  const cv::Vec3d q = vec(line2), w = vec(line2 + 3);
  const cv::Vec3d d = q - p;
  const cv::Vec3d c = u.cross(w);
  // Exact comparison: only truly parallel directions count as parallel.
  if (c[0] == 0.0 && c[1] == 0.0 && c[2] == 0.0) return kParallel;
  if (std::fabs(d.dot(c)) > kSkewDistance) return kSkew;
  const cv::Vec3d e = d.cross(w);
  double t = cv::norm(e) / cv::norm(c);
  if (e.dot(c) < 0.0) t = -t;
  store(p + t * u, point);
  return kIntersecting;
}

int XGeoConstructor::Intersection_Line_Line2(const float* const line1,
                                             const float* const line2,
                                             float* const point1,
                                             float* const point2) {
  const cv::Vec3d u = vec(line1 + 3), w = vec(line2 + 3);
  const cv::Vec3d c = unitOrZero(u.cross(w));
  float m[3], m2[3], plane[6];
  store(unitOrZero(c.cross(u)), m);
  makeLine(line1, m, plane);
  Intersection_Line_Plane(line2, plane, point2);
  store(c.cross(w), m2);
  makeLine(line2, m2, plane);
  Intersection_Line_Plane(line1, plane, point1);
  return kOk;
}

int XGeoConstructor::Intersection_Line_Plane(const float* const line,
                                             const float* const plane,
                                             float* const point) {
  const cv::Vec3d p = vec(line), u = vec(line + 3);
  const cv::Vec3d n = vec(plane + 3);
  const double s = u.dot(n);
  if (std::fabs(s) < kParallelDot) return kFailed;
  const double t = (vec(plane) - p).dot(n) / s;
  store(p + t * u, point);
  return kOk;
}

int XGeoConstructor::Intersection_Plane_Plane(const float* const plane1,
                                              const float* const plane2,
                                              float* const line) {
  const cv::Vec3d d = vec(plane1 + 3).cross(vec(plane2 + 3));
  if (isSmall(d)) return kFailed;
  const cv::Vec3d dir = unitOrZero(d);
  // D of each plane, summed in float.
  const float d1 =
      -(plane1[0] * plane1[3] + plane1[1] * plane1[4] + plane1[2] * plane1[5]);
  const float d2 =
      -(plane2[0] * plane2[3] + plane2[1] * plane2[4] + plane2[2] * plane2[5]);
  int k = 0;
  if (std::fabs(dir[1]) > std::fabs(dir[k])) k = 1;
  if (std::fabs(dir[2]) > std::fabs(dir[k])) k = 2;
  const int i = k == 0 ? 1 : 0;
  const int j = k == 2 ? 1 : 2;
  // The coefficients are the planes' point coordinates, kept so on purpose.
  const cv::Mat A =
      (cv::Mat_<double>(2, 2) << plane1[i], plane1[j], plane2[i], plane2[j]);
  const cv::Mat rhs = (cv::Mat_<double>(2, 1) << -d1, -d2);
  // A singular system (e.g. both points at the origin) inverts to zeros, so
  // the point is then 0, 0, 0.
  const cv::Mat inverse = A.inv();
  const cv::Mat st = inverse * rhs;
  line[i] = static_cast<float>(st.at<double>(0));
  line[j] = static_cast<float>(st.at<double>(1));
  line[k] = k == 2 ? 0.0f : -0.0f;
  store(dir, line + 3);
  return kOk;
}

int XGeoConstructor::Projection_Point_Line(const float* const point,
                                           const float* const line,
                                           float* const out) {
  const cv::Vec3d o = vec(line);
  const cv::Vec3d diff = o - vec(point);
  if (isSmall(diff)) {
    for (int k = 0; k < 3; ++k) out[k] = line[k];
    return kOk;
  }
  const cv::Vec3d d = vec(line + 3);
  store(o - diff.dot(d) * d, out);
  return kOk;
}

int XGeoConstructor::Projection_Point_Plane(const float* const point,
                                            const float* const plane,
                                            float* const out) {
  float line[6];
  makeLine(point, plane + 3, line);
  Intersection_Line_Plane(line, plane, out);
  return kOk;
}

int XGeoConstructor::Projection_Line_Plane(const float* const line,
                                           const float* const plane,
                                           float* const out) {
  if (isSmall(vec(line + 3).cross(vec(plane + 3)))) return kFailed;
  const float ahead[3] = {line[0] + line[3], line[1] + line[4],
                          line[2] + line[5]};  // one direction on, in float
  // A failed projection (a normal too short to meet) keeps the point itself.
  float foot[3] = {line[0], line[1], line[2]};
  float footAhead[3] = {ahead[0], ahead[1], ahead[2]};
  Projection_Point_Plane(line, plane, foot);
  Projection_Point_Plane(ahead, plane, footAhead);
  const cv::Vec3d dir = unitOrZero(vec(foot) - vec(footAhead));
  for (int k = 0; k < 3; ++k) out[k] = foot[k];
  store(dir, out + 3);
  return kOk;
}

void XGeoConstructor::getMatRT_LineSymmetry(const float* const line,
                                            double* const rt) {
  zelmo::frame::getMatRT_LineSymmetry(line, rt);
}

void XGeoConstructor::getMatRT_PlaneSymmetry(const float* const plane,
                                             double* const rt) {
  zelmo::frame::getMatRT_PlaneSymmetry(plane, rt);
}

void XGeoConstructor::getMatRT_PointSymmetry(const float* const point,
                                             double* const rt) {
  zelmo::frame::getMatRT_PointSymmetry(point, rt);
}

}  // namespace xgeomeasure
