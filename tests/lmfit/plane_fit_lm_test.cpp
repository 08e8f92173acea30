#include "zelmo/lmfit/plane_fit_lm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/samplers.h"
#include "tests/support/stdout_capture.h"
#include "tests/support/tolerance.h"
#include "zelmo/solver/levmar.h"

namespace zelmolm {

using Floats = std::vector<float>;

// White-box access to the first fit and the minimum-zone fit.
class XPlaneFitLMPeer {
 public:
  static int Fit1(XPlaneFitLM& f, const Floats& p, const Floats& n) {
    return f.Fit1(p.data(), n.data(), static_cast<int>(p.size() / 3));
  }
  static int FitChebyshev(XPlaneFitLM& f,
                          const Floats& p,
                          const Floats& n,
                          const float* seed) {
    return f.Fit_Chebyshev(p.data(), n.data(), static_cast<int>(p.size() / 3),
                           seed);
  }
};

namespace {

namespace zt = zelmo::test;
using xfeaturefitfilter::FilterMethod;
using xfeaturefitfilter::FilterParam;
using zt::ExpectNear3;
using zt::ExpectSameDirection;
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

// Every result field, in declared order.
Floats Fields(const XPlaneFitLM& f) {
  Floats v = {f.a, f.b, f.c, f.d, f.length, f.width};
  for (const float* a : {f.center, f.normal, f.majorDir})
    v.insert(v.end(), a, a + 3);
  v.insert(v.end(), f.corners, f.corners + 12);
  return v;
}

int Fit(XPlaneFitLM& f,
        const Floats& p,
        const Floats& n,
        int method,
        const FilterParam& param = kParam) {
  return f.Fit(p.data(), n.data(), static_cast<int>(p.size() / 3), param,
               static_cast<FilterMethod>(method));
}

// Fits with the debug lines held back.
int FitQuietly(XPlaneFitLM& f, const Samples& s, int method) {
  zt::StdoutCapture quiet;
  return Fit(f, s.Xyz(), s.NormalsXyz(), method);
}

// Random poses, every filter. Clean or noisy: normal, offset, rectangle,
// corners on the plane about the center, the record's equation. With 5 %
// outliers 5 off, normals tilted 60 degrees: the filters recover the plane,
// the plain fit is pulled away.
TEST(XPlaneFitLM, RecoversPlanesUnderEveryFilterAndFiltersDropOutliers) {
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE(trial);
    std::mt19937 rng(7 + trial);
    const Frame frame = zt::RandomFrame(rng, 500);
    const Samples s =
        zt::SamplePlane(frame, 40, 15, 400, trial % 2 ? 0.01 : 0.0, rng);
    Samples dirty = s;
    zt::AddOutliers(dirty, frame, 0.05, 5.0);
    const cv::Vec3f tilted = 0.5 * frame.w + std::sqrt(0.75) * frame.u;
    for (int i = 0; i < s.Count(); ++i)
      if (dirty.points[i] != s.points[i]) dirty.normals[i] = tilted;
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(method);
      XPlaneFitLM f, g;
      ASSERT_EQ(FitQuietly(f, s, method), 0);
      ExpectSameDirection(f.normal, frame.w, kNormalTolRad);
      EXPECT_EQ(f.normal[2], f.c);
      EXPECT_LE(OffsetError(f, frame.origin), kOffsetTol);
      EXPECT_NEAR(f.length, 80, kExtentTol);
      EXPECT_NEAR(f.width, 30, kExtentTol);
      zt::ExpectSameAxis(f.majorDir, frame.u, 0.05);
      ExpectNear3(f.center, frame.origin, kExtentTol);
      cv::Vec3d mean(0, 0, 0);
      for (int k = 0; k < 4; ++k) {
        const cv::Vec3d q = zt::ToVec3d(f.corners + 3 * k);
        EXPECT_LE(OffsetError(f, q), kOffsetTol);
        mean += q * 0.25;
      }
      ExpectNear3(mean, f.center, kOffsetTol);
      xgeofeature::XFPlane plane;
      f.getPlane(plane);
      EXPECT_EQ(plane.d,
                -(f.normal[0] * f.center[0] + f.normal[1] * f.center[1] +
                  f.normal[2] * f.center[2]));
      ASSERT_EQ(FitQuietly(g, dirty, method), 0);
      if (method == xfeaturefitfilter::FilterNone) {
        EXPECT_GT(OffsetError(g, frame.origin), kOutlierBias);
      } else {
        EXPECT_LE(OffsetError(g, frame.origin), kOffsetTol);
        ExpectSameDirection(g.normal, frame.w, kNormalTolRad);
      }
    }
  }
}

// Three points (first or kept) skip the solver, which needs four; too few
// points and unknown methods fail and leave the fields alone.
TEST(XPlaneFitLM, FewPointsSkipTheSolverAndBadInputFails) {
  const Floats p = {0, 0, 1, 1, 0, 1, 0, 1, 1};
  for (float nz : {-1.0f, 1.0f}) {
    XPlaneFitLM f;
    zt::StdoutCapture capture;
    EXPECT_EQ(Fit(f, p, {0, 0.1f, nz, 0, 0, nz, 0.1f, 0, nz}, 0), 0);
    EXPECT_EQ(capture.Take(), "");
    ExpectNear3(f.normal, cv::Vec3d(0, 0, nz), kFloatTol);
    EXPECT_NEAR(f.d, -nz, kFloatTol);
  }
  const Floats p4 = {0, 0, 1, 1, 0, 1, 0, 1, 1, 1, 1, 1.01f};
  const Floats n4 = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
  XPlaneFitLM plain, filtered;
  Fit(plain, p4, n4, xfeaturefitfilter::FilterNone);
  zt::StdoutCapture none;
  EXPECT_EQ(Fit(filtered, p4, n4, xfeaturefitfilter::FilterSigma,
                FilterParam(30, 0, 0.1f)),
            0);  // a factor of 0 keeps no point
  const std::string band = none.Take();
  EXPECT_EQ(std::count(band.begin(), band.end(), '\n'), 1) << band;
  EXPECT_EQ(Fields(filtered), Fields(plain));
  zt::StdoutCapture three;
  EXPECT_EQ(Fit(filtered, p4, n4, xfeaturefitfilter::FilterProportion,
                FilterParam(30, 0, 0.25f)),
            0);
  EXPECT_EQ(three.Take(), "3 4\n");

  for (int method : {6, -1}) EXPECT_EQ(Fit(filtered, p4, n4, method), -1);
  EXPECT_EQ(Fit(filtered, {0, 0, 1, 1, 0, 1}, n4, 0), -1);
  EXPECT_EQ(Fields(filtered), Fields(plain));
}

// Minimum-zone entry below four points keeps the seed's +z: a tie keeps
// the side in both votes; a flat normal counts against in the first vote
// (double) and for neither side in the second (float).
TEST(XPlaneFitLM, OrientationVotesKeepTiesAndCountFlatNormalsAgainst) {
  const float seed[6] = {0, 0, 0, 0, 0, 1};
  const Floats p = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  XPlaneFitLM f;
  XPlaneFitLMPeer::FitChebyshev(f, {0, 0, 0, 1, 0, 0}, {0, 0, 1, 0, 0, -1},
                                seed);
  ExpectNear3(f.normal, cv::Vec3d(0, 0, 1), kFloatTol);
  // Up, down, flat: turned down by the first vote, back up by the second.
  XPlaneFitLMPeer::FitChebyshev(f, p, {0, 0, 1, 0, 0, -1, 0, 0, 0}, seed);
  ExpectNear3(f.normal, cv::Vec3d(0, 0, 1), kFloatTol);
  // Down, down, flat: down by the first vote, kept by the second.
  XPlaneFitLMPeer::FitChebyshev(f, p, {0, 0, -1, 0, 0, -1, 0, 0, 0}, seed);
  ExpectNear3(f.normal, cv::Vec3d(0, 0, -1), kFloatTol);
}

// Rectangle turned 30 degrees at z = 5, square turned 20: corners are
// minAreaRect's size boxed along the local (world) x, y; majorDir follows
// the angle, +90 for the square. Points within 0.01 still get a frame.
TEST(XPlaneFitLM, CornersAreTheLocalBoxWhileMajorDirFollowsTheAngle) {
  for (const cv::Vec3d& c : {cv::Vec3d(10, 4, 30), cv::Vec3d(6, 6, 20)}) {
    SCOPED_TRACE(c);
    const double t = c[2] * zt::kPi / 180;
    const cv::Vec2d u(std::cos(t), std::sin(t)), v(-u[1], u[0]);
    std::vector<cv::Point2f> local = {{3, 0}, {-3, 0}};
    for (int i = -4; i <= 4; ++i)
      for (int sign : {-1, 1}) {
        const cv::Vec2d e1 = c[0] * u * (i / 4.0) + sign * c[1] * v;
        const cv::Vec2d e2 = c[1] * v * (i / 4.0) + sign * c[0] * u;
        local.insert(local.end(), {cv::Point2f(e1), cv::Point2f(e2)});
      }
    Floats p, n;
    for (const cv::Point2f& q : local) {
      p.insert(p.end(), {q.x, q.y, 5.0f});
      n.insert(n.end(), {0, 0, 1});
    }
    XPlaneFitLM f;
    ASSERT_EQ(Fit(f, p, n, xfeaturefitfilter::FilterNone), 0);
    const cv::RotatedRect r = cv::minAreaRect(local);
    const double hw = r.size.width * 0.5, hh = r.size.height * 0.5;
    const double box[4][2] = {{hw, hh}, {-hw, hh}, {-hw, -hh}, {hw, -hh}};
    for (int k = 0; k < 4; ++k)
      ExpectNear3(f.corners + 3 * k, cv::Vec3d(box[k][0], box[k][1], 5),
                  kFloatTol);
    EXPECT_NEAR(f.length, 2 * c[0], kFloatTol);
    EXPECT_NEAR(f.width, 2 * c[1], kFloatTol);
    const double a = (r.angle + (hw > hh ? 0 : 90)) * zt::kPi / 180;
    ExpectNear3(f.majorDir, cv::Vec3d(std::cos(a), std::sin(a), 0), kFloatTol);
    ExpectNear3(f.center, cv::Vec3d(0, 0, 5), kFloatTol);
  }
  XPlaneFitLM f;
  EXPECT_EQ(Fit(f, {1, 1, 0, 1.004f, 1, 0, 1, 1.003f, 0, 1.002f, 1.002f, 0},
                {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}, 0),
            0);
  ExpectNear3(f.center, cv::Vec3d(1.002, 1.0015, 0), 0.002);
  EXPECT_LT(f.length, 0.01);
  EXPECT_NEAR(cv::Vec3f(f.majorDir).dot(cv::Vec3f(f.normal)), 0.0, kFloatTol);
}

// Each stage's debug lines: band (mean sd hi lo of the first fit's
// residuals), kept of all, threshold of the combined proportion filter.
TEST(XPlaneFitLM, StagesPrintTheirLines) {
  // A 4 x 3 grid near z = 0 and one point 2 above it with a flat normal.
  Floats p, n;
  for (int i = 0; i < 12; ++i) {
    p.insert(p.end(), {float(i % 4), float(i / 4), 0.01f * ((i * 7) % 5 - 2)});
    n.insert(n.end(), {0, 0, 1});
  }
  p.insert(p.end(), {1.5f, 1, 2});
  n.insert(n.end(), {1, 0, 0});
  XPlaneFitLM first;
  XPlaneFitLMPeer::Fit1(first, p, n);
  Floats r;
  double mean = 0, var = 0;
  for (size_t i = 0; i < p.size(); i += 3) {
    r.push_back(float(first.a * double(p[i]) + first.b * double(p[i + 1]) +
                      first.c * double(p[i + 2]) + first.d));
    mean += r.back() / 13.0;
  }
  for (float v : r) var += (v - mean) * (v - mean) / 13.0;
  const float m = float(mean), sd = std::sqrt(float(var));
  std::ostringstream band, threshold;
  band << m << " " << sd << " " << m + 2.0 * sd << " " << m - 2.0 * sd << "\n";
  float largest = 0;
  for (int i = 0; i < 12; ++i) largest = std::max(largest, std::fabs(r[i]));
  threshold << "min_n_maxvalue=" << largest << "\n";
  const std::string want[kMethods] = {"",
                                      band.str(),
                                      "12 13\n",
                                      "12 13\n",
                                      band.str() + "12 13\n",
                                      threshold.str() + "11 13\n"};
  for (int method = 0; method < kMethods; ++method) {
    SCOPED_TRACE(method);
    XPlaneFitLM f;
    zt::StdoutCapture capture;
    EXPECT_EQ(Fit(f, p, n, method, FilterParam(45, 2, 0.1f)), 0);
    EXPECT_EQ(capture.Take(), want[method]);
  }
}

// The reference plane run through the library's residual; no scaling
// below 0.0001; minimum-zone residuals are distances less the smallest, the
// first largest times 10 n; p unchanged.
TEST(XPlaneFitLM, ResidualFunctions) {
  const Floats pts = {-3,   -2,   2.3125f, -1.5f, 2.5f,  0.3125f,
                      0,    0,    2,       1,     -1,    2.875f,
                      2.5f, 1.5f, 1.8125f, 3.5f,  -2.5f, 4.125f,
                      -2,   3,    0.0625f, 0.5f,  -3.5f, 3.75f,
                      4,    0.5f, 2.8125f, -4,    1,     0.4375f};
  double p[4] = {0, 0, 1, 0};
  double opts[5] = {1e-3, 1e-15, 1e-15, 1e-20, 1e-6};
  EXPECT_EQ(zelmo::levmar::dlevmar_dif(XPlaneFitLM::Fit_Function, p, nullptr, 4,
                                       10, 10000, opts, nullptr, nullptr,
                                       nullptr, const_cast<float*>(pts.data())),
            30);
  const double want[4] = {-0.25711839481038357, 0.50416570284903051,
                          1.0141391658626746, -2.0280651359984354};
  zt::ExpectNearArray(p, want, 4, 1e-9);

  float q[12] = {0, 0, 2, 0, 0, -1, 0, 0, 3, 0, 0, 3};
  double tiny[4] = {0, 0, 5e-5, 1}, z[4] = {0, 0, 2, -2}, hx[4];
  XPlaneFitLM::Fit_Function(tiny, hx, 4, 4, q);
  EXPECT_DOUBLE_EQ(hx[0], 1.0001);
  XPlaneFitLM::Fit_Chebyshev_Function(z, hx, 4, 4, q);
  const double zone[4] = {3, 0, 4 * 40, 4};
  zt::ExpectNearArray(hx, zone, 4, 1e-12);
  EXPECT_EQ(tiny[2], 5e-5);
  EXPECT_EQ(z[2], 2.0);
}

// From a seed tilted 0.014 rad the heuristic zone shrinks under half the
// seed's, within 10 % of the least-squares plane's, oriented by normals.
TEST(XPlaneFitLM, ChebyshevFitNarrowsTheSeedZone) {
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE(trial);
    std::mt19937 rng(5 + trial);
    const Frame frame = zt::RandomFrame(rng, 200);
    const Samples s = zt::SamplePlane(frame, 20, 10, 200, 0.02, rng);
    const Floats p = s.Xyz(), n = s.NormalsXyz();
    auto zone = [&p](const cv::Vec3d& normal, double d) {
      double lo = 1e30, hi = -1e30;
      for (size_t i = 0; i < p.size(); i += 3) {
        const double r = normal.dot(zt::ToVec3d(&p[i])) + d;
        lo = std::min(lo, r), hi = std::max(hi, r);
      }
      return (hi - lo) / cv::norm(normal);
    };
    XPlaneFitLM ls, mz;
    XPlaneFitLMPeer::Fit1(ls, p, n);
    const cv::Vec3f o = frame.origin, w = frame.w + cv::Vec3d(0.01, 0, -0.01);
    const float seed[6] = {o[0], o[1], o[2], w[0], w[1], w[2]};
    EXPECT_GE(XPlaneFitLMPeer::FitChebyshev(mz, p, n, seed), 0);
    const double mzZone = zone(zt::ToVec3d(mz.normal), mz.d);
    EXPECT_LT(mzZone, 0.5 * zone(w, -w.dot(o)));
    EXPECT_LT(mzZone, 1.1 * zone(zt::ToVec3d(ls.normal), ls.d));
    ExpectSameDirection(mz.normal, frame.w, 0.01);
  }
}

}  // namespace
}  // namespace zelmolm
