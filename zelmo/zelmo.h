// LibZelmo umbrella header for hosts: includes every public header.
// The library's own sources include what they use, never this header.
#ifndef ZELMO_ZELMO_H_
#define ZELMO_ZELMO_H_

#include "zelmo/export.h"

#include "zelmo/feature/records.h"

#include "zelmo/simplex/cone_fit.h"
#include "zelmo/simplex/cylinder_fit.h"
#include "zelmo/simplex/fit_frame.h"
#include "zelmo/simplex/line_fit.h"
#include "zelmo/simplex/plane_fit.h"
#include "zelmo/simplex/principal_axes.h"
#include "zelmo/simplex/sphere_fit.h"

#include "zelmo/curvefit/circle_fit.h"
#include "zelmo/curvefit/curve_fit.h"
#include "zelmo/curvefit/fit_method.h"
#include "zelmo/curvefit/oval_groove_fit.h"
#include "zelmo/curvefit/rectangle_fit.h"
#include "zelmo/curvefit/round_groove_fit.h"

#include "zelmo/lmfit/circle_fit_3d_lm.h"
#include "zelmo/lmfit/cone_fit_lm.h"
#include "zelmo/lmfit/cylinder_fit_lm.h"
#include "zelmo/lmfit/filter_param.h"
#include "zelmo/lmfit/plane_fit_lm.h"
#include "zelmo/lmfit/sphere_fit_lm.h"
#include "zelmo/lmfit/zelmo_lm.h"

#include "zelmo/measure/feature_constructor.h"
#include "zelmo/measure/feature_dimension.h"
#include "zelmo/measure/geo_constructor.h"
#include "zelmo/measure/geo_dimension.h"
#include "zelmo/measure/geo_tolerance.h"

#include "zelmo/display/circle3d.h"
#include "zelmo/display/cone.h"
#include "zelmo/display/curve3d.h"
#include "zelmo/display/cylinder.h"
#include "zelmo/display/geometry3d.h"
#include "zelmo/display/oval_groove3d.h"
#include "zelmo/display/rectangle3d.h"
#include "zelmo/display/round_groove3d.h"

#endif  // ZELMO_ZELMO_H_
