#include "engine/common/CallTracker.h"

#include <algorithm>

namespace Corvanta::Engine {

namespace {

thread_local int callDepth = 0;

}  // namespace

CallTracker::Call::Call(CallTracker& tracker) : owner(nullptr) {
    const std::lock_guard lock(tracker.stateMutex);
    if (tracker.closed) return;
    tracker.callers.push_back(std::this_thread::get_id());
    owner = &tracker;
    ++callDepth;
}

CallTracker::Call::~Call() {
    if (owner == nullptr) return;
    --callDepth;
    const std::lock_guard lock(owner->stateMutex);
    owner->callers.erase(std::find(owner->callers.begin(), owner->callers.end(), std::this_thread::get_id()));
    // Under the lock: the waiter may destroy the tracker as soon as it sees the list empty.
    owner->callEnded.notify_all();
}

bool CallTracker::Close() {
    std::unique_lock lock(stateMutex);
    closed = true;
    const auto self = std::this_thread::get_id();
    callEnded.wait(lock, [&] {
        return std::all_of(callers.begin(), callers.end(), [&](auto id) { return id == self; });
    });
    return callers.empty();
}

bool CallTracker::InsideCall() {
    return callDepth > 0;
}

}  // namespace Corvanta::Engine
