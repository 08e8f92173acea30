#include "zelmo/lmfit/kth_largest.h"

#include <random>
#include <utility>

namespace zelmo {
namespace lmfit {
namespace {

// Moves the values smaller than a randomly placed pivot to the front and
// returns the pivot's final position.
int partitionAroundRandomPivot(float* v, int n) {
  std::random_device device;
  std::mt19937 generator(device());
  std::uniform_int_distribution<int> position(0, n - 1);
  std::swap(v[position(generator)], v[n - 1]);
  const float pivot = v[n - 1];
  int store = 0;
  for (int i = 0; i < n - 1; ++i)
    if (v[i] < pivot) std::swap(v[i], v[store++]);
  std::swap(v[store], v[n - 1]);
  return store;
}

}  // namespace

float kthLargest(float* values, int n, int k) {
  while (k > 0 && n >= k) {
    const int p = partitionAroundRandomPivot(values, n);
    const int target = n - k;
    if (p == target) return values[p];
    if (p < target) {
      values += p + 1;
      n -= p + 1;
    } else {
      k += p - n;
      n = p;
    }
  }
  return kNoSelection;
}

}  // namespace lmfit
}  // namespace zelmo
