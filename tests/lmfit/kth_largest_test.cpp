#include "zelmo/lmfit/kth_largest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

namespace zelmo {
namespace lmfit {
namespace {

// Every k of random arrays, with many ties (small integers) and without,
// gives the value std::nth_element puts at the k-th largest place; k
// outside 1 to n gives the sentinel.
TEST(KthLargest, MatchesNthElementIncludingTies) {
  std::mt19937 rng(20240607);
  for (int trial = 0; trial < 60; ++trial) {
    SCOPED_TRACE(trial);
    const int n = 1 + static_cast<int>(rng() % 40);
    std::vector<float> values(n);
    std::uniform_int_distribution<int> small(0, 4);
    std::uniform_real_distribution<float> wide(0.0f, 100.0f);
    for (float& v : values)
      v = trial % 2 ? static_cast<float>(small(rng)) : wide(rng);
    for (int k = 1; k <= n; ++k) {
      std::vector<float> want = values, work = values;
      std::nth_element(want.begin(), want.begin() + (k - 1), want.end(),
                       std::greater<float>());
      EXPECT_EQ(kthLargest(work.data(), n, k), want[k - 1]) << "k " << k;
    }
    for (int k : {-1, 0, n + 1})
      EXPECT_EQ(kthLargest(values.data(), n, k), kNoSelection);
  }
}

}  // namespace
}  // namespace lmfit
}  // namespace zelmo
