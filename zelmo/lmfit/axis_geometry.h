// Geometry about an axis shared by the cylinder and cone fits: distances
// from the axis, positions along it, and the stored unit axis.
//
// Internal to the library.
#ifndef ZELMO_LMFIT_AXIS_GEOMETRY_H_
#define ZELMO_LMFIT_AXIS_GEOMETRY_H_

namespace zelmo {
namespace lmfit {

// unitOrZero()
// u = v / |v| in double, or (0, 0, 0) when |v| is 0.
void unitOrZero(const double* v, double* u);

// A point relative to an axis through `origin` along the unit u: its
// distance from the axis, |D x u|, and its position along it, D . u, with
// D = point - origin, all in double.
struct AxialOffset {
  double radial;
  double along;
};
AxialOffset axialOffset(const float* point,
                        const double* origin,
                        const double* u);

// storeAxialModel()
// Stores solver parameters (point on the axis, direction, one value: radius
// or half angle) as floats: the point and the value narrowed, the direction
// narrowed and scaled to unit length in float, its length taken in float;
// a length below 0.0001 leaves it unscaled (a solver that ran the axis
// towards zero must not divide by it).
void storeAxialModel(const double* params,
                     float* point,
                     float* axis,
                     float* value);

// Extent of points along an axis: the smallest and largest position.
struct AxialRange {
  double min;
  double max;
};

// axialRange()
// Positions t = axis . (P - origin) of `count` points, P - origin formed in
// double, t taken as 0 for a point within 1e-6 of `origin` in every
// coordinate. With no points the range stays at its start, min 1e10 and
// max -1e10.
AxialRange axialRange(const float* points,
                      int count,
                      const float* origin,
                      const float* axis);

}  // namespace lmfit
}  // namespace zelmo

#endif  // ZELMO_LMFIT_AXIS_GEOMETRY_H_
