// The objectives of the flat outline fits by FitMethod, for any outline
// distance of outline_distances.h: one table for all shapes. With e a
// point's distance (positive outside):
//   0  sum of e^2                  3  largest |e|, from 0
//   1  sum of |e|                  4  largest inside-penalised e, from 0
//   2  sum of inside-penalised e   5  largest outside-penalised e, from 0
// Any other value keeps the objective the caller names.
//
// Internal to the library: not exported.
#ifndef ZELMO_CURVEFIT_ONE_SIDED_OBJECTIVES_H_
#define ZELMO_CURVEFIT_ONE_SIDED_OBJECTIVES_H_

#include <gsl/gsl_vector.h>

#include <cmath>
#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/curvefit/fit_method.h"
#include "zelmo/curvefit/outline_frame.h"
#include "zelmo/simplex/residual_sums.h"

namespace zelmo {
namespace curvefit {

using Objective = double (*)(const gsl_vector* v, void* params);
using simplexfit::Aggregate;

// The weight that keeps an outline on its side of the points: a point on
// the forbidden side costs this many times (1 + its distance).
constexpr double kOneSidedPenalty = 10000.0;

inline double Signed(double e) { return e; }
inline double Absolute(double e) { return std::fabs(e); }
// An outline that must stay inside the points: a point inside it (e < 0)
// counts (1 - e) x kOneSidedPenalty.
inline double InsidePenalised(double e) {
  return e < 0.0 ? (1.0 - e) * kOneSidedPenalty : e;
}
// An outline that must enclose the points: a point outside it (e > 0)
// counts (e + 1) x kOneSidedPenalty, any other point -e.
inline double OutsidePenalised(double e) {
  return e > 0.0 ? (e + 1.0) * kOneSidedPenalty : -e;
}

// The local 2D points that the objectives receive as GSL params.
inline const std::vector<cv::Point2f>& LocalPointsOf(void* params) {
  return *static_cast<const std::vector<cv::Point2f>*>(params);
}

// The parameters of `v` as an array an outline distance reads.
struct OutlineParams {
  explicit OutlineParams(const gsl_vector* v) {
    for (size_t i = 0; i < v->size && i < kMaxOutlineParams; ++i)
      p[i] = gsl_vector_get(v, i);
  }
  double p[kMaxOutlineParams] = {};
};

// Folds term(e) over all points, e by the outline read from v.
template <class Outline, Aggregate kind, double (*term)(double)>
double FoldOutline(const gsl_vector* v, void* params) {
  const OutlineParams p(v);
  const Outline outline(p.p);
  simplexfit::Accumulator<kind> folded;
  for (const cv::Point2f& q : LocalPointsOf(params))
    folded.add(term(outline(q)));
  return folded.value();
}

// The objective of `method` for the outline, or `otherwise` for a value
// outside 0 to 5.
template <class Outline>
Objective SelectOneSided(int method, Objective otherwise) {
  switch (method) {
    case xcurve3dfit::LeastSquare:
      return &FoldOutline<Outline, Aggregate::kSumSquares, Signed>;
    case xcurve3dfit::LeastAbsDev:
      return &FoldOutline<Outline, Aggregate::kSum, Absolute>;
    case xcurve3dfit::LeastAbsDevInscribed:
      return &FoldOutline<Outline, Aggregate::kSum, InsidePenalised>;
    case xcurve3dfit::Chebyshev:
      return &FoldOutline<Outline, Aggregate::kMax, Absolute>;
    case xcurve3dfit::ChebyshevInscribed:
      return &FoldOutline<Outline, Aggregate::kMax, InsidePenalised>;
    case xcurve3dfit::ChebyshevCircumscribed:
      return &FoldOutline<Outline, Aggregate::kMax, OutsidePenalised>;
    default:
      return otherwise;
  }
}

}  // namespace curvefit
}  // namespace zelmo

#endif  // ZELMO_CURVEFIT_ONE_SIDED_OBJECTIVES_H_
