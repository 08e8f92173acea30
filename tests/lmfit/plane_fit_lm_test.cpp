#include "zelmo/lmfit/plane_fit_lm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
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

// White-box access to the private stages and helpers.
class XPlaneFitLMPeer {
 public:
  static int Fit1(XPlaneFitLM& f,
                  const std::vector<float>& p,
                  const std::vector<float>& n) {
    return f.Fit1(p.data(), n.data(), static_cast<int>(p.size() / 3));
  }
  static int FitChebyshev(XPlaneFitLM& f,
                          const std::vector<float>& p,
                          const std::vector<float>& n,
                          const float* seed) {
    return f.Fit_Chebyshev(p.data(), n.data(), static_cast<int>(p.size() / 3),
                           seed);
  }
  static void Statistics(XPlaneFitLM& f,
                         const std::vector<float>& p,
                         float* stats,
                         std::vector<float>& r) {
    f.calcStatistics(p.data(), static_cast<int>(p.size() / 3), stats, r);
  }
};

namespace {

using xfeaturefitfilter::FilterMethod;
using xfeaturefitfilter::FilterParam;
using zelmo::test::ExpectNear3;
using zelmo::test::ExpectSameAxis;
using zelmo::test::ExpectSameDirection;
using zelmo::test::Frame;
using zelmo::test::Samples;

constexpr double kNormalTolRad = 1e-3;  // normal of a fit to 0.01 noise
constexpr double kOffsetTol = 0.01;     // plane offset: the noise level
constexpr double kOutlierBias = 0.1;    // what 5 % outliers at 5 shift
constexpr double kExtentTol = 2.0;      // sampled rectangle vs its bounds
constexpr double kFloatTol = 1e-4;      // float results near unit size
constexpr int kMethods = 6;

double OffsetError(const XPlaneFitLM& f, const cv::Vec3d& q) {
  return std::fabs(f.a * q[0] + f.b * q[1] + f.c * q[2] + f.d);
}

// Every result field, in declared order.
std::vector<float> Fields(const XPlaneFitLM& f) {
  std::vector<float> v = {f.a, f.b, f.c, f.d, f.length, f.width};
  v.insert(v.end(), f.center, f.center + 3);
  v.insert(v.end(), f.normal, f.normal + 3);
  v.insert(v.end(), f.majorDir, f.majorDir + 3);
  v.insert(v.end(), f.corners, f.corners + 12);
  return v;
}

int FitSamples(XPlaneFitLM& f,
               const Samples& s,
               const FilterParam& param,
               int method) {
  const std::vector<float> p = s.Xyz(), n = s.NormalsXyz();
  return f.Fit(p.data(), n.data(), s.Count(), param,
               static_cast<FilterMethod>(method));
}

// Planes in random poses (offsets up to 500), clean and noisy, under every
// filter: the normal follows the measured normals, the plane passes through
// the truth, and the rectangle is the sampled one.
TEST(XPlaneFitLM, RecoversPlanesInSeveralPosesUnderEveryFilter) {
  const FilterParam param(30, 2.5f, 0.1f);
  for (int trial = 0; trial < 4; ++trial) {
    SCOPED_TRACE("seed 7, trial " + std::to_string(trial));
    std::mt19937 rng(7 + trial);
    const Frame frame = zelmo::test::RandomFrame(rng, 500);
    const Samples s = zelmo::test::SamplePlane(frame, 40, 15, 400,
                                               trial % 2 ? 0.01 : 0.0, rng);
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(method);
      XPlaneFitLM f;
      zelmo::test::StdoutCapture quiet;
      ASSERT_EQ(FitSamples(f, s, param, method), 0);
      quiet.Take();
      ExpectSameDirection(f.normal, frame.w, kNormalTolRad);
      EXPECT_EQ(f.normal[0], f.a);
      EXPECT_LE(OffsetError(f, frame.origin), kOffsetTol);
      EXPECT_NEAR(f.length, 80, kExtentTol);
      EXPECT_NEAR(f.width, 30, kExtentTol);
      ExpectSameAxis(f.majorDir, frame.u, 0.05);
      ExpectNear3(f.center, frame.origin, kExtentTol);
      // The corners: a w x h box about the center, in the plane.
      cv::Vec3d mean(0, 0, 0);
      for (int k = 0; k < 4; ++k) {
        const cv::Vec3d q(f.corners[3 * k], f.corners[3 * k + 1],
                          f.corners[3 * k + 2]);
        EXPECT_LE(OffsetError(f, q), kOffsetTol);
        mean += q * 0.25;
      }
      ExpectNear3(mean, cv::Vec3d(f.center[0], f.center[1], f.center[2]),
                  kOffsetTol);
      const double side =
          cv::norm(cv::Vec3f(f.corners) - cv::Vec3f(f.corners + 3));
      EXPECT_TRUE(std::fabs(side - f.length) < 0.01 ||
                  std::fabs(side - f.width) < 0.01)
          << side;
    }
  }
}

// 5 % gross outliers 5 units off the plane, with their normals tilted 60
// degrees: every filter recovers the plane within the noise, the plain fit
// is pulled away.
TEST(XPlaneFitLM, FiltersRemoveOutliersThatBiasThePlainFit) {
  const FilterParam param(30, 2.0f, 0.1f);
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE("seed 99, trial " + std::to_string(trial));
    std::mt19937 rng(99 + trial);
    const Frame frame = zelmo::test::RandomFrame(rng, 500);
    Samples s = zelmo::test::SamplePlane(frame, 30, 20, 1000, 0.01, rng);
    zelmo::test::AddOutliers(s, frame, 0.05, 5.0);
    const cv::Vec3d tilted = 0.5 * frame.w + std::sqrt(0.75) * frame.u;
    for (int i = 0; i < s.Count(); ++i)
      if (std::fabs(
              (zelmo::test::ToVec3d(s.points[i]) - frame.origin).dot(frame.w)) >
          1)
        s.normals[i] = cv::Point3f(cv::Vec3f(tilted));
    for (int method = 0; method < kMethods; ++method) {
      SCOPED_TRACE(method);
      XPlaneFitLM f;
      zelmo::test::StdoutCapture quiet;
      ASSERT_EQ(FitSamples(f, s, param, method), 0);
      quiet.Take();
      if (method == xfeaturefitfilter::FilterNone) {
        EXPECT_GT(OffsetError(f, frame.origin), kOutlierBias);
      } else {
        EXPECT_LE(OffsetError(f, frame.origin), kOffsetTol);
        ExpectSameDirection(f.normal, frame.w, kNormalTolRad);
      }
    }
  }
}

// Three points: the closed-form plane stands (the solver, which needs four,
// would complain on stdout), oriented by the normals. Too few points and
// unknown methods fail and leave the fields alone.
TEST(XPlaneFitLM, ThreePointsSkipTheSolverAndBadInputFails) {
  const std::vector<float> p = {0, 0, 1, 1, 0, 1, 0, 1, 1};
  for (float nz : {-1.0f, 1.0f}) {
    const std::vector<float> n = {0, 0.1f, nz, 0, 0, nz, 0.1f, 0, nz};
    XPlaneFitLM f;
    zelmo::test::StdoutCapture capture;
    EXPECT_EQ(f.Fit(p.data(), n.data(), 3, FilterParam(30, 2, 0.1f),
                    xfeaturefitfilter::FilterNone),
              0);
    EXPECT_EQ(capture.Take(), "");
    ExpectNear3(f.normal, cv::Vec3d(0, 0, nz), kFloatTol);
    EXPECT_NEAR(f.d, -nz, kFloatTol);
  }
  const std::vector<float> n = {0, 0, 1, 0, 0, 1, 0, 0, 1};
  XPlaneFitLM f;
  f.Fit(p.data(), n.data(), 3, FilterParam(30, 2, 0.1f),
        xfeaturefitfilter::FilterNone);
  const XPlaneFitLM before = f;
  for (int method : {6, -1})
    EXPECT_EQ(f.Fit(p.data(), n.data(), 3, FilterParam(30, 2, 0.1f),
                    static_cast<FilterMethod>(method)),
              -1);
  EXPECT_EQ(f.Fit(p.data(), n.data(), 2, FilterParam(30, 2, 0.1f),
                  xfeaturefitfilter::FilterNone),
            -1);
  EXPECT_EQ(Fields(f), Fields(before));
  // A sigma factor of 0 keeps no point: no refit, the first fit stands.
  const std::vector<float> p4 = {0, 0, 1, 1, 0, 1, 0, 1, 1, 1, 1, 1.01f};
  const std::vector<float> n4 = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
  XPlaneFitLM plain, banded;
  plain.Fit(p4.data(), n4.data(), 4, FilterParam(30, 0, 0.1f),
            xfeaturefitfilter::FilterNone);
  zelmo::test::StdoutCapture capture;
  EXPECT_EQ(banded.Fit(p4.data(), n4.data(), 4, FilterParam(30, 0, 0.1f),
                       xfeaturefitfilter::FilterSigma),
            0);
  const std::string out = capture.Take();  // the band line only
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1) << out;
  EXPECT_EQ(Fields(banded), Fields(plain));
  // A proportion leaving three points: again no refit (the solver would
  // need four and print its complaint).
  zelmo::test::StdoutCapture three;
  EXPECT_EQ(banded.Fit(p4.data(), n4.data(), 4, FilterParam(30, 0, 0.25f),
                       xfeaturefitfilter::FilterProportion),
            0);
  EXPECT_EQ(three.Take(), "3 4\n");
}

// The orientation votes, seen through the minimum-zone entry with too few
// points for the solver, so that the seed's side (+z) is known: a tie keeps
// the side in both votes; a flat normal counts against the plane in the
// first vote (double) and is for neither side in the second (float).
TEST(XPlaneFitLM, OrientationVotesKeepTiesAndCountFlatNormalsAgainst) {
  const float seed[6] = {0, 0, 0, 0, 0, 1};
  const std::vector<float> p = {0, 0, 0, 1, 0, 0, 0, 1, 0};
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
  EXPECT_NEAR(f.d, 0.0, kFloatTol);
}

// A rectangle turned 30 degrees in the plane z = 5, and a square turned 20:
// the corners are the box of minAreaRect's size along the local axes (here
// the world's x, y, fixed by the first point), not the turned rectangle;
// majorDir follows the angle, turned by 90 for the square.
TEST(XPlaneFitLM, CornersAreTheLocalBoxWhileMajorDirFollowsTheAngle) {
  struct Case {
    double halfLength, halfWidth, degrees;
  };
  for (const Case& c : {Case{10, 4, 30}, Case{6, 6, 20}}) {
    SCOPED_TRACE(c.halfWidth);
    const double t = c.degrees * zelmo::test::kPi / 180;
    const cv::Vec2d u(std::cos(t), std::sin(t)), v(-u[1], u[0]);
    std::vector<cv::Point2f> local = {{3, 0}, {-3, 0}};
    for (int i = -4; i <= 4; ++i)
      for (int sign : {-1, 1}) {
        const cv::Vec2d e1 =
            c.halfLength * u * (i / 4.0) + sign * c.halfWidth * v;
        const cv::Vec2d e2 =
            c.halfWidth * v * (i / 4.0) + sign * c.halfLength * u;
        local.emplace_back(e1[0], e1[1]);
        local.emplace_back(e2[0], e2[1]);
      }
    std::vector<float> p, n;
    for (const cv::Point2f& q : local) {
      p.insert(p.end(), {q.x, q.y, 5.0f});
      n.insert(n.end(), {0, 0, 1});
    }
    XPlaneFitLM f;
    ASSERT_EQ(f.Fit(p.data(), n.data(), static_cast<int>(local.size()),
                    FilterParam(30, 2, 0.1f), xfeaturefitfilter::FilterNone),
              0);
    const cv::RotatedRect r = cv::minAreaRect(local);
    const double hw = r.size.width * 0.5, hh = r.size.height * 0.5;
    const double box[4][2] = {{hw, hh}, {-hw, hh}, {-hw, -hh}, {hw, -hh}};
    for (int k = 0; k < 4; ++k)
      ExpectNear3(f.corners + 3 * k, cv::Vec3d(box[k][0], box[k][1], 5),
                  kFloatTol);
    EXPECT_NEAR(f.length, 2 * c.halfLength, kFloatTol);
    EXPECT_NEAR(f.width, 2 * c.halfWidth, kFloatTol);
    const double a =
        (r.angle + (hw > hh ? 0.0 : 90.0)) * zelmo::test::kPi / 180;
    ExpectNear3(f.majorDir, cv::Vec3d(std::cos(a), std::sin(a), 0), kFloatTol);
    ExpectNear3(f.center, cv::Vec3d(0, 0, 5), kFloatTol);
  }
  // Points gathered within 0.01 of their centroid still get a frame.
  const std::vector<float> p = {1, 1,      0, 1.004f, 1,      0,
                                1, 1.003f, 0, 1.002f, 1.002f, 0};
  const std::vector<float> n = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
  XPlaneFitLM f;
  EXPECT_EQ(f.Fit(p.data(), n.data(), 4, FilterParam(30, 2, 0.1f),
                  xfeaturefitfilter::FilterNone),
            0);
  ExpectNear3(f.center, cv::Vec3d(1.002, 1.0015, 0), 0.002);
  EXPECT_LT(f.length, 0.01);
  EXPECT_NEAR(cv::Vec3f(f.majorDir).dot(cv::Vec3f(f.normal)), 0.0, kFloatTol);
}

// Each stage's debug lines, values separated by blanks: the band (mean, sd,
// hi, lo of the first fit's residuals), the kept count of all, and the
// threshold of the combined proportion filter.
TEST(XPlaneFitLM, StagesPrintTheirLines) {
  // A 4 x 3 grid near z = 0 and one point 2 above it with a flat normal.
  std::vector<float> p, n;
  for (int i = 0; i < 12; ++i) {
    p.insert(p.end(), {float(i % 4), float(i / 4), 0.01f * ((i * 7) % 5 - 2)});
    n.insert(n.end(), {0, 0, 1});
  }
  p.insert(p.end(), {1.5f, 1, 2});
  n.insert(n.end(), {1, 0, 0});
  XPlaneFitLM first;
  XPlaneFitLMPeer::Fit1(first, p, n);
  std::vector<float> r;
  for (size_t i = 0; i < n.size() / 3; ++i)
    r.push_back(static_cast<float>(first.a * double(p[3 * i]) +
                                   first.b * double(p[3 * i + 1]) +
                                   first.c * double(p[3 * i + 2]) + first.d));
  double mean = 0, var = 0;
  for (float v : r) mean += v;
  mean /= 13;
  for (float v : r) var += (v - mean) * (v - mean);
  const float m = float(mean), sd = std::sqrt(float(var / 13));
  std::ostringstream band;
  band << m << " " << sd << " " << m + 2.0 * sd << " " << m - 2.0 * sd << "\n";
  std::vector<float> inliers(r.begin(), r.begin() + 12);
  for (float& v : inliers) v = std::fabs(v);
  std::ostringstream threshold;
  threshold << "min_n_maxvalue="
            << *std::max_element(inliers.begin(), inliers.end()) << "\n";
  const std::string want[kMethods] = {"",
                                      band.str(),
                                      "12 13\n",
                                      "12 13\n",
                                      band.str() + "12 13\n",
                                      threshold.str() + "11 13\n"};
  for (int method = 0; method < kMethods; ++method) {
    SCOPED_TRACE(method);
    XPlaneFitLM f;
    zelmo::test::StdoutCapture capture;
    EXPECT_EQ(f.Fit(p.data(), n.data(), 13, FilterParam(45, 2, 0.1f),
                    static_cast<FilterMethod>(method)),
              0);
    EXPECT_EQ(capture.Take(), want[method]);
  }
}

TEST(XPlaneFitLM, StatisticsOfSignedDistances) {
  XPlaneFitLM f;
  f.a = 0, f.b = 0, f.c = 1, f.d = -1;  // z = 1
  const std::vector<float> p = {0, 0, 1.5f, 3, 1, 0.25f, -2, 4, 1, 7, 7, 2};
  float stats[4];
  std::vector<float> r;
  XPlaneFitLMPeer::Statistics(f, p, stats, r);
  EXPECT_EQ(r, (std::vector<float>{0.5f, -0.75f, 0, 1}));
  EXPECT_EQ(stats[0], 1.0f);
  EXPECT_EQ(stats[1], -0.75f);
  EXPECT_EQ(stats[2], 0.1875f);
  // Sum of squared deviations over n, not n - 1.
  EXPECT_FLOAT_EQ(stats[3], (0.3125f * 0.3125f + 0.9375f * 0.9375f +
                             0.1875f * 0.1875f + 0.8125f * 0.8125f) /
                                4);
}

// The solver's plane residual is this one: the reference plane run comes
// out the same through it; neither residual function changes p.
TEST(XPlaneFitLM, ResidualFunctions) {
  const std::vector<float> pts = {-3,   -2,   2.3125f, -1.5f, 2.5f,  0.3125f,
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
  zelmo::test::ExpectNearArray(p, want, 4, 1e-9);

  // Below 0.0001 the normal is used unscaled.
  const std::vector<float> q = {0, 0, 2, 0, 0, -1, 0, 0, 3, 0, 0, 3};
  double tiny[4] = {0, 0, 5e-5, 1}, hx[4];
  XPlaneFitLM::Fit_Function(tiny, hx, 4, 4, const_cast<float*>(q.data()));
  EXPECT_DOUBLE_EQ(hx[0], 1.0001);
  EXPECT_EQ(tiny[2], 5e-5);
  // Minimum zone: distances less the smallest, the first largest x 10 n.
  double z[4] = {0, 0, 2, -2};
  XPlaneFitLM::Fit_Chebyshev_Function(z, hx, 4, 4,
                                      const_cast<float*>(q.data()));
  const double zone[4] = {3, 0, 4 * 40, 4};
  zelmo::test::ExpectNearArray(hx, zone, 4, 1e-12);
  EXPECT_EQ(z[2], 2.0);
}

// The minimum-zone fit from a rough seed: its zone is no wider than the
// least-squares plane's, and it is oriented by the normals.
TEST(XPlaneFitLM, ChebyshevFitNarrowsTheZone) {
  for (int trial = 0; trial < 3; ++trial) {
    SCOPED_TRACE("seed 5, trial " + std::to_string(trial));
    std::mt19937 rng(5 + trial);
    const Frame frame = zelmo::test::RandomFrame(rng, 200);
    const Samples s = zelmo::test::SamplePlane(frame, 20, 10, 200, 0.02, rng);
    const std::vector<float> p = s.Xyz(), n = s.NormalsXyz();
    auto zone = [&p](const XPlaneFitLM& f) {
      double lo = 1e30, hi = -1e30;
      for (size_t i = 0; i < p.size(); i += 3) {
        const double r = f.a * double(p[i]) + f.b * double(p[i + 1]) +
                         f.c * double(p[i + 2]) + f.d;
        lo = std::min(lo, r), hi = std::max(hi, r);
      }
      return hi - lo;
    };
    XPlaneFitLM ls, mz;
    XPlaneFitLMPeer::Fit1(ls, p, n);
    const cv::Vec3d w = frame.w + cv::Vec3d(0.01, -0.01, 0.01);
    const float seed[6] = {float(frame.origin[0]),
                           float(frame.origin[1]),
                           float(frame.origin[2]),
                           float(w[0]),
                           float(w[1]),
                           float(w[2])};
    EXPECT_GE(XPlaneFitLMPeer::FitChebyshev(mz, p, n, seed), 0);
    EXPECT_LE(zone(mz), zone(ls) + 1e-4);
    ExpectSameDirection(mz.normal, frame.w, 0.01);
  }
}

}  // namespace
}  // namespace zelmolm
