// Stages on a stand-in shape: residual x, index y, angle from |normal z|.
#include "zelmo/lmfit/stage_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/stdout_capture.h"
#include "zelmo/lmfit/kth_largest.h"
#include "zelmo/lmfit/zelmo_lm.h"

namespace zelmo {
namespace lmfit {
namespace {

using xfeaturefitfilter::FilterParam;
using Ints = std::vector<int>;
using F = const float*;

class FakeShape : public StageShape {
 public:
  int fitAll(F, F, int) override {
    ++fits;
    return fitResult;
  }
  double residual(const float* point) const override { return point[0]; }
  void statistics(F p, int n, float* stats, std::vector<float>& r) override {
    fillStatistics(*this, p, n, VarianceDivisor::kCount, stats, r);
  }
  bool angleHolds(F, F n, double c) const override {
    return std::fabs(n[2]) >= c;
  }
  TieRule tieRule(Stage) const override { return rule; }
  int paramCount() const override { return 1; }
  void seed(double* params) const override { params[0] = 0.0; }
  bool refitAllowed(int) const override { return true; }
  int solve(F, int, double*) override { return solveResult; }
  void store(const double*, F kept, int keptCount, F, F, int) override {
    ++stores;
    keptIndices.clear();
    for (int j = 0; j < keptCount; ++j)
      keptIndices.push_back(static_cast<int>(kept[3 * j + 1]));
  }
  int solverFailure() const override { return -2; }
  void onThreshold(Stage, float t) override { threshold = t; }

  int fitResult = 5, solveResult = 7, fits = 0, stores = 0;
  float threshold = 0.0f;
  TieRule rule{false, false, 0.0};
  Ints keptIndices;
};

// Residuals r[i], index i in y; the `bad` normals lie flat.
struct Cloud {
  Cloud(const std::vector<float>& r, const Ints& bad = {}) {
    for (size_t i = 0; i < r.size(); ++i) {
      points.insert(points.end(), {r[i], static_cast<float>(i), 0.0f});
      normals.insert(normals.end(), {0.0f, 0.0f, 1.0f});
    }
    for (int i : bad) normals[3 * i + 1] = 1.0f, normals[3 * i + 2] = 0.0f;
  }
  // stage(shape, points, normals, count, args...).
  template <typename S, typename... A>
  int Run(S stage, FakeShape& shape, A... args) const {
    return stage(shape, points.data(), normals.data(),
                 static_cast<int>(points.size() / 3), args...);
  }
  std::vector<float> points, normals;
};

// The band is inclusive; the proportion keeps the earliest ties.
TEST(StageFrame, BandBoundsAndProportionTies) {
  FakeShape shape;
  // Mean 1, variance 1: with factor 1 the band is [0, 2], met exactly.
  EXPECT_EQ(Cloud({0, 2, 0, 2}).Run(bandStage, shape, 1.0f), 0);
  EXPECT_EQ(shape.keptIndices, (Ints{0, 1, 2, 3}));
  // Factor 0 keeps only the mean.
  Cloud({0, 2, 1, 0, 2}).Run(bandStage, shape, 0.0f);
  EXPECT_EQ(shape.keptIndices, (Ints{2}));
  // k = 2, T = 3: 5 and the latest tied 3 go; held-back ties come last.
  EXPECT_EQ(Cloud({5, 3, 3, 3, 1}).Run(proportionStage, shape, 0.4f), 0);
  EXPECT_EQ(shape.keptIndices, (Ints{4, 1, 2}));
  // All equal: the earliest count - k stay.
  Cloud({2, 2, 2, 2, 2, 2}).Run(proportionStage, shape, 0.5f);
  EXPECT_EQ(shape.keptIndices, (Ints{0, 1, 2}));
  // Within 1e-5 of T counts as a tie, but above T drops first.
  Cloud({3.000001f, 3.000002f, 3, 1}).Run(proportionStage, shape, 0.5f);
  EXPECT_EQ(shape.keptIndices, (Ints{3, 0}));
  // Exact ties first, limit T - 1e-5: held-back ties lost once k drop.
  shape.rule = TieRule{true, true, 1e-5};
  Cloud({4, 3, 2.999995f, 3, 1}).Run(proportionStage, shape, 0.4f);
  EXPECT_EQ(shape.keptIndices, (Ints{4}));
  // k = 0 leaves the first fit standing; k > n fails the selection.
  shape.stores = 0;
  EXPECT_EQ(Cloud({1, 2, 3}).Run(proportionStage, shape, 0.2f), 0);
  EXPECT_EQ(Cloud({1, 2, 3}).Run(proportionStage, shape, 1.5f), -1);
  EXPECT_EQ(shape.stores, 0);
}

TEST(StageFrame, AngleFiltersDropBadNormalsWithinTheirCaps) {
  FakeShape shape;
  const Cloud c({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {0, 2, 3, 5, 6, 7, 9});
  // At most (int)(10 * 0.5) = 5 drops, the first five bad points.
  c.Run(angleStage, shape, 45.0f);
  EXPECT_EQ(shape.keptIndices, (Ints{1, 4, 7, 8, 9}));
  // Band and angle: no cap. Factor 10 keeps every residual.
  c.Run(bandAngleStage, shape, 10.0f, 45.0f);
  EXPECT_EQ(shape.keptIndices, (Ints{1, 4, 8}));
  // Angle first, then k = (int)(3 * 0.34f) = 1 of the rest: 9 goes.
  EXPECT_EQ(c.Run(proportionAngleStage, shape, 0.34f, 45.0f), 0);
  EXPECT_EQ(shape.threshold, 9.0f);
  EXPECT_EQ(shape.keptIndices, (Ints{1, 4}));
  // Angle drops with k at 0 fail; no drops and k 0 keeps the first fit.
  shape.stores = 0;
  EXPECT_EQ(c.Run(proportionAngleStage, shape, 0.1f, 45.0f), -1);
  EXPECT_EQ(Cloud({1, 2, 3}).Run(proportionAngleStage, shape, 0.1f, 45.0f), 0);
  EXPECT_EQ(shape.stores, 0);
}

TEST(StageFrame, FailuresAndDispatch) {
  FakeShape shape;
  auto run = [&shape](int method) {
    return Cloud({1, 2, 3, 4})
        .Run(runFilter, shape, FilterParam(45, 2, 0.25f),
             static_cast<xfeaturefitfilter::FilterMethod>(method));
  };
  // Counts become 0; failed refit: shape's code; failed first fit: -1.
  for (int method = 0; method <= 5; ++method) EXPECT_EQ(run(method), 0);
  shape.solveResult = -1;
  shape.stores = 0;
  EXPECT_EQ(run(xfeaturefitfilter::FilterAngle), -2);
  EXPECT_EQ(shape.stores, 1);
  shape.fitResult = -3;
  EXPECT_EQ(run(xfeaturefitfilter::FilterNone), -3);
  EXPECT_EQ(run(xfeaturefitfilter::FilterSigma), -1);
  EXPECT_EQ(shape.stores, 1);
  // Methods outside 0 to 5 fail without fitting.
  shape.fits = 0;
  EXPECT_TRUE(run(6) == -1 && run(-1) == -1);
  EXPECT_EQ(shape.fits, 0);
}

// k-th largest of random arrays, ties or none; k outside 1..n: none.
TEST(KthLargest, MatchesNthElementIncludingTies) {
  std::mt19937 rng(20240607);
  for (int trial = 0; trial < 40; ++trial) {
    std::vector<float> values(1 + rng() % 40), want;
    const int n = static_cast<int>(values.size());
    for (float& v : values) v = trial % 2 ? rng() % 5 : rng() % 10000 / 100.0f;
    want = values;
    std::sort(want.begin(), want.end(), std::greater<float>());
    for (int k = 1; k <= n; ++k) {
      std::vector<float> work = values;
      EXPECT_EQ(kthLargest(work.data(), n, k), want[k - 1])
          << trial << " " << k;
    }
    for (int k : {-1, 0, n + 1})
      EXPECT_EQ(kthLargest(values.data(), n, k), kNoSelection);
  }
}

}  // namespace
}  // namespace lmfit
}  // namespace zelmo

namespace zelmolm {
namespace {

class OpenLM : public ZelmoLM {
 public:
  int Run(ResidualFunction f, const float* pts, int count, double* p) {
    residualFunction_ = f;
    return Fit_LM(pts, count, p, nullptr, 1);
  }
};
void Throws(double*, double*, int, int, void*) { throw std::runtime_error(""); }
void ShiftByMean(double* p, double* hx, int, int n, void* adata) {
  const float* pts = static_cast<const float*>(adata);
  for (int i = 0; i < n; ++i) hx[i] = pts[3 * i] - p[0];
}

// Solves on the points as adata; exceptions print and give -1.
TEST(ZelmoLM, SolvesOnThePointsAndCatchesEverything) {
  const float pts[9] = {1, 0, 0, 2, 0, 0, 6, 0, 0};
  OpenLM lm;
  double p[1] = {0};
  EXPECT_GE(lm.Run(ShiftByMean, pts, 3, p), 0);
  EXPECT_NEAR(p[0], 3.0, 1e-6);
  zelmo::test::StdoutCapture capture;
  EXPECT_EQ(lm.Run(Throws, pts, 3, p), -1);
  EXPECT_EQ(lm.Run(ShiftByMean, pts, -1, p), -1);  // no vector of -1 zeros
  EXPECT_EQ(capture.Take(), "catch error\ncatch error\n");
}

}  // namespace
}  // namespace zelmolm
