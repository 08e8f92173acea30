#include "zelmo/lmfit/plane_fit_lm.h"

#include <cmath>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/feature/plane_frame.h"
#include "zelmo/feature/point_arrays.h"
#include "zelmo/lmfit/console.h"
#include "zelmo/lmfit/kth_largest.h"
#include "zelmo/lmfit/stage_frame.h"

namespace zelmolm {
namespace {

namespace lm = zelmo::lmfit;

constexpr int kPlaneParams = 4;        // a, b, c, d
constexpr int kMinPoints = 3;          // a plane needs three points
constexpr int kSolverMinPoints = 4;    // with three the closed form is exact
constexpr double kNormalGuard = 1e-4;  // below it (a, b, c) is not scaled
constexpr double kPi = 3.141592653589793;
// Starting bounds of the largest and smallest residual of the
// minimum-zone objective.
constexpr double kZoneBound = 1e30;
// Weight of the largest minimum-zone residual per point.
constexpr int kZoneWeightPerPoint = 10;

// Scales (a, b, c, d) in place by 1 / |(a, b, c)|, or leaves them when that
// length is below kNormalGuard.
void normalizePlane(double* q) {
  const double norm = std::sqrt((q[0] * q[0] + q[1] * q[1]) + q[2] * q[2]);
  const double scale = kNormalGuard > norm ? 1.0 : 1.0 / norm;
  for (int k = 0; k < kPlaneParams; ++k) q[k] *= scale;
}

// Signed a x + b y + c z + d of one float point, in double.
double planeDistance(const double* q, const float* pt) {
  return ((q[0] * pt[0] + q[1] * pt[1]) + q[2] * pt[2]) + q[3];
}

}  // namespace

// The plane's part in the common stages: its residual and angle test, its
// guard of more than three kept points, and its store step (normalise,
// then the rectangle and orientation from all points).
class PlaneStages : public lm::StageShape {
 public:
  explicit PlaneStages(XPlaneFitLM& plane) : plane_(plane) {}

  int fitAll(const float* points, const float* normals, int count) override {
    return plane_.Fit1(points, normals, count);
  }
  void prepare() override {
    axis_ = zelmo::frame::unitOrZero(cv::Vec3d(plane_.a, plane_.b, plane_.c));
  }
  double residual(const float* point) const override {
    const double q[4] = {plane_.a, plane_.b, plane_.c, plane_.d};
    return planeDistance(q, point);
  }
  void statistics(const float* points,
                  int count,
                  float* stats,
                  std::vector<float>& residuals) override {
    plane_.calcStatistics(points, count, stats, residuals);
  }
  bool angleHolds(const float*,
                  const float* normal,
                  double cosLimit) const override {
    const double dot =
        normal[0] * axis_[0] + normal[1] * axis_[1] + normal[2] * axis_[2];
    return std::fabs(dot) >= cosLimit;
  }
  lm::TieRule tieRule(lm::Stage) const override {
    return lm::TieRule{false, false, 0.0};
  }
  int paramCount() const override { return kPlaneParams; }
  void seed(double* params) const override {
    params[0] = plane_.a;
    params[1] = plane_.b;
    params[2] = plane_.c;
    params[3] = plane_.d;
  }
  bool refitAllowed(int kept) const override {
    return kept >= kSolverMinPoints;
  }
  int solve(const float* kept, int keptCount, double* params) override {
    return plane_.Fit_LM(kept, keptCount, params, nullptr, kPlaneParams);
  }
  void store(const double* params,
             const float*,
             int,
             const float* points,
             const float* normals,
             int count) override {
    double q[4] = {params[0], params[1], params[2], params[3]};
    normalizePlane(q);
    plane_.a = static_cast<float>(q[0]);
    plane_.b = static_cast<float>(q[1]);
    plane_.c = static_cast<float>(q[2]);
    plane_.d = static_cast<float>(q[3]);
    plane_.getValue(points, normals, count);
  }
  int solverFailure() const override { return -1; }

  void onBand(lm::Stage, float mean, float sd, double hi, double lo) override {
    lm::printBand(mean, sd, hi, lo);
  }
  void onThreshold(lm::Stage stage, float threshold) override {
    // Only the combined filter reports it, once it is a valid selection.
    if (stage == lm::Stage::kProportionAngle &&
        !(threshold <= lm::kNoSelection))
      lm::printThreshold(threshold, true);
  }
  void onFiltered(lm::Stage stage, int kept, int count) override {
    if (stage != lm::Stage::kBand) lm::printKept(kept, count);
  }

 private:
  XPlaneFitLM& plane_;
  cv::Vec3d axis_;  // unit normal of the first fit (zero if degenerate)
};

int XPlaneFitLM::Fit(const float* points,
                     const float* normals,
                     const int& count,
                     const xfeaturefitfilter::FilterParam& param,
                     xfeaturefitfilter::FilterMethod method) {
  if (count < kMinPoints) return -1;
  PlaneStages shape(*this);
  return lm::runFilter(shape, points, normals, count, param, method) < 0 ? -1
                                                                         : 0;
}

void XPlaneFitLM::getPlane(xgeofeature::XFPlane& plane) {
  plane = xgeofeature::XFPlane(center, normal, majorDir, length, width);
}

void XPlaneFitLM::Fit_Function(double* p, double* hx, int, int n, void* adata) {
  const float* pts = static_cast<const float*>(adata);
  double q[4] = {p[0], p[1], p[2], p[3]};
  normalizePlane(q);
  for (int i = 0; i < n; ++i) hx[i] = planeDistance(q, pts + 3 * i);
}

void XPlaneFitLM::Fit_Chebyshev_Function(
    double* p, double* hx, int, int n, void* adata) {
  const float* pts = static_cast<const float*>(adata);
  double q[4] = {p[0], p[1], p[2], p[3]};
  normalizePlane(q);
  double largest = -kZoneBound, smallest = kZoneBound;
  int largestIndex = 0;
  for (int i = 0; i < n; ++i) {
    hx[i] = planeDistance(q, pts + 3 * i);
    if (hx[i] > largest) {
      largest = hx[i];
      largestIndex = i;
    }
    if (hx[i] < smallest) smallest = hx[i];
  }
  for (int i = 0; i < n; ++i) hx[i] -= smallest;
  if (n > 0) hx[largestIndex] *= static_cast<double>(n * kZoneWeightPerPoint);
}

int XPlaneFitLM::Fit1(const float* points,
                      const float* normals,
                      const int& count) {
  if (count < kMinPoints) return -1;
  residualFunction_ = Fit_Function;

  cv::Mat A(count, 3, CV_64F);
  cv::Vec3d centroid(0, 0, 0);
  for (int i = 0; i < count; ++i) {
    for (int k = 0; k < 3; ++k) A.at<double>(i, k) = points[3 * i + k];
    centroid +=
        cv::Vec3d(A.at<double>(i, 0), A.at<double>(i, 1), A.at<double>(i, 2));
  }
  for (int k = 0; k < 3; ++k) centroid[k] /= count;  // a true mean
  for (int i = 0; i < count; ++i)
    for (int k = 0; k < 3; ++k) A.at<double>(i, k) -= centroid[k];
  const cv::Mat M = A.t() * A;
  cv::Mat w, u, vt;
  cv::SVD::compute(M, w, u, vt, 0);

  double params[4];
  for (int k = 0; k < 3; ++k) params[k] = vt.at<double>(2, k);
  params[3] = -(params[0] * centroid[0] + params[1] * centroid[1] +
                params[2] * centroid[2]);
  int result = 0;
  if (count >= kSolverMinPoints)
    result = Fit_LM(points, count, params, nullptr, kPlaneParams);
  orientAndStore(params, points, normals, count);
  return result;
}

void XPlaneFitLM::orientAndStore(double* params,
                                 const float* points,
                                 const float* normals,
                                 int count) {
  int positive = 0, negative = 0;
  for (int i = 0; i < count; ++i) {
    const double dot = normals[3 * i] * params[0] +
                       normals[3 * i + 1] * params[1] +
                       normals[3 * i + 2] * params[2];
    if (dot > 0.0)
      ++positive;
    else
      ++negative;
  }
  normalizePlane(params);
  if (positive < negative)
    for (int k = 0; k < kPlaneParams; ++k) params[k] = -params[k];
  a = static_cast<float>(params[0]);
  b = static_cast<float>(params[1]);
  c = static_cast<float>(params[2]);
  d = static_cast<float>(params[3]);
  getValue(points, normals, count);
}

int XPlaneFitLM::Fit2(const float* points,
                      const float* normals,
                      const int& count,
                      const float& value) {
  PlaneStages shape(*this);
  return lm::bandStage(shape, points, normals, count, value);
}

int XPlaneFitLM::Fit3(const float* points,
                      const float* normals,
                      const int& count,
                      const float& value) {
  PlaneStages shape(*this);
  return lm::proportionStage(shape, points, normals, count, value);
}

int XPlaneFitLM::Fit4(const float* points,
                      const float* normals,
                      const int& count,
                      const float& value) {
  PlaneStages shape(*this);
  return lm::angleStage(shape, points, normals, count, value);
}

int XPlaneFitLM::Fit5(const float* points,
                      const float* normals,
                      const int& count,
                      const float& value,
                      const float& angle) {
  PlaneStages shape(*this);
  return lm::bandAngleStage(shape, points, normals, count, value, angle);
}

int XPlaneFitLM::Fit6(const float* points,
                      const float* normals,
                      const int& count,
                      const float& value,
                      const float& angle) {
  PlaneStages shape(*this);
  return lm::proportionAngleStage(shape, points, normals, count, value, angle);
}

int XPlaneFitLM::Fit_Chebyshev(const float* points,
                               const float* normals,
                               const int& count,
                               const float* const seed) {
  residualFunction_ = Fit_Chebyshev_Function;
  double params[4] = {seed[3], seed[4], seed[5], 0.0};
  params[3] =
      -(params[0] * seed[0] + params[1] * seed[1] + params[2] * seed[2]);
  int result = 0;
  if (count >= kSolverMinPoints)
    result = Fit_LM(points, count, params, nullptr, kPlaneParams);
  orientAndStore(params, points, normals, count);
  return result;
}

void XPlaneFitLM::calcStatistics(const float* points,
                                 const int& count,
                                 float* const stats,
                                 std::vector<float>& residuals) {
  PlaneStages shape(*this);
  lm::fillStatistics(shape, points, count, lm::VarianceDivisor::kCount, stats,
                     residuals);
}

void XPlaneFitLM::getValue(const float* points,
                           const float* normals,
                           const int& count) {
  double params[4] = {a, b, c, d};
  float box[12];
  getFourCorner(points, count, params, box);
  for (int k = 0; k < 12; ++k) corners[k] = box[k];

  int positive = 0, other = 0;
  for (int i = 0; i < count; ++i) {
    const float dot = a * normals[3 * i] + b * normals[3 * i + 1] +
                      c * normals[3 * i + 2];  // in float
    if (dot > 0.0f)
      ++positive;
    else
      ++other;
  }
  if (other > positive) {
    a = -a;
    b = -b;
    c = -c;
    d = -d;
  }
  normal[0] = a;
  normal[1] = b;
  normal[2] = c;
}

void XPlaneFitLM::getFourCorner(const float* points,
                                const int& count,
                                double* const params,
                                float* const corners) {
  const std::vector<cv::Point3f> pts = zelmo::copyPoints3(points, count);
  double I[16];
  const cv::RotatedRect rect = zelmo::frame::planeBoxCorners(
      pts, params, zelmo::frame::AlignMode::kGuarded, corners, I);
  const double cx = rect.center.x, cy = rect.center.y;
  const double hw = rect.size.width * 0.5, hh = rect.size.height * 0.5;

  float angle = rect.angle;
  if (hw > hh) {
    length = rect.size.width;
    width = rect.size.height;
  } else {
    length = rect.size.height;
    width = rect.size.width;
    angle = static_cast<float>(angle + 90.0);  // stored in float
  }
  const double rad = angle * kPi / 180.0;
  const cv::Vec3d major = zelmo::frame::localDirection(I, rad);
  for (int r = 0; r < 3; ++r) majorDir[r] = static_cast<float>(major[r]);
  const cv::Vec3d centre = zelmo::frame::fromLocal2D(I, cx, cy);
  for (int r = 0; r < 3; ++r) center[r] = static_cast<float>(centre[r]);
}

}  // namespace zelmolm
