// XCicle3D: a circle in space sampled into a point list for drawing.
#ifndef ZELMO_DISPLAY_CIRCLE3D_H_
#define ZELMO_DISPLAY_CIRCLE3D_H_

#include <opencv2/core.hpp>

#include "zelmo/display/curve3d.h"
#include "zelmo/export.h"

namespace xgeometry {

// A circle of `radius` about `center` in the plane of `normal`, with
// `majorDir` (in that plane) marking the first point of a list. Fields are
// copied as given; nothing is normalised. Every getDisplayData call prints
// the frame lines of XCurve3D::alignBy3Plane, also when it writes nothing.
class ZELMO_API XCicle3D : public XCurve3D {
 public:
  // All fields 0.
  XCicle3D();
  XCicle3D(const float* const center,
           const float* const normal,
           const float* const majorDir,
           const float& radius);

  // getDisplayData()
  // The object's circle in `count` points, see the form with geometry.
  int getDisplayData(const int& count, float* const out) const;

  // getDisplayData()
  // Writes `count` x, y, z float triples into `out` (room for 3 count
  // floats): the points at angles i 2 pi / count, i = 0 .. count - 1, from
  // `majorDir` towards normal x majorDir, i.e. counter-clockwise about the
  // normal (right-hand rule). The list is open: the first point is not
  // repeated. A count below 1 writes nothing. Returns 0.
  int getDisplayData(const float* const center,
                     const float* const normal,
                     const float* const majorDir,
                     const float& radius,
                     const int& count,
                     float* const out) const;

  // getDisplayData2()
  // As getDisplayData with geometry, the major direction made up from
  // `normal` in double by the perpendicular rule of flat features (a unit
  // vector with a zero component, built on the largest normal component).
  int getDisplayData2(const float* const center,
                      const float* const normal,
                      const float& radius,
                      const int& count,
                      float* const out) const;

 private:
  // The list of getDisplayData for a frame in double.
  int writeCircle(const cv::Vec3d& center,
                  const cv::Vec3d& normal,
                  const cv::Vec3d& majorDir,
                  double radius,
                  int count,
                  float* const out) const;

  float center_[3];
  float normal_[3];
  float major_dir_[3];
  float radius_;
};

}  // namespace xgeometry

#endif  // ZELMO_DISPLAY_CIRCLE3D_H_
