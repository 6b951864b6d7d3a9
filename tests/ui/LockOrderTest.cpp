#include "ui/LockOrder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <future>
#include <mutex>
#include <thread>

namespace Corvanta::UI {
namespace {

constexpr bool kChecked = true;

template <LockRank kRank>
using Once = OrderedMutex<std::mutex, kRank, kChecked>;
template <LockRank kRank>
using Repeatable = OrderedMutex<std::recursive_mutex, kRank, kChecked>;

// A thread that holds the mutex as long as this lives.
template <typename Mutex>
class Holder final {
public:
    explicit Holder(Mutex& mutex)
        : thread_([this, &mutex] {
              const std::scoped_lock lock(mutex);
              taken_.set_value();
              letGo_.get_future().wait();
          }) {
        taken_.get_future().wait();
    }
    ~Holder() {
        letGo_.set_value();
        thread_.join();
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

private:
    std::promise<void> taken_;
    std::promise<void> letGo_;
    std::thread thread_;
};

// As if another thread always held it and let go at once when somebody waits.
class ContendedMutex final {
public:
    void lock() {}
    [[nodiscard]] bool try_lock() { return false; }
    void unlock() {}
};

// Another thread's try, as the holder of a recursive mutex can always take it.
template <typename Mutex>
[[nodiscard]] bool IsFree(Mutex& mutex) {
    return std::async(std::launch::async,
                      [&mutex] {
                          const std::unique_lock lock(mutex, std::try_to_lock);
                          return lock.owns_lock();
                      })
        .get();
}

class LockOrderDeath : public testing::Test {
protected:
    // Other threads may live in the test program; a fork alone would not take them along.
    LockOrderDeath() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST(LockOrder, AllowsEveryRankInItsTurn) {
    Repeatable<LockRank::Remote> remote;
    Repeatable<LockRank::Local> local;
    Once<LockRank::View> view;
    Repeatable<LockRank::Grid> grid;
    Once<LockRank::Tile> tile;
    Once<LockRank::Leaf> leaf;
    {
        const std::scoped_lock first(remote);
        const std::scoped_lock second(local);
        const std::scoped_lock third(view);
        const std::scoped_lock fourth(grid);
        const std::scoped_lock fifth(tile);
        const std::scoped_lock sixth(leaf);
        EXPECT_FALSE(IsFree(remote));
        EXPECT_FALSE(IsFree(leaf));
    }
    EXPECT_TRUE(IsFree(remote));
    EXPECT_TRUE(IsFree(leaf));
}

TEST(LockOrder, ForgetsALockThatWasGivenBack) {
    Once<LockRank::Tile> tile;
    Once<LockRank::Grid> grid;
    tile.lock();
    tile.unlock();
    const std::scoped_lock lock(grid);
    EXPECT_FALSE(IsFree(grid));
}

TEST(LockOrder, TakesLocksBackInAnyOrder) {
    Once<LockRank::Remote> remote;
    Once<LockRank::Grid> grid;
    Once<LockRank::Tile> tile;
    remote.lock();
    grid.lock();
    remote.unlock();
    tile.lock();
    grid.unlock();
    tile.unlock();
    const std::scoped_lock lock(remote);
    EXPECT_FALSE(IsFree(remote));
}

TEST(LockOrder, HoldsNoThreadToWhatAnotherOneHas) {
    Once<LockRank::Tile> tile;
    Once<LockRank::Remote> remote;
    const Holder holder(tile);
    const std::scoped_lock lock(remote);
    EXPECT_FALSE(IsFree(remote));
}

TEST(LockOrder, LetsTheHolderOfARecursiveLockTakeItAgainUnderLaterOnes) {
    Repeatable<LockRank::Remote> remote;
    Once<LockRank::Tile> tile;
    remote.lock();
    tile.lock();
    remote.lock();
    remote.unlock();
    EXPECT_FALSE(IsFree(remote)) << "held once still";
    tile.unlock();
    remote.unlock();
    EXPECT_TRUE(IsFree(remote));
}

TEST(LockOrder, LetsATryGoAgainstTheOrder) {
    Repeatable<LockRank::Remote> remote;
    Once<LockRank::Tile> tile;
    const std::scoped_lock held(tile);
    const std::unique_lock tried(remote, std::try_to_lock);
    EXPECT_TRUE(tried.owns_lock());
    EXPECT_FALSE(IsFree(remote));
}

TEST(LockOrder, KeepsNothingInMindOfATryThatFailed) {
    Once<LockRank::Tile> tile;
    Once<LockRank::Grid> grid;
    const Holder holder(tile);
    EXPECT_FALSE(tile.try_lock());
    const std::scoped_lock lock(grid);
    EXPECT_FALSE(IsFree(grid));
}

TEST_F(LockOrderDeath, EndsTheProcessOnALockOfAnEarlierRank) {
    Repeatable<LockRank::Remote> remote;
    Once<LockRank::Tile> tile;
    EXPECT_DEATH(
        {
            tile.lock();
            remote.lock();
        },
        "^Lock order violated: taking Remote while holding Tile\n");
}

TEST_F(LockOrderDeath, EndsTheProcessOnASecondLockOfTheSameRank) {
    Once<LockRank::Leaf> one;
    Once<LockRank::Leaf> other;
    EXPECT_DEATH(
        {
            one.lock();
            other.lock();
        },
        "^Lock order violated: taking Leaf while holding Leaf\n");
}

TEST_F(LockOrderDeath, EndsTheProcessRatherThanWaitForItself) {
    Once<LockRank::Tile> tile;
    EXPECT_DEATH(
        {
            tile.lock();
            tile.lock();
        },
        "^Lock order violated: taking Tile while holding the same one\n");
}

TEST_F(LockOrderDeath, CountsWhatWasHadByTryAsHeld) {
    Once<LockRank::Tile> tile;
    Once<LockRank::Grid> grid;
    EXPECT_DEATH(
        {
            if (tile.try_lock()) grid.lock();
        },
        "^Lock order violated: taking Grid while holding Tile\n");
}

TEST_F(LockOrderDeath, SeesAnEarlierRankBeneathALaterOneThatIsHeld) {
    Once<LockRank::Remote> remote;
    Once<LockRank::Tile> tile;
    Once<LockRank::Local> local;
    EXPECT_DEATH(
        {
            tile.lock();
            if (remote.try_lock()) local.lock();
        },
        "^Lock order violated: taking Local while holding Tile\n");
}

TEST_F(LockOrderDeath, StaysHeldUntilARecursiveLockIsGivenBackAsOftenAsTaken) {
    Repeatable<LockRank::Grid> grid;
    Once<LockRank::Remote> remote;
    EXPECT_DEATH(
        {
            grid.lock();
            grid.lock();
            grid.unlock();
            remote.lock();
        },
        "^Lock order violated: taking Remote while holding Grid\n");
}

TEST(LockOrder, CountsNoWaitForAFreeLockOrATry) {
    Repeatable<LockRank::Remote> remote;
    Once<LockRank::Tile> tile;
    const Holder holder(tile);
    const uint64_t before = LockWaitsOfThisThread();
    {
        const std::scoped_lock lock(remote);
        const std::scoped_lock again(remote);
        EXPECT_FALSE(tile.try_lock());
    }
    EXPECT_EQ(LockWaitsOfThisThread(), before);
}

TEST(LockOrder, CountsEachLockThatHadToWait) {
    OrderedMutex<ContendedMutex, LockRank::Tile, kChecked> contended;
    const uint64_t before = LockWaitsOfThisThread();
    for (int i = 0; i < 3; ++i) {
        const std::scoped_lock lock(contended);
    }
    EXPECT_EQ(LockWaitsOfThisThread(), before + 3);
}

TEST(LockOrder, CountsTheWaitsOfEachThreadApart) {
    OrderedMutex<ContendedMutex, LockRank::Tile, kChecked> contended;
    const uint64_t before = LockWaitsOfThisThread();
    const auto theirs = std::async(std::launch::async, [&contended] {
                            const std::scoped_lock lock(contended);
                            return LockWaitsOfThisThread();
                        }).get();
    EXPECT_EQ(theirs, 1U);
    EXPECT_EQ(LockWaitsOfThisThread(), before);
}

TEST(LockOrder, IsTheBareMutexWhenItIsNotChecked) {
    using Bare = OrderedMutex<std::mutex, LockRank::Remote, false>;
    static_assert(sizeof(Bare) == sizeof(std::mutex));
    static_assert(sizeof(Once<LockRank::Remote>) == sizeof(std::mutex));
    Bare remote;
    Bare other;
    const Holder holder(other);
    const uint64_t before = LockWaitsOfThisThread();
    const std::scoped_lock lock(remote);
    EXPECT_FALSE(other.try_lock());
    EXPECT_EQ(LockWaitsOfThisThread(), before);
}

}  // namespace
TEST(LockOrder, CountsAnotherRoomsLocksApart) {
    Repeatable<LockRank::Host> host;
    Repeatable<LockRank::Remote> first;
    Repeatable<LockRank::Local> firstLocal;
    Repeatable<LockRank::Remote> second;
    const std::scoped_lock outside(host, first, firstLocal);
    {
        const OtherRoomScope other;
        const std::scoped_lock inside(second);
        const std::scoped_lock again(first);
    }
    EXPECT_DEATH(second.lock(), "^Lock order violated: taking Remote while holding Remote\n");
}

}  // namespace Corvanta::UI
