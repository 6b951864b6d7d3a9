// When the next tick is due, so that the mean rate is the display's even though timers count whole
// milliseconds. A plain value; the host's thread owns it.
#pragma once

#include <chrono>

namespace Corvanta::Host {

class TickSchedule final {
public:
    using Clock = std::chrono::steady_clock;

    // `refreshRate` in hertz; a value that no display has is read as 60.
    [[nodiscard]] static std::chrono::nanoseconds PeriodOf(double refreshRate);

    // How long to wait, from `now`, for the next tick. Calls are one tick apart. After a tick that took
    // longer than `period` the missed ticks are left out, not made up for.
    [[nodiscard]] std::chrono::milliseconds NextDelay(Clock::time_point now, std::chrono::nanoseconds period);

private:
    Clock::time_point due_{};
};

}  // namespace Corvanta::Host
