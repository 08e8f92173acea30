// Starting values of the cylinder and cone fits by sample consensus on
// points with normals. The only place of the Levenberg-Marquardt fits that
// sees the point-cloud library; callers get plain doubles.
//
// Internal to the library.
#ifndef ZELMO_LMFIT_SAC_SEED_H_
#define ZELMO_LMFIT_SAC_SEED_H_

namespace zelmo {
namespace lmfit {

// The model the consensus looks for.
enum class SacModel {
  kCylinder,  // point on the axis, axis direction, radius
  kCone,      // apex, axis direction, half opening angle (radians)
};

// Number of values of either model, and of a fit's solver parameters.
constexpr int kSacCoefficients = 7;

// sampleConsensusSeed()
// Runs RANSAC with normals over `count` points and normals (x, y, z float
// triples each; normals are used as given) for `model`, with the
// coefficients optimised on the inliers, and writes the seven model values
// in their order into `params`. The run is repeatable: the sampler starts
// from a fixed seed. Returns 0, or -1 when no model is found (fewer than
// seven coefficients), `params` then unwritten.
int sampleConsensusSeed(SacModel model,
                        const float* points,
                        const float* normals,
                        int count,
                        double* params);

}  // namespace lmfit
}  // namespace zelmo

#endif  // ZELMO_LMFIT_SAC_SEED_H_
