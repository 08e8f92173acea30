// The local frame of points lying in a plane, with its in-plane x axis
// chosen from the points themselves, and the moves between space and the
// frame's two-dimensional coordinates. Flat fits work in this frame: they
// take the points into it, fit in two dimensions and move the result back.
//
// Internal to the library: not exported.
#ifndef ZELMO_FEATURE_PLANE_FRAME_H_
#define ZELMO_FEATURE_PLANE_FRAME_H_

#include <opencv2/core.hpp>
#include <vector>

namespace zelmo {
namespace frame {

// The two transforms (16 doubles each, row-major) of a plane's local frame.
struct PlaneFrame {
  double toLocal[16];  // space to local: x, y in the plane, z along normal
  double toSpace[16];  // its inverse
};

// planeLocalAxis()
// The in-plane x axis (unit) for points `projected` onto the plane of unit
// normal `n` about their mean `c`: towards the first point that lies at
// least kFrameAxisMinOffset from `c` in some coordinate. When none does
// (all points at the mean, or none at all) it is unit((unit(n x t)) x n)
// with t = (0, 1, 0) when |n0| is at least |n1| and |n2|, else (1, 0, 0).
cv::Vec3d planeLocalAxis(const std::vector<cv::Point3f>& projected,
                         const cv::Vec3d& c,
                         const cv::Vec3d& n);

// planeLocalFrame()
// The frame of `projected` (points already in `plane`, a, b, c, d with
// unit normal): origin at their mean in double, x by planeLocalAxis, y =
// unit(n x x), z = n. toLocal comes from the plain alignBy3Plane of the
// axes onto the coordinate planes, toSpace from convertMatrixRT.
void planeLocalFrame(const std::vector<cv::Point3f>& projected,
                     const double* const plane,
                     PlaneFrame& frame);

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
