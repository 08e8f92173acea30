// The local frame of points lying in a plane, with its in-plane x axis
// chosen from the points themselves, and the moves between space and the
// frame's two-dimensional coordinates. Flat fits and flat tolerances work in
// this frame: they take the points into it, work in two dimensions and move
// the result back.
//
// Internal to the library: not exported.
#ifndef ZELMO_FEATURE_PLANE_FRAME_H_
#define ZELMO_FEATURE_PLANE_FRAME_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/feature/frame_toolkit.h"

namespace zelmo {
namespace frame {

// How the local x axis is picked when no projected point lies
// kFrameAxisMinOffset away from the centroid in some coordinate.
enum class AxisFallback {
  // x stays zero and the frame is degenerate: the singular solve of
  // alignBy3Plane raises OpenCV's error.
  kZero,
  // x = unit(unit(n x t) x n), with t = (0, 1, 0) when |n0| is at least
  // |n1| and |n2|, else (1, 0, 0): any in-plane axis, so that a cloud
  // gathered in one spot still gets a frame.
  kSeedAxis,
};

// The two transforms (16 doubles each, row-major) of a plane's local frame.
struct PlaneFrame {
  double toLocal[16];  // space to local: x, y in the plane, z along normal
  double toSpace[16];  // its inverse
};

// planeLocalAxis()
// The in-plane x axis (unit) for points `projected` onto the plane of unit
// normal `n` about their mean `c`: towards the first point (input order)
// that lies at least kFrameAxisMinOffset from `c` in some coordinate; when
// none does (all points at the mean, or none at all), by `fallback`.
cv::Vec3d planeLocalAxis(const std::vector<cv::Point3f>& projected,
                         const cv::Vec3d& c,
                         const cv::Vec3d& n,
                         AxisFallback fallback = AxisFallback::kSeedAxis);

// planeLocalFrame()
// The frame of `projected` (points already in `plane`, a, b, c, d with unit
// normal): origin at their mean in double, x by planeLocalAxis, y =
// unit(n x x), z = n. toLocal comes from alignBy3Plane (flavour `mode`) of
// the axes onto the coordinate planes, toSpace from convertMatrixRT.
void planeLocalFrame(const std::vector<cv::Point3f>& projected,
                     const double* const plane,
                     PlaneFrame& frame,
                     AlignMode mode = AlignMode::kPlain,
                     AxisFallback fallback = AxisFallback::kSeedAxis);

// projectToPlaneFrame()
// Projects `points` onto `plane`, builds planeLocalFrame of the projections
// and writes their 2D coordinates into `out`, and toLocal (16 doubles) into
// `transform` when it is not null.
void projectToPlaneFrame(const std::vector<cv::Point3f>& points,
                         const double* const plane,
                         AxisFallback fallback,
                         AlignMode mode,
                         std::vector<cv::Point2f>& out,
                         double* const transform);

// planeBoxCorners()
// The bounding box of `points` in the frame of `plane` (projectToPlaneFrame
// with the seed-axis fallback and alignBy3Plane flavour `mode`): the
// cv::minAreaRect of the 2D points, returned, whose angle is deliberately
// ignored: the box is taken along the local axes, centre -/+ half sizes.
// Writes its corners (+,+), (-,+), (-,-), (+,-) moved back to space as 12
// floats into `corners`, and the frame's toSpace into `toSpace` (16
// doubles) when it is not null.
cv::RotatedRect planeBoxCorners(const std::vector<cv::Point3f>& points,
                                const double* const plane,
                                AlignMode mode,
                                float* const corners,
                                double* const toSpace);

// toLocal2D()
// x and y of each point under the first two rows of `toLocal`, computed in
// double and stored as cv::Point2f; `out` takes the size of `points`.
void toLocal2D(const std::vector<cv::Point3f>& points,
               const double* const toLocal,
               std::vector<cv::Point2f>& out);

// fromLocal2D()
// The point (x, y, 0) of the frame in space: columns 0, 1 and 3 of
// `toSpace`, in double.
cv::Vec3d fromLocal2D(const double* const toSpace, double x, double y);

// localDirection()
// The in-plane direction at `angle` radians from the frame's x axis:
// cos(angle) column 0 plus sin(angle) column 1 of `toSpace`, in double.
cv::Vec3d localDirection(const double* const toSpace, double angle);

}  // namespace frame
}  // namespace zelmo

#endif  // ZELMO_FEATURE_PLANE_FRAME_H_
