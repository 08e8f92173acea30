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

namespace zelmo {
namespace curvefit {
struct OutlineShape;
}  // namespace curvefit
}  // namespace zelmo

namespace xcurve3dfit {

class ZELMO_API XCurve3DFit {
 public:
  XCurve3DFit();
  ~XCurve3DFit();

 protected:
  // Intersection3Planes()
  // The point shared by the planes (normals[k], points[k]), k = 0..2, as a
  // 3 x 1 double matrix in `out`. Returns 1, or 0 with `out` untouched when
  // the determinant of the normals is below 1e-6 in size.
  int Intersection3Planes(const cv::Vec3d* normals,
                          const cv::Point3d* points,
                          cv::Mat& out);
  // getMatRByVector()
  // The rotation (new 3 x 3 double matrix) carrying direction `from` onto
  // `to`, parallel and opposite directions included.
  void getMatRByVector(const cv::Vec3d& from, const cv::Vec3d& to, cv::Mat& R);
  // alignBy3Plane()
  // The rigid transform `rt` (16 doubles, row-major) carrying the three
  // source planes onto the three target planes; the second pair is turned
  // into place without a guard for opposite normals. Each triple of normals
  // must be independent.
  void alignBy3Plane(const cv::Vec3d* targetNormals,
                     const cv::Point3d* targetPoints,
                     const cv::Vec3d* sourceNormals,
                     const cv::Point3d* sourcePoints,
                     double* const rt);
  // convertMatrixRT()
  // Inverts the rigid transform `in` into `out` (may alias) without testing
  // that it is rigid. Returns 1.
  int convertMatrixRT(const double* const in, double* const out);
  // projection2Plane()
  // Projects `points` onto `plane` (a, b, c, d, unit normal, not tested) in
  // double and stores floats; `out` takes the size of `points`.
  void projection2Plane(const std::vector<cv::Point3f>& points,
                        double* const plane,
                        std::vector<cv::Point3f>& out);

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
