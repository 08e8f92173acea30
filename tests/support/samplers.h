// Samplers of points (with outward normals) on known shapes, for recovery
// tests: fit the samples, compare with the shape. All randomness comes from
// the caller's seeded std::mt19937; print the seed with SCOPED_TRACE.
#ifndef ZELMO_TESTS_SUPPORT_SAMPLERS_H_
#define ZELMO_TESTS_SUPPORT_SAMPLERS_H_

#include <opencv2/core.hpp>
#include <random>
#include <vector>

namespace zelmo {
namespace test {

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

// Points with unit outward normals, both as float triples.
struct Samples {
  std::vector<cv::Point3f> points;
  std::vector<cv::Point3f> normals;
  // x, y, z triples; and x, y, z, nx, ny, nz sextuples.
  std::vector<float> Xyz() const;
  std::vector<float> XyzNormals() const;
  std::vector<float> NormalsXyz() const;
  int Count() const { return static_cast<int>(points.size()); }
};

// A uniformly random rotation frame with its origin uniform in
// [-maxOffset, maxOffset]^3.
Frame RandomFrame(std::mt19937& rng, double maxOffset);
// The frame with axis `w` (normalised) and any u, v completing it.
Frame FrameFromAxis(const cv::Vec3d& origin, const cv::Vec3d& w);

// Each sampler adds Gaussian noise of deviation `noise` along the normal.
// Points on the rectangle [-halfLength, halfLength] x [-halfWidth, halfWidth]
// in the (u, v) plane of `f`; normals are +w.
Samples SamplePlane(const Frame& f,
                    double halfLength,
                    double halfWidth,
                    int count,
                    double noise,
                    std::mt19937& rng);
// Points on the segment origin + t w, t in [0, length]; noise is across
// the line; normals are zero.
Samples SampleLine(
    const Frame& f, double length, int count, double noise, std::mt19937& rng);
// Points on the sphere about f.origin with polar angle from +w up to
// `maxPolar` (kPi: the full sphere; less: a cap).
Samples SampleSphere(const Frame& f,
                     double radius,
                     int count,
                     double noise,
                     std::mt19937& rng,
                     double maxPolar = kPi);
// Points on the circle of `radius` about f.origin in the (u, v) plane, at
// angles in [0, arc) from u; normals point away from the centre.
Samples SampleCircle(const Frame& f,
                     double radius,
                     int count,
                     double noise,
                     std::mt19937& rng,
                     double arc = 2 * kPi);
// Points on the cylinder of axis w from f.origin (z = 0) to z = height, at
// angles in [0, arc) from u.
Samples SampleCylinder(const Frame& f,
                       double radius,
                       double height,
                       int count,
                       double noise,
                       std::mt19937& rng,
                       double arc = 2 * kPi);
// Points on the cone frustum of axis w: radius baseRadius at z = 0,
// topRadius at z = height, angles in [0, arc) from u.
Samples SampleCone(const Frame& f,
                   double baseRadius,
                   double topRadius,
                   double height,
                   int count,
                   double noise,
                   std::mt19937& rng,
                   double arc = 2 * kPi);

// Replaces a `fraction` of the points (every k-th) by points moved `distance`
// along their normal (or along w where the normal is zero).
void AddOutliers(Samples& s, const Frame& f, double fraction, double distance);

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_SUPPORT_SAMPLERS_H_
