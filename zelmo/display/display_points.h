// Sampling of local outlines into space for the display classes: the frame
// arguments of alignBy3Plane for a local frame, and the writing of local
// (x, y, 0) points through a rigid transform as float triples.
//
// Internal to the library: not exported, so the display classes call it
// from out-of-line members only.
#ifndef ZELMO_DISPLAY_DISPLAY_POINTS_H_
#define ZELMO_DISPLAY_DISPLAY_POINTS_H_

#include <opencv2/core.hpp>

namespace zelmo {
namespace display {

// The three planes of alignBy3Plane that carry the unit axes at the origin
// (source) onto the planes through `origin` with the normals x, y, z
// (target), so that the result maps local coordinates to space.
struct LocalFramePlanes {
  LocalFramePlanes(const cv::Vec3d& origin,
                   const cv::Vec3d& x,
                   const cv::Vec3d& y,
                   const cv::Vec3d& z);
  cv::Vec3d targetNormals[3];
  cv::Point3d targetPoints[3];
  cv::Vec3d sourceNormals[3];
  cv::Point3d sourcePoints[3];
};

// The float triple `v` widened to double.
cv::Vec3d widen(const float* const v);

// The angular step 2 pi / count of a display list; a count of 0 gives an
// infinite step, which the callers never use since they then write no arc.
double angularStep(int count);

// Writes the local point (x, y, 0) sent through the rigid transform `rt`
// (16 doubles) as one float triple at `out`; returns out + 3.
float* writeLocalPoint(const double* rt, double x, double y, float* out);

// Writes the arc points (cx + r cos(i step), cy + r sin(i step), 0) for
// i = first .. last - 1 through `rt`, in that order; nothing when
// last <= first. Returns the position after the last triple written.
float* writeLocalArc(const double* rt,
                     double cx,
                     double cy,
                     double r,
                     double step,
                     int first,
                     int last,
                     float* out);

}  // namespace display
}  // namespace zelmo

#endif  // ZELMO_DISPLAY_DISPLAY_POINTS_H_
