// Simplex fits on 1 000, 10 000 and 100 000 points. Each fit walks all
// points at every objective evaluation, so the figure that scales is the
// rate of objective evaluation, counted in points per second ("points/s"
// of BM_Objective). BM_Fit times whole fits, whose iteration counts depend
// on the data.
#include <benchmark/benchmark.h>
#include <gsl/gsl_multimin.h>

#include <cmath>
#include <iostream>
#include <opencv2/core.hpp>
#include <random>
#include <string>
#include <vector>

#include "zelmo/simplex/cone_fit.h"
#include "zelmo/simplex/cylinder_fit.h"
#include "zelmo/simplex/line_fit.h"
#include "zelmo/simplex/plane_fit.h"
#include "zelmo/simplex/sphere_fit.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// Reaches the objective a fit object holds after a fit: the one its
// method selected, reading the fit's point vector.
template <class Fit>
class Probe : public Fit {
 public:
  double evaluate(const gsl_vector* v) {
    return this->m_function.f(v, this->m_function.params);
  }
  size_t dimension() const { return this->m_function.n; }
};

// Points on a unit-scale shape, placed at an offset of a few hundred.
std::vector<cv::Point3f> Cylinder(int n, double r, double h, std::mt19937& g) {
  std::uniform_real_distribution<double> a(0, 2 * kPi), z(0, h);
  std::normal_distribution<double> e(0, 0.01);
  std::vector<cv::Point3f> pts;
  for (int i = 0; i < n; ++i) {
    const double t = a(g), rr = r + e(g);
    pts.emplace_back(static_cast<float>(300 + rr * std::cos(t)),
                     static_cast<float>(-200 + rr * std::sin(t)),
                     static_cast<float>(100 + z(g)));
  }
  return pts;
}

std::vector<cv::Point3f> Cone(int n, std::mt19937& g) {
  std::uniform_real_distribution<double> a(0, 2 * kPi), z(0, 60);
  std::normal_distribution<double> e(0, 0.01);
  std::vector<cv::Point3f> pts;
  for (int i = 0; i < n; ++i) {
    const double t = a(g), zz = z(g), r = 15 - zz / 6 + e(g);
    pts.emplace_back(static_cast<float>(300 + r * std::cos(t)),
                     static_cast<float>(-200 + r * std::sin(t)),
                     static_cast<float>(100 + zz));
  }
  return pts;
}

std::vector<cv::Point3f> Plane(int n, std::mt19937& g) {
  std::uniform_real_distribution<double> u(-50, 50);
  std::normal_distribution<double> e(0, 0.01);
  std::vector<cv::Point3f> pts;
  for (int i = 0; i < n; ++i) {
    const double x = u(g), y = u(g);
    pts.emplace_back(static_cast<float>(300 + x), static_cast<float>(-200 + y),
                     static_cast<float>(100 + 0.1 * x - 0.2 * y + e(g)));
  }
  return pts;
}

std::vector<cv::Point3f> Line(int n, std::mt19937& g) {
  std::uniform_real_distribution<double> t(0, 100);
  std::normal_distribution<double> e(0, 0.01);
  std::vector<cv::Point3f> pts;
  for (int i = 0; i < n; ++i) {
    const double s = t(g);
    pts.emplace_back(static_cast<float>(300 + s * 0.6 + e(g)),
                     static_cast<float>(-200 + s * 0.8 + e(g)),
                     static_cast<float>(100 + e(g)));
  }
  return pts;
}

std::vector<cv::Point3f> Sphere(int n, std::mt19937& g) {
  std::normal_distribution<double> d(0, 1), e(0, 0.01);
  std::vector<cv::Point3f> pts;
  for (int i = 0; i < n; ++i) {
    cv::Vec3d v(d(g), d(g), d(g));
    v *= (25 + e(g)) / cv::norm(v);
    pts.emplace_back(static_cast<float>(300 + v[0]),
                     static_cast<float>(-200 + v[1]),
                     static_cast<float>(100 + v[2]));
  }
  return pts;
}

std::vector<cv::Point3f> PointsFor(const char* shape, int n) {
  std::mt19937 g(2024);
  switch (shape[1]) {
    case 'l':
      return Plane(n, g);
    case 'i':
      return Line(n, g);
    case 'p':
      return Sphere(n, g);
    case 'y':
      return Cylinder(n, 12.0, 80.0, g);
    default:
      return Cone(n, g);
  }
}

// Points per second of objective evaluation: the objective of `method` at
// the fitted parameters, evaluated over all points once per iteration.
template <class Fit>
void BM_Objective(benchmark::State& state, const char* shape, int method) {
  const std::vector<cv::Point3f> pts =
      PointsFor(shape, static_cast<int>(state.range(0)));
  Probe<Fit> fit;
  double p[8] = {0};
  std::cout.setstate(std::ios::failbit);  // the cone's "iter:" line
  fit.Fit(pts, p, static_cast<x3dfit::FitMethod>(method));
  std::cout.clear();
  gsl_vector* v = gsl_vector_alloc(fit.dimension());
  for (size_t i = 0; i < v->size; ++i) gsl_vector_set(v, i, p[i]);
  for (auto _ : state) benchmark::DoNotOptimize(fit.evaluate(v));
  gsl_vector_free(v);
  state.counters["points/s"] =
      benchmark::Counter(static_cast<double>(pts.size()),
                         benchmark::Counter::kIsIterationInvariantRate);
}

// A whole fit: start value, descent and post-step.
template <class Fit>
void BM_Fit(benchmark::State& state, const char* shape, int method) {
  const std::vector<cv::Point3f> pts =
      PointsFor(shape, static_cast<int>(state.range(0)));
  double p[8] = {0};
  std::cout.setstate(std::ios::failbit);
  for (auto _ : state) {
    Fit fit;
    fit.Fit(pts, p, static_cast<x3dfit::FitMethod>(method));
    benchmark::DoNotOptimize(p);
  }
  std::cout.clear();
}

void Sizes(benchmark::internal::Benchmark* b) {
  b->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
}

template <class Fit>
void Register(const char* shape, int method) {
  const std::string tail =
      std::string(shape) + "/method" + std::to_string(method);
  Sizes(benchmark::RegisterBenchmark(("Objective/" + tail).c_str(),
                                     BM_Objective<Fit>, shape, method));
}

template <class Fit>
void RegisterFit(const char* shape, int method) {
  const std::string tail =
      std::string(shape) + "/method" + std::to_string(method);
  Sizes(benchmark::RegisterBenchmark(("Fit/" + tail).c_str(), BM_Fit<Fit>,
                                     shape, method));
}

int RegisterAll() {
  using namespace x3dfit;
  Register<XPlaneFit>("plane", 1);
  Register<XPlaneFit>("plane", 2);
  Register<XLine3DFit>("line", 0);
  Register<XLine3DFit>("line", 1);
  Register<XSphereFit>("sphere", 1);
  Register<XSphereFit>("sphere", 2);
  Register<XCylinderFit>("cylinder", 0);
  Register<XCylinderFit>("cylinder", 1);
  Register<XCylinderFit>("cylinder", 2);
  Register<XConeFit>("cone", 0);
  Register<XConeFit>("cone", 1);
  RegisterFit<XPlaneFit>("plane", 1);
  RegisterFit<XLine3DFit>("line", 1);
  RegisterFit<XSphereFit>("sphere", 1);
  RegisterFit<XCylinderFit>("cylinder", 0);
  RegisterFit<XConeFit>("cone", 0);
  return 0;
}

const int kRegistered = RegisterAll();

}  // namespace
