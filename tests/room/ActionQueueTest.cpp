// Long actions run one at a time and in order on a thread of their own, and whoever asks for them never
// waits.
#include "room/ActionQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <semaphore>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/video/Eventually.h"
#include "tests/video/Gate.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

class ActionQueueTest : public FakePlatformTest {
protected:
    // Everything handed over before has returned.
    void Await() {
        std::binary_semaphore done{0};
        queue->Run([&done] { done.release(); });
        done.acquire();
    }

    std::unique_ptr<ActionQueue> queue = std::make_unique<ActionQueue>();
};

TEST_F(ActionQueueTest, RunsActionsInOrderOnOneOtherThread) {
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    for (int i = 0; i < 100; ++i) {
        queue->Run([&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
    }
    Await();
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(order[static_cast<size_t>(i)], i);
    for (const std::thread::id thread : threads) EXPECT_EQ(thread, threads.front());
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST_F(ActionQueueTest, StartsTheSecondOnceTheFirstHasReturnedAndReturnsAtOnceItself) {
    Gate first;
    std::atomic<bool> firstReturned{false};
    std::atomic<bool> secondSawIt{false};
    queue->Run([&] {
        first.Pass();
        firstReturned = true;
    });
    ASSERT_TRUE(first.WaitForArrival());
    queue->Run([&] { secondSawIt = firstReturned.load(); });
    // Here although the first still runs.
    EXPECT_FALSE(firstReturned);
    first.Open();
    Await();
    EXPECT_TRUE(secondSawIt);
}

TEST_F(ActionQueueTest, AnActionMayHandOverAnother) {
    std::vector<int> order;
    std::binary_semaphore done{0};
    queue->Run([&] {
        queue->Run([&] {
            order.push_back(2);
            done.release();
        });
        order.push_back(1);
    });
    done.acquire();
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST_F(ActionQueueTest, AnActionThatFailsKeepsNoOtherFromRunning) {
    bool ran = false;
    queue->Run([] { throw std::runtime_error("no dialog"); });
    queue->Run([] { throw 7; });
    queue->Run([&ran] { ran = true; });
    Await();
    EXPECT_TRUE(ran);
    EXPECT_EQ(Fake().LogsOf(4), (std::vector<std::string>{"An action of the toolbar failed: no dialog",
                                                          "An action of the toolbar failed"}));
}

TEST_F(ActionQueueTest, DropsWhatHasNotStartedWhenItCloses) {
    Gate first;
    std::atomic<int> ran{0};
    queue->Run([&] {
        first.Pass();
        ++ran;
    });
    ASSERT_TRUE(first.WaitForArrival());
    queue->Run([&] { ran += 10; });
    queue->Close();
    queue->Run([&] { ran += 100; });
    first.Open();
    queue.reset();
    EXPECT_EQ(ran, 1);
}

TEST_F(ActionQueueTest, ClosesAgainAndWithoutEverHavingRun) {
    queue->Close();
    queue->Close();
    queue->Run([] { ADD_FAILURE(); });
    queue.reset();
}

TEST_F(ActionQueueTest, WaitsForARunningActionAtItsEnd) {
    Gate gate;
    std::atomic<bool> returned{false};
    queue->Run([&] {
        gate.Pass();
        returned = true;
    });
    ASSERT_TRUE(gate.WaitForArrival());
    std::thread opener([&] {
        // Long enough for an end that does not wait to be over.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        gate.Open();
    });
    queue.reset();
    EXPECT_TRUE(returned);
    opener.join();
}

TEST_F(ActionQueueTest, MayBeDestroyedByItsOwnAction) {
    std::binary_semaphore done{0};
    auto shared = std::make_shared<ActionQueue>();
    Gate gate;
    bool later = false;
    shared->Run([&, owner = shared]() mutable {
        gate.Pass();
        owner.reset();
        done.release();
    });
    ASSERT_TRUE(gate.WaitForArrival());
    shared->Run([&later] { later = true; });
    shared.reset();
    gate.Open();
    done.acquire();
    EXPECT_FALSE(later);
}

// The queue's thread may get the id of the one that made the queue.
TEST_F(ActionQueueTest, MayBeDestroyedByItsOwnActionWhenItsMakerHasEnded) {
    std::shared_ptr<ActionQueue> shared;
    std::thread([&] { shared = std::make_shared<ActionQueue>(); }).join();
    std::binary_semaphore done{0};
    Gate gate;
    shared->Run([&, owner = shared]() mutable {
        gate.Pass();
        owner.reset();
        done.release();
    });
    ASSERT_TRUE(gate.WaitForArrival());
    shared.reset();
    gate.Open();
    done.acquire();
}

TEST_F(ActionQueueTest, TakesActionsFromManyThreads) {
    constexpr int kThreads = 8;
    constexpr int kEach = 200;
    int ran = 0;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j < kEach; ++j) queue->Run([&ran] { ++ran; });
        });
    }
    for (std::thread& thread : threads) thread.join();
    Await();
    EXPECT_EQ(ran, kThreads * kEach);
}

}  // namespace
}  // namespace Corvanta::Room
