#include "zelmo/feature/xf_base.h"

#include <opencv2/core.hpp>

#include "zelmo/feature/frame_toolkit.h"

namespace xgeofeature {

int XFBase::getRotationMatrix(const float* const axis,
                              const float& angle,
                              double* const r,
                              bool degrees) {
  zelmo::frame::getRotationMatrix(cv::Vec3d(axis[0], axis[1], axis[2]),
                                  static_cast<double>(angle), r, degrees);
  return 0;
}

void XFBase::getMatRT_PointSymmetry(const float* const point,
                                    double* const rt) {
  zelmo::frame::getMatRT_PointSymmetry(point, rt);
}

void XFBase::getMatRT_LineSymmetry(const float* const line, double* const rt) {
  zelmo::frame::getMatRT_LineSymmetry(line, rt);
}

void XFBase::getMatRT_PlaneSymmetry(const float* const plane,
                                    double* const rt) {
  zelmo::frame::getMatRT_PlaneSymmetry(plane, rt);
}

}  // namespace xgeofeature
