// Samplers of points (with outward normals) on known shapes, for recovery
// tests: fit the samples, compare with the shape. All randomness comes from
// the caller's seeded std::mt19937; print the seed with SCOPED_TRACE.
#pragma once

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>
#include <random>
#include <vector>

namespace zelmo::test {

constexpr double kPi = 3.14159265358979323846;

// An orthonormal right-handed frame: u x v = w. Shapes are described in it:
// w is a plane's normal or a solid's axis, u its major direction.
struct Frame {
  cv::Vec3d origin;
  cv::Vec3d u, v, w;
  cv::Vec3d At(double x, double y, double z) const {
    return origin + x * u + y * v + z * w;
  }
};

inline cv::Point3f ToPoint3f(const cv::Vec3d& v) {
  return cv::Point3f(static_cast<float>(v[0]), static_cast<float>(v[1]),
                     static_cast<float>(v[2]));
}

// Points with unit outward normals, both as float triples.
struct Samples {
  std::vector<cv::Point3f> points;
  std::vector<cv::Point3f> normals;
  // x, y, z triples; and x, y, z, nx, ny, nz sextuples.
  std::vector<float> Xyz() const { return Flat(points, nullptr); }
  std::vector<float> XyzNormals() const { return Flat(points, &normals); }
  std::vector<float> NormalsXyz() const { return Flat(normals, nullptr); }
  int Count() const { return static_cast<int>(points.size()); }
  void Add(const cv::Vec3d& p, const cv::Vec3d& n) {
    points.push_back(ToPoint3f(p));
    normals.push_back(ToPoint3f(n));
  }

 private:
  static std::vector<float> Flat(const std::vector<cv::Point3f>& a,
                                 const std::vector<cv::Point3f>* b) {
    std::vector<float> out;
    for (size_t i = 0; i < a.size(); ++i) {
      out.insert(out.end(), {a[i].x, a[i].y, a[i].z});
      if (b) out.insert(out.end(), {(*b)[i].x, (*b)[i].y, (*b)[i].z});
    }
    return out;
  }
};

// Gaussian noise of deviation `noise`; none (and no draw) when noise <= 0.
class Noise {
 public:
  explicit Noise(double noise) : on_(noise > 0), e_(0.0, on_ ? noise : 1.0) {}
  double operator()(std::mt19937& rng) { return on_ ? e_(rng) : 0.0; }

 private:
  bool on_;
  std::normal_distribution<double> e_;
};

// A uniformly random rotation frame with its origin uniform in
// [-maxOffset, maxOffset]^3.
inline Frame RandomFrame(std::mt19937& rng, double maxOffset) {
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

// The frame with axis `w` (normalised) and any u, v completing it.
inline Frame FrameFromAxis(const cv::Vec3d& origin, const cv::Vec3d& w) {
  Frame f;
  f.origin = origin;
  f.w = w * (1.0 / cv::norm(w));
  const cv::Vec3d helper =
      std::fabs(f.w[0]) < 0.9 ? cv::Vec3d(1, 0, 0) : cv::Vec3d(0, 1, 0);
  f.u = helper - f.w * helper.dot(f.w);
  f.u *= 1.0 / cv::norm(f.u);
  f.v = f.w.cross(f.u);
  return f;
}

// Each sampler adds Gaussian noise of deviation `noise` along the normal.
// Points on the rectangle [-halfLength, halfLength] x [-halfWidth, halfWidth]
// in the (u, v) plane of `f`; normals are +w.
inline Samples SamplePlane(const Frame& f,
                           double halfLength,
                           double halfWidth,
                           int count,
                           double noise,
                           std::mt19937& rng) {
  std::uniform_real_distribution<double> x(-halfLength, halfLength);
  std::uniform_real_distribution<double> y(-halfWidth, halfWidth);
  Noise e(noise);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double dz = e(rng), px = x(rng), py = y(rng);
    s.Add(f.At(px, py, dz), f.w);
  }
  return s;
}

// Points on the segment origin + t w, t in [0, length]; noise is across
// the line; normals are zero.
inline Samples SampleLine(
    const Frame& f, double length, int count, double noise, std::mt19937& rng) {
  std::uniform_real_distribution<double> t(0.0, length);
  Noise e(noise);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double pt = t(rng), dx = e(rng), dy = e(rng);
    s.Add(f.At(dx, dy, pt), cv::Vec3d(0, 0, 0));
  }
  return s;
}

// Points on the sphere about f.origin with polar angle from +w up to
// `maxPolar` (kPi: the full sphere; less: a cap).
inline Samples SampleSphere(const Frame& f,
                            double radius,
                            int count,
                            double noise,
                            std::mt19937& rng,
                            double maxPolar = kPi) {
  // Uniform on the cap: cos(polar) uniform in [cos(maxPolar), 1].
  std::uniform_real_distribution<double> cz(std::cos(maxPolar), 1.0);
  std::uniform_real_distribution<double> az(0.0, 2 * kPi);
  Noise e(noise);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double c = cz(rng), a = az(rng);
    const double r = std::sqrt(std::max(0.0, 1 - c * c));
    const cv::Vec3d n = r * std::cos(a) * f.u + r * std::sin(a) * f.v + c * f.w;
    s.Add(f.origin + (radius + e(rng)) * n, n);
  }
  return s;
}

// Points on the circle of `radius` about f.origin in the (u, v) plane, at
// angles in [0, arc) from u; normals point away from the centre.
inline Samples SampleCircle(const Frame& f,
                            double radius,
                            int count,
                            double noise,
                            std::mt19937& rng,
                            double arc = 2 * kPi) {
  std::uniform_real_distribution<double> az(0.0, arc);
  Noise e(noise);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double a = az(rng);
    const cv::Vec3d n = std::cos(a) * f.u + std::sin(a) * f.v;
    s.Add(f.origin + (radius + e(rng)) * n, n);
  }
  return s;
}

// Points on the cone frustum of axis w: radius baseRadius at z = 0,
// topRadius at z = height, angles in [0, arc) from u.
inline Samples SampleCone(const Frame& f,
                          double baseRadius,
                          double topRadius,
                          double height,
                          int count,
                          double noise,
                          std::mt19937& rng,
                          double arc = 2 * kPi) {
  std::uniform_real_distribution<double> az(0.0, arc);
  std::uniform_real_distribution<double> hz(0.0, height);
  Noise e(noise);
  // Outward normal of the frustum: radial direction tilted by the slope.
  const double slope = (baseRadius - topRadius) / height;
  const double nr = 1.0 / std::sqrt(1.0 + slope * slope);
  Samples s;
  for (int i = 0; i < count; ++i) {
    const double a = az(rng), z = hz(rng);
    const double r = baseRadius + (topRadius - baseRadius) * z / height;
    const cv::Vec3d radial = std::cos(a) * f.u + std::sin(a) * f.v;
    const cv::Vec3d n = nr * radial + nr * slope * f.w;
    s.Add(f.origin + r * radial + z * f.w + e(rng) * n, n);
  }
  return s;
}

// Points on the cylinder of axis w from f.origin (z = 0) to z = height, at
// angles in [0, arc) from u.
inline Samples SampleCylinder(const Frame& f,
                              double radius,
                              double height,
                              int count,
                              double noise,
                              std::mt19937& rng,
                              double arc = 2 * kPi) {
  return SampleCone(f, radius, radius, height, count, noise, rng, arc);
}

// Replaces a `fraction` of the points (every k-th) by points moved `distance`
// along their normal (or along w where the normal is zero).
inline void AddOutliers(Samples& s,
                        const Frame& f,
                        double fraction,
                        double distance) {
  if (fraction <= 0 || s.points.empty()) return;
  const size_t step = std::max<size_t>(1, static_cast<size_t>(1.0 / fraction));
  for (size_t i = 0; i < s.points.size(); i += step) {
    cv::Vec3d n(s.normals[i].x, s.normals[i].y, s.normals[i].z);
    if (cv::norm(n) == 0) n = f.w;
    const cv::Vec3d p(s.points[i].x, s.points[i].y, s.points[i].z);
    s.points[i] = ToPoint3f(p + distance * n);
  }
}

}  // namespace zelmo::test
