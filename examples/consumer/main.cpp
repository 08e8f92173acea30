// Builds against the installed package only: proves the headers, the CMake
// package and the shared library are complete.
#include <zelmo/zelmo.h>

#include <cmath>
#include <cstdio>

int main() {
  const float base[3] = {0.0f, 0.0f, 0.0f};
  const float top[3] = {0.0f, 0.0f, 10.0f};
  const xgeofeature::XFCylinder cylinder(base, top, 2.5f);
  if (cylinder.getFeatureType() != xgeofeature::GeoCylinder) return 1;
  if (std::fabs(cylinder.height - 10.0f) > 1e-6f) return 2;
  std::printf("consumer: cylinder height %.1f\n", cylinder.height);
  return 0;
}
