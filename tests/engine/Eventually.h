// Waiting for what other threads do, with an end.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace Corvanta::Engine {

// Generous, since tests also run under sanitizers on a busy machine; a condition that comes true ends the
// wait.
constexpr std::chrono::seconds kPatience{20};

inline bool Eventually(const std::function<bool()>& condition,
                       std::chrono::milliseconds patience = kPatience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace Corvanta::Engine
