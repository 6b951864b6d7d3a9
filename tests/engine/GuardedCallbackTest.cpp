#include "engine/common/GuardedCallback.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {
namespace {

TEST(GuardedCallback, CallsTheFunctionThatWasSetLast) {
    GuardedCallback<int(int)> callback;
    EXPECT_EQ(callback.Call(1), std::nullopt);
    callback.Set([](int value) { return value + 1; });
    EXPECT_EQ(callback.Call(1), 2);
    callback.Set([](int value) { return value + 10; });
    EXPECT_EQ(callback.Call(1), 11);
    callback.Set({});
    EXPECT_EQ(callback.Call(1), std::nullopt);
}

TEST(GuardedCallback, WaitsForTheOldFunctionOnAnotherThread) {
    GuardedCallback<void()> callback;
    std::atomic<bool> isInside = false;
    std::atomic<bool> isOver = false;
    callback.Set([&] {
        isInside = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        isOver = true;
    });
    std::thread caller([&] { callback.Call(); });
    EXPECT_TRUE(Eventually([&] { return isInside.load(); }));
    callback.Set({});
    EXPECT_TRUE(isOver);
    caller.join();
}

TEST(GuardedCallback, LetsAFunctionReplaceItself) {
    GuardedCallback<void()> callback;
    int calls = 0;
    callback.Set([&] {
        ++calls;
        callback.Set({});
    });
    EXPECT_TRUE(callback.Call());
    EXPECT_FALSE(callback.Call());
    EXPECT_EQ(calls, 1);
}

TEST(GuardedCallback, LetsGoOfWhatTheOldFunctionHeld) {
    GuardedCallback<void()> callback;
    auto held = std::make_shared<int>(1);
    callback.Set([held] {});
    EXPECT_EQ(held.use_count(), 2);
    callback.Set({});
    EXPECT_EQ(held.use_count(), 1);
}

TEST(GuardedCallback, TellsWhetherThisThreadIsInsideACall) {
    GuardedCallback<void()> callback;
    bool wasInside = false;
    callback.Set([&] { wasInside = CallTracker::InsideCall(); });
    callback.Call();
    EXPECT_TRUE(wasInside);
    EXPECT_FALSE(CallTracker::InsideCall());
}

}  // namespace
}  // namespace Corvanta::Engine
