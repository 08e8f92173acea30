// Robust plane fit by damped least squares on points with measured normals:
// a first fit on all points, an optional outlier filter and one refit, the
// plane oriented by the normals and bounded by a rectangle.
#ifndef ZELMO_LMFIT_PLANE_FIT_LM_H_
#define ZELMO_LMFIT_PLANE_FIT_LM_H_

#include <vector>

#include "zelmo/export.h"
#include "zelmo/feature/plane_record.h"
#include "zelmo/lmfit/filter_param.h"
#include "zelmo/lmfit/zelmo_lm.h"

namespace zelmolm {

class PlaneStages;
class XCircleFit3DLM;

// Points and normals are x, y, z float triples, `count` of each; normals
// are used as given (only their direction's sign and angle matter).
class ZELMO_API XPlaneFitLM : public ZelmoLM {
 public:
  // Fit()
  // Fits the plane, then filters by `method` with the values of `param`
  // and refits the kept points once. Returns 0, or -1 for fewer than 3
  // points, a method outside 0 to 5, a failed solver or a failed
  // selection. The fields hold the last completed step even on failure.
  int Fit(const float* points,
          const float* normals,
          const int& count,
          const xfeaturefitfilter::FilterParam& param,
          xfeaturefitfilter::FilterMethod method);

  // getPlane()
  // Writes center, normal, majorDir, length and width into `plane`, and
  // its coefficients as normal and d = -(normal . center) in float: the
  // record's plane passes through `center`, not exactly the fitted `d`.
  void getPlane(xgeofeature::XFPlane& plane);

  // Fit_Function()
  // Solver residuals: the signed distances a x + b y + c z + d of the n
  // points in `adata`, with (a, b, c, d) = p scaled by 1 / |(a, b, c)|, or
  // by 1 while that length is below 0.0001 (a step through a near-zero
  // normal must not divide by zero). `p` is not changed.
  static void Fit_Function(double* p, double* hx, int m, int n, void* adata);

  // Fit_Chebyshev_Function()
  // Minimum-zone residuals: the distances of Fit_Function less their
  // smallest, so all are at least 0, with the first largest multiplied by
  // 10 n, so that least squares is ruled by the width of the zone.
  static void Fit_Chebyshev_Function(
      double* p, double* hx, int m, int n, void* adata);

  // The plane a x + b y + c z + d = 0, (a, b, c) of unit length and
  // pointing where most measured normals point.
  float a = 0, b = 0, c = 0, d = 0;
  // The bounding rectangle of the points in the plane: its center, the
  // plane normal (a, b, c), the unit direction of its longer side, its
  // longer and shorter side, and its four corners (x, y, z each), taken
  // parallel to the plane's local axes.
  float center[3] = {0, 0, 0};
  float normal[3] = {0, 0, 0};
  float majorDir[3] = {0, 0, 0};
  float length = 0;
  float width = 0;
  float corners[12] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};

 private:
  friend class PlaneStages;
  friend class XCircleFit3DLM;
  friend class XPlaneFitLMPeer;  // white-box access for the library's tests

  // Fit1()
  // Least-squares plane of all points (a closed-form start, then the solver
  // when there are more than 3 points), oriented so that most normals point
  // along it, stored with its rectangle. Returns the solver's iteration
  // count (0 with 3 points), or -1 for fewer than 3 points or a failed
  // solver; the fields are written in both cases of the solver.
  int Fit1(const float* points, const float* normals, const int& count);
  // The filter stages: sigma band, proportion, angle, band and angle,
  // proportion after angle. Each runs Fit1 and one refit; 0 or -1.
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

  // Fit_Chebyshev()
  // Minimum-zone plane from `seed` (point then normal, six floats), by the
  // solver on Fit_Chebyshev_Function when there are more than 3 points;
  // then oriented and stored as Fit1 does. Returns the solver's result, or
  // 0 when it was not run.
  int Fit_Chebyshev(const float* points,
                    const float* normals,
                    const int& count,
                    const float* const seed);

  // calcStatistics()
  // stats = largest, smallest, mean, variance (over n) of the signed
  // distances of the points to the stored plane; `residuals` gets each.
  void calcStatistics(const float* points,
                      const int& count,
                      float* const stats,
                      std::vector<float>& residuals);

  // getValue()
  // Sets corners, center, majorDir, length and width from all points, then
  // turns the plane to the side of the majority of the normals (a tie keeps
  // it) and copies (a, b, c) into `normal`.
  void getValue(const float* points, const float* normals, const int& count);

  // getFourCorner()
  // Bounding rectangle of the points projected onto `params` (a, b, c, d)
  // in the plane's local frame: writes center, majorDir, length, width and
  // the twelve corner floats. The corners are the box of the rectangle's
  // size about its center along the local axes; majorDir follows the
  // rectangle's angle.
  void getFourCorner(const float* points,
                     const int& count,
                     double* const params,
                     float* const corners);

  // Stores params as the plane after the solver guard's normalising, turned
  // by the majority of the normals (vote in double), and runs getValue.
  void orientAndStore(double* params,
                      const float* points,
                      const float* normals,
                      int count);
};

}  // namespace zelmolm

#endif  // ZELMO_LMFIT_PLANE_FIT_LM_H_
