// Circles in space fitted to points in a plane: the least-squares circle
// and the maximum inscribed circle of a bore.
#ifndef ZELMO_LMFIT_CIRCLE_FIT_3D_LM_H_
#define ZELMO_LMFIT_CIRCLE_FIT_3D_LM_H_

#include "zelmo/export.h"
#include "zelmo/lmfit/zelmo_lm.h"

namespace zelmolm {

class Circle2DLM;

// Points and normals are x, y, z float triples, `count` of each. `plane`
// is six floats, a point and a unit normal, read only. With `fitPlane` the
// plane is fitted to the points instead (normals steering its filter);
// without it the normals are not read. The points are projected onto the
// plane and fitted in its local frame, whose x axis runs from the centroid
// of the projections to the first projection at least 0.01 from it in
// some coordinate (with none the frame is degenerate, and OpenCV's error
// on its singular solve passes through).
class ZELMO_API XCircleFit3DLM : public ZelmoLM {
 public:
  // Fit()
  // The maximum inscribed circle: the largest circle with no point inside.
  // Returns 0; -1 for fewer than 10 points, a failed plane fit, a failed
  // start or an exchange that skips too often. On failure the fields are
  // unchanged.
  int Fit(const float* points,
          const float* normals,
          const int& count,
          float* const plane,
          bool fitPlane);

  // Fit2()
  // The least-squares circle. Returns 0; -1 for fewer than 3 points, a
  // failed plane fit, a failed start or a failed solver, the fields then
  // unchanged.
  int Fit2(const float* points,
           const float* normals,
           const int& count,
           float* const plane,
           bool fitPlane);

  // The circle: `center`, the plane's unit `normal`, the local x axis
  // `majorDir` of its frame, and `radius`.
  float center[3] = {0, 0, 0};
  float normal[3] = {0, 0, 0};
  float majorDir[3] = {0, 0, 0};
  float radius = 0;

 private:
  // Runs `stage` (Circle2DLM::fitInscribed or fitLeastSquares) on the
  // points in the plane's local frame and stores its circle back in space.
  int fitInPlane(const float* points,
                 const float* normals,
                 int count,
                 const float* plane,
                 bool fitPlane,
                 int (Circle2DLM::*stage)(const float*, int));
};

}  // namespace zelmolm

#endif  // ZELMO_LMFIT_CIRCLE_FIT_3D_LM_H_
