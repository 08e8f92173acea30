#include "zelmo/feature/frame_members.h"

#include "zelmo/feature/frame_toolkit.h"

namespace zelmo {

template <AlignFlavour kFlavour>
int FrameMembers<kFlavour>::Intersection3Planes(const cv::Vec3d* normals,
                                                const cv::Point3d* points,
                                                cv::Mat& out) const {
  return frame::Intersection3Planes(normals, points, out);
}

template <AlignFlavour kFlavour>
void FrameMembers<kFlavour>::getMatRByVector(const cv::Vec3d& from,
                                             const cv::Vec3d& to,
                                             cv::Mat& R) const {
  frame::getMatRByVector(from, to, R);
}

template <AlignFlavour kFlavour>
void FrameMembers<kFlavour>::alignBy3Plane(const cv::Vec3d* targetNormals,
                                           const cv::Point3d* targetPoints,
                                           const cv::Vec3d* sourceNormals,
                                           const cv::Point3d* sourcePoints,
                                           double* const rt) const {
  frame::alignBy3Plane(
      targetNormals, targetPoints, sourceNormals, sourcePoints, rt,
      kFlavour == AlignFlavour::kPlain ? frame::AlignMode::kPlain
                                       : frame::AlignMode::kGuardedPrinting);
}

template <AlignFlavour kFlavour>
int FrameMembers<kFlavour>::convertMatrixRT(const double* const in,
                                            double* const out) const {
  return frame::convertMatrixRT(in, out);
}

template <AlignFlavour kFlavour>
void FrameMembers<kFlavour>::projection2Plane(
    const std::vector<cv::Point3f>& points,
    double* const plane,
    std::vector<cv::Point3f>& out) const {
  frame::projection2Plane(points, plane, out);
}

template class FrameMembers<AlignFlavour::kPlain>;
template class FrameMembers<AlignFlavour::kGuardedPrinting>;

}  // namespace zelmo
