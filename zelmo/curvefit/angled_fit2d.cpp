#include "zelmo/curvefit/angled_fit2d.h"

#include <opencv2/imgproc.hpp>

#include "zelmo/curvefit/fit_method.h"
#include "zelmo/curvefit/one_sided_objectives.h"
#include "zelmo/curvefit/outline_distances.h"
#include "zelmo/curvefit/outline_frame.h"
#include "zelmo/curvefit/outline_simplex.h"

namespace zelmo {
namespace curvefit {
namespace {

constexpr double kPi = 3.14159265358979323846;
// Size steps of the descent are the start sizes over this.
constexpr double kSizeStepDivisor = 100.0;
// Step of the descent in the angle, radians.
constexpr double kAngleStep = 0.001;

struct OvalGrooveShape {
  using Outline = OvalGrooveOutline;
  static constexpr size_t kMinPoints = kOvalGrooveMinPoints;
  static constexpr int kSizes = 2;
  static void setSizes(const LongAxisStart& s, double* sizes) {
    sizes[0] = s.longHalf - s.shortHalf;  // in float
    sizes[1] = s.shortHalf;
  }
  // Half straight length and end radius above 0.
  static bool accepted(const float* sizes) {
    return sizes[0] > 0.0f && sizes[1] > 0.0f;
  }
};

struct RectangleShape {
  using Outline = RectangleOutline;
  static constexpr size_t kMinPoints = kRectangleMinPoints;
  static constexpr int kSizes = 2;
  static void setSizes(const LongAxisStart& s, double* sizes) {
    sizes[0] = s.longHalf;
    sizes[1] = s.shortHalf;
  }
  // Any sizes stand.
  static bool accepted(const float*) { return true; }
};

struct RoundGrooveShape {
  using Outline = RoundGrooveOutline;
  static constexpr size_t kMinPoints = kRoundGrooveMinPoints;
  static constexpr int kSizes = 3;
  static void setSizes(const LongAxisStart& s, double* sizes) {
    sizes[0] = s.longHalf;
    sizes[1] = s.shortHalf;
    sizes[2] = sizes[1] * 0.5;
  }
  // halfLength >= halfWidth > cornerRadius > 0.
  static bool accepted(const float* sizes) {
    return sizes[0] >= sizes[1] && sizes[1] > sizes[2] && sizes[2] > 0.0f;
  }
};

template <class Shape>
bool FitAngled2D(const std::vector<cv::Point2f>& points,
                 int method,
                 double* const p) {
  if (points.size() < Shape::kMinPoints) return false;
  constexpr int kAngle = 2 + Shape::kSizes;
  constexpr size_t kDimension = kAngle + 1;
  const LongAxisStart start = MinAreaStart(points);
  p[0] = start.cx;
  p[1] = start.cy;
  Shape::setSizes(start, p + 2);
  p[kAngle] = start.t;

  double steps[kDimension];
  for (int k = 0; k < kAngle; ++k) {
    // Position and the first two sizes alternate the first two sizes' steps.
    const int size = k < 4 ? k % 2 : k - 2;
    steps[k] = p[2 + size] / kSizeStepDivisor;
  }
  steps[kAngle] = kAngleStep;

  using Outline = typename Shape::Outline;
  const Objective constructed =
      SelectOneSided<Outline>(xcurve3dfit::LeastAbsDev, nullptr);
  OutlineSimplex fit(kDimension, SelectOneSided<Outline>(method, constructed));
  fit.descend(points, p, steps);
  return true;
}

}  // namespace

const OutlineShape kOvalGrooveOutline = {
    OvalGrooveShape::kMinPoints, OvalGrooveShape::kSizes, true,
    &FitOvalGroove2D, &OvalGrooveShape::accepted};
const OutlineShape kRectangleOutline = {
    RectangleShape::kMinPoints, RectangleShape::kSizes, true, &FitRectangle2D,
    &RectangleShape::accepted};
const OutlineShape kRoundGrooveOutline = {
    RoundGrooveShape::kMinPoints, RoundGrooveShape::kSizes, true,
    &FitRoundGroove2D, &RoundGrooveShape::accepted};

LongAxisStart MinAreaStart(const std::vector<cv::Point2f>& points) {
  const cv::RotatedRect box = cv::minAreaRect(points);
  const float halfW = box.size.width / 2, halfH = box.size.height / 2;
  if (halfW > halfH)
    return {box.center.x, box.center.y, halfW, halfH,
            static_cast<double>(box.angle) * kPi / 180.0};
  const float turned = box.angle + 90.0f;  // the sum in float
  return {box.center.x, box.center.y, halfH, halfW,
          static_cast<double>(turned) * kPi / 180.0};
}

bool FitOvalGroove2D(const std::vector<cv::Point2f>& points,
                     int method,
                     double* const p) {
  return FitAngled2D<OvalGrooveShape>(points, method, p);
}

bool FitRectangle2D(const std::vector<cv::Point2f>& points,
                    int method,
                    double* const p) {
  return FitAngled2D<RectangleShape>(points, method, p);
}

bool FitRoundGroove2D(const std::vector<cv::Point2f>& points,
                      int method,
                      double* const p) {
  return FitAngled2D<RoundGrooveShape>(points, method, p);
}

}  // namespace curvefit
}  // namespace zelmo
