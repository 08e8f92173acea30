#include "tests/support/samplers.h"

#include <cmath>

namespace zelmo {
namespace test {
namespace {

cv::Point3f ToPoint(const cv::Vec3d& v) {
  return cv::Point3f(static_cast<float>(v[0]), static_cast<float>(v[1]),
                     static_cast<float>(v[2]));
}

void Add(Samples& s, const cv::Vec3d& p, const cv::Vec3d& n) {
  s.points.push_back(ToPoint(p));
  s.normals.push_back(ToPoint(n));
}

}  // namespace

std::vector<float> Samples::Xyz() const {
  std::vector<float> out;
  out.reserve(points.size() * 3);
  for (const cv::Point3f& p : points) out.insert(out.end(), {p.x, p.y, p.z});
  return out;
}

std::vector<float> Samples::NormalsXyz() const {
  std::vector<float> out;
  out.reserve(normals.size() * 3);
  for (const cv::Point3f& n : normals) out.insert(out.end(), {n.x, n.y, n.z});
  return out;
}

std::vector<float> Samples::XyzNormals() const {
  std::vector<float> out;
  out.reserve(points.size() * 6);
  for (size_t i = 0; i < points.size(); ++i) {
    const cv::Point3f& p = points[i];
    const cv::Point3f& n = normals[i];
    out.insert(out.end(), {p.x, p.y, p.z, n.x, n.y, n.z});
  }
  return out;
}

Frame RandomFrame(std::mt19937& rng, double maxOffset) {
  std::normal_distribution<double> gauss(0.0, 1.0);
  std::uniform_real_distribution<double> offset(-maxOffset, maxOffset);
  // A normalised Gaussian quaternion is a uniform rotation.
  double q[4];
  double n2 = 0;
  for (double& c : q) {
    c = gauss(rng);
    n2 += c * c;
  }
  for (double& c : q) c /= std::sqrt(n2);
  const double w = q[0], x = q[1], y = q[2], z = q[3];
  Frame f;
  f.u = cv::Vec3d(1 - 2 * (y * y + z * z), 2 * (x * y + w * z),
                  2 * (x * z - w * y));
  f.v = cv::Vec3d(2 * (x * y - w * z), 1 - 2 * (x * x + z * z),
                  2 * (y * z + w * x));
  f.w = f.u.cross(f.v);
  f.origin = cv::Vec3d(offset(rng), offset(rng), offset(rng));
  return f;
}

Frame FrameFromAxis(const cv::Vec3d& origin, const cv::Vec3d& axis) {
  Frame f;
  f.origin = origin;
  f.w = axis * (1.0 / cv::norm(axis));
  const cv::Vec3d helper =
      std::fabs(f.w[0]) < 0.9 ? cv::Vec3d(1, 0, 0) : cv::Vec3d(0, 1, 0);
  f.u = helper - f.w * helper.dot(f.w);
  f.u *= 1.0 / cv::norm(f.u);
  f.v = f.w.cross(f.u);
  return f;
}

Samples SamplePlane(const Frame& f,
                    double halfLength,
                    double halfWidth,
                    int count,
                    double noise,
                    std::mt19937& rng) {
  std::uniform_real_distribution<double> x(-halfLength, halfLength);
  std::uniform_real_distribution<double> y(-halfWidth, halfWidth);
  std::normal_distribution<double> e(0.0, noise > 0 ? noise : 1.0);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double dz = noise > 0 ? e(rng) : 0.0;
    const double px = x(rng), py = y(rng);
    Add(s, f.At(px, py, dz), f.w);
  }
  return s;
}

Samples SampleLine(
    const Frame& f, double length, int count, double noise, std::mt19937& rng) {
  std::uniform_real_distribution<double> t(0.0, length);
  std::normal_distribution<double> e(0.0, noise > 0 ? noise : 1.0);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double pt = t(rng);
    const double dx = noise > 0 ? e(rng) : 0.0;
    const double dy = noise > 0 ? e(rng) : 0.0;
    Add(s, f.At(dx, dy, pt), cv::Vec3d(0, 0, 0));
  }
  return s;
}

Samples SampleSphere(const Frame& f,
                     double radius,
                     int count,
                     double noise,
                     std::mt19937& rng,
                     double maxPolar) {
  // Uniform on the cap: cos(polar) uniform in [cos(maxPolar), 1].
  std::uniform_real_distribution<double> cz(std::cos(maxPolar), 1.0);
  std::uniform_real_distribution<double> az(0.0, 2 * kPi);
  std::normal_distribution<double> e(0.0, noise > 0 ? noise : 1.0);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double c = cz(rng), a = az(rng);
    const double r = std::sqrt(std::max(0.0, 1 - c * c));
    const cv::Vec3d n = r * std::cos(a) * f.u + r * std::sin(a) * f.v + c * f.w;
    const double rr = radius + (noise > 0 ? e(rng) : 0.0);
    Add(s, f.origin + rr * n, n);
  }
  return s;
}

Samples SampleCircle(const Frame& f,
                     double radius,
                     int count,
                     double noise,
                     std::mt19937& rng,
                     double arc) {
  std::uniform_real_distribution<double> az(0.0, arc);
  std::normal_distribution<double> e(0.0, noise > 0 ? noise : 1.0);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double a = az(rng);
    const cv::Vec3d n = std::cos(a) * f.u + std::sin(a) * f.v;
    const double rr = radius + (noise > 0 ? e(rng) : 0.0);
    Add(s, f.origin + rr * n, n);
  }
  return s;
}

Samples SampleCone(const Frame& f,
                   double baseRadius,
                   double topRadius,
                   double height,
                   int count,
                   double noise,
                   std::mt19937& rng,
                   double arc) {
  std::uniform_real_distribution<double> az(0.0, arc);
  std::uniform_real_distribution<double> hz(0.0, height);
  std::normal_distribution<double> e(0.0, noise > 0 ? noise : 1.0);
  // Outward normal of the frustum: radial direction tilted by the slope.
  const double slope = (baseRadius - topRadius) / height;
  const double nr = 1.0 / std::sqrt(1.0 + slope * slope);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double a = az(rng), z = hz(rng);
    const double r = baseRadius + (topRadius - baseRadius) * z / height;
    const cv::Vec3d radial = std::cos(a) * f.u + std::sin(a) * f.v;
    const cv::Vec3d n = nr * radial + nr * slope * f.w;
    const double dn = noise > 0 ? e(rng) : 0.0;
    Add(s, f.origin + r * radial + z * f.w + dn * n, n);
  }
  return s;
}

Samples SampleCylinder(const Frame& f,
                       double radius,
                       double height,
                       int count,
                       double noise,
                       std::mt19937& rng,
                       double arc) {
  return SampleCone(f, radius, radius, height, count, noise, rng, arc);
}

void AddOutliers(Samples& s, const Frame& f, double fraction, double distance) {
  if (fraction <= 0 || s.points.empty()) return;
  const size_t step = std::max<size_t>(1, static_cast<size_t>(1.0 / fraction));
  for (size_t i = 0; i < s.points.size(); i += step) {
    cv::Vec3d n(s.normals[i].x, s.normals[i].y, s.normals[i].z);
    if (cv::norm(n) == 0) n = f.w;
    const cv::Vec3d p(s.points[i].x, s.points[i].y, s.points[i].z);
    s.points[i] = ToPoint(p + distance * n);
  }
}

}  // namespace test
}  // namespace zelmo
