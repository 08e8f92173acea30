// XPlaneFitLM::Fit on noisy planes with 5 % outliers, per filter method,
// at 10 000 and 100 000 points.
#include <benchmark/benchmark.h>

#include <iostream>
#include <random>
#include <sstream>
#include <vector>

#include "zelmo/lmfit/plane_fit_lm.h"

namespace {

struct Cloud {
  std::vector<float> points, normals;
};

// A 200 x 100 patch of a tilted plane 300 units from the origin, noise
// 0.01 along the normal, every 20th point 3 units off with a tilted normal.
Cloud MakeCloud(int count) {
  std::mt19937 rng(4242);
  std::uniform_real_distribution<double> x(-100, 100), y(-50, 50);
  std::normal_distribution<double> noise(0, 0.01);
  const double n[3] = {0.0, 0.6, 0.8}, u[3] = {1, 0, 0}, v[3] = {0, 0.8, -0.6};
  Cloud c;
  for (int i = 0; i < count; ++i) {
    const double s = x(rng), t = y(rng);
    const double h = noise(rng) + (i % 20 == 0 ? 3.0 : 0.0);
    for (int k = 0; k < 3; ++k)
      c.points.push_back(
          static_cast<float>(300 * n[k] + s * u[k] + t * v[k] + h * n[k]));
    const double* nn = i % 20 == 0 ? v : n;
    for (int k = 0; k < 3; ++k) c.normals.push_back(static_cast<float>(nn[k]));
  }
  return c;
}

void BM_PlaneFitLM(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const auto method =
      static_cast<xfeaturefitfilter::FilterMethod>(state.range(1));
  const Cloud cloud = MakeCloud(count);
  const xfeaturefitfilter::FilterParam param(30, 2.0f, 0.05f);
  // The fit's debug lines are not part of what is measured.
  std::ostringstream sink;
  std::streambuf* saved = std::cout.rdbuf(sink.rdbuf());
  int result = 0;
  for (auto _ : state) {
    zelmolm::XPlaneFitLM fit;
    result = fit.Fit(cloud.points.data(), cloud.normals.data(), count, param,
                     method);
    benchmark::DoNotOptimize(fit.d);
    sink.str("");
  }
  std::cout.rdbuf(saved);
  if (result != 0) state.SkipWithError("fit failed");
  state.SetItemsProcessed(state.iterations() * count);
}

BENCHMARK(BM_PlaneFitLM)
    ->ArgNames({"points", "method"})
    ->ArgsProduct({{10000, 100000}, {0, 1, 2, 3, 4, 5}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
