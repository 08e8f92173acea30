// Cost of the robust cylinder fit on scans of 5 000 and 50 000 points:
// the whole fit (consensus start plus solver) beside the consensus start
// alone, so that the share of the start can be read off.
#include <benchmark/benchmark.h>

#include <cmath>
#include <iostream>
#include <random>
#include <sstream>
#include <vector>

#include "zelmo/lmfit/cylinder_fit_lm.h"
#include "zelmo/lmfit/filter_param.h"
#include "zelmo/lmfit/sac_seed.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// A scanned cylinder of radius 25 and height 60 about a tilted axis, 0.01
// noise along the normals, outward unit normals.
struct Scan {
  std::vector<float> points, normals;
};

Scan MakeScan(int count) {
  std::mt19937 rng(4242);
  std::uniform_real_distribution<double> angle(0.0, 2 * kPi), z(0.0, 60.0);
  std::normal_distribution<double> noise(0.0, 0.01);
  const double origin[3] = {120.0, -40.0, 310.0};
  // Axis w = (1, 2, 2) / 3 with u, v completing a right-handed frame.
  const double w[3] = {1.0 / 3, 2.0 / 3, 2.0 / 3};
  const double u[3] = {2.0 / 3, 1.0 / 3, -2.0 / 3};
  const double v[3] = {w[1] * u[2] - w[2] * u[1], w[2] * u[0] - w[0] * u[2],
                       w[0] * u[1] - w[1] * u[0]};
  Scan s;
  for (int i = 0; i < count; ++i) {
    const double a = angle(rng), h = z(rng), r = 25.0 + noise(rng);
    for (int k = 0; k < 3; ++k) {
      const double n = std::cos(a) * u[k] + std::sin(a) * v[k];
      s.points.push_back(static_cast<float>(origin[k] + r * n + h * w[k]));
      s.normals.push_back(static_cast<float>(n));
    }
  }
  return s;
}

// Keeps the fit's "param:" line out of the report.
class QuietStdout {
 public:
  QuietStdout() : saved_(std::cout.rdbuf(sink_.rdbuf())) {}
  ~QuietStdout() { std::cout.rdbuf(saved_); }

 private:
  std::ostringstream sink_;
  std::streambuf* saved_;
};

void BM_CylinderFit(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const Scan s = MakeScan(count);
  const xfeaturefitfilter::FilterParam param(60.0f, 2.0f, 0.05f);
  QuietStdout quiet;
  for (auto _ : state) {
    zelmolm::XCylinderFitLM fit;
    const int result = fit.Fit(s.points.data(), s.normals.data(), count, param,
                               xfeaturefitfilter::FilterNone);
    benchmark::DoNotOptimize(result);
    benchmark::DoNotOptimize(fit.radius);
  }
  state.SetItemsProcessed(state.iterations() * count);
}

void BM_CylinderConsensusStart(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const Scan s = MakeScan(count);
  double params[zelmo::lmfit::kSacCoefficients];
  for (auto _ : state) {
    const int result = zelmo::lmfit::sampleConsensusSeed(
        zelmo::lmfit::SacModel::kCylinder, s.points.data(), s.normals.data(),
        count, params);
    benchmark::DoNotOptimize(result);
    benchmark::DoNotOptimize(params[6]);
  }
  state.SetItemsProcessed(state.iterations() * count);
}

}  // namespace

BENCHMARK(BM_CylinderFit)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CylinderConsensusStart)
    ->Arg(5000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond);
