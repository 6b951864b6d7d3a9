#include "ui/Clock.h"

#include <atomic>
#include <chrono>

namespace Corvanta::UI {
namespace {

int64_t SteadyClockNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// Constant-initialised: the library reads the time while it is being loaded.
std::atomic<ClockFunction> gClock{&SteadyClockNs};

}  // namespace

int64_t NowNs() {
    return gClock.load()();
}

void SetClock(ClockFunction clock) {
    gClock.store(clock != nullptr ? clock : &SteadyClockNs);
}

}  // namespace Corvanta::UI
