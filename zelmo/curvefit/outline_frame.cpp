#include "zelmo/curvefit/outline_frame.h"

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/plane_frame.h"
#include "zelmo/feature/point_arrays.h"
#include "zelmo/simplex/plane_fit.h"

namespace zelmo {
namespace curvefit {

FitOutcome FitFlatOutline(const std::vector<cv::Point3f>& points,
                          const OutlineShape& shape,
                          int method,
                          float* out) {
  if (points.size() < shape.minPoints) return FitOutcome::kRefused;

  // The plane is always the least-absolute-deviation plane: the outline's
  // own method says nothing about how flat its points are.
  x3dfit::XPlaneFit planeFit;
  double plane[4];
  planeFit.Fit(points, plane, x3dfit::LeastAbsDev);
  std::vector<cv::Point3f> projected;
  frame::projection2Plane(points, plane, projected);
  frame::PlaneFrame local;
  frame::planeLocalFrame(projected, plane, local);
  std::vector<cv::Point2f> points2D;
  frame::toLocal2D(projected, local.toLocal, points2D);

  // The circle's radius starts at -1; the other shapes set all of theirs.
  double p[kMaxOutlineParams] = {0, 0, -1, 0, 0, 0};
  if (!shape.fit2D(points2D, method, p)) return FitOutcome::kRefused;

  const cv::Vec3d center = frame::fromLocal2D(local.toSpace, p[0], p[1]);
  // With no angle (the circle) majorDir is the local x axis, column 0 of
  // toSpace as it stands, not turned by an angle of 0.
  const double* I = local.toSpace;
  const cv::Vec3d majorDir =
      shape.hasAngle ? frame::localDirection(I, p[2 + shape.sizeCount])
                     : cv::Vec3d(I[0], I[4], I[8]);
  for (int k = 0; k < 3; ++k) {
    out[k] = static_cast<float>(center[k]);
    out[3 + k] = static_cast<float>(plane[k]);
    out[6 + k] = static_cast<float>(majorDir[k]);
  }
  for (int k = 0; k < shape.sizeCount; ++k)
    out[kPlacementFloats + k] = static_cast<float>(p[2 + k]);
  return shape.sizesAccepted(out + kPlacementFloats)
             ? FitOutcome::kFitted
             : FitOutcome::kSizeRejected;
}

void OrientByNormals(const float* normals,
                     const int& count,
                     float* fields,
                     float* copy) {
  const float* n = fields + 3;
  int above = 0, notAbove = 0;
  for (int i = 0; i < count; ++i) {
    const float* m = normals + 3 * i;
    const float dot = m[0] * n[0] + m[1] * n[1] + m[2] * n[2];  // in float
    if (dot > 0.0f)
      ++above;
    else
      ++notAbove;
  }
  if (notAbove <= above) return;
  for (int k = 3; k < 6; ++k) {
    fields[k] = -fields[k];
    copy[k] = fields[k];
  }
}

std::vector<cv::Point3f> TriplesToPoints(const float* points,
                                         const int& count) {
  return copyPoints3(points, count);
}

}  // namespace curvefit
}  // namespace zelmo
