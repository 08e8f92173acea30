// Selection of the k-th largest value, the threshold of the proportion
// filters.
#ifndef ZELMO_LMFIT_KTH_LARGEST_H_
#define ZELMO_LMFIT_KTH_LARGEST_H_

namespace zelmo {
namespace lmfit {

// Returned when there is no k-th largest value (k < 1 or k > n).
constexpr float kNoSelection = -1.0f;

// kthLargest()
// The k-th largest of values[0..n-1] (k = 1: the largest; ties count
// separately, as in a sort), found by quickselect around random pivots;
// `values` is reordered. Returns kNoSelection when k < 1 or k > n. Each
// partition seeds its own generator from std::random_device, so the order
// left behind varies from run to run while the value does not.
float kthLargest(float* values, int n, int k);

}  // namespace lmfit
}  // namespace zelmo

#endif  // ZELMO_LMFIT_KTH_LARGEST_H_
