// Cone fit by damped least squares on points with measured normals, from a
// start by sample consensus, in one step without filtering.
#ifndef ZELMO_LMFIT_CONE_FIT_LM_H_
#define ZELMO_LMFIT_CONE_FIT_LM_H_

#include "zelmo/export.h"
#include "zelmo/lmfit/zelmo_lm.h"

namespace xgeofeature {
class XFCone;
}

namespace zelmolm {

// Points and normals are x, y, z float triples, `count` of each; normals
// steer the consensus start only.
class ZELMO_API XConeFitLM : public ZelmoLM {
 public:
  // Fit()
  // Fits the cone to all points and sets its ends from their extent along
  // the axis. Returns the solver's result as it stands: its iteration
  // count, or a negative value when it fails (the values are stored even
  // then); -1 for fewer than 6 points or no consensus model, fields then
  // untouched.
  int Fit(const float* points, const float* normals, const int& count);

  // getCone()
  // Writes apex, axis, halfAngle, base, top, height, baseRadius and
  // topRadius into `cone`.
  void getCone(xgeofeature::XFCone& cone);

  // Fit_Function()
  // Solver residuals: for p = (apex, direction, half angle), the distance
  // of each of the n points in `adata` from the axis (direction made unit,
  // zero if it has no length) less the cone's radius at the point's axial
  // distance from the apex, |D . u| tanf(half angle), rounded to float.
  static void Fit_Function(double* p, double* hx, int m, int n, void* adata);

  // The cone: `apex`, the unit `axis` from the far (base) end towards the
  // apex when the points lie on one side of it, the half opening angle in
  // radians, and the ends of the points' extent along the axis with their
  // radii.
  float apex[3] = {0, 0, 0};
  float axis[3] = {0, 0, 0};
  float halfAngle = 0;
  float base[3] = {0, 0, 0};
  float top[3] = {0, 0, 0};
  float height = 0;
  float baseRadius = 0;
  float topRadius = 0;

 private:
  friend class XConeFitLMPeer;  // white-box access for the library's tests

  // getValue()
  // Sets base, top, height and the radii from the extent t of the points
  // along the axis from the apex, and turns the axis where the far end
  // lies on its positive side:
  //   min >= 0:                  base at max, top at min, axis turned;
  //   max <= 0:                  base at min, top at max;
  //   min < 0 < max, |min| > max: base at min, top at the apex;
  //   min < 0 < max otherwise:   base at max, top at the apex, axis turned.
  // `normals` is not read.
  void getValue(const float* points, const float* normals, const int& count);
};

}  // namespace zelmolm

#endif  // ZELMO_LMFIT_CONE_FIT_LM_H_
