// How busy the processors are, from the kernel's counters of time. The functions: plain values. The meter:
// any thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace Corvanta::Engine {

// Ticks of all processors together since the machine's start.
struct ProcessorTimes {
    uint64_t total = 0;
    uint64_t busy = 0;
    // Of this process.
    uint64_t own = 0;
};

// Of /proc/stat and /proc/self/stat.
[[nodiscard]] std::optional<ProcessorTimes> ParseProcessorTimes(const std::string& systemStat,
                                                                const std::string& processStat);

// "12.5%", from 0 to 100; kNoFigure when no time has passed.
[[nodiscard]] std::string UsageText(uint64_t usedTicks, uint64_t totalTicks);

class ProcessorMeter final {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    using Reader = std::function<std::optional<ProcessorTimes>()>;

    struct Usage {
        std::string system;
        std::string own;
    };

    ProcessorMeter(Reader timesReader, Clock steadyClock);

    // Usage between the last two readings. Reads anew only after a while, so that those who ask one after the
    // other get one figure, and none over a moment.
    [[nodiscard]] Usage Get();

private:
    const Reader reader;
    const Clock clock;
    std::mutex mutex;  // guards: everything below
    std::optional<ProcessorTimes> last;
    std::chrono::steady_clock::time_point lastTime;
    Usage usage;
};

}  // namespace Corvanta::Engine
