// The steady clock of everything that is timed: animations, throttles, stale pictures, the tick. One seam, so
// that tests turn the clock instead of sleeping. Any thread.
#pragma once

#include <cstdint>

namespace Corvanta::UI {

using ClockFunction = int64_t (*)();

// Nanoseconds of a steady clock with an arbitrary start.
[[nodiscard]] int64_t NowNs();

// Replaces the clock; null puts the steady clock of the system back.
void SetClock(ClockFunction clock);

}  // namespace Corvanta::UI
