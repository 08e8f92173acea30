// The feature records of namespace xgeofeature, with their type enum and the
// attribute records of measured values.
#ifndef ZELMO_FEATURE_RECORDS_H_
#define ZELMO_FEATURE_RECORDS_H_

#include "zelmo/feature/attributes.h"
#include "zelmo/feature/circle_record.h"
#include "zelmo/feature/geo_feature_type.h"
#include "zelmo/feature/line_records.h"
#include "zelmo/feature/outline_records.h"
#include "zelmo/feature/plane_record.h"
#include "zelmo/feature/point_records.h"
#include "zelmo/feature/polyline_record.h"
#include "zelmo/feature/solid_records.h"
#include "zelmo/feature/xf_base.h"

#endif  // ZELMO_FEATURE_RECORDS_H_
