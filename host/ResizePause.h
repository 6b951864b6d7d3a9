// When the room's own view of its window's size is out of the way: from the host's first change of it until
// it has stood still for a moment. A plain value; the host's thread owns it.
#pragma once

#include <chrono>
#include <optional>

namespace Corvanta::Host {

class ResizePause final {
public:
    using Clock = std::chrono::steady_clock;

    // The size has changed. True when the pause begins with this.
    [[nodiscard]] bool Begin(Clock::time_point now);
    // To be asked in every tick. True, once, when the pause is over.
    [[nodiscard]] bool TakeEnd(Clock::time_point now);

private:
    std::optional<Clock::time_point> lastChange_;
};

}  // namespace Corvanta::Host
