#include "zelmo/curvefit/oval_groove_fit.h"

#include "zelmo/curvefit/outline_frame.h"

namespace xcurve3dfit {

using zelmo::curvefit::kOvalGrooveOutline;

XOvalGroove3DFit::XOvalGroove3DFit() : m_result{} {}

bool XOvalGroove3DFit::Fit(const std::vector<cv::Point3f>& points,
                           float* out,
                           FitMethod method) {
  return fitOutline(points, kOvalGrooveOutline, method, out, m_result);
}

bool XOvalGroove3DFit::Fit(const float* points,
                           const int& count,
                           float* out,
                           FitMethod method) {
  return fitOutline(points, count, kOvalGrooveOutline, method, out, m_result);
}

bool XOvalGroove3DFit::Fit(const float* points,
                           const float* normals,
                           const int& count,
                           float* out,
                           FitMethod method) {
  return fitOutline(points, normals, count, kOvalGrooveOutline, method, out,
                    m_result);
}

void XOvalGroove3DFit::getOvalGroove(
    xgeofeature::XFOvalGroove3D& ovalGroove) const {
  ovalGroove =
      xgeofeature::XFOvalGroove3D(std::vector<float>(m_result, m_result + 11));
}

}  // namespace xcurve3dfit
