// The distance objectives of the flat outline fits of namespace xcurve3dfit.
// Not the enum of x3dfit: the values differ.
#ifndef ZELMO_CURVEFIT_FIT_METHOD_H_
#define ZELMO_CURVEFIT_FIT_METHOD_H_

namespace xcurve3dfit {

// With e the signed distance of a point to the outline, positive outside
// (the oval groove and round groove count some outside points negative,
// the rectangle never does; see their classes). Any value that is not
// 0 to 5 selects MaximumInscribed for the circle and leaves the other
// shapes on LeastAbsDev. The underlying type is int so that every int is a
// valid value.
enum FitMethod : int {
  LeastSquare = 0,             // circle: algebraic circle; others: sum e^2
  LeastAbsDev = 1,             // sum |e|
  LeastAbsDevInscribed = 2,    // sum e, an e < 0 counting (1 - e) x 10000
  Chebyshev = 3,               // largest |e|
  ChebyshevInscribed = 4,      // largest e, an e < 0 counting (1 - e) x 10000
  ChebyshevCircumscribed = 5,  // largest of (e + 1) x 10000 for e > 0, or -e
  MaximumInscribed = 6,        // circle: largest circle with no point inside
};

}  // namespace xcurve3dfit

#endif  // ZELMO_CURVEFIT_FIT_METHOD_H_
