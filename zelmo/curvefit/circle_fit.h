// Fits a circle in space: center, normal, majorDir, radius (10 floats, the
// order of XFCircle3D).
// Points are taken into the plane of their least-absolute-deviation fit and
// fitted there in two dimensions.
#ifndef ZELMO_CURVEFIT_CIRCLE_FIT_H_
#define ZELMO_CURVEFIT_CIRCLE_FIT_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/curvefit/curve_fit.h"
#include "zelmo/curvefit/fit_method.h"
#include "zelmo/export.h"
#include "zelmo/feature/circle_record.h"

namespace xcurve3dfit {

// The last accepted result stays in the object until the next accepted fit.
// One object serves one thread at a time.
class ZELMO_API XCircle3DFit : public XCurve3DFit {
 public:
  XCircle3DFit();

  // Fit()
  // Fits `points` by `method` and writes 10 floats into `out`. In the plane the
  // algebraic (Kasa) circle starts the descent; LeastSquare returns it as it
  // is, 1 to 5 descend on their objective, any other value on MaximumInscribed
  // (the largest circle no point enters). majorDir is the plane's local x axis.
  // The normal's sign is the plane fit's.
  // Returns false with `out` and the object unchanged for fewer than 4
  // points or when the algebraic circle has a negative squared radius;
  // true otherwise, a failing descent not being reported: points exactly on
  // one line give a circle that is not a number.
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

  // getCircle()
  // The last accepted result as a record; valid after a successful Fit.
  void getCircle(xgeofeature::XFCircle3D& circle) const;

 private:
  float m_result[10];
};

}  // namespace xcurve3dfit

#endif  // ZELMO_CURVEFIT_CIRCLE_FIT_H_
