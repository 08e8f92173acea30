#include "zelmo/curvefit/round_groove_fit.h"

#include "zelmo/curvefit/outline_frame.h"

namespace xcurve3dfit {

using zelmo::curvefit::kRoundGrooveOutline;

XRoundGroove3DFit::XRoundGroove3DFit() : m_result{} {}

bool XRoundGroove3DFit::Fit(const std::vector<cv::Point3f>& points,
                            float* out,
                            FitMethod method) {
  return fitOutline(points, kRoundGrooveOutline, method, out, m_result);
}

bool XRoundGroove3DFit::Fit(const float* points,
                            const int& count,
                            float* out,
                            FitMethod method) {
  return fitOutline(points, count, kRoundGrooveOutline, method, out, m_result);
}

bool XRoundGroove3DFit::Fit(const float* points,
                            const float* normals,
                            const int& count,
                            float* out,
                            FitMethod method) {
  return fitOutline(points, normals, count, kRoundGrooveOutline, method, out,
                    m_result);
}

void XRoundGroove3DFit::getRoundGroove(
    xgeofeature::XFRoundGroove3D& roundGroove) const {
  roundGroove =
      xgeofeature::XFRoundGroove3D(std::vector<float>(m_result, m_result + 12));
}

}  // namespace xcurve3dfit
