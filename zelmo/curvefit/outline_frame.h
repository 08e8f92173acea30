// The frame shared by the flat outline fits: what each outline brings to
// it (its two-dimensional fit, its sizes and their test), and the fit in
// space built around it.
//
// Internal to the library: not exported.
#ifndef ZELMO_CURVEFIT_OUTLINE_FRAME_H_
#define ZELMO_CURVEFIT_OUTLINE_FRAME_H_

#include <cstddef>
#include <opencv2/core.hpp>
#include <vector>

namespace zelmo {
namespace curvefit {

// The most parameters a two-dimensional outline fit has (round groove: cx,
// cy, a, b, r, t).
constexpr int kMaxOutlineParams = 6;
// Floats of center, normal and majorDir ahead of the sizes in a result.
constexpr int kPlacementFloats = 9;

// One outline in the common frame.
struct OutlineShape {
  // Fewer points are refused before any fit.
  size_t minPoints;
  // Sizes in the 2D parameters after (cx, cy) and in the result after the
  // placement: circle 1, oval groove and rectangle 2, round groove 3.
  int sizeCount;
  // Whether an angle of the long axis to the local x axis follows the sizes.
  bool hasAngle;
  // The 2D fit of the local points by a FitMethod value: reads the start
  // parameters in p, writes cx, cy, the sizes and the angle there. False
  // for too few points or a failed start value.
  bool (*fit2D)(const std::vector<cv::Point2f>& points, int method, double* p);
  // The test the stored sizes must pass for a result to be kept.
  bool (*sizesAccepted)(const float* sizes);
};

extern const OutlineShape kCircleOutline;
extern const OutlineShape kOvalGrooveOutline;
extern const OutlineShape kRectangleOutline;
extern const OutlineShape kRoundGrooveOutline;

// How FitFlatOutline ended.
enum class FitOutcome {
  kRefused,       // too few points or no start value; nothing written
  kSizeRejected,  // result written, its sizes fail the shape's test
  kFitted,        // result written and accepted
};

// FitFlatOutline()
// Fits the plane (x3dfit::XPlaneFit, LeastAbsDev whatever `method`),
// projects the points into it, takes them into the plane's local frame,
// runs the shape's 2D fit with `method` and writes center, normal (the
// plane's), majorDir (the local x axis turned by the fitted angle) and the
// sizes as floats into `out`, 9 + sizeCount of them.
FitOutcome FitFlatOutline(const std::vector<cv::Point3f>& points,
                          const OutlineShape& shape,
                          int method,
                          float* out);

// OrientByNormals()
// Counts the `count` normals whose float dot product with the normal at
// fields[3..5] is above 0 and those not above 0; when the latter are more,
// negates that normal in each of `fields` and `copy`.
void OrientByNormals(const float* normals,
                     const int& count,
                     float* fields,
                     float* copy);

// TriplesToPoints()
// `count` x, y, z triples as points; empty for a count of 0 or less.
std::vector<cv::Point3f> TriplesToPoints(const float* points, const int& count);

}  // namespace curvefit
}  // namespace zelmo

#endif  // ZELMO_CURVEFIT_OUTLINE_FRAME_H_
