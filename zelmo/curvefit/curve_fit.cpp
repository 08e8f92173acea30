#include "zelmo/curvefit/curve_fit.h"

#include <algorithm>

#include "zelmo/curvefit/outline_frame.h"
#include "zelmo/feature/frame_toolkit.h"

namespace xcurve3dfit {

using zelmo::curvefit::FitOutcome;
using zelmo::curvefit::kPlacementFloats;

XCurve3DFit::XCurve3DFit() {}

XCurve3DFit::~XCurve3DFit() {}

bool XCurve3DFit::fitOutline(const std::vector<cv::Point3f>& points,
                             const zelmo::curvefit::OutlineShape& shape,
                             FitMethod method,
                             float* out,
                             float* result) {
  const FitOutcome outcome = zelmo::curvefit::FitFlatOutline(
      points, shape, static_cast<int>(method), out);
  if (outcome != FitOutcome::kFitted) return false;
  std::copy(out, out + kPlacementFloats + shape.sizeCount, result);
  return true;
}

bool XCurve3DFit::fitOutline(const float* points,
                             const int& count,
                             const zelmo::curvefit::OutlineShape& shape,
                             FitMethod method,
                             float* out,
                             float* result) {
  return fitOutline(zelmo::curvefit::TriplesToPoints(points, count), shape,
                    method, out, result);
}

bool XCurve3DFit::fitOutline(const float* points,
                             const float* normals,
                             const int& count,
                             const zelmo::curvefit::OutlineShape& shape,
                             FitMethod method,
                             float* out,
                             float* result) {
  if (!fitOutline(points, count, shape, method, out, result)) return false;
  zelmo::curvefit::OrientByNormals(normals, count, result, out);
  return true;
}

}  // namespace xcurve3dfit
