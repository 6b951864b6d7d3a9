// When a surface's new size is worth telling: views that can only be made anew are not made anew for every
// step of a window that is being dragged larger. A plain value; the host's thread owns it.
#pragma once

#include <chrono>
#include <optional>

#include "host/SurfaceMetrics.h"

namespace Corvanta::Host {

class SettledMetrics final {
public:
    using Clock = std::chrono::steady_clock;

    // What the view knows now.
    void SetTold(const SurfaceMetrics& metrics) { told_ = metrics; }

    // To be asked in every tick. The metrics, once, when they differ from what was told and have stood still
    // for a moment; from then on they count as told.
    [[nodiscard]] std::optional<SurfaceMetrics> TakeDue(const SurfaceMetrics& metrics, Clock::time_point now);

private:
    SurfaceMetrics told_;
    SurfaceMetrics waiting_;
    Clock::time_point waitingSince_{};
};

}  // namespace Corvanta::Host
