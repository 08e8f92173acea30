// XCurve3D: the base of the flat display outlines (circle, oval groove,
// rectangle, round groove). It holds no data and offers the frame routines
// to its subclasses; its alignBy3Plane is the guarded one that prints its
// normals and rotations, so every display call of the family prints them.
#ifndef ZELMO_DISPLAY_CURVE3D_H_
#define ZELMO_DISPLAY_CURVE3D_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"

namespace xgeometry {

// No data; subclasses sample their outlines through getLocalFrame.
class ZELMO_API XCurve3D {
 protected:
  // Intersection3Planes()
  // The point shared by the planes (normals[k], points[k]), k = 0..2, as a
  // 3 x 1 double matrix in `out`. Returns 1, or 0 with `out` untouched when
  // the determinant of the normals is below 1e-6 in size.
  int Intersection3Planes(const cv::Vec3d* normals,
                          const cv::Point3d* points,
                          cv::Mat& out) const;

  // getMatRByVector()
  // The rotation carrying the direction `from` onto `to`, as a new 3 x 3
  // double matrix in `R`; parallel and opposite directions included.
  void getMatRByVector(const cv::Vec3d& from,
                       const cv::Vec3d& to,
                       cv::Mat& R) const;

  // alignBy3Plane()
  // The rigid transform `rt` (16 doubles, row-major) that carries the three
  // source planes onto the three target planes. Opposite second pairs turn
  // half about the first rotated normal, which stays on its target. Prints
  // "vec_model:", the target normals, "vec_test", the source normals, and
  // the rotations R1, R2, R on the standard output at each call. The
  // normals of each triple must be independent.
  void alignBy3Plane(const cv::Vec3d* targetNormals,
                     const cv::Point3d* targetPoints,
                     const cv::Vec3d* sourceNormals,
                     const cv::Point3d* sourcePoints,
                     double* const rt) const;

  // convertMatrixRT()
  // Inverts the rigid transform `in` into `out` (may alias) without testing
  // that it is rigid. Returns 1.
  int convertMatrixRT(const double* const in, double* const out) const;

  // projection2Plane()
  // Projects `points` onto `plane` (a, b, c, d with (a, b, c) of unit
  // length, not tested), in double, stored as floats; `out` takes the size
  // of `points`.
  void projection2Plane(const std::vector<cv::Point3f>& points,
                        double* const plane,
                        std::vector<cv::Point3f>& out) const;

  // getLocalFrame()
  // The transform `rt` (16 doubles) that carries local outline coordinates
  // into space: x along `majorDir`, y along unit(normal x majorDir), z along
  // `normal`, the origin at `center`. Built by this class's alignBy3Plane,
  // so it prints. `normal` and `majorDir` must not be parallel.
  void getLocalFrame(const cv::Vec3d& center,
                     const cv::Vec3d& normal,
                     const cv::Vec3d& majorDir,
                     double* const rt) const;

 private:
  // getMatrixR()
  // The rotation by `angle` (degrees when `degrees`) about `axis`, made unit
  // in double, as a new 3 x 3 double matrix; a zero axis gives cos(angle)
  // on the diagonal.
  static void getMatrixR(const cv::Vec3d& axis,
                         const double& angle,
                         cv::Mat& R,
                         bool degrees);
};

}  // namespace xgeometry

#endif  // ZELMO_DISPLAY_CURVE3D_H_
