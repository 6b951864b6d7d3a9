// A first-in first-out queue of fixed capacity between threads. Pushing never waits and never allocates: when
// the queue is full the new element is refused, so a consumer that stalls keeps the oldest ones.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <utility>

namespace Corvanta::Video {

template <typename T, std::size_t kCapacity>
class BoundedQueue final {
public:
    // False, and nothing stored, when the queue is full or closed.
    bool TryPush(T element) {
        {
            const std::scoped_lock lock(mutex_);
            if (closed_ || size_ == kCapacity) return false;
            ring_[(first_ + size_) % kCapacity] = std::move(element);
            ++size_;
        }
        changed_.notify_one();
        return true;
    }

    // Waits up to timeout for an element. Returns nothing on a time-out, at once when woken or closed.
    [[nodiscard]] std::optional<T> PopFor(std::chrono::milliseconds timeout) {
        std::unique_lock lock(mutex_);
        if (size_ == 0 && !closed_ && !woken_) {
            changed_.wait_for(lock, timeout, [this] { return size_ != 0 || closed_ || woken_; });
        }
        woken_ = false;
        if (size_ == 0) return std::nullopt;
        std::optional<T> front(std::exchange(ring_[first_], T{}));
        first_ = (first_ + 1) % kCapacity;
        --size_;
        return front;
    }

    // Makes the present or the next PopFor return although nothing was pushed.
    void Wake() {
        {
            const std::scoped_lock lock(mutex_);
            woken_ = true;
        }
        changed_.notify_one();
    }

    // Drops what is queued and refuses everything from here on.
    void Close() {
        std::array<T, kCapacity> dropped{};
        {
            const std::scoped_lock lock(mutex_);
            closed_ = true;
            size_ = 0;
            dropped.swap(ring_);
        }
        changed_.notify_all();
    }

private:
    std::mutex mutex_;
    // guards: everything below
    std::condition_variable changed_;
    std::array<T, kCapacity> ring_{};
    std::size_t first_ = 0;
    std::size_t size_ = 0;
    bool closed_ = false;
    bool woken_ = false;
};

}  // namespace Corvanta::Video
