// Robust cylinder fit by damped least squares on points with measured
// normals: a start by sample consensus, a first fit on all points, an
// optional outlier filter and one refit; or a single fit from the caller's
// start.
#ifndef ZELMO_LMFIT_CYLINDER_FIT_LM_H_
#define ZELMO_LMFIT_CYLINDER_FIT_LM_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/lmfit/filter_param.h"
#include "zelmo/lmfit/zelmo_lm.h"

namespace xgeofeature {
class XFCylinder;
}

namespace zelmolm {

class CylinderStages;

// Points and normals are x, y, z float triples, `count` of each; normals
// are used as given. The fit prints its start as a "param:" line.
class ZELMO_API XCylinderFitLM : public ZelmoLM {
 public:
  // Fit()
  // Fits the cylinder, then filters by `method` with the values of `param`
  // and refits the kept points once; the extent is that of the kept
  // points. The angle filters drop points whose normal lies within `angle`
  // degrees of the axis (so a limit near 90 keeps a point). Returns 0; -1
  // for fewer than 6 points, no model found by the consensus, a method
  // outside 0 to 5 or a failed selection; -2 when the solver fails. The
  // fields hold the last stored step even on failure.
  int Fit(const float* points,
          const float* normals,
          const int& count,
          const xfeaturefitfilter::FilterParam& param,
          xfeaturefitfilter::FilterMethod method);

  // Fit()
  // One fit of all points from `seed` (point on the axis, axis of any
  // non-zero length, radius: seven floats), without consensus or filter;
  // `normals` is not read. Returns 0; -1 for fewer than 6 points (fields
  // untouched); -2 when the solver fails, its last values stored.
  int Fit(const float* points,
          const float* normals,
          const int& count,
          const float* const seed);

  // getCylinder()
  // Writes center, axis, radius, height, base and top into `cylinder`.
  void getCylinder(xgeofeature::XFCylinder& cylinder);

  // Fit_Function()
  // Solver residuals: for p = (point, direction, radius), the distance of
  // each of the n points in `adata` from the axis (direction made unit,
  // zero if it has no length) less the radius rounded to float.
  static void Fit_Function(double* p, double* hx, int m, int n, void* adata);

  // The cylinder: `center` midway between `base` and `top` on the axis,
  // `axis` the unit direction from base to top, and the extent `height` of
  // the fitted points along it.
  float center[3] = {0, 0, 0};
  float axis[3] = {0, 0, 0};
  float radius = 0;
  float height = 0;
  float base[3] = {0, 0, 0};
  float top[3] = {0, 0, 0};

 private:
  friend class CylinderStages;
  friend class XCylinderFitLMPeer;  // white-box access for the library's tests

  // Fit1()
  // Start by sample consensus (printed as "param:"), then the solver on
  // all points; the result is stored, with its extent, whatever the solver
  // returned. Returns 0; -1 for fewer than 6 points or no consensus model
  // (fields untouched); -2 when the solver failed.
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
  // stats = largest, smallest, mean, variance of the signed distances of
  // the points from the stored surface; the variance divides by n - 1
  // above 10 points, else by n. `residuals` gets each distance.
  void calcStatistics(const float* points,
                      const int& count,
                      float* const stats,
                      std::vector<float>& residuals);

  // getValue()
  // Sets height, center, base and top from the extent of the points along
  // the axis; `center` moves to the middle of that extent. `normals` is
  // not read.
  void getValue(const float* points, const float* normals, const int& count);

  // Runs the solver from `params` on the points and stores point, unit
  // axis and radius; returns the solver's result.
  int solveAndStore(const float* points, int count, double* params);
  // Stores point, unit axis (scaled in float) and radius.
  void store(const double* params);
};

}  // namespace zelmolm

#endif  // ZELMO_LMFIT_CYLINDER_FIT_LM_H_
