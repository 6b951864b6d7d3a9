#include "engine/signalling/RateLimit.h"

#include <gtest/gtest.h>

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

int AllowedAt(RateLimit& limit, RateLimit::Clock::time_point now, int tries) {
    int allowed = 0;
    for (int count = 0; count < tries; ++count) allowed += limit.Allow(now) ? 1 : 0;
    return allowed;
}

TEST(RateLimit, AllowsABurstAndThenItsRate) {
    RateLimit limit(kMessagesPerSecond, 200);
    RateLimit::Clock::time_point now;
    EXPECT_EQ(AllowedAt(limit, now, 5000), 200);
    now += milliseconds(100);
    EXPECT_EQ(AllowedAt(limit, now, 5000), 100);
    now += seconds(60);
    EXPECT_EQ(AllowedAt(limit, now, 5000), 200);
}

TEST(RateLimit, LetsWhoeverStaysBelowItPass) {
    RateLimit limit(kMessagesPerSecond, 1);
    RateLimit::Clock::time_point now;
    for (int count = 0; count < 5000; ++count) {
        EXPECT_TRUE(limit.Allow(now));
        now += std::chrono::microseconds(1001);
    }
}

TEST(RateLimit, TellsHowLongToWaitForWhatHasCome) {
    RateLimit limit(1000, 500);
    RateLimit::Clock::time_point now;
    EXPECT_EQ(limit.Charge(now, 500), milliseconds(0));
    EXPECT_EQ(limit.Charge(now, 250), milliseconds(250));
    now += milliseconds(100);
    EXPECT_EQ(limit.Charge(now, 0), milliseconds(150));
    EXPECT_FALSE(limit.Allow(now));
    now += milliseconds(151);
    EXPECT_EQ(limit.Charge(now, 0), milliseconds(0));
    EXPECT_TRUE(limit.Allow(now));
}

TEST(RateLimit, GivesNothingForATimeThatGoesBack) {
    RateLimit limit(1000, 10);
    RateLimit::Clock::time_point now{seconds(100)};
    EXPECT_EQ(AllowedAt(limit, now, 100), 10);
    EXPECT_EQ(AllowedAt(limit, now - seconds(50), 100), 0);
}

}  // namespace
}  // namespace Corvanta::Engine
