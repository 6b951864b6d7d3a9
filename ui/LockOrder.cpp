#include "ui/LockOrder.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace Corvanta::UI {
namespace {

struct HeldMutex {
    const void* mutex;
    LockRank rank;
    // A recursive one is given back as often as it was taken.
    int times;
};

// One of each rank, and what was had by try beside them.
constexpr size_t kMostHeld = 16;

struct HeldMutexes {
    std::array<HeldMutex, kMostHeld> entries;
    size_t count;
};

// Constants from the start, so that a thread's first lock initialises nothing.
thread_local constinit HeldMutexes held{};
thread_local constinit uint64_t waits = 0;
// The first of the entries that count for the order.
thread_local constinit size_t firstCounted = 0;

[[nodiscard]] const char* NameOf(LockRank rank) {
    switch (rank) {
        case LockRank::Host: return "Host";
        case LockRank::Remote: return "Remote";
        case LockRank::Local: return "Local";
        case LockRank::View: return "View";
        case LockRank::Grid: return "Grid";
        case LockRank::Tile: return "Tile";
        case LockRank::Drawings: return "Drawings";
        case LockRank::DrawingSource: return "DrawingSource";
        case LockRank::Canvas: return "Canvas";
        case LockRank::Leaf: return "Leaf";
    }
    return "unknown";
}

[[nodiscard]] HeldMutex* Find(const void* mutex) {
    for (size_t i = 0; i < held.count; ++i) {
        if (held.entries[i].mutex == mutex) return &held.entries[i];
    }
    return nullptr;
}

// Straight to the stream: the logger has locks of its own.
[[noreturn]] void End(const char* doing, const char* what, const char* beside, const char* other) {
    std::fprintf(stderr, "Lock order violated: %s%s%s%s\n", doing, what, beside, other);
    std::abort();
}

}  // namespace

uint64_t LockWaitsOfThisThread() {
    return waits;
}

OtherRoomScope::OtherRoomScope() : outer_(firstCounted) {
    firstCounted = held.count;
}

OtherRoomScope::~OtherRoomScope() {
    firstCounted = outer_;
}

namespace LockOrder {

void CheckTurn(const void* mutex, LockRank rank, bool repeatable) {
    if (Find(mutex) != nullptr) {
        if (!repeatable) End("taking ", NameOf(rank), " while holding the same one", "");
        return;
    }
    for (size_t i = firstCounted; i < held.count; ++i) {
        const LockRank other = held.entries[i].rank;
        if (rank <= other) End("taking ", NameOf(rank), " while holding ", NameOf(other));
    }
}

void OnTaken(const void* mutex, LockRank rank) {
    if (HeldMutex* again = Find(mutex)) {
        ++again->times;
        return;
    }
    if (held.count == kMostHeld) End("taking ", NameOf(rank), " while holding too many others", "");
    held.entries[held.count] = {mutex, rank, 1};
    ++held.count;
}

void OnGivenBack(const void* mutex) {
    HeldMutex* given = Find(mutex);
    if (given == nullptr) End("giving back what this thread does not hold", "", "", "");
    if (--given->times > 0) return;
    --held.count;
    *given = held.entries[held.count];
}

void CountWait() {
    ++waits;
}

}  // namespace LockOrder
}  // namespace Corvanta::UI
