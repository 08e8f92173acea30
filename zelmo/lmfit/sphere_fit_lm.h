// Robust sphere fit by damped least squares on points with measured
// normals: a closed-form start, a first fit on all points, an optional
// outlier filter and one refit.
#ifndef ZELMO_LMFIT_SPHERE_FIT_LM_H_
#define ZELMO_LMFIT_SPHERE_FIT_LM_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/lmfit/filter_param.h"
#include "zelmo/lmfit/zelmo_lm.h"

namespace xgeofeature {
class XFSphere;
}

namespace zelmolm {

class SphereStages;

// Points and normals are x, y, z float triples, `count` of each; normals
// are read only by the angle filters, as given.
class ZELMO_API XSphereFitLM : public ZelmoLM {
 public:
  // Fit()
  // Fits the sphere, then filters by `method` with the values of `param`
  // and refits the kept points once. Returns 0; -1 for fewer than 4
  // points, a method outside 0 to 5 or a failed selection; -2 when the
  // solver fails. The fields hold the last stored step even on failure.
  int Fit(const float* points,
          const float* normals,
          const int& count,
          const xfeaturefitfilter::FilterParam& param,
          xfeaturefitfilter::FilterMethod method);

  // getSphere()
  // Writes center and radius into `sphere`.
  void getSphere(xgeofeature::XFSphere& sphere);

  // Fit_Function()
  // Solver residuals: for p = (x, y, z, r), the distance of each of the n
  // points in `adata` from (x, y, z) less r, in double.
  static void Fit_Function(double* p, double* hx, int m, int n, void* adata);

  float center[3] = {0, 0, 0};
  float radius = 0;

 private:
  friend class SphereStages;
  friend class XSphereFitLMPeer;  // white-box access for the library's tests

  // Fit1()
  // Algebraic sphere of all points as the start, then the solver; the
  // result is stored whatever the solver returned. Returns 0, -1 for fewer
  // than 4 points (fields untouched), -2 when the solver failed.
  int Fit1(const float* points, const float* normals, const int& count);
  // The filter stages: sigma band, proportion, angle, band and angle,
  // proportion after angle. Each runs Fit1 and one refit; 0, -1 or -2.
  int Fit2(const float* points,
           const float* normals,
           const int& count,
           const float& value);
  int Fit3(const float* points,
           const float* normals,
           const int& count,
           const float& value);
  int Fit4(const float* points,
           const float* normals,
           const int& count,
           const float& value);
  int Fit5(const float* points,
           const float* normals,
           const int& count,
           const float& value,
           const float& angle);
  int Fit6(const float* points,
           const float* normals,
           const int& count,
           const float& value,
           const float& angle);

  // calcStatistics()
  // stats = largest, smallest, mean, variance (over n) of the signed
  // distances of the points from the stored sphere; `residuals` gets each.
  void calcStatistics(const float* points,
                      const int& count,
                      float* const stats,
                      std::vector<float>& residuals);

  // Stores (x, y, z, r) as floats.
  void store(const double* params);
};

}  // namespace zelmolm

#endif  // ZELMO_LMFIT_SPHERE_FIT_LM_H_
