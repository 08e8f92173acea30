// The common stages on a stand-in shape whose residual of a point is its x
// and whose angle test passes when |normal z| reaches the limit's cosine:
// the tests see exactly which points each filter keeps, and in what order
// (a point's y is its index).
#include "zelmo/lmfit/stage_frame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace zelmo {
namespace lmfit {
namespace {

using xfeaturefitfilter::FilterParam;

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
  std::vector<int> keptIndices;
};

// Points with residuals r[i], index i in y; normals (0, 0, 1) except those
// listed as bad, which lie flat (0, 1, 0).
struct Cloud {
  Cloud(const std::vector<float>& r, const std::vector<int>& bad = {}) {
    for (size_t i = 0; i < r.size(); ++i) {
      points.insert(points.end(), {r[i], static_cast<float>(i), 0.0f});
      normals.insert(normals.end(), {0.0f, 0.0f, 1.0f});
    }
    for (int i : bad) normals[3 * i + 1] = 1.0f, normals[3 * i + 2] = 0.0f;
  }
  int count() const { return static_cast<int>(points.size() / 3); }
  std::vector<float> points, normals;
};

TEST(StageFrame, BandKeepsResidualsWithinMeanPlusMinusSigmasBoundsIncluded) {
  // Mean 1, variance 1: with factor 1 the band is [0, 2], met exactly.
  Cloud c({0, 2, 0, 2});
  FakeShape shape;
  EXPECT_EQ(bandStage(shape, c.points.data(), c.normals.data(), c.count(), 1),
            0);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{0, 1, 2, 3}));
  // Planted outliers beyond 2 sigma go; factor 0 keeps only the mean.
  Cloud o({0.1f, -0.2f, 0.1f, 9, -0.1f, 0.2f, 0, -9, 0.1f, -0.1f});
  bandStage(shape, o.points.data(), o.normals.data(), o.count(), 1);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{0, 1, 2, 4, 5, 6, 8, 9}));
  Cloud m({0, 2, 1, 0, 2});
  bandStage(shape, m.points.data(), m.normals.data(), m.count(), 0);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{2}));
}

TEST(StageFrame, ProportionDropsLargestAndKeepsEarliestTies) {
  FakeShape shape;
  auto run = [&shape](const Cloud& c, float proportion) {
    return proportionStage(shape, c.points.data(), c.normals.data(), c.count(),
                           proportion);
  };
  // k = 2, T = 3: 5 goes, one of the three tied 3s goes, the latest one;
  // the held-back ties are appended after the untied kept points.
  EXPECT_EQ(run(Cloud({5, 3, 3, 3, 1}), 0.4f), 0);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{4, 1, 2}));
  // All equal: the earliest count - k stay.
  run(Cloud({2, 2, 2, 2, 2, 2}), 0.5f);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{0, 1, 2}));
  // Within 1e-5 of T counts as a tie, but above T drops first.
  run(Cloud({3.000001f, 3.000002f, 3, 1}), 0.5f);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{3, 0}));
  // Exact ties tested first, drop limit T - 1e-5: once k are dropped the
  // held-back ties are lost too (first come, first served).
  shape.rule = TieRule{true, true, 1e-5};
  run(Cloud({4, 3, 2.999995f, 3, 1}), 0.4f);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{4}));
  // k = 0 leaves the first fit standing; k > n fails the selection.
  shape.stores = 0;
  EXPECT_EQ(run(Cloud({1, 2, 3}), 0.2f), 0);
  EXPECT_EQ(run(Cloud({1, 2, 3}), 1.5f), -1);
  EXPECT_EQ(shape.stores, 0);
}

TEST(StageFrame, AngleFiltersDropBadNormalsWithinTheirCaps) {
  FakeShape shape;
  const Cloud c({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {0, 2, 3, 5, 6, 7, 9});
  const int n = c.count();
  // At most (int)(10 * 0.5) = 5 drops, the first five bad points.
  angleStage(shape, c.points.data(), c.normals.data(), n, 45);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{1, 4, 7, 8, 9}));
  // Band and angle: no cap. Factor 10 keeps every residual.
  bandAngleStage(shape, c.points.data(), c.normals.data(), n, 10, 45);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{1, 4, 8}));
  // Angle first, then k = (int)(3 * 0.34f) = 1 of the rest: 9 goes.
  EXPECT_EQ(proportionAngleStage(shape, c.points.data(), c.normals.data(), n,
                                 0.34f, 45),
            0);
  EXPECT_EQ(shape.threshold, 9.0f);
  EXPECT_EQ(shape.keptIndices, (std::vector<int>{1, 4}));
  // Angle drops with k at 0 fail; no drops and k 0 keeps the first fit.
  shape.stores = 0;
  EXPECT_EQ(proportionAngleStage(shape, c.points.data(), c.normals.data(), n,
                                 0.1f, 45),
            -1);
  const Cloud good({1, 2, 3});
  EXPECT_EQ(proportionAngleStage(shape, good.points.data(), good.normals.data(),
                                 3, 0.1f, 45),
            0);
  EXPECT_EQ(shape.stores, 0);
}

TEST(StageFrame, FailuresAndDispatch) {
  const Cloud c({1, 2, 3, 4});
  FakeShape shape;
  const FilterParam param(45, 2, 0.25f);
  auto run = [&](int method) {
    return runFilter(shape, c.points.data(), c.normals.data(), 4, param,
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
