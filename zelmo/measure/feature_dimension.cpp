#include "zelmo/measure/feature_dimension.h"

#include <cmath>

#include "zelmo/measure/angle_from_cosine.h"
#include "zelmo/measure/feature_constructor.h"
#include "zelmo/measure/record_math.h"

namespace xgeofeature {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kRightAngle = kPi / 2;

// The directed angle in radians between two float triples.
double directedAngle(const float* const u, const float* const v) {
  return zelmo::measure::angleFromCosine(
      zelmo::measure::vec(u).dot(zelmo::measure::vec(v)),
      zelmo::measure::AngleUnit::kRadians);
}

}  // namespace

int XGeoDimension::Distance(const XFPoint& p,
                            const XFPoint& q,
                            XDistanceAttributes& out) {
  const float dx = q.x - p.x, dy = q.y - p.y, dz = q.z - p.z;
  out.distance = std::sqrt(dx * dx + dy * dy + dz * dz);  // all in float
  out.dx = static_cast<float>(std::fabs(double(q.x) - p.x));
  out.dy = static_cast<float>(std::fabs(double(q.y) - p.y));
  out.dz = static_cast<float>(std::fabs(double(q.z) - p.z));
  return 0;
}

int XGeoDimension::Distance(const XFPoint& point,
                            const XFLine3D2& line,
                            XFPoint& foot,
                            XDistanceAttributes& out) {
  XGeoFConstructor::getProjectionPoint(point, line, foot);
  return Distance(point, foot, out);
}

int XGeoDimension::Distance(const XFPoint& point,
                            const XFPlane& plane,
                            XFPoint& foot,
                            XDistanceAttributes& out) {
  foot = zelmo::measure::footOnPlane(point, plane);
  return Distance(point, foot, out);
}

double XGeoDimension::Angle(const XFLine3D2& a, const XFLine3D2& b) {
  return directedAngle(a.dir, b.dir);
}

double XGeoDimension::Angle(const XFPlane& a, const XFPlane& b) {
  return directedAngle(a.normal, b.normal);
}

double XGeoDimension::Angle(const XFLine3D2& line, const XFPlane& plane) {
  XFLine3D2 projected;
  if (XGeoFConstructor::getProjectionLine(line, plane, projected) < 0)
    return kRightAngle;
  // An obtuse angle to the projection is folded back; a cosine at or below
  // -1 folds pi to pi - pi, that is 0.
  const double angle = directedAngle(line.dir, projected.dir);
  return angle > kRightAngle ? kPi - angle : angle;
}

double XGeoDimension::Angle(const XFPlane& plane, const XFLine3D2& line) {
  return Angle(line, plane);
}

}  // namespace xgeofeature
