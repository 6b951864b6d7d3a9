#include "connectivity/ConnectionStats.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Corvanta::Connectivity {
namespace {

constexpr double kBytesPerBit = 0.125;

// What is no number counts as none measured.
[[nodiscard]] int32_t RoundToInt(double value) {
    if (std::isnan(value)) return 0;
    constexpr auto kLowest = static_cast<double>(std::numeric_limits<int32_t>::min());
    constexpr auto kHighest = static_cast<double>(std::numeric_limits<int32_t>::max());
    return static_cast<int32_t>(std::clamp(std::round(value), kLowest, kHighest));
}

}  // namespace

void ConnectionStats::OnConnectionStats(int /*reserved0*/, double uploadRate, int /*reserved1*/,
                                        double downloadRate, double /*reserved2*/, double jitterMs,
                                        double roundTripMs) {
    const std::lock_guard lock(mutex_);
    figures_.uploadBytes = uploadRate * kBytesPerBit;
    figures_.downloadBytes = downloadRate * kBytesPerBit;
    figures_.roundTripMs = RoundToInt(roundTripMs);
    figures_.jitterMs = RoundToInt(jitterMs);
    ++figures_.sample;
}

ConnectionFigures ConnectionStats::Get() const {
    const std::lock_guard lock(mutex_);
    return figures_;
}

}  // namespace Corvanta::Connectivity
