#include "host/TickSchedule.h"

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

using namespace std::chrono_literals;
using Time = TickSchedule::Clock::time_point;

TEST(TickSchedule, KeepsTheDisplaysMeanRateWithWholeMilliseconds) {
    TickSchedule schedule;
    const auto period = TickSchedule::PeriodOf(60.0);
    Time now{1h};
    (void)schedule.NextDelay(now, period);
    const Time start = now;
    int ticks = 0;
    while (now < start + 10s) {
        now += 3ms;  // what the tick itself takes
        now += schedule.NextDelay(now, period);
        ++ticks;
    }
    EXPECT_NEAR(ticks, 600, 2);
}

TEST(TickSchedule, LeavesMissedTicksOut) {
    TickSchedule schedule;
    const auto period = TickSchedule::PeriodOf(50.0);
    Time now{1h};
    (void)schedule.NextDelay(now, period);
    now += 1s;
    EXPECT_EQ(schedule.NextDelay(now, period), 0ms);
    EXPECT_EQ(schedule.NextDelay(now, period), 20ms);
}

TEST(TickSchedule, FollowsADisplayThatIsFaster) {
    TickSchedule schedule;
    Time now{1h};
    (void)schedule.NextDelay(now, TickSchedule::PeriodOf(24.0));
    EXPECT_LE(schedule.NextDelay(now, TickSchedule::PeriodOf(144.0)), 8ms);
}

TEST(TickSchedule, ReadsARateThatNoDisplayHasAsSixty) {
    for (const double rate : {0.0, -1.0, 1.0, 1e6}) {
        EXPECT_EQ(TickSchedule::PeriodOf(rate), TickSchedule::PeriodOf(60.0)) << rate;
    }
}

}  // namespace
}  // namespace Corvanta::Host
