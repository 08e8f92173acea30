#include "zelmo/lmfit/plane_fit_lm.h"

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
#include "tests/support/tolerance.h"

namespace zelmolm {

using Floats = std::vector<float>;

// White-box access to the minimum-zone fit, seeded with the plane z = 0.
class XPlaneFitLMPeer {
 public:
  static void Orient(XPlaneFitLM& f, const Floats& p, const Floats& n) {
    const float seed[6] = {0, 0, 0, 0, 0, 1};
    f.Fit_Chebyshev(p.data(), n.data(), static_cast<int>(p.size() / 3), seed);
  }
};

namespace {

namespace zt = zelmo::test;
using xfeaturefitfilter::FilterParam;
using zt::ExpectNear3;
using zt::Frame;
using zt::Samples;

constexpr double kNormalTolRad = 1e-3;  // normal of a fit to 0.01 noise
constexpr double kOffsetTol = 0.01;     // plane offset: the noise level
constexpr double kOutlierBias = 0.1;    // what 5 % outliers at 5 shift
constexpr double kExtentTol = 2.0;      // sampled rectangle vs its bounds
constexpr double kFloatTol = 1e-4;      // float results near unit size
constexpr int kMethods = 6;
const FilterParam kParam(30, 2.0f, 0.1f);

double OffsetError(const XPlaneFitLM& f, const cv::Vec3d& q) {
  return std::fabs(f.a * q[0] + f.b * q[1] + f.c * q[2] + f.d);
}
Floats Fields(const XPlaneFitLM& f) { return Floats(&f.a, f.corners + 12); }

// Every filter on clean and noisy poses; 5 % outliers 5 off, normals tilted
// 60 degrees, pull only the plain fit away.
TEST(XPlaneFitLM, RecoversPlanesUnderEveryFilterAndFiltersDropOutliers) {
  for (int trial = 0; trial < 2; ++trial) {
    SCOPED_TRACE(trial);
    std::mt19937 rng(7 + trial);
    const Frame frame = zt::RandomFrame(rng, 500);
    const Samples s = zt::SamplePlane(frame, 40, 15, 400, 0.01 * trial, rng);
    Samples dirty = s;
    const cv::Vec3d tilted = 0.5 * frame.w + std::sqrt(0.75) * frame.u;
    zt::AddTurnedOutliers(dirty, 0.05, 5.0, [&](auto&) { return tilted; });
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(method);
      XPlaneFitLM f, g;
      ASSERT_EQ(zt::RunFilteredFit(f, s, method, kParam), 0);
      zt::ExpectSameDirection(f.normal, frame.w, kNormalTolRad);
      EXPECT_LE(OffsetError(f, frame.origin), kOffsetTol);
      zt::ExpectSameAxis(f.majorDir, frame.u, 0.05);
      ExpectNear3(f.center, frame.origin, kExtentTol);
      ASSERT_EQ(zt::RunFilteredFit(g, dirty, method, kParam), 0);
      const double bias = OffsetError(g, frame.origin);
      EXPECT_TRUE(method ? bias <= kOffsetTol : bias > kOutlierBias) << bias;
    }
  }
}

// Three points skip the solver (normal along the normals); too few points
// fail; a band keeping none leaves the first fit; failures touch nothing.
TEST(XPlaneFitLM, FewPointsSkipTheSolverAndBadInputFails) {
  XPlaneFitLM f, plain;
  Samples s{{{0, 0, 1}, {1, 0, 1}, {0, 1, 1}},
            {{0, 0.1f, -1}, {0, 0, -1}, {0.1f, 0, -1}}};
  std::string out;
  EXPECT_EQ(zt::RunFilteredFit(f, s, 0, kParam, &out), 0);
  EXPECT_EQ(out, "");
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

// Minimum-zone entry below four points keeps the seed's +z: a tie keeps
// the side in both votes; a flat normal counts against in the first vote
// (double) and for neither side in the second (float).
TEST(XPlaneFitLM, OrientationVotesKeepTiesAndCountFlatNormalsAgainst) {
  const Floats p = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  XPlaneFitLM f;
  XPlaneFitLMPeer::Orient(f, {0, 0, 0, 1, 0, 0}, {0, 0, 1, 0, 0, -1});
  ExpectNear3(f.normal, cv::Vec3d(0, 0, 1), kFloatTol);
  // Up, down, flat: turned down by the first vote, back up by the second.
  XPlaneFitLMPeer::Orient(f, p, {0, 0, 1, 0, 0, -1, 0, 0, 0});
  ExpectNear3(f.normal, cv::Vec3d(0, 0, 1), kFloatTol);
  // Down, down, flat: down by the first vote, kept by the second.
  XPlaneFitLMPeer::Orient(f, p, {0, 0, -1, 0, 0, -1, 0, 0, 0});
  ExpectNear3(f.normal, cv::Vec3d(0, 0, -1), kFloatTol);
}

// A rectangle turned 30 degrees and a square turned 20 at z = 5: corners
// are minAreaRect's box along world x, y; majorDir its angle (+90 square).
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

// Debug lines: band (mean sd hi lo of the first fit's residuals), kept of
// all, threshold of the combined proportion filter.
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
  double mean = 0, var = 0;
  for (const cv::Point3f& q : s.points) {
    r.push_back(float(first.a * double(q.x) + first.b * double(q.y) +
                      first.c * double(q.z) + first.d));
    mean += r.back() / 13.0;
  }
  for (float v : r) var += (v - mean) * (v - mean) / 13.0;
  const float m = float(mean), sd = std::sqrt(float(var));
  std::ostringstream band, threshold;
  band << m << " " << sd << " " << m + 2.0 * sd << " " << m - 2.0 * sd << "\n";
  float largest = 0;
  for (int i = 0; i < 12; ++i) largest = std::max(largest, std::fabs(r[i]));
  threshold << "min_n_maxvalue=" << largest << "\n";
  const std::string k = "12 13\n",
                    want[kMethods] = {
                        "", band.str(),     k,
                        k,  band.str() + k, threshold.str() + "11 13\n"};
  for (int method = 0; method < kMethods; ++method) {
    XPlaneFitLM f;
    std::string out;
    EXPECT_EQ(zt::RunFilteredFit(f, s, method, FilterParam(45, 2, 0.1f), &out),
              0);
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

}  // namespace
}  // namespace zelmolm
