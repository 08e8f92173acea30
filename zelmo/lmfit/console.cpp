#include "zelmo/lmfit/console.h"

#include <iostream>

namespace zelmo {
namespace lmfit {

void printCatchError() { std::cout << "catch error\n"; }

void printBand(float mean, float sd, double hi, double lo) {
  std::cout << mean << " " << sd << " " << hi << " " << lo << std::endl;
}

void printKept(int kept, int count) {
  std::cout << kept << " " << count << std::endl;
}

void printThreshold(float threshold, bool flush) {
  std::cout << "min_n_maxvalue=" << threshold << "\n";
  if (flush) std::cout.flush();
}

void printSeed(const double* params, int n) {
  std::cout << "param:";
  for (int k = 0; k < n; ++k) std::cout << params[k] << (k + 1 < n ? " " : "");
  std::cout << std::endl;
}

}  // namespace lmfit
}  // namespace zelmo
