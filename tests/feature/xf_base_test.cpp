#include "zelmo/feature/xf_base.h"

#include <gtest/gtest.h>

#include "tests/support/tolerance.h"
#include "zelmo/feature/frame_toolkit.h"

namespace xgeofeature {
namespace {

using zelmo::test::ExpectNearArray;

// Opens the protected symmetry statics to the tests.
struct SymmetryAccess : XFBase {
  using XFBase::getMatRT_LineSymmetry;
  using XFBase::getMatRT_PlaneSymmetry;
};

// The members hand their float arguments unchanged to the frame toolkit,
// whose results are checked against closed forms in its own tests.
TEST(XFBase, MembersForwardTheirArgumentsToTheFrameToolkit) {
  const float axis[3] = {0.3f, -1.2f, 2.0f}, angle = 1.3f;
  double got[16], want[16];
  for (bool degrees : {true, false}) {
    SCOPED_TRACE(degrees);
    EXPECT_EQ(XFBase::getRotationMatrix(axis, angle, got, degrees), 0);
    zelmo::frame::getRotationMatrix(cv::Vec3d(axis[0], axis[1], axis[2]), angle,
                                    want, degrees);
    ExpectNearArray(got, want, 9, 1e-12);
  }
  const float pd[6] = {1.0f, -2.0f, 4.0f, 0.6f, 0.0f, 0.8f};
  SymmetryAccess::getMatRT_LineSymmetry(pd, got);
  zelmo::frame::getMatRT_LineSymmetry(pd, want);
  ExpectNearArray(got, want, 16, 1e-12);
  SymmetryAccess::getMatRT_PlaneSymmetry(pd, got);
  zelmo::frame::getMatRT_PlaneSymmetry(pd, want);
  ExpectNearArray(got, want, 16, 1e-12);
  XFBase::getMatRT_PointSymmetry(pd, got);
  zelmo::frame::getMatRT_PointSymmetry(pd, want);
  ExpectNearArray(got, want, 16, 1e-12);
}

}  // namespace
}  // namespace xgeofeature
