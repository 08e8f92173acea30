#include "zelmo/lmfit/stage_frame.h"

#include <cmath>

#include "zelmo/lmfit/kth_largest.h"

namespace zelmo {
namespace lmfit {
namespace {

// Starting bounds of the largest and smallest residual.
constexpr double kStatisticsBound = 1e10;
// Residuals closer than this to the threshold tie with it (non-exact rule).
constexpr double kTieTolerance = 1e-5;
// The angle filter drops at most this share of the points.
constexpr double kAngleDropCap = 0.5;
constexpr double kPi = 3.141592653589793;

// Cosine of a limit given in degrees; `angle / 180` is taken in float.
double cosineOfLimit(float angle) { return std::cos(angle / 180 * kPi); }

// Copies the points of `kept` (in list order), refits them once if the
// shape allows, and stores the refit or the seed.
int refitKept(StageShape& shape,
              Stage stage,
              const std::vector<int>& kept,
              const float* points,
              const float* normals,
              int count) {
  std::vector<float> keptPoints(3 * static_cast<size_t>(count));
  const int keptCount = static_cast<int>(kept.size());
  for (int j = 0; j < keptCount; ++j)
    for (int c = 0; c < 3; ++c) keptPoints[3 * j + c] = points[3 * kept[j] + c];
  shape.onFiltered(stage, keptCount, count);
  std::vector<double> params(shape.paramCount());
  shape.seed(params.data());
  int result = 0;
  if (shape.refitAllowed(keptCount))
    result = shape.solve(keptPoints.data(), keptCount, params.data());
  shape.store(params.data(), keptPoints.data(), keptCount, points, normals,
              count);
  shape.onRefitted(stage, keptCount, count);
  return result < 0 ? shape.solverFailure() : 0;
}

bool tiesWith(const TieRule& rule, float threshold, float r) {
  if (rule.exact) return r == threshold;
  const float difference = threshold - r;  // in float, compared in double
  return kTieTolerance > static_cast<double>(std::fabs(difference));
}

// The candidates (point indices, in input order) without the k largest
// absolute residuals `absResidual[i]`, threshold T the k-th largest. Tied
// points wait in a pending list; when fewer than k were dropped outright,
// the earliest pending points are appended to fill up to
// candidates - k kept points, and the rest of them are dropped.
std::vector<int> withoutLargest(const std::vector<int>& candidates,
                                const std::vector<float>& absResidual,
                                int k,
                                float threshold,
                                const TieRule& rule) {
  const float dropLimit =
      static_cast<float>(static_cast<double>(threshold) - rule.dropMargin);
  std::vector<int> kept, pending;
  int dropped = 0;
  for (int i : candidates) {
    const float r = absResidual[i];
    const bool tie = tiesWith(rule, threshold, r);
    if (rule.tieFirst && tie) {
      pending.push_back(i);
    } else if (dropped < k && r > dropLimit) {
      ++dropped;
    } else if (!tie) {
      kept.push_back(i);
    } else {
      pending.push_back(i);
    }
  }
  const int missing = k - dropped;
  const int held = static_cast<int>(pending.size());
  if (dropped < k && held > missing)
    kept.insert(kept.end(), pending.begin(), pending.end() - missing);
  return kept;
}

std::vector<float> absoluteResiduals(const StageShape& shape,
                                     const float* points,
                                     int count) {
  std::vector<float> r(count);
  for (int i = 0; i < count; ++i)
    r[i] = static_cast<float>(std::fabs(shape.residual(points + 3 * i)));
  return r;
}

// The band mean +- value * sd of the shape's statistics, reported through
// onBand; `residuals` receives the signed residuals it applies to.
struct Band {
  double lo, hi;
  bool contains(float r) const { return !(lo > r) && !(r > hi); }
};

Band statisticsBand(StageShape& shape,
                    Stage stage,
                    const float* points,
                    int count,
                    float value,
                    std::vector<float>& residuals) {
  float stats[4];
  shape.statistics(points, count, stats, residuals);
  const float mean = stats[2];
  const float sd = std::sqrt(stats[3]);  // single precision
  const double lo = static_cast<double>(mean) -
                    static_cast<double>(value) * static_cast<double>(sd);
  const double hi = static_cast<double>(mean) +
                    static_cast<double>(value) * static_cast<double>(sd);
  shape.onBand(stage, mean, sd, hi, lo);
  return Band{lo, hi};
}

}  // namespace

void fillStatistics(const StageShape& shape,
                    const float* points,
                    int count,
                    VarianceDivisor divisor,
                    float* stats,
                    std::vector<float>& residuals) {
  residuals.resize(count);
  double largest = -kStatisticsBound, smallest = kStatisticsBound;
  for (int i = 0; i < count; ++i) {
    const double r = shape.residual(points + 3 * i);
    if (r > largest) largest = r;
    if (r < smallest) smallest = r;
    residuals[i] = static_cast<float>(r);
  }
  double sum = 0.0;
  for (float r : residuals) sum += r;
  const double mean = sum / count;
  double squares = 0.0;
  for (float r : residuals) squares += (r - mean) * (r - mean);
  const bool lessOne =
      divisor == VarianceDivisor::kCountLessOneAboveTen && count > 10;
  const double variance = squares / (lessOne ? count - 1 : count);
  stats[0] = static_cast<float>(largest);
  stats[1] = static_cast<float>(smallest);
  stats[2] = static_cast<float>(mean);
  stats[3] = static_cast<float>(variance);
}

namespace {

// The first fit on all points, then the shape's preparation for the tests.
bool firstFit(StageShape& shape,
              const float* points,
              const float* normals,
              int count) {
  if (shape.fitAll(points, normals, count) < 0) return false;
  shape.prepare();
  return true;
}

// Keeps the points inside the band and, when `cosLimit` is given, passing
// the angle test (tested only inside the band).
int bandFilter(StageShape& shape,
               Stage stage,
               const float* points,
               const float* normals,
               int count,
               float value,
               const double* cosLimit) {
  if (!firstFit(shape, points, normals, count)) return -1;
  std::vector<float> residuals;
  const Band band =
      statisticsBand(shape, stage, points, count, value, residuals);
  std::vector<int> kept;
  for (int i = 0; i < count; ++i)
    if (band.contains(residuals[i]) &&
        (cosLimit == nullptr ||
         shape.angleHolds(points + 3 * i, normals + 3 * i, *cosLimit)))
      kept.push_back(i);
  return refitKept(shape, stage, kept, points, normals, count);
}

// Flags the points failing the angle test when `cosLimit` is given (a of
// them), then drops k = (int)((float)(count - a) * value) of the largest
// |residual| among the rest. k = 0 with nothing flagged leaves the first
// fit standing; k = 0 after angle drops fails on purpose, rather than
// refit without the flagged points.
int proportionFilter(StageShape& shape,
                     Stage stage,
                     const float* points,
                     const float* normals,
                     int count,
                     float value,
                     const double* cosLimit) {
  if (!firstFit(shape, points, normals, count)) return -1;
  std::vector<bool> flagged(count, false);
  int a = 0;
  if (cosLimit != nullptr) {
    for (int i = 0; i < count; ++i) {
      flagged[i] =
          !shape.angleHolds(points + 3 * i, normals + 3 * i, *cosLimit);
      if (flagged[i]) ++a;
    }
  }
  const std::vector<float> absResidual =
      absoluteResiduals(shape, points, count);
  const int k = static_cast<int>(static_cast<float>(count - a) * value);
  std::vector<int> candidates;
  std::vector<float> work;
  for (int i = 0; i < count; ++i) {
    if (flagged[i]) continue;
    candidates.push_back(i);
    work.push_back(absResidual[i]);
  }
  if (k == 0 && a == 0) return 0;
  if (k < 1 || k > count - a) return -1;
  const float threshold =
      kthLargest(work.data(), static_cast<int>(work.size()), k);
  shape.onThreshold(stage, threshold);
  if (threshold <= kNoSelection) return -1;
  const std::vector<int> kept = withoutLargest(candidates, absResidual, k,
                                               threshold, shape.tieRule(stage));
  return refitKept(shape, stage, kept, points, normals, count);
}

}  // namespace

int bandStage(StageShape& shape,
              const float* points,
              const float* normals,
              int count,
              float value) {
  return bandFilter(shape, Stage::kBand, points, normals, count, value,
                    nullptr);
}

int proportionStage(StageShape& shape,
                    const float* points,
                    const float* normals,
                    int count,
                    float value) {
  return proportionFilter(shape, Stage::kProportion, points, normals, count,
                          value, nullptr);
}

int angleStage(StageShape& shape,
               const float* points,
               const float* normals,
               int count,
               float angle) {
  if (!firstFit(shape, points, normals, count)) return -1;
  const double cosLimit = cosineOfLimit(angle);
  const int cap = static_cast<int>(count * kAngleDropCap);
  int dropped = 0;
  std::vector<int> kept;
  for (int i = 0; i < count; ++i) {
    if (dropped < cap &&
        !shape.angleHolds(points + 3 * i, normals + 3 * i, cosLimit))
      ++dropped;
    else
      kept.push_back(i);
  }
  return refitKept(shape, Stage::kAngle, kept, points, normals, count);
}

int bandAngleStage(StageShape& shape,
                   const float* points,
                   const float* normals,
                   int count,
                   float value,
                   float angle) {
  const double cosLimit = cosineOfLimit(angle);
  return bandFilter(shape, Stage::kBandAngle, points, normals, count, value,
                    &cosLimit);
}

int proportionAngleStage(StageShape& shape,
                         const float* points,
                         const float* normals,
                         int count,
                         float value,
                         float angle) {
  const double cosLimit = cosineOfLimit(angle);
  return proportionFilter(shape, Stage::kProportionAngle, points, normals,
                          count, value, &cosLimit);
}

int runFilter(StageShape& shape,
              const float* points,
              const float* normals,
              int count,
              const xfeaturefitfilter::FilterParam& param,
              xfeaturefitfilter::FilterMethod method) {
  const float angle = param.angle;
  const float sigmaFactor = param.sigmaFactor;
  const float proportion = param.proportion;
  int result = -1;
  switch (method) {
    case xfeaturefitfilter::FilterNone:
      result = shape.fitAll(points, normals, count);
      break;
    case xfeaturefitfilter::FilterSigma:
      result = bandStage(shape, points, normals, count, sigmaFactor);
      break;
    case xfeaturefitfilter::FilterProportion:
      result = proportionStage(shape, points, normals, count, proportion);
      break;
    case xfeaturefitfilter::FilterAngle:
      result = angleStage(shape, points, normals, count, angle);
      break;
    case xfeaturefitfilter::FilterSigmaAngle:
      result =
          bandAngleStage(shape, points, normals, count, sigmaFactor, angle);
      break;
    case xfeaturefitfilter::FilterProportionAngle:
      result = proportionAngleStage(shape, points, normals, count, proportion,
                                    angle);
      break;
    default:
      return -1;
  }
  return result < 0 ? result : 0;
}

}  // namespace lmfit
}  // namespace zelmo
