// Samplers of points on flat outlines (slot, rectangle, rounded rectangle)
// for recovery tests of the outline fits. The outline lies in the (u, v)
// plane of the frame about its origin, its long axis along u. Normals are
// the outward in-plane normals of the outline; noise (Gaussian, deviation
// `noise`) moves points along them.
#ifndef ZELMO_TESTS_SUPPORT_OUTLINE_SAMPLERS_H_
#define ZELMO_TESTS_SUPPORT_OUTLINE_SAMPLERS_H_

#include <random>

#include "tests/support/samplers.h"

namespace zelmo {
namespace test {

// A rectangle of 2 halfLength by 2 halfWidth with corner arcs of
// cornerRadius (at most the smaller half size), points uniform in arc
// length.
Samples SampleRoundedRectangle(const Frame& f,
                               double halfLength,
                               double halfWidth,
                               double cornerRadius,
                               int count,
                               double noise,
                               std::mt19937& rng);
// A rectangle with sharp corners.
Samples SampleRectangle(const Frame& f,
                        double halfLength,
                        double halfWidth,
                        int count,
                        double noise,
                        std::mt19937& rng);
// A slot (stadium): straight sides of 2 halfStraight joined by half circles
// of `radius`.
Samples SampleSlot(const Frame& f,
                   double halfStraight,
                   double radius,
                   int count,
                   double noise,
                   std::mt19937& rng);

}  // namespace test
}  // namespace zelmo

#endif  // ZELMO_TESTS_SUPPORT_OUTLINE_SAMPLERS_H_
