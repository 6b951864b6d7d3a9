// Mutexes that know their place in the library's lock order. In debug and sanitizer builds each thread keeps
// in mind which of them it holds, and taking one against the order ends the process with a line on the
// standard error stream: the mistake shows on the first try, not when two threads meet at the wrong moment.
// In release it is the bare mutex. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <type_traits>

namespace Corvanta::UI {

// From the outermost to the innermost: a thread that holds one takes only later ones, and never two of the
// same rank.
enum class LockRank : int {
    Host,           // one host function at a time
    Remote,         // a room's remote streams
    Local,          // a room's local streams
    View,           // what a view draws with
    Grid,           // a wall
    Tile,           // a tile
    Drawings,       // which streams are drawn on
    DrawingSource,  // the marks on one stream
    Canvas,         // the drawing over one tile
    Leaf,           // some fields under which nothing else is called
};

#ifdef CORVANTA_LOCK_CHECK
inline constexpr bool kLockOrderChecked = true;
#else
inline constexpr bool kLockOrderChecked = false;
#endif

// How often this thread had to wait for a checked mutex because another thread held it.
[[nodiscard]] uint64_t LockWaitsOfThisThread();

// For making a room while this thread is inside another one: what it holds of the first counts no longer for
// the order, until the scope ends. Right only under the host's lock, since no thread without it takes locks
// of two rooms.
class OtherRoomScope final {
public:
    OtherRoomScope();
    ~OtherRoomScope();
    OtherRoomScope(const OtherRoomScope&) = delete;
    OtherRoomScope& operator=(const OtherRoomScope&) = delete;

private:
    const size_t outer_;
};

namespace LockOrder {

// Before a lock that may wait. repeatable: its holder may take it again.
void CheckTurn(const void* mutex, LockRank rank, bool repeatable);
void OnTaken(const void* mutex, LockRank rank);
void OnGivenBack(const void* mutex);
void CountWait();

}  // namespace LockOrder

// A standard mutex with a rank, for std::scoped_lock and std::unique_lock. The holder of a recursive one may
// take it again at any time. try_lock is never against the order, since it never waits.
template <typename Mutex, LockRank kRank, bool kChecked = kLockOrderChecked>
class OrderedMutex final {
public:
    OrderedMutex() = default;
    OrderedMutex(const OrderedMutex&) = delete;
    OrderedMutex& operator=(const OrderedMutex&) = delete;

    void lock() {
        if constexpr (kChecked) {
            LockOrder::CheckTurn(this, kRank, std::is_same_v<Mutex, std::recursive_mutex>);
            if (!mutex_.try_lock()) {
                LockOrder::CountWait();
                mutex_.lock();
            }
            LockOrder::OnTaken(this, kRank);
        } else {
            mutex_.lock();
        }
    }

    [[nodiscard]] bool try_lock() {
        const bool taken = mutex_.try_lock();
        if constexpr (kChecked) {
            if (taken) LockOrder::OnTaken(this, kRank);
        }
        return taken;
    }

    void unlock() {
        if constexpr (kChecked) LockOrder::OnGivenBack(this);
        mutex_.unlock();
    }

private:
    Mutex mutex_;
};

static_assert(sizeof(OrderedMutex<std::mutex, LockRank::Leaf>) == sizeof(std::mutex));
static_assert(sizeof(OrderedMutex<std::recursive_mutex, LockRank::Remote>) == sizeof(std::recursive_mutex));

}  // namespace Corvanta::UI
