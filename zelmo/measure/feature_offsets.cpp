// XGeoFConstructor: common tangents of two circles in a plane, and the
// planes that touch three spheres.
#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>

#include "zelmo/feature/frame_toolkit.h"
#include "zelmo/measure/feature_constructor.h"
#include "zelmo/measure/record_math.h"

namespace xgeofeature {
namespace {

using zelmo::measure::isSmall;
using zelmo::measure::lineBetween;
using zelmo::measure::unitOrZero;
using zelmo::measure::vec;

// The length of the single tangent of two circles touching inside.
constexpr float kSingleTangentLength = 1.0f;

// The rigid transforms between space and the frame with origin `origin` and
// axes x, y, z: toFrame carries space into the frame, toSpace back.
void frameAt(const cv::Vec3d& origin,
             const cv::Vec3d& x,
             const cv::Vec3d& y,
             const cv::Vec3d& z,
             double* const toFrame,
             double* const toSpace) {
  const cv::Vec3d axes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const cv::Point3d zero[3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
  const cv::Vec3d source[3] = {x, y, z};
  const cv::Point3d at[3] = {cv::Point3d(origin), cv::Point3d(origin),
                             cv::Point3d(origin)};
  zelmo::frame::alignBy3Plane(axes, zero, source, at, toFrame,
                              zelmo::frame::AlignMode::kGuarded);
  zelmo::frame::convertMatrixRT(toFrame, toSpace);
}

// The touching points of the two tangent planes on the sphere (center,
// radius) from its tangents to the two other circles: pair k holds the two
// outer tangents to the circle about others[k]. The touching points lie on
// the line along the plane's normal where the planes through the two chords
// of contact, each across its pair's line of centres, meet. Returns the
// number of touching points (0, 1 or 2) as getIntersectionPoint does.
int touchingPoints(const XFPoint& center,
                   const float& radius,
                   const XFPoint others[2],
                   const XFLine3D2 tangents[2][2],
                   XFPoint touch[2]) {
  XFPlane chordPlanes[2];
  for (int k = 0; k < 2; ++k) {
    XFPoint contact[2];
    for (int m = 0; m < 2; ++m)
      XGeoFConstructor::getProjectionPoint(center, tangents[k][m], contact[m]);
    float middle[3], across[3];
    zelmo::measure::store((vec(contact[0]) + vec(contact[1])) * 0.5, middle);
    zelmo::measure::store(unitOrZero(vec(others[k]) - vec(center)), across);
    chordPlanes[k] = XFPlane(middle, across);
  }
  XFLine3D2 polar;
  if (XGeoFConstructor::getIntersectionLine(chordPlanes[0], chordPlanes[1],
                                            polar) != 0)
    return 0;
  const float c[3] = {center.x, center.y, center.z};
  return XGeoFConstructor::getIntersectionPoint(polar, XFSphere(c, radius),
                                                touch);
}

}  // namespace

int XGeoFConstructor::getLineOffset(const XFPoint points[2],
                                    const float radii[2],
                                    const XFPlane& plane,
                                    XFLine3D2 out[2]) {
  if (radii[0] < 0.0f || radii[1] < 0.0f) return kNegativeRadius;
  const double distance = points[0].Distance(points[1]);
  if (std::fabs(double(radii[0]) - radii[1]) > distance) return kNoTangent;

  const int large = radii[1] > radii[0] ? 1 : 0;  // the first on a tie
  const int small = 1 - large;
  const double rl = radii[large], rs = radii[small];
  XFPoint L, S;
  getProjectionPoint(points[large], plane, L);
  getProjectionPoint(points[small], plane, S);
  const cv::Vec3d e = unitOrZero(vec(points[small]) - vec(points[large]));
  const cv::Vec3d n = vec(plane.normal);
  // Centres that differ only along the normal give no direction in the
  // plane to build tangents on.
  if (isSmall(n.cross(e))) return kNoTangent;
  const cv::Vec3d y = unitOrZero(n.cross(e));

  if (distance == rl - rs) {
    float center[3], dir[3];
    zelmo::measure::store(vec(S) + e * rs, center);
    zelmo::measure::store(y, dir);
    out[0] = XFLine3D2(center, dir, kSingleTangentLength);
    return 1;
  }
  if (rl == rs) {
    const cv::Vec3d v = y * rl;
    out[0] = lineBetween(vec(L) + v, vec(S) + v);
    out[1] = lineBetween(vec(L) - v, vec(S) - v);
    return 2;
  }

  // Touch points at the angle acos(c) from e about each centre, c = rl / Q
  // with Q the distance of the outer centre of similarity from L.
  const double t = rs * distance / (rl - rs);
  const double q = t + distance;
  const double c = rl / q;
  const double g = std::sqrt(q * q - rl * rl) / q;
  double toFrame[16], toSpace[16];
  frameAt(vec(L), e, y, n, toFrame, toSpace);
  const cv::Vec3d l2 = zelmo::measure::transformPoint(toFrame, vec(L));
  const cv::Vec3d s2 = zelmo::measure::transformPoint(toFrame, vec(S));
  const double sides[2] = {1.0, -1.0};
  for (int k = 0; k < 2; ++k) {
    // The ends in the frame, stored as floats before they go back to space.
    const float from[2] = {static_cast<float>(l2[0] + rl * c),
                           static_cast<float>(l2[1] + sides[k] * rl * g)};
    const float to[2] = {static_cast<float>(s2[0] + rs * c),
                         static_cast<float>(s2[1] + sides[k] * rs * g)};
    out[k] = lineBetween(
        zelmo::measure::transformPoint(toSpace, cv::Vec3d(from[0], from[1], 0)),
        zelmo::measure::transformPoint(toSpace, cv::Vec3d(to[0], to[1], 0)));
  }
  return 2;
}

int XGeoFConstructor::getPlaneOffset(const XFPoint points[3],
                                     const float offsets[3],
                                     XFPlane out[2]) {
  for (int k = 0; k < 3; ++k)
    if (offsets[k] < 0.0f) return kNegativeOffset;
  int order[3] = {0, 1, 2};
  std::stable_sort(order, order + 3,
                   [&](int i, int j) { return offsets[i] > offsets[j]; });
  XFPoint p[3];
  float r[3];
  for (int k = 0; k < 3; ++k) {
    p[k] = points[order[k]];
    r[k] = offsets[order[k]];
  }
  for (int i = 0; i < 3; ++i)
    for (int j = i + 1; j < 3; ++j)
      if (p[i].Distance(p[j]) < zelmo::measure::kSmall)
        return kCoincidentPoints;

  XFPointN upward[3];
  for (int k = 0; k < 3; ++k)
    upward[k] = XFPointN(p[k].x, p[k].y, p[k].z, 0, 0, 1);
  XFPlane base;
  if (getPlane(upward, base) != kOk) return kDegeneratePoints;

  // tangents[i][j]: the two outer tangents of the circles about p[i], p[j].
  XFLine3D2 tangents[3][3][2];
  for (int i = 0; i < 3; ++i) {
    for (int j = i + 1; j < 3; ++j) {
      const XFPoint pair[2] = {p[i], p[j]};
      const float radii[2] = {r[i], r[j]};
      if (getLineOffset(pair, radii, base, tangents[i][j]) < 2)
        return kNoTangentPlane;
      tangents[j][i][0] = tangents[i][j][0];
      tangents[j][i][1] = tangents[i][j][1];
    }
  }

  // touch[s][i]: the touching point on sphere i of the plane on side s
  // (0 on the side the base normal points to).
  const cv::Vec3d up = vec(base.normal);
  XFPoint touch[2][3];
  for (int i = 0; i < 3; ++i) {
    if (r[i] < zelmo::measure::kSmall) {
      touch[0][i] = touch[1][i] = p[i];
      continue;
    }
    const int j = (i + 1) % 3, k = (i + 2) % 3;
    const XFPoint others[2] = {p[j], p[k]};
    const XFLine3D2 pairTangents[2][2] = {
        {tangents[i][j][0], tangents[i][j][1]},
        {tangents[i][k][0], tangents[i][k][1]}};
    XFPoint hits[2];
    const int count = touchingPoints(p[i], r[i], others, pairTangents, hits);
    if (count == 0) return kNoTangentPlane;
    if (count == 1) hits[1] = hits[0];
    const bool firstUp = (vec(hits[0]) - vec(p[i])).dot(up) >=
                         (vec(hits[1]) - vec(p[i])).dot(up);
    touch[0][i] = firstUp ? hits[0] : hits[1];
    touch[1][i] = firstUp ? hits[1] : hits[0];
  }

  XFPlane result[2];
  for (int s = 0; s < 2; ++s) {
    const float sense = s == 0 ? 1.0f : -1.0f;  // normals away from spheres
    XFPointN side[3];
    for (int i = 0; i < 3; ++i)
      side[i] = XFPointN(touch[s][i].x, touch[s][i].y, touch[s][i].z,
                         sense * base.normal[0], sense * base.normal[1],
                         sense * base.normal[2]);
    if (getPlane(side, result[s]) != kOk) return kNoTangentPlane;
  }
  out[0] = result[0];
  out[1] = result[1];
  return kTangentPlanesFound;
}

}  // namespace xgeofeature
