#include "host/SettledMetrics.h"

namespace Corvanta::Host {
namespace {

constexpr std::chrono::milliseconds kSettleTime{120};

}  // namespace

std::optional<SurfaceMetrics> SettledMetrics::TakeDue(const SurfaceMetrics& metrics, Clock::time_point now) {
    if (metrics != waiting_) {
        waiting_ = metrics;
        waitingSince_ = now;
    }
    if (metrics == told_ || now < waitingSince_ + kSettleTime) return std::nullopt;
    told_ = metrics;
    return metrics;
}

}  // namespace Corvanta::Host
