// Principal axes of a point set, as used for the start values of the axial
// fits.
#ifndef ZELMO_SIMPLEX_PRINCIPAL_AXES_H_
#define ZELMO_SIMPLEX_PRINCIPAL_AXES_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"

namespace x3dfit {

// computePrincipalAxes()
// `center` = centroid of `points`, summed and divided in float. `values`
// (3 x 1) and `vectors` (3 x 3, one unit eigenvector per row) are the
// eigen-decomposition of A^T A, A holding x - center per point with the
// differences taken in float; eigenvalues descend, so row 0 is the axis of
// largest spread. No points give a NaN center and a zero matrix.
ZELMO_API void computePrincipalAxes(const std::vector<cv::Point3f>& points,
                                    cv::Mat& values,
                                    cv::Mat& vectors,
                                    cv::Point3f& center);

}  // namespace x3dfit

#endif  // ZELMO_SIMPLEX_PRINCIPAL_AXES_H_
