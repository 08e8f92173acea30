// A host's first steps with the feature records: build a plane and a
// cylinder, read derived values, mirror a point at the plane.
#include <cstdio>

#include "zelmo/zelmo.h"

int main() {
  using namespace xgeofeature;
  const float center[3] = {10.0f, 20.0f, 5.0f};
  const float normal[3] = {0.0f, 0.0f, 1.0f};
  const float major[3] = {1.0f, 0.0f, 0.0f};
  const XFPlane plane(center, normal, major, 40.0f, 20.0f);
  XFPoint corners[4];
  plane.getCornerPoint(corners);
  std::printf("plane d=%.3f corners:", plane.d);
  for (const XFPoint& p : corners)
    std::printf(" (%.1f %.1f %.1f)", p.x, p.y, p.z);
  std::printf("\n");

  const float base[3] = {0.0f, 0.0f, 0.0f};
  const float axis[3] = {0.0f, 0.0f, 1.0f};
  const XFCylinder cylinder(base, axis, 5.0f, 30.0f);
  XFLine3D2 line;
  cylinder.getLine(line);
  std::printf("cylinder axis line: center (%.1f %.1f %.1f) length %.1f\n",
              line.center[0], line.center[1], line.center[2], line.length);
  return 0;
}
