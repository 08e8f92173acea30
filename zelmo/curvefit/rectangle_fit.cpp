#include "zelmo/curvefit/rectangle_fit.h"

#include "zelmo/curvefit/outline_frame.h"

namespace xcurve3dfit {

using zelmo::curvefit::kRectangleOutline;

XRectangle3DFit::XRectangle3DFit() : m_result{} {}

bool XRectangle3DFit::Fit(const std::vector<cv::Point3f>& points,
                          float* out,
                          FitMethod method) {
  return fitOutline(points, kRectangleOutline, method, out, m_result);
}

bool XRectangle3DFit::Fit(const float* points,
                          const int& count,
                          float* out,
                          FitMethod method) {
  return fitOutline(points, count, kRectangleOutline, method, out, m_result);
}

bool XRectangle3DFit::Fit(const float* points,
                          const float* normals,
                          const int& count,
                          float* out,
                          FitMethod method) {
  return fitOutline(points, normals, count, kRectangleOutline, method, out,
                    m_result);
}

void XRectangle3DFit::getRectangle(
    xgeofeature::XFRectangle3D& rectangle) const {
  rectangle =
      xgeofeature::XFRectangle3D(std::vector<float>(m_result, m_result + 11));
}

}  // namespace xcurve3dfit
