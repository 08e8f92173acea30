// The frame routines as protected members, for the classes that offer them
// to their subclasses (X3DFit, XCurve3DFit, XGeometry3D: the plain form;
// XCurve3D: the guarded form that prints). One set of members serves all of
// them; the classes differ only in the flavour of alignBy3Plane.
#ifndef ZELMO_FEATURE_FRAME_MEMBERS_H_
#define ZELMO_FEATURE_FRAME_MEMBERS_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"

namespace zelmo {

// Which alignBy3Plane a class carries.
enum class AlignFlavour {
  // Opposite second pairs are turned by whatever half-turn the rotation
  // between two directions picks.
  kPlain,
  // Opposite second pairs turn half about the first rotated normal, which
  // stays on its target; prints "vec_model:", the target normals,
  // "vec_test", the source normals and the rotations R1, R2, R at each call.
  kGuardedPrinting,
};

template <AlignFlavour kFlavour>
class ZELMO_API FrameMembers {
 protected:
  // Intersection3Planes()
  // The point shared by the planes (normals[k], points[k]), k = 0..2, as a
  // 3 x 1 double matrix in `out`. Returns 1, or 0 with `out` untouched when
  // the determinant of the normals is below 1e-6 in size.
  int Intersection3Planes(const cv::Vec3d* normals,
                          const cv::Point3d* points,
                          cv::Mat& out) const;
  // getMatRByVector()
  // The rotation (new 3 x 3 double matrix) carrying direction `from` onto
  // `to`, parallel and opposite directions included.
  void getMatRByVector(const cv::Vec3d& from,
                       const cv::Vec3d& to,
                       cv::Mat& R) const;
  // alignBy3Plane()
  // The rigid transform `rt` (16 doubles, row-major) carrying the three
  // source planes onto the three target planes, in the class's flavour.
  // Each triple of normals must be independent.
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
  // Projects `points` onto `plane` (a, b, c, d, unit normal, not tested) in
  // double and stores floats; `out` takes the size of `points`.
  void projection2Plane(const std::vector<cv::Point3f>& points,
                        double* const plane,
                        std::vector<cv::Point3f>& out) const;
};

extern template class FrameMembers<AlignFlavour::kPlain>;
extern template class FrameMembers<AlignFlavour::kGuardedPrinting>;

}  // namespace zelmo

#endif  // ZELMO_FEATURE_FRAME_MEMBERS_H_
