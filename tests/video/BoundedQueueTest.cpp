#include "video/BoundedQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace Corvanta::Video {
namespace {

using std::chrono::milliseconds;

// Longer than any test waits when it passes.
constexpr milliseconds kLong{20000};
constexpr milliseconds kNoTime{0};

TEST(BoundedQueue, KeepsTheOldestElementsAndRefusesTheOneTooMany) {
    BoundedQueue<int, 3> queue;
    EXPECT_TRUE(queue.TryPush(1));
    EXPECT_TRUE(queue.TryPush(2));
    EXPECT_TRUE(queue.TryPush(3));
    EXPECT_FALSE(queue.TryPush(4));
    EXPECT_EQ(queue.PopFor(kNoTime), 1);
    EXPECT_EQ(queue.PopFor(kNoTime), 2);
    EXPECT_EQ(queue.PopFor(kNoTime), 3);
    EXPECT_EQ(queue.PopFor(kNoTime), std::nullopt);
}

TEST(BoundedQueue, StaysInOrderWhenItRunsOverItsEnd) {
    BoundedQueue<int, 3> queue;
    for (int i = 0; i < 20; i += 2) {
        EXPECT_TRUE(queue.TryPush(i));
        EXPECT_TRUE(queue.TryPush(i + 1));
        EXPECT_EQ(queue.PopFor(kNoTime), i);
        EXPECT_EQ(queue.PopFor(kNoTime), i + 1);
    }
}

TEST(BoundedQueue, GivesUpWhenNothingComesInTime) {
    BoundedQueue<int, 3> queue;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(queue.PopFor(milliseconds{20}), std::nullopt);
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds{20});
}

TEST(BoundedQueue, APushEndsAWait) {
    BoundedQueue<int, 3> queue;
    std::optional<int> popped;
    std::thread consumer([&] { popped = queue.PopFor(kLong); });
    queue.TryPush(7);
    consumer.join();
    EXPECT_EQ(popped, 7);
}

TEST(BoundedQueue, AWakeEndsOneWaitAndNoMore) {
    BoundedQueue<int, 3> queue;
    queue.Wake();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(queue.PopFor(kLong), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, kLong);
    EXPECT_EQ(queue.PopFor(milliseconds{20}), std::nullopt);
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds{20});
}

TEST(BoundedQueue, AWakeHidesNoElement) {
    BoundedQueue<int, 3> queue;
    queue.TryPush(1);
    queue.Wake();
    EXPECT_EQ(queue.PopFor(kLong), 1);
}

TEST(BoundedQueue, LetsGoOfWhatWasTaken) {
    BoundedQueue<std::shared_ptr<int>, 3> queue;
    const auto element = std::make_shared<int>(1);
    queue.TryPush(element);
    EXPECT_EQ(queue.PopFor(kNoTime), element);
    EXPECT_EQ(element.use_count(), 1);
}

TEST(BoundedQueue, ClosingReleasesWhatIsQueuedAndRefusesTheRest) {
    BoundedQueue<std::shared_ptr<int>, 3> queue;
    const auto element = std::make_shared<int>(1);
    queue.TryPush(element);
    queue.TryPush(element);
    queue.Close();
    EXPECT_EQ(element.use_count(), 1);
    EXPECT_FALSE(queue.TryPush(element));
    EXPECT_EQ(element.use_count(), 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(queue.PopFor(kLong), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, kLong);
}

TEST(BoundedQueue, ClosingEndsAWait) {
    BoundedQueue<int, 3> queue;
    std::thread consumer([&] { EXPECT_EQ(queue.PopFor(kLong), std::nullopt); });
    const auto start = std::chrono::steady_clock::now();
    queue.Close();
    consumer.join();
    EXPECT_LT(std::chrono::steady_clock::now() - start, kLong);
}

TEST(BoundedQueue, KeepsEachProducersOrder) {
    constexpr int kProducers = 4;
    constexpr int kEach = 500;
    BoundedQueue<std::pair<int, int>, 3> queue;
    std::vector<std::thread> producers;
    for (int producer = 0; producer < kProducers; ++producer) {
        producers.emplace_back([&queue, producer] {
            for (int i = 0; i < kEach; ++i) {
                while (!queue.TryPush({producer, i})) std::this_thread::yield();
            }
        });
    }
    std::vector<int> next(kProducers, 0);
    for (int i = 0; i < kProducers * kEach; ++i) {
        const auto element = queue.PopFor(kLong);
        ASSERT_TRUE(element.has_value());
        EXPECT_EQ(element->second, next[static_cast<size_t>(element->first)]++);
    }
    for (std::thread& producer : producers) producer.join();
}

}  // namespace
}  // namespace Corvanta::Video
