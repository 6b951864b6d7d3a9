#include "host/TickSchedule.h"

#include <cmath>

namespace Corvanta::Host {
namespace {

constexpr double kFallbackRate = 60.0;
constexpr double kLowestRate = 20.0;
constexpr double kHighestRate = 480.0;
constexpr std::chrono::milliseconds kTimerGrain{1};

}  // namespace

std::chrono::nanoseconds TickSchedule::PeriodOf(double refreshRate) {
    const bool plausible = refreshRate >= kLowestRate && refreshRate <= kHighestRate;
    return std::chrono::nanoseconds(std::llround(1e9 / (plausible ? refreshRate : kFallbackRate)));
}

std::chrono::milliseconds TickSchedule::NextDelay(Clock::time_point now, std::chrono::nanoseconds period) {
    due_ += period;
    if (due_ < now) {
        due_ = now;
    } else if (due_ > now + period + kTimerGrain) {
        due_ = now + period;
    }
    return std::chrono::round<std::chrono::milliseconds>(due_ - now);
}

}  // namespace Corvanta::Host
