// A door that one thread waits at until another opens it: holds a worker in the middle of a step. Any thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace Corvanta::Testing {

class Gate final {
public:
    // Waits until the gate is open; gives up after a time that only a failing test reaches.
    void Pass() {
        std::unique_lock lock(mutex_);
        ++arrived_;
        changed_.notify_all();
        changed_.wait_for(lock, kDeadline, [this] { return open_; });
    }
    void Open() {
        const std::scoped_lock lock(mutex_);
        open_ = true;
        changed_.notify_all();
    }
    // Whether that many came to the gate, open or not, in time.
    [[nodiscard]] bool WaitForArrival(int count = 1) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, kDeadline, [&] { return arrived_ >= count; });
    }

private:
    static constexpr std::chrono::seconds kDeadline{20};

    std::mutex mutex_;
    // guards: everything below
    std::condition_variable changed_;
    bool open_ = false;
    int arrived_ = 0;
};

}  // namespace Corvanta::Testing
