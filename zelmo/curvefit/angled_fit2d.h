// The outlines with a long axis in the plane of the flat outline fits (oval
// groove, rectangle, round groove): their common start from the smallest
// enclosing rectangle, their 2D fits and the size tests of their results.
//
// Internal to the library: not exported.
#ifndef ZELMO_CURVEFIT_ANGLED_FIT2D_H_
#define ZELMO_CURVEFIT_ANGLED_FIT2D_H_

#include <cstddef>
#include <opencv2/core.hpp>
#include <vector>

namespace zelmo {
namespace curvefit {

constexpr size_t kOvalGrooveMinPoints = 8;
constexpr size_t kRectangleMinPoints = 4;
constexpr size_t kRoundGrooveMinPoints = 12;

// The start that the angled outlines share, from cv::minAreaRect of the
// points with size (w, h) and angle in degrees.
struct LongAxisStart {
  double cx, cy;
  float longHalf;   // the larger of w / 2 and h / 2 (h / 2 on a tie)
  float shortHalf;  // the other one
  // angle x pi / 180 when w / 2 is above h / 2, else (angle + 90, summed
  // in float) x pi / 180: the direction of the long side.
  double t;
};
LongAxisStart MinAreaStart(const std::vector<cv::Point2f>& points);

// FitOvalGroove2D(), FitRectangle2D(), FitRoundGroove2D()
// false below the shape's minimum point count. From the start (oval groove:
// a = longHalf - shortHalf in float, r = shortHalf; rectangle: a = longHalf,
// b = shortHalf; round groove: those and r = b x 0.5) they descend on the
// objective of `method` (0 to 5, any other value LeastAbsDev), with steps
// s0, s1, s0, s1, [s2,] 0.001 where s_k is size k over 100. p: cx, cy, the
// sizes, t. True otherwise.
bool FitOvalGroove2D(const std::vector<cv::Point2f>& points,
                     int method,
                     double* const p);
bool FitRectangle2D(const std::vector<cv::Point2f>& points,
                    int method,
                    double* const p);
bool FitRoundGroove2D(const std::vector<cv::Point2f>& points,
                      int method,
                      double* const p);

}  // namespace curvefit
}  // namespace zelmo

#endif  // ZELMO_CURVEFIT_ANGLED_FIT2D_H_
