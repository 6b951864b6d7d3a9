#include "tests/fake_platform/CallLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "tests/fake_platform/AllocationCounter.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;

enum class Kind : int { Third = 3 };

TEST(CallLog, KeepsCallsInTheOrderInWhichTheyCame) {
    CallLog log;
    log.Record("First");
    log.Record("Second", 7, true);
    log.Record("First", "text");
    EXPECT_THAT(log.Names(), ElementsAre("First", "Second", "First"));
    EXPECT_EQ(log.All()[1], (Call{"Second", {"7", "true"}}));
    EXPECT_EQ(log.Count("First"), 2U);
    EXPECT_THAT(log.NamesAmong({"Second"}), ElementsAre("Second"));
}

TEST(CallLog, WritesEveryKindOfArgumentAsText) {
    CallLog log;
    const char* const noText = nullptr;
    const void* const noPointer = nullptr;
    log.Record("Call", -1, 2U, 0.5F, std::string("s"), noText, noPointer, Kind::Third,
               std::function<void()>(), std::function<void()>([] {}), ColorSpace(LegacyColorSpace::BT2020));
    EXPECT_THAT(log.All()[0].arguments, ElementsAre("-1", "2", "0.5", "s", "null", "null", "3", "empty",
                                                    "set", "BT2020_NCL LIMITED BT2020 SMPTEST2084"));
}

TEST(CallLog, RunsTheHookAfterTheCallIsWrittenDown) {
    CallLog log;
    size_t countInHook = 0;
    log.OnCall("Call", [&](const Call& call) { countInHook = log.Count(call.name); });
    log.Record("Call");
    EXPECT_EQ(countInHook, 1U);
}

TEST(CallLog, LetsTheNumberOfAThrowingCallOut) {
    CallLog log;
    log.ThrowFrom("Call", 42);
    try {
        log.Record("Call");
        FAIL() << "nothing was thrown";
    } catch (int number) {
        EXPECT_EQ(number, 42);
    }
    EXPECT_EQ(log.Count("Call"), 1U);
}

TEST(CallLog, WaitsForACallOfAnotherThread) {
    CallLog log;
    std::thread other([&] { log.Record("Call"); });
    EXPECT_TRUE(log.WaitFor("Call", 1));
    other.join();
    EXPECT_FALSE(log.WaitFor("Call", 2, std::chrono::milliseconds{1}));
}

TEST(AllocationCounter, CountsThisThreadsAllocationsOnly) {
    AllocationCounter::Start();
    std::thread other([] { auto uncounted = std::make_unique<int>(1); });
    const size_t ofThread = AllocationCounter::Stop();
    other.join();

    AllocationCounter::Start();
    auto one = std::make_unique<int>(1);
    auto two = std::make_unique<int[]>(2);
    EXPECT_EQ(AllocationCounter::Stop(), 2U);
    EXPECT_GT(ofThread, 0U);
}

TEST(AllocationCounter, LeavesOutWhatTheRecordersAllocate) {
    AllocationCounter::Start();
    Calls().Record("A call with a name that is too long for a short string",
                   "and an argument just as long as it");
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    Calls().Reset();
}

}  // namespace
}  // namespace Corvanta::Testing
