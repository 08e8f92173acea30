#include "zelmo/curvefit/circle_fit.h"

#include "zelmo/curvefit/outline_frame.h"

namespace xcurve3dfit {

using zelmo::curvefit::kCircleOutline;

XCircle3DFit::XCircle3DFit() : m_result{} {}

bool XCircle3DFit::Fit(const std::vector<cv::Point3f>& points,
                       float* out,
                       FitMethod method) {
  return fitOutline(points, kCircleOutline, method, out, m_result);
}

bool XCircle3DFit::Fit(const float* points,
                       const int& count,
                       float* out,
                       FitMethod method) {
  return fitOutline(points, count, kCircleOutline, method, out, m_result);
}

bool XCircle3DFit::Fit(const float* points,
                       const float* normals,
                       const int& count,
                       float* out,
                       FitMethod method) {
  return fitOutline(points, normals, count, kCircleOutline, method, out,
                    m_result);
}

void XCircle3DFit::getCircle(xgeofeature::XFCircle3D& circle) const {
  circle = xgeofeature::XFCircle3D(std::vector<float>(m_result, m_result + 10));
}

}  // namespace xcurve3dfit
