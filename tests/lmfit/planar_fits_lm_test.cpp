// The plane and 3D circle fits.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/fit_checks.h"
#include "tests/support/outliers.h"
#include "tests/support/shape_distances.h"
#include "tests/support/tolerance.h"
#include "zelmo/lmfit/circle_fit_3d_lm.h"
#include "zelmo/lmfit/plane_fit_lm.h"

namespace zelmolm {

using Floats = std::vector<float>;

// White-box access to the minimum-zone fit, seeded with the plane z = 0.
class XPlaneFitLMPeer {
 public:
  static void Orient(XPlaneFitLM& f,
                     const Floats& p,
                     const Floats& n,
                     const float* seed = kUp) {
    f.Fit_Chebyshev(p.data(), n.data(), static_cast<int>(p.size() / 3), seed);
  }
  static constexpr float kUp[6] = {0, 0, 0, 0, 0, 1};
};

namespace {

namespace zt = zelmo::test;
using xfeaturefitfilter::FilterParam;
using zt::ExpectNear3;
using zt::Frame;
using zt::Samples;

constexpr double kOffsetTol = 0.01;  // plane offset: the noise level
constexpr double kFloatTol = 1e-4;   // float results near unit size
const FilterParam kParam(30, 2.0f, 0.1f);

double OffsetError(const XPlaneFitLM& f, const cv::Vec3d& q) {
  return std::fabs(f.a * q[0] + f.b * q[1] + f.c * q[2] + f.d);
}
Floats Fields(const XPlaneFitLM& f) { return Floats(&f.a, f.corners + 12); }

// Every filter, two poses; 5 % tilted outliers pull only the plain fit.
TEST(XPlaneFitLM, RecoversPlanesUnderEveryFilterAndFiltersDropOutliers) {
  for (int trial = 0; trial < 2; ++trial) {
    SCOPED_TRACE(trial);
    std::mt19937 rng(7 + trial);
    const Frame frame = zt::RandomFrame(rng, 500);
    const Samples s = zt::SamplePlane(frame, 40, 15, 400, 0.01 * trial, rng);
    Samples dirty = s;
    const cv::Vec3d tilted = 0.5 * frame.w + std::sqrt(0.75) * frame.u;
    zt::AddTurnedOutliers(dirty, 0.05, 5.0, [&](auto&) { return tilted; });
    for (int method = 0; method < 6; ++method) {
      SCOPED_TRACE(method);
      XPlaneFitLM f, g;
      ASSERT_EQ(zt::RunFilteredFit(f, s, method, kParam), 0);
      zt::ExpectSameDirection(f.normal, frame.w, 1e-3);
      EXPECT_LE(OffsetError(f, frame.origin), kOffsetTol);
      zt::ExpectSameAxis(f.majorDir, frame.u, 0.05);
      ExpectNear3(f.center, frame.origin, 2.0);  // sampled vs bounds
      ASSERT_EQ(zt::RunFilteredFit(g, dirty, method, kParam), 0);
      const double bias = OffsetError(g, frame.origin);
      EXPECT_TRUE(method ? bias <= kOffsetTol : bias > 0.1) << bias;
    }
  }
}

// Three points skip the solver; too few fail; failures touch nothing.
TEST(XPlaneFitLM, FewPointsSkipTheSolverAndBadInputFails) {
  XPlaneFitLM f, plain;
  Samples s{{{0, 0, 1}, {1, 0, 1}, {0, 1, 1}},
            {{0, 0.1f, -1}, {0, 0, -1}, {0.1f, 0, -1}}};
  EXPECT_EQ(zt::RunFilteredFit(f, s, 0, kParam), 0);
  ExpectNear3(f.normal, cv::Vec3d(0, 0, -1), kFloatTol);
  EXPECT_NEAR(f.d, 1, kFloatTol);
  s.points.emplace_back(1, 1, 1.01f);
  s.normals.assign(4, {0, 0, 1});
  zt::RunFilteredFit(plain, s, 0, kParam);
  EXPECT_EQ(zt::RunFilteredFit(f, s, 1, FilterParam(30, 0, 0)), 0);
  EXPECT_EQ(Fields(f), Fields(plain));
  s.points.resize(2);
  EXPECT_EQ(zt::RunFilteredFit(f, s, 0, kParam), -1);
  EXPECT_EQ(Fields(f), Fields(plain));
}

// A tie keeps the side; a flat normal votes against only at first.
TEST(XPlaneFitLM, OrientationVotesKeepTiesAndCountFlatNormalsAgainst) {
  const Floats p = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  XPlaneFitLM f;
  XPlaneFitLMPeer::Orient(f, {0, 0, 0, 1, 0, 0}, {0, 0, 1, 0, 0, -1});
  EXPECT_NEAR(f.normal[2], 1, kFloatTol);
  // Up, down, flat: turned down by the first vote, back up by the second.
  XPlaneFitLMPeer::Orient(f, p, {0, 0, 1, 0, 0, -1, 0, 0, 0});
  EXPECT_NEAR(f.normal[2], 1, kFloatTol);
  // Down, down, flat: down by the first vote, kept by the second.
  XPlaneFitLMPeer::Orient(f, p, {0, 0, -1, 0, 0, -1, 0, 0, 0});
  EXPECT_NEAR(f.normal[2], -1, kFloatTol);
  // From the seed z = 0, the minimum zone of a tilted grid closes to ~0.
  Floats grid, up;
  for (int i = 0; i < 25; ++i) {
    const float x = i % 5, y = i / 5.0f;
    grid.insert(grid.end(), {x, y, 0.3f * x - 0.2f * y + 1});
    up.insert(up.end(), {0, 0, 1});
  }
  XPlaneFitLMPeer::Orient(f, grid, up);
  double lo = 1e9, hi = -1e9;
  for (size_t i = 0; i < grid.size(); i += 3) {
    const double e =
        f.a * grid[i] + f.b * grid[i + 1] + f.c * grid[i + 2] + f.d;
    lo = std::min(lo, e);
    hi = std::max(hi, e);
  }
  EXPECT_LT(hi - lo, 0.05);  // the seed's zone is 2.0
}

// Corners are minAreaRect's box; majorDir its angle, +90 for a square.
TEST(XPlaneFitLM, CornersAreTheLocalBoxWhileMajorDirFollowsTheAngle) {
  for (const cv::Vec3d& c : {cv::Vec3d(10, 4, 30), cv::Vec3d(6, 6, 20)}) {
    SCOPED_TRACE(c);
    const double t = c[2] * zt::kPi / 180;
    const cv::Vec2d u(std::cos(t), std::sin(t)), v(-u[1], u[0]);
    std::vector<cv::Point2f> local = {{3, 0}, {-3, 0}};
    for (int i = -4; i <= 4; ++i)
      for (int sign : {-1, 1}) {
        local.emplace_back(c[0] * u * (i / 4.0) + sign * c[1] * v);
        local.emplace_back(c[1] * v * (i / 4.0) + sign * c[0] * u);
      }
    Samples s;
    for (const cv::Point2f& q : local) s.points.emplace_back(q.x, q.y, 5.0f);
    s.normals.assign(local.size(), {0, 0, 1});
    XPlaneFitLM f;
    ASSERT_EQ(zt::RunFilteredFit(f, s, 0, kParam), 0);
    const cv::RotatedRect r = cv::minAreaRect(local);
    const double hw = r.size.width * 0.5, hh = r.size.height * 0.5;
    for (int k = 0; k < 4; ++k)
      ExpectNear3(f.corners + 3 * k,
                  cv::Vec3d(k % 3 ? -hw : hw, k < 2 ? hh : -hh, 5), kFloatTol);
    EXPECT_NEAR(f.length, 2 * c[0], kFloatTol);
    EXPECT_NEAR(f.width, 2 * c[1], kFloatTol);
    const double a = (r.angle + (hw > hh ? 0 : 90)) * zt::kPi / 180;
    ExpectNear3(f.majorDir, cv::Vec3d(std::cos(a), std::sin(a), 0), kFloatTol);
    ExpectNear3(f.center, cv::Vec3d(0, 0, 5), kFloatTol);
  }
}

// Band, kept-of-all and threshold lines, exactly, per method.
TEST(XPlaneFitLM, StagesPrintTheirLines) {
  // A 4 x 3 grid near z = 0 and one point 2 above it with a flat normal.
  Samples s;
  for (int i = 0; i < 12; ++i)
    s.points.emplace_back(i % 4, i / 4, 0.01f * ((i * 7) % 5 - 2));
  s.points.emplace_back(1.5f, 1, 2);
  s.normals.assign(12, {0, 0, 1});
  s.normals.emplace_back(1, 0, 0);
  XPlaneFitLM first;
  zt::RunFilteredFit(first, s, 0, kParam);
  Floats r;
  double mean = 0, var = 0, largest = 0;
  for (const cv::Point3f& q : s.points) {
    r.push_back(float(first.a * double(q.x) + first.b * double(q.y) +
                      first.c * double(q.z) + first.d));
    mean += r.back() / 13.0;
    if (r.size() < 13) largest = std::max<double>(largest, std::fabs(r.back()));
  }
  for (float v : r) var += (v - mean) * (v - mean) / 13.0;
  const float m = float(mean), sd = std::sqrt(float(var));
  std::ostringstream band, threshold;
  band << m << " " << sd << " " << m + 2.0 * sd << " " << m - 2.0 * sd << "\n";
  threshold << "min_n_maxvalue=" << float(largest) << "\n";
  const std::string b = band.str(), k = "12 13\n";
  const std::string want[6] = {"", b, k, k, b + k, threshold.str() + "11 13\n"};
  for (int method = 0; method < 6; ++method) {
    XPlaneFitLM f;
    std::string out;
    EXPECT_EQ(zt::RunFilteredFit(f, s, method, kParam, &out), 0);
    EXPECT_EQ(out, want[method]) << method;
  }
}

// Residuals are scaled by the normal's length, not below 0.0001.
TEST(XPlaneFitLM, ResidualFunction) {
  float q[6] = {0, 0, 2, 0, 0, -1};
  double p[4] = {0, 3, 4, 5}, tiny[4] = {0, 0, 5e-5, 1}, hx[2];
  XPlaneFitLM::Fit_Function(p, hx, 4, 2, q);
  EXPECT_DOUBLE_EQ(hx[1], 0.2);
  XPlaneFitLM::Fit_Function(tiny, hx, 4, 2, q);
  EXPECT_DOUBLE_EQ(hx[0], 1.0001);
  EXPECT_TRUE(p[1] == 3 && tiny[2] == 5e-5);  // p unchanged
}

constexpr double kFitTol = 0.01;     // center and radius, the scan's noise
constexpr double kInsideTol = 1e-3;  // a point touches within this

// Fit (inscribed) or Fit2, quietly, in f's plane or a fitted one (fp).
int Fit(XCircleFit3DLM& c, bool in, const Samples& s, const Frame& f, bool fp) {
  std::vector<float> q(6, 0.0f), n, p = s.Xyz();
  for (int i = 0; i < 3 && !fp; ++i)
    q[i] = float(f.origin[i]), q[3 + i] = float(f.w[i]);
  for (int i = 0; i < s.Count(); ++i) n.insert(n.end(), f.w.val, f.w.val + 3);
  zt::StdoutCapture quiet;
  auto fit = in ? &XCircleFit3DLM::Fit : &XCircleFit3DLM::Fit2;
  return (c.*fit)(p.data(), fp ? n.data() : nullptr, s.Count(), q.data(), fp);
}

// A full circle and a half, in the given plane and in a fitted one.
TEST(XCircleFit3DLM, LeastSquaresRecoversCirclesInGivenAndFittedPlanes) {
  for (int trial = 0; trial < 2; ++trial) {
    std::mt19937 rng(6100 + trial);
    const Frame f = zt::RandomFrame(rng, 500.0);
    const double radius = std::uniform_real_distribution<double>(5, 50)(rng);
    const Samples s =
        zt::SampleCircle(f, radius, 60, kFitTol, rng, zt::kPi * (2 - trial));
    for (bool fitPlane : {false, true}) {
      SCOPED_TRACE(testing::Message() << trial << "/" << fitPlane);
      XCircleFit3DLM c;
      ASSERT_EQ(Fit(c, false, s, f, fitPlane), 0);
      zt::ExpectNear3(c.center, f.origin, kFitTol);
      EXPECT_NEAR(c.radius, radius, kFitTol);
      zt::ExpectSameDirection(c.normal, f.w, 1e-4);
      EXPECT_NEAR(cv::norm(zt::ToVec3d(c.majorDir)), 1.0, 1e-6);
      EXPECT_NEAR(zt::ToVec3d(c.majorDir).dot(f.w), 0.0, 1e-4);
    }
  }
}

// The inscribed circle touches from inside, within the band below LS.
TEST(XCircleFit3DLM, InscribedCircleTouchesFromInsideAndNeedsTenPoints) {
  std::mt19937 rng(6200);
  const Frame f = zt::RandomFrame(rng, 500.0);
  Samples s = zt::SampleCircle(f, 8.0, 400, 0.0, rng);
  std::uniform_real_distribution<double> band(-0.02, 0.02);
  for (int i = 0; i < s.Count(); ++i)
    s.points[i] =
        zt::ToPoint3f(f.origin + (8 + band(rng)) * zt::ToVec3d(s.normals[i]));
  XCircleFit3DLM leastSquares, inscribed;
  ASSERT_EQ(Fit(leastSquares, false, s, f, false), 0);
  ASSERT_EQ(Fit(inscribed, true, s, f, false), 0);
  int touching = 0;
  for (const cv::Point3f& p : s.points) {
    const double e = cv::norm(zt::ToVec3d(p) - zt::ToVec3d(inscribed.center));
    EXPECT_GT(e, inscribed.radius - kInsideTol);
    touching += e < inscribed.radius + kInsideTol;
  }
  EXPECT_GE(touching, 3);
  EXPECT_GE(inscribed.radius, leastSquares.radius - 0.02 - kInsideTol);
  EXPECT_LE(inscribed.radius, leastSquares.radius);
  // Nine points: too few inscribed, enough for LS; two fail both.
  s.points.resize(9);
  XCircleFit3DLM c;
  EXPECT_EQ(Fit(c, true, s, f, false), -1);
  EXPECT_EQ(std::vector<float>(c.center, &c.radius + 1), Floats(10));
  ASSERT_EQ(Fit(c, false, s, f, false), 0);
  const std::vector<float> fitted(c.center, &c.radius + 1);
  s.points.resize(2);
  for (bool in : {false, true}) EXPECT_EQ(Fit(c, in, s, f, false), -1);
  EXPECT_EQ(std::vector<float>(c.center, &c.radius + 1), fitted);
}

}  // namespace
}  // namespace zelmolm
