#include "host/SurfaceMetrics.h"

#include <algorithm>
#include <cmath>

namespace Corvanta::Host {
namespace {

int Physical(int logical, double pixelRatio) {
    return std::max(1, static_cast<int>(std::lround(logical * pixelRatio)));
}

}  // namespace

SurfaceMetrics MetricsOf(int logicalWidth, int logicalHeight, double pixelRatio) {
    return {Physical(logicalWidth, pixelRatio), Physical(logicalHeight, pixelRatio),
            static_cast<float>(pixelRatio)};
}

}  // namespace Corvanta::Host
