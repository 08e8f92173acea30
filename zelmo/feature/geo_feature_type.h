// The kinds of feature record, as returned by XFBase::getFeatureType().
#ifndef ZELMO_FEATURE_GEO_FEATURE_TYPE_H_
#define ZELMO_FEATURE_GEO_FEATURE_TYPE_H_

namespace xgeofeature {

// A plain enum: hosts store and compare the numeric values, so they are
// fixed and must never be renumbered.
enum GeoFeatureType {
  GeoPoint = 0,        // XFPoint, XFPointN
  GeoLine = 1,         // XFLine3D, XFLine3D2
  GeoPlane = 2,        // XFPlane
  GeoCircle = 3,       // XFCircle3D
  GeoSphere = 4,       // XFSphere
  GeoCylinder = 5,     // XFCylinder
  GeoCone = 6,         // XFCone
  GeoOvalGroove = 7,   // XFOvalGroove3D
  GeoRoundGroove = 8,  // XFRoundGroove3D
  GeoRectangle = 9,    // XFRectangle3D
  GeoPolyLine = 10,    // XFPolyLine
};

}  // namespace xgeofeature

#endif  // ZELMO_FEATURE_GEO_FEATURE_TYPE_H_
