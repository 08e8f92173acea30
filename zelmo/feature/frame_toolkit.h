// Frame and rotation toolkit: planes, rotations and rigid 4 x 4 transforms.
//
// This is the one copy of these routines. The classes that offer them as
// members (X3DFit, XCurve3D, XGeometry3D, XCurve3DFit, XGeoTolrance, XTrim,
// XGeoConstructor, XFBase) wrap them thinly; where their copies really differ
// (the guard of alignBy3Plane, its prints) the difference is a parameter here.
//
// Conventions:
//  - A rigid transform is double[16], row-major 4 x 4 acting on column
//    vectors: rows R00 R01 R02 tx / R10 R11 R12 ty / R20 R21 R22 tz / 0 0 0 1.
//  - A rotation as cv::Mat is a 3 x 3 CV_64F matrix.
//  - A plane is a point and a normal, or double[4] a, b, c, d with (a, b, c)
//    of unit length (a x + b y + c z + d = 0).
//
// Internal to the library: not exported, so class members that forward here
// must be defined out of line.
#ifndef ZELMO_FEATURE_FRAME_TOOLKIT_H_
#define ZELMO_FEATURE_FRAME_TOOLKIT_H_

#include <opencv2/core.hpp>
#include <vector>

namespace zelmo {
namespace frame {

// A determinant strictly inside (-kDetZeroEps, kDetZeroEps) means three
// planes share no single point.
constexpr double kDetZeroEps = 1e-6;
// Cross-product components all below this mean two directions are parallel.
constexpr double kParallelEps = 1e-6;
// A projected point closer than this to the centroid in every coordinate
// cannot give the in-plane axis of a local frame.
constexpr double kFrameAxisMinOffset = 0.01;

// How alignBy3Plane turns the second pair of planes into place.
enum class AlignMode {
  // R2 = getMatRByVector(cs, ct), also when cs and ct are opposite; the
  // half-turn axis is then whatever getMatRByVector picks.
  kPlain,
  // Opposite cs and ct give a half-turn about the first rotated normal, so
  // the first normal stays on its target.
  kGuarded,
  // kGuarded, and prints the normals and R1, R2, R on the standard output.
  kGuardedPrinting,
};

// Intersection3Planes()
// Solves the point shared by the planes (normals[k], points[k]), k = 0..2.
// Returns 1 and writes `out` as a 3 x 1 CV_64F matrix; returns 0 with `out`
// untouched when |det| of the normals (as rows) is below kDetZeroEps.
int Intersection3Planes(const cv::Vec3d* normals,
                        const cv::Point3d* points,
                        cv::Mat& out);

// unitOrZero()
// `v` made unit; a zero vector stays zero.
cv::Vec3d unitOrZero(const cv::Vec3d& v);

// largestAbsIndex()
// Index of the largest |v[k]|, testing k = 0, 1, 2 in order with a strict
// greater-than, so that the lowest index wins a tie.
int largestAbsIndex(const cv::Vec3d& v);

// auxiliaryOrthogonal()
// A direction orthogonal to `v`, not unit, built on its largest component
// (lowest index on a tie): (-(v1 + v2) / v0, 1, 1) for index 0, and likewise
// (1, -(v0 + v2) / v1, 1), (1, 1, -(v0 + v1) / v2). getMatRByVector turns
// through it for parallel directions; frames about an axis start from it.
// A zero `v` divides by zero.
cv::Vec3d auxiliaryOrthogonal(const cv::Vec3d& v);

// perpendicularDirection()
// The unit major direction made up for a flat feature from its normal `n`,
// built on the largest component (lowest index on a tie):
// (-n1 / n0, 1, 0), (1, -n0 / n1, 0) or (1, 0, -n0 / n2), scaled to unit
// length in double; a zero norm gives the scale 0.
cv::Vec3d perpendicularDirection(const cv::Vec3d& n);

// getMatRByVector()
// The rotation that carries the direction `from` onto `to` (Rodrigues form),
// written into `R` as a new 3 x 3 matrix. Parallel or opposite directions are
// handled by two turns through an auxiliary direction orthogonal to `from`:
// equal vectors give the identity within rounding, opposite ones a half-turn
// about an axis orthogonal to `from`.
void getMatRByVector(const cv::Vec3d& from, const cv::Vec3d& to, cv::Mat& R);

// alignBy3Plane()
// The rigid transform `rt` (16 doubles) with rt x source = target for three
// planes each: the first source normal goes onto the first target normal,
// the second pair's plane of normals is turned into place, and the meeting
// point of the source planes moves to the meeting point of the rotated planes
// laid through the target points. The normals must be independent; if they
// are not, the OpenCV error of the singular solve passes to the caller.
void alignBy3Plane(const cv::Vec3d* targetNormals,
                   const cv::Point3d* targetPoints,
                   const cv::Vec3d* sourceNormals,
                   const cv::Point3d* sourcePoints,
                   double* const rt,
                   AlignMode mode);

// convertMatrixRT()
// Inverts a rigid transform: rotation transposed, translation -R^T t.
// Never tests that `in` is rigid. `in` and `out` may alias. Returns 1.
int convertMatrixRT(const double* const in, double* const out);

// projection2Plane()
// Projects each point onto `plane` (a, b, c, d with unit normal; not tested)
// in double and stores floats; `out` is resized to the size of `points`.
void projection2Plane(const std::vector<cv::Point3f>& points,
                      const double* const plane,
                      std::vector<cv::Point3f>& out);

// projection2Plane_tranformed()
// Maps the points into a local frame of `plane`: origin at the centroid c of
// the projected points, x along the first projected point that lies at least
// kFrameAxisMinOffset from c in some coordinate, z along the plane normal.
// Writes the 2D coordinates of each projected point into `out`, and the
// frame transform T (world to local, 16 doubles) into `transform` when it is
// not null. `mode` is the alignBy3Plane flavour of the offering class. When
// no point gives an x axis the frame is degenerate and the singular solve
// raises OpenCV's error.
void projection2Plane_tranformed(const std::vector<cv::Point3f>& points,
                                 const double* const plane,
                                 std::vector<cv::Point2f>& out,
                                 double* const transform,
                                 AlignMode mode);

// getMatrixR()
// Rotation by `angle` about `axis` (made unit in double; a zero axis gives
// cos(angle) on the diagonal and zeros elsewhere), as a new 3 x 3 matrix.
// `degrees` says the angle is in degrees.
void getMatrixR(const cv::Vec3d& axis,
                const double& angle,
                cv::Mat& R,
                bool degrees);

// getRotationMatrix()
// getMatrixR written as nine doubles, row by row, into `r`.
void getRotationMatrix(const cv::Vec3d& axis,
                       double angle,
                       double* const r,
                       bool degrees);

// getMatRT_LineSymmetry(), getMatRT_PlaneSymmetry(), getMatRT_PointSymmetry()
// The 4 x 4 point mappings: the half-turn about a line (six floats: point,
// direction), the mirror at a plane (six floats: point, normal), the
// inversion through a point (three floats). Built through a local frame, so
// they equal the closed forms R = 2 d d^T - I, I - 2 n n^T, -I with
// t = p - R p only to rounding.
void getMatRT_LineSymmetry(const float* const line, double* const rt);
void getMatRT_PlaneSymmetry(const float* const plane, double* const rt);
void getMatRT_PointSymmetry(const float* const point, double* const rt);

}  // namespace frame
}  // namespace zelmo

#endif  // ZELMO_FEATURE_FRAME_TOOLKIT_H_
