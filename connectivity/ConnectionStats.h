// The newest connection figures of the local user: written by the media engine's thread, read by the panel
// and by its reports. Any thread.
#pragma once

#include <cstdint>
#include <mutex>

#include "ui/LockOrder.h"

namespace Corvanta::Connectivity {

struct ConnectionFigures {
    // Bytes a second.
    double uploadBytes = 0.0;
    double downloadBytes = 0.0;
    // Milliseconds.
    int32_t roundTripMs = 0;
    int32_t jitterMs = 0;
    // Counts the samples; 0 before the first one.
    uint64_t sample = 0;
};

class ConnectionStats final {
public:
    // A sample as the media engine reports it: rates in bits a second, times in milliseconds.
    void OnConnectionStats(int reserved0, double uploadRate, int reserved1, double downloadRate,
                           double reserved2, double jitterMs, double roundTripMs);
    [[nodiscard]] ConnectionFigures Get() const;

private:
    mutable UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> mutex_;
    // guards: figures_
    ConnectionFigures figures_;
};

}  // namespace Corvanta::Connectivity
