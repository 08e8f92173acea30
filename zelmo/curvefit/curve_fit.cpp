#include "zelmo/curvefit/curve_fit.h"

#include <algorithm>

#include "zelmo/curvefit/outline_frame.h"
#include "zelmo/feature/frame_toolkit.h"

namespace xcurve3dfit {

using zelmo::curvefit::FitOutcome;
using zelmo::curvefit::kPlacementFloats;

XCurve3DFit::XCurve3DFit() {}

XCurve3DFit::~XCurve3DFit() {}

int XCurve3DFit::Intersection3Planes(const cv::Vec3d* normals,
                                     const cv::Point3d* points,
                                     cv::Mat& out) {
  return zelmo::frame::Intersection3Planes(normals, points, out);
}

void XCurve3DFit::getMatRByVector(const cv::Vec3d& from,
                                  const cv::Vec3d& to,
                                  cv::Mat& R) {
  zelmo::frame::getMatRByVector(from, to, R);
}

void XCurve3DFit::alignBy3Plane(const cv::Vec3d* targetNormals,
                                const cv::Point3d* targetPoints,
                                const cv::Vec3d* sourceNormals,
                                const cv::Point3d* sourcePoints,
                                double* const rt) {
  zelmo::frame::alignBy3Plane(targetNormals, targetPoints, sourceNormals,
                              sourcePoints, rt,
                              zelmo::frame::AlignMode::kPlain);
}

int XCurve3DFit::convertMatrixRT(const double* const in, double* const out) {
  return zelmo::frame::convertMatrixRT(in, out);
}

void XCurve3DFit::projection2Plane(const std::vector<cv::Point3f>& points,
                                   double* const plane,
                                   std::vector<cv::Point3f>& out) {
  zelmo::frame::projection2Plane(points, plane, out);
}

bool XCurve3DFit::fitOutline(const std::vector<cv::Point3f>& points,
                             const zelmo::curvefit::OutlineShape& shape,
                             FitMethod method,
                             float* out,
                             float* result) {
  const FitOutcome outcome = zelmo::curvefit::FitFlatOutline(
      points, shape, static_cast<int>(method), out);
  if (outcome != FitOutcome::kFitted) return false;
  std::copy(out, out + kPlacementFloats + shape.sizeCount, result);
  return true;
}

bool XCurve3DFit::fitOutline(const float* points,
                             const int& count,
                             const zelmo::curvefit::OutlineShape& shape,
                             FitMethod method,
                             float* out,
                             float* result) {
  return fitOutline(zelmo::curvefit::TriplesToPoints(points, count), shape,
                    method, out, result);
}

bool XCurve3DFit::fitOutline(const float* points,
                             const float* normals,
                             const int& count,
                             const zelmo::curvefit::OutlineShape& shape,
                             FitMethod method,
                             float* out,
                             float* result) {
  if (!fitOutline(points, count, shape, method, out, result)) return false;
  zelmo::curvefit::OrientByNormals(normals, count, result, out);
  return true;
}

}  // namespace xcurve3dfit
