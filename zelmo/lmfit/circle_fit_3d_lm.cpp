#include "zelmo/lmfit/circle_fit_3d_lm.h"

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/plane_frame.h"
#include "zelmo/feature/point_arrays.h"
#include "zelmo/lmfit/circle_2d_lm.h"
#include "zelmo/lmfit/filter_param.h"
#include "zelmo/lmfit/plane_fit_lm.h"

namespace zelmolm {
namespace {

constexpr int kMinPoints = 3;
// The filter of a fitted circle plane: normals within 45 degrees of the
// plane's, then the 5 % largest distances of the rest dropped; the sigma
// factor goes unused.
constexpr float kPlaneAngle = 45.0f;
constexpr float kPlaneSigmaFactor = 2.5f;
constexpr float kPlaneProportion = 0.05f;

}  // namespace

int XCircleFit3DLM::Fit(const float* points,
                        const float* normals,
                        const int& count,
                        float* const plane,
                        bool fitPlane) {
  return fitInPlane(points, normals, count, plane, fitPlane,
                    &Circle2DLM::fitInscribed) < 0
             ? -1
             : 0;
}

int XCircleFit3DLM::Fit2(const float* points,
                         const float* normals,
                         const int& count,
                         float* const plane,
                         bool fitPlane) {
  return fitInPlane(points, normals, count, plane, fitPlane,
                    &Circle2DLM::fitLeastSquares);
}

int XCircleFit3DLM::fitInPlane(const float* points,
                               const float* normals,
                               int count,
                               const float* plane,
                               bool fitPlane,
                               int (Circle2DLM::*stage)(const float*, int)) {
  if (count < kMinPoints) return -1;
  float a = plane[3], b = plane[4], c = plane[5];
  float d = -(a * plane[0] + b * plane[1] + c * plane[2]);  // in float
  if (fitPlane) {
    const xfeaturefitfilter::FilterParam filter(kPlaneAngle, kPlaneSigmaFactor,
                                                kPlaneProportion);
    XPlaneFitLM fitted;
    if (fitted.Fit6(points, normals, count, filter.proportion, filter.angle) <
        0)
      return -1;
    a = fitted.a;
    b = fitted.b;
    c = fitted.c;
    d = fitted.d;
  }

  const double params[4] = {a, b, c, d};
  std::vector<cv::Point2f> local;
  double T[16], I[16];
  zelmo::frame::projectToPlaneFrame(zelmo::copyPoints3(points, count), params,
                                    zelmo::frame::AxisFallback::kZero,
                                    zelmo::frame::AlignMode::kGuarded, local,
                                    T);
  zelmo::frame::convertMatrixRT(T, I);

  // cv::Point2f holds x, y as two adjacent floats: the pairs the 2D fits
  // read.
  Circle2DLM circle;
  const int result = (circle.*stage)(&local[0].x, count);
  if (result < 0) return result;

  const cv::Vec3d centerInSpace =
      zelmo::frame::fromLocal2D(I, circle.cx, circle.cy);
  for (int k = 0; k < 3; ++k) {
    center[k] = static_cast<float>(centerInSpace[k]);
    majorDir[k] = static_cast<float>(I[4 * k]);  // the local x axis
  }
  normal[0] = a;
  normal[1] = b;
  normal[2] = c;
  radius = circle.r;
  return 0;
}

}  // namespace zelmolm
