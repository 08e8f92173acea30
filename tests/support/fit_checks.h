// Shared steps of the recovery tests of the robust fits.
#pragma once

#include <string>

#include "tests/support/samplers.h"
#include "tests/support/stdout_capture.h"
#include "zelmo/lmfit/filter_param.h"

namespace zelmo::test {

// fit.Fit(points, normals, count, param, method) on the samples with the
// standard output captured into `console` (when not null).
template <typename FitT>
int RunFilteredFit(FitT& fit,
                   const Samples& s,
                   int method,
                   const xfeaturefitfilter::FilterParam& param,
                   std::string* console = nullptr) {
  const std::vector<float> p = s.Xyz(), n = s.NormalsXyz();
  StdoutCapture capture;
  const int result =
      fit.Fit(p.data(), n.data(), s.Count(), param,
              static_cast<xfeaturefitfilter::FilterMethod>(method));
  const std::string out = capture.Take();
  if (console != nullptr) *console = out;
  return result;
}

// Smallest and largest position of the samples along f.w from f.origin.
inline void AxialExtent(const Frame& f,
                        const Samples& s,
                        double* z0,
                        double* z1) {
  *z0 = 1e30;
  *z1 = -1e30;
  for (const cv::Point3f& p : s.points) {
    const double z = (cv::Vec3d(p.x, p.y, p.z) - f.origin).dot(f.w);
    *z0 = std::min(*z0, z);
    *z1 = std::max(*z1, z);
  }
}

}  // namespace zelmo::test
