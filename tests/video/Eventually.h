// Waits for what another thread brings about. Any thread.
#pragma once

#include <chrono>
#include <thread>

namespace Corvanta::Testing {

// Whether the condition came true before the deadline, which is only ever reached by a failing test.
template <typename Condition>
[[nodiscard]] bool Eventually(Condition&& condition,
                              std::chrono::milliseconds deadline = std::chrono::seconds{20}) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::microseconds{200});
    }
    return true;
}

}  // namespace Corvanta::Testing
