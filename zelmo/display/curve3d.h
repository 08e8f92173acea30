// XCurve3D: the base of the flat display outlines (circle, oval groove,
// rectangle, round groove). It holds no data and offers the frame routines
// to its subclasses; its alignBy3Plane is the guarded one that prints its
// normals and rotations, so every display call of the family prints them.
#ifndef ZELMO_DISPLAY_CURVE3D_H_
#define ZELMO_DISPLAY_CURVE3D_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/frame_members.h"

namespace xgeometry {

// No data; subclasses sample their outlines through getLocalFrame.
class ZELMO_API XCurve3D
    : public zelmo::FrameMembers<zelmo::AlignFlavour::kGuardedPrinting> {
 protected:
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
