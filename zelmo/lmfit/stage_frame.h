// The robust fit shared by every Levenberg-Marquardt shape: a first fit on
// all points, one filter pass chosen by FilterMethod, and one refit of the
// kept points seeded by the first fit. The shapes differ only in what they
// lend through StageShape: residual, angle test, tie rule, guard, store
// step, failure code and console lines.
//
// Internal to the library.
#ifndef ZELMO_LMFIT_STAGE_FRAME_H_
#define ZELMO_LMFIT_STAGE_FRAME_H_

#include <vector>

#include "zelmo/lmfit/filter_param.h"

namespace zelmo {
namespace lmfit {

// The filter stages, numbered as the fits' private Fit2..Fit6.
enum class Stage : int {
  kBand = 2,
  kProportion = 3,
  kAngle = 4,
  kBandAngle = 5,
  kProportionAngle = 6,
};

// Tie rule of a proportion filter with threshold T (the k-th largest
// |residual|). A point with |residual| r is dropped while fewer than k are
// dropped and r > (float)(T - dropMargin); a point tied with T is held back
// and kept only as far as needed to keep count - k points, earliest first.
struct TieRule {
  // Tied when r == T; otherwise when 1e-5 > |T - r| (difference in float).
  bool exact;
  // The tie test comes before the drop test; otherwise a point above the
  // drop limit is dropped even when it ties.
  bool tieFirst;
  double dropMargin;
};

// How a shape's statistics divide the sum of squared deviations.
enum class VarianceDivisor {
  kCount,                 // n
  kCountLessOneAboveTen,  // n - 1 when n > 10, else n
};

// What a shape lends to the stages. An adapter over one fit object; the
// object holds the first fit between the calls.
class StageShape {
 public:
  virtual ~StageShape() = default;

  // The shape's first fit on all points; negative when it fails.
  virtual int fitAll(const float* points, const float* normals, int count) = 0;
  // Called after a successful first fit, before any residual or angle
  // test: caches what the tests need from the first fit.
  virtual void prepare() {}
  // Signed residual of one x, y, z point against the object's fit.
  virtual double residual(const float* point) const = 0;
  // The shape's statistics of all points: stats = largest, smallest, mean,
  // variance; residuals = the signed residuals as floats.
  virtual void statistics(const float* points,
                          int count,
                          float* stats,
                          std::vector<float>& residuals) = 0;
  // Whether a point's measured normal agrees with the fit, for the cosine
  // of the angle limit.
  virtual bool angleHolds(const float* point,
                          const float* normal,
                          double cosLimit) const = 0;
  virtual TieRule tieRule(Stage stage) const = 0;

  virtual int paramCount() const = 0;
  // The solver's start: the object's current floats, widened.
  virtual void seed(double* params) const = 0;
  // Whether the kept points may be refit; if not, the seed is stored.
  virtual bool refitAllowed(int kept) const = 0;
  // Runs the solver on the kept points; returns its result.
  virtual int solve(const float* kept, int keptCount, double* params) = 0;
  // Stores the refit (or the seed) into the object.
  virtual void store(const double* params,
                     const float* kept,
                     int keptCount,
                     const float* points,
                     const float* normals,
                     int count) = 0;
  // The stage result when the refit's solver failed.
  virtual int solverFailure() const = 0;

  // Console hooks, silent by default: the band of a sigma filter; the
  // threshold of a proportion filter (before it is tested for failure); the
  // kept count before and after the refit.
  virtual void onBand(Stage, float, float, double, double) {}
  virtual void onThreshold(Stage, float) {}
  virtual void onFiltered(Stage, int, int) {}
  virtual void onRefitted(Stage, int, int) {}
};

// fillStatistics()
// The statistics of `shape`'s signed residuals over `count` points: largest
// and smallest (tracked in double from -1e10 and 1e10), mean and variance
// (in double over the residuals rounded to float). `residuals` is resized
// to count and receives the float residuals.
void fillStatistics(const StageShape& shape,
                    const float* points,
                    int count,
                    VarianceDivisor divisor,
                    float* stats,
                    std::vector<float>& residuals);

// The stages. Each runs the first fit (-1 when it fails), filters, refits
// the kept points once, and returns 0 or the shape's failure code; the
// proportion stages return -1 when no threshold can be selected.

// Keeps points whose residual lies in mean +- value * sd.
int bandStage(StageShape& shape,
              const float* points,
              const float* normals,
              int count,
              float value);
// Drops the (int)(count * value) largest |residual|, ties by input order.
int proportionStage(StageShape& shape,
                    const float* points,
                    const float* normals,
                    int count,
                    float value);
// Drops points failing the angle test, at most half of them, in order.
int angleStage(StageShape& shape,
               const float* points,
               const float* normals,
               int count,
               float angle);
// Keeps points inside the band that pass the angle test; no cap.
int bandAngleStage(StageShape& shape,
                   const float* points,
                   const float* normals,
                   int count,
                   float value,
                   float angle);
// Drops points failing the angle test, then the largest share `value` of
// the rest. Fails with -1 when angle drops leave k at 0.
int proportionAngleStage(StageShape& shape,
                         const float* points,
                         const float* normals,
                         int count,
                         float value,
                         float angle);

// runFilter()
// Runs the stage of `method` with its values from `param`: FilterNone is
// the first fit alone. Returns 0 on success, the stage's negative result
// otherwise, and -1 for a method outside 0 to 5.
int runFilter(StageShape& shape,
              const float* points,
              const float* normals,
              int count,
              const xfeaturefitfilter::FilterParam& param,
              xfeaturefitfilter::FilterMethod method);

}  // namespace lmfit
}  // namespace zelmo

#endif  // ZELMO_LMFIT_STAGE_FRAME_H_
