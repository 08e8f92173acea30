// XGeoTolrance: form, orientation and location tolerances of measured points
// against an ideal feature that the host has already fitted.
//
// A tolerance is the band width of the signed deviations of the points from
// the feature (largest minus smallest), not a minimum-zone value: nothing is
// refitted. Feature arrays (doubles, read only, directions used as given, so
// pass unit vectors):
//   plane     point x, y, z; normal nx, ny, nz
//   line      point x, y, z; direction dx, dy, dz
//   circle    centre x, y, z; normal nx, ny, nz; radius
//   cylinder  axis point x, y, z; axis direction dx, dy, dz; radius
//   sphere    centre x, y, z; radius
// Every tolerance comes in a vector form and an array form (interleaved
// x, y, z floats and a count), and ends with useSigmaBand / sigmaFactor:
//   false: the extreme deviations of all points; sigmaFactor is not read.
//   true:  only deviations within mean -/+ sigmaFactor * standard deviation
//          (population, one pass over all points, limits inclusive) count.
//          A band that keeps nothing gives -1e10 - 1e10 = -2e10.
// Fewer than 3 points give kTooFewPoints (-1.0) from every tolerance.
#ifndef ZELMO_MEASURE_GEO_TOLERANCE_H_
#define ZELMO_MEASURE_GEO_TOLERANCE_H_

#include <opencv2/core.hpp>
#include <vector>

#include "zelmo/export.h"

namespace xgeomeasure {

// A name space of static operations; the class holds no state.
class ZELMO_API XGeoTolrance {
 public:
  using Points = std::vector<cv::Point3_<float>>;

  // Result of every tolerance for fewer than 3 points, and of
  // calcPerpendicularity_Line_Line for exactly parallel lines. A real
  // tolerance is never negative except the -2e10 of an empty band.
  static constexpr double kTooFewPoints = -1.0;
  static constexpr double kParallelLines = -1.0;

  // ---- Frame statics -----------------------------------------------------

  // Intersection3Planes()
  // The point shared by three planes (normals[k], points[k]) as a 3 x 1
  // double matrix. Returns 1, or 0 with `out` untouched when the normals'
  // determinant lies strictly within -/+1e-6.
  static int Intersection3Planes(const cv::Vec3d* normals,
                                 const cv::Point3d* points,
                                 cv::Mat& out);
  // getMatRByVector()
  // The 3 x 3 rotation carrying direction `from` onto `to`, also for
  // parallel and opposite directions.
  static void getMatRByVector(const cv::Vec3d& from,
                              const cv::Vec3d& to,
                              cv::Mat& R);
  // alignBy3Plane()
  // The rigid transform (16 doubles, rt x source = target) of three source
  // planes onto three target planes. Guarded: when the second pair needs a
  // half-turn, it turns about the first rotated normal, which so stays on
  // its target. Dependent normals raise OpenCV's error.
  static void alignBy3Plane(const cv::Vec3d* targetNormals,
                            const cv::Point3d* targetPoints,
                            const cv::Vec3d* sourceNormals,
                            const cv::Point3d* sourcePoints,
                            double* const rt);
  // convertMatrixRT()
  // The inverse of a rigid transform (rotation transposed, -R^T t); never
  // tests rigidity. Returns 1.
  static int convertMatrixRT(const double* const in, double* const out);
  // projection2Plane()
  // Each point projected onto the plane a, b, c, d (unit normal expected);
  // `out` is resized to the point count.
  static void projection2Plane(const std::vector<cv::Point3f>& points,
                               double* const plane,
                               std::vector<cv::Point3f>& out);
  // projection2Plane_tranformed()
  // The points projected onto the plane a, b, c, d and written in 2D in the
  // plane's local frame (origin at their centroid, x toward the first point
  // at least 0.01 off it in some coordinate). `transform` receives that
  // frame's world-to-local transform (16 doubles) unless it is null. When
  // every point lies within 0.01 of the centroid there is no frame and
  // OpenCV's error of the singular solve passes to the caller.
  static void projection2Plane_tranformed(
      const std::vector<cv::Point3f>& points,
      double* const plane,
      std::vector<cv::Point2f>& out,
      double* const transform);

  // ---- Form tolerances ---------------------------------------------------

  // calcFlatness()
  // Band of the plane deviations n . (p - point).
  static double calcFlatness(const Points& points,
                             double* const plane,
                             const bool& useSigmaBand,
                             const double& sigmaFactor);
  static double calcFlatness(const float* points,
                             const int& count,
                             double* const plane,
                             const bool& useSigmaBand,
                             const double& sigmaFactor);

  // calcStraightness()
  // Band of the line deviations: the distance |(p - o) x d| from the line,
  // negative for a point behind the line's point o along d (0 within 0.01
  // of o). Not a cylinder width: points on both sides of o add up, so the
  // value depends on where o lies along the points.
  static double calcStraightness(const Points& points,
                                 double* const line,
                                 const bool& useSigmaBand,
                                 const double& sigmaFactor);
  static double calcStraightness(const float* points,
                                 const int& count,
                                 double* const line,
                                 const bool& useSigmaBand,
                                 const double& sigmaFactor);

  // calcCylindricity()
  // Band of the radial deviations |(p - o) x d| - radius; a point within
  // 0.01 of the axis point o counts as -radius.
  static double calcCylindricity(const Points& points,
                                 double* const cylinder,
                                 const bool& useSigmaBand,
                                 const double& sigmaFactor);
  static double calcCylindricity(const float* points,
                                 const int& count,
                                 double* const cylinder,
                                 const bool& useSigmaBand,
                                 const double& sigmaFactor);

  // calcSphericity()
  // Band of |p - centre| - radius.
  static double calcSphericity(const Points& points,
                               double* const sphere,
                               const bool& useSigmaBand,
                               const double& sigmaFactor);
  static double calcSphericity(const float* points,
                               const int& count,
                               double* const sphere,
                               const bool& useSigmaBand,
                               const double& sigmaFactor);

  // calcCircularity()
  // The points are projected onto the circle's plane, written in 2D in the
  // frame of projection2Plane_tranformed (coordinates stored as float), and
  // the band of their distances from the mapped centre minus the radius is
  // taken. A set within 0.01 of its centroid has no frame: see
  // projection2Plane_tranformed.
  static double calcCircularity(const Points& points,
                                double* const circle,
                                const bool& useSigmaBand,
                                const double& sigmaFactor);
  static double calcCircularity(const float* points,
                                const int& count,
                                double* const circle,
                                const bool& useSigmaBand,
                                const double& sigmaFactor);

  // ---- Orientation and location tolerances -------------------------------

  // calcParallelism_Line_Line()
  // calcStraightness about the line through the measured line's point with
  // the datum line's direction.
  static double calcParallelism_Line_Line(const Points& points,
                                          double* const line,
                                          double* const datumLine,
                                          const bool& useSigmaBand,
                                          const double& sigmaFactor);
  static double calcParallelism_Line_Line(const float* points,
                                          const int& count,
                                          double* const line,
                                          double* const datumLine,
                                          const bool& useSigmaBand,
                                          const double& sigmaFactor);

  // calcParallelism_Line_Plane()
  // Band of the heights above the plane through the measured line's point
  // with the datum plane's normal.
  static double calcParallelism_Line_Plane(const Points& points,
                                           double* const line,
                                           double* const datumPlane,
                                           const bool& useSigmaBand,
                                           const double& sigmaFactor);
  static double calcParallelism_Line_Plane(const float* points,
                                           const int& count,
                                           double* const line,
                                           double* const datumPlane,
                                           const bool& useSigmaBand,
                                           const double& sigmaFactor);

  // calcParallelism_Plane_Plane()
  // calcFlatness about the plane through the measured plane's point with
  // the datum plane's normal.
  static double calcParallelism_Plane_Plane(const Points& points,
                                            double* const plane,
                                            double* const datumPlane,
                                            const bool& useSigmaBand,
                                            const double& sigmaFactor);
  static double calcParallelism_Plane_Plane(const float* points,
                                            const int& count,
                                            double* const plane,
                                            double* const datumPlane,
                                            const bool& useSigmaBand,
                                            const double& sigmaFactor);

  // calcPerpendicularity_Line_Line()
  // calcParallelism_Line_Line against the unit direction d2 x (d1 x d2):
  // the datum-perpendicular direction nearest to the measured one. Returns
  // kParallelLines when d1 x d2 is exactly zero (no tolerance).
  static double calcPerpendicularity_Line_Line(const Points& points,
                                               double* const line,
                                               double* const datumLine,
                                               const bool& useSigmaBand,
                                               const double& sigmaFactor);
  static double calcPerpendicularity_Line_Line(const float* points,
                                               const int& count,
                                               double* const line,
                                               double* const datumLine,
                                               const bool& useSigmaBand,
                                               const double& sigmaFactor);

  // calcPerpendicularity_Line_Plane()
  // calcStraightness about the line through the measured line's point
  // along the datum plane's normal.
  static double calcPerpendicularity_Line_Plane(const Points& points,
                                                double* const line,
                                                double* const datumPlane,
                                                const bool& useSigmaBand,
                                                const double& sigmaFactor);
  static double calcPerpendicularity_Line_Plane(const float* points,
                                                const int& count,
                                                double* const line,
                                                double* const datumPlane,
                                                const bool& useSigmaBand,
                                                const double& sigmaFactor);

  // calcPerpendicularity_Plane_Plane()
  // A width in the datum plane, not a deviation band: the points (with the
  // band, those whose deviation from the measured plane lies inside it) are
  // projected into the datum plane, and the short side of their
  // cv::minAreaRect is returned. A band keeping fewer than 2 points gives
  // 0, the rectangle of a single point.
  static double calcPerpendicularity_Plane_Plane(const Points& points,
                                                 double* const plane,
                                                 double* const datumPlane,
                                                 const bool& useSigmaBand,
                                                 const double& sigmaFactor);
  static double calcPerpendicularity_Plane_Plane(const float* points,
                                                 const int& count,
                                                 double* const plane,
                                                 double* const datumPlane,
                                                 const bool& useSigmaBand,
                                                 const double& sigmaFactor);

  // calcConcentricity()
  // From the line deviations of calcStraightness about `datumAxis`:
  // | |largest| - |smallest| |, the difference of reach on the two sides (0
  // for a symmetric set however wide). `feature` is not read; it stays in
  // the signature for the hosts that pass it.
  static double calcConcentricity(const Points& points,
                                  double* const feature,
                                  double* const datumAxis,
                                  const bool& useSigmaBand,
                                  const double& sigmaFactor);
  static double calcConcentricity(const float* points,
                                  const int& count,
                                  double* const feature,
                                  double* const datumAxis,
                                  const bool& useSigmaBand,
                                  const double& sigmaFactor);

 private:
  // Circularity of 2D points about (centerX, centerY).
  static double calcCircularity2D(const std::vector<cv::Point_<float>>& points,
                                  const double& centerX,
                                  const double& centerY,
                                  const double& radius,
                                  const bool& useSigmaBand,
                                  const double& sigmaFactor);
  static double calcCircularity2D(const float* points,
                                  const int& count,
                                  const double& centerX,
                                  const double& centerY,
                                  const double& radius,
                                  const bool& useSigmaBand,
                                  const double& sigmaFactor);

  // Statistics routines: the signed deviation of each point into
  // `deviations` (resized) and largest, smallest, mean, population variance
  // into `stats`. Fewer than 3 points leave both untouched.
  static void calcStatistics_PlanePoint2Plane(const Points& points,
                                              double* const plane,
                                              double* const stats,
                                              std::vector<double>& deviations);
  // Plane deviations with the point of `position` (entries 0-2) and the
  // normal of `normal` (entries 3-5).
  static void calcStatistics_LinePoint2Plane(const Points& points,
                                             double* const position,
                                             double* const normal,
                                             double* const stats,
                                             std::vector<double>& deviations);
  static void calcStatistics_LinePoint2Line(const Points& points,
                                            double* const line,
                                            double* const stats,
                                            std::vector<double>& deviations);
  static void calcStatistics_CylinderPoint2Cylinder(
      const Points& points,
      double* const cylinder,
      double* const stats,
      std::vector<double>& deviations);
  static void calcStatistics_SpherePoint2Sphere(
      const Points& points,
      double* const sphere,
      double* const stats,
      std::vector<double>& deviations);
  static void calcStatisticsCircle2D(
      const std::vector<cv::Point_<float>>& points,
      const double& centerX,
      const double& centerY,
      const double& radius,
      double* const stats,
      std::vector<double>& deviations);
};

}  // namespace xgeomeasure

#endif  // ZELMO_MEASURE_GEO_TOLERANCE_H_
