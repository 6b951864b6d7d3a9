#include "ui/Clock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace Corvanta::UI {
namespace {

int64_t SteadyNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

TEST(Clock, TellsTheSystemsSteadyTime) {
    const int64_t before = SteadyNs();
    const int64_t now = NowNs();
    EXPECT_LE(before, now);
    EXPECT_LE(now, SteadyNs());
}

TEST(Clock, TellsTheTimeOfTheClockThatIsPutInItsPlace) {
    SetClock([] { return int64_t{42}; });
    EXPECT_EQ(NowNs(), 42);
    SetClock(nullptr);
    EXPECT_GT(NowNs(), 42);
}

}  // namespace
}  // namespace Corvanta::UI
