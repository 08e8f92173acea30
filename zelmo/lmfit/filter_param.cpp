#include "zelmo/lmfit/filter_param.h"

namespace xfeaturefitfilter {

FilterParam::FilterParam(const float& angle,
                         const float& sigmaFactor,
                         const float& proportion)
    : angle(angle), sigmaFactor(sigmaFactor), proportion(proportion) {}

}  // namespace xfeaturefitfilter
