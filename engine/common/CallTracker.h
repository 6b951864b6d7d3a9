// Counts the calls into one callee that are in progress, so that whoever takes the callee away can wait for
// them. Any thread; no lock is held while a call runs.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace Corvanta::Engine {

class CallTracker {
public:
    // One call in progress, for as long as the object lives. Converts to false when the callee was closed and
    // must not be called.
    class Call {
    public:
        explicit Call(CallTracker& owner);
        ~Call();
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
        explicit operator bool() const { return owner != nullptr; }

    private:
        CallTracker* owner;
    };

    // No call starts any more. Waits for calls on other threads; a call on this thread, which is the one that
    // closes, is not waited for. Returns whether no call at all is left.
    bool Close();

    // Whether this thread is inside a call of any tracker, so that waiting for the engine's threads could
    // wait for itself.
    [[nodiscard]] static bool InsideCall();

private:
    std::mutex stateMutex;  // guards: everything below
    std::condition_variable callEnded;
    std::vector<std::thread::id> callers;
    bool closed = false;
};

}  // namespace Corvanta::Engine
