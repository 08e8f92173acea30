// XCurve3DFit: the base of the flat outline fits (circle, oval groove,
// rectangle, round groove). It holds no data. It offers the frame routines
// of the library to its subclasses, and runs the fit they share: a plane by
// x3dfit::XPlaneFit with LeastAbsDev, the projection into it, the move into
// the plane's local frame, the outline's two-dimensional simplex fit and the
// move of the result back into space.
#ifndef ZELMO_CURVEFIT_CURVE_FIT_H_
#define ZELMO_CURVEFIT_CURVE_FIT_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/curvefit/fit_method.h"
#include "zelmo/export.h"
#include "zelmo/feature/frame_members.h"

namespace zelmo {
namespace curvefit {
struct OutlineShape;
}  // namespace curvefit
}  // namespace zelmo

namespace xcurve3dfit {

class ZELMO_API XCurve3DFit
    : public zelmo::FrameMembers<zelmo::AlignFlavour::kPlain> {
 public:
  XCurve3DFit();
  ~XCurve3DFit();

 protected:
  // fitOutline()
  // The common fit of the outline `shape` to `points` by `method`. Writes
  // center, normal, majorDir and the shape's sizes (record order) into
  // `out`, and when the sizes pass the shape's test also into `result`, the
  // subclass's last result; returns whether they passed. Too few points or
  // a failed start value give false with `out` and `result` untouched.
  bool fitOutline(const std::vector<cv::Point3f>& points,
                  const zelmo::curvefit::OutlineShape& shape,
                  FitMethod method,
                  float* out,
                  float* result);
  // The same on `count` x, y, z triples.
  bool fitOutline(const float* points,
                  const int& count,
                  const zelmo::curvefit::OutlineShape& shape,
                  FitMethod method,
                  float* out,
                  float* result);
  // The same, then the `count` normals vote for the side of the fitted
  // normal: it is negated in `out` and `result` when more normals have a
  // float dot product with it not above 0 than above 0.
  bool fitOutline(const float* points,
                  const float* normals,
                  const int& count,
                  const zelmo::curvefit::OutlineShape& shape,
                  FitMethod method,
                  float* out,
                  float* result);
};

}  // namespace xcurve3dfit

#endif  // ZELMO_CURVEFIT_CURVE_FIT_H_
