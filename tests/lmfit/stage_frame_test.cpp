// The stages on a stand-in shape: residual = x, index = y, angle passes when
// |normal z| reaches the cosine; so each filter's kept points and order show.
#include "zelmo/lmfit/stage_frame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace zelmo {
namespace lmfit {
namespace {

using xfeaturefitfilter::FilterParam;
using Ints = std::vector<int>;

class FakeShape : public StageShape {
 public:
  int fitAll(const float*, const float*, int) override {
    ++fits;
    return fitResult;
  }
  double residual(const float* point) const override { return point[0]; }
  void statistics(const float* points,
                  int count,
                  float* stats,
                  std::vector<float>& residuals) override {
    fillStatistics(*this, points, count, VarianceDivisor::kCount, stats,
                   residuals);
  }
  bool angleHolds(const float*, const float* n, double c) const override {
    return std::fabs(n[2]) >= c;
  }
  TieRule tieRule(Stage) const override { return rule; }
  int paramCount() const override { return 1; }
  void seed(double* params) const override { params[0] = 0.0; }
  bool refitAllowed(int) const override { return true; }
  int solve(const float*, int, double*) override { return solveResult; }
  void store(const double*,
             const float* kept,
             int keptCount,
             const float*,
             const float*,
             int) override {
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

// Points with residuals r[i], index i in y; normals (0, 0, 1) except the
// `bad` ones, which lie flat (0, 1, 0).
struct Cloud {
  Cloud(const std::vector<float>& r, const Ints& bad = {}) {
    for (size_t i = 0; i < r.size(); ++i) {
      points.insert(points.end(), {r[i], static_cast<float>(i), 0.0f});
      normals.insert(normals.end(), {0.0f, 0.0f, 1.0f});
    }
    for (int i : bad) normals[3 * i + 1] = 1.0f, normals[3 * i + 2] = 0.0f;
  }
  // stage(shape, points, normals, count, args...).
  template <typename F, typename... A>
  int Run(F stage, FakeShape& shape, A... args) const {
    return stage(shape, points.data(), normals.data(),
                 static_cast<int>(points.size() / 3), args...);
  }
  std::vector<float> points, normals;
};

TEST(StageFrame, BandKeepsResidualsWithinMeanPlusMinusSigmasBoundsIncluded) {
  FakeShape shape;
  // Mean 1, variance 1: with factor 1 the band is [0, 2], met exactly.
  EXPECT_EQ(Cloud({0, 2, 0, 2}).Run(bandStage, shape, 1.0f), 0);
  EXPECT_EQ(shape.keptIndices, (Ints{0, 1, 2, 3}));
  // Planted outliers beyond 2 sigma go; factor 0 keeps only the mean.
  Cloud({0.1f, -0.2f, 0.1f, 9, -0.1f, 0.2f, 0, -9, 0.1f, -0.1f})
      .Run(bandStage, shape, 1.0f);
  EXPECT_EQ(shape.keptIndices, (Ints{0, 1, 2, 4, 5, 6, 8, 9}));
  Cloud({0, 2, 1, 0, 2}).Run(bandStage, shape, 0.0f);
  EXPECT_EQ(shape.keptIndices, (Ints{2}));
}

TEST(StageFrame, ProportionDropsLargestAndKeepsEarliestTies) {
  FakeShape shape;
  // k = 2, T = 3: 5 goes, and the latest of the three tied 3s; held-back
  // ties come after the untied kept points.
  EXPECT_EQ(Cloud({5, 3, 3, 3, 1}).Run(proportionStage, shape, 0.4f), 0);
  EXPECT_EQ(shape.keptIndices, (Ints{4, 1, 2}));
  // All equal: the earliest count - k stay.
  Cloud({2, 2, 2, 2, 2, 2}).Run(proportionStage, shape, 0.5f);
  EXPECT_EQ(shape.keptIndices, (Ints{0, 1, 2}));
  // Within 1e-5 of T counts as a tie, but above T drops first.
  Cloud({3.000001f, 3.000002f, 3, 1}).Run(proportionStage, shape, 0.5f);
  EXPECT_EQ(shape.keptIndices, (Ints{3, 0}));
  // Exact ties tested first, drop limit T - 1e-5: once k are dropped the
  // held-back ties are lost too.
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
  // Success counts become 0; a failed refit gives the shape's code after
  // storing; a failed first fit gives -1 before anything is stored.
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
  EXPECT_EQ(run(6), -1);
  EXPECT_EQ(run(-1), -1);
  EXPECT_EQ(shape.fits, 0);
}

}  // namespace
}  // namespace lmfit
}  // namespace zelmo
