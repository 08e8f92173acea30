// Fits a rectangle with rounded corners (round groove) in space: center,
// normal, majorDir, halfLength, halfWidth, cornerRadius (12 floats, the order
// of XFRoundGroove3D).
// Points are taken into the plane of their least-absolute-deviation fit and
// fitted there in two dimensions.
#ifndef ZELMO_CURVEFIT_ROUND_GROOVE_FIT_H_
#define ZELMO_CURVEFIT_ROUND_GROOVE_FIT_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/curvefit/curve_fit.h"
#include "zelmo/curvefit/fit_method.h"
#include "zelmo/export.h"
#include "zelmo/feature/outline_records.h"

namespace xcurve3dfit {

// The last accepted result stays in the object until the next accepted fit.
// One object serves one thread at a time.
class ZELMO_API XRoundGroove3DFit : public XCurve3DFit {
 public:
  XRoundGroove3DFit();

  // Fit()
  // Fits `points` by `method` and writes 12 floats into `out`. In the plane the
  // smallest enclosing rectangle with corner radius half its half width starts
  // the descent on the objective of `method` (LeastSquare: sum of squares; a
  // value outside 0 to 5: LeastAbsDev). majorDir is the long axis. The normal's
  // sign is the plane fit's. Returns false with `out` and the object unchanged
  // for fewer than 12 points. Returns true only if halfLength >= halfWidth >
  // cornerRadius > 0; when not, `out` is written all the same and the object
  // keeps its last result.
  bool Fit(const std::vector<cv::Point3f>& points,
           float* out,
           FitMethod method);
  // The same on `count` x, y, z triples.
  bool Fit(const float* points, const int& count, float* out, FitMethod method);
  // The same, then the `count` normals vote for the side of the fitted
  // normal: it is negated (in `out` and the object) when more normals have
  // a float dot product with it not above 0 than above 0.
  bool Fit(const float* points,
           const float* normals,
           const int& count,
           float* out,
           FitMethod method);

  // getRoundGroove()
  // The last accepted result as a record; valid after a successful Fit.
  void getRoundGroove(xgeofeature::XFRoundGroove3D& roundGroove) const;

 private:
  float m_result[12];
};

}  // namespace xcurve3dfit

#endif  // ZELMO_CURVEFIT_ROUND_GROOVE_FIT_H_
