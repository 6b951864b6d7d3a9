// Decides when a run of limited time is over. A plain value; the host's thread owns it.
#pragma once

#include <chrono>
#include <optional>

namespace Corvanta::Host {

class PictureWait final {
public:
    using Clock = std::chrono::steady_clock;

    PictureWait(Clock::time_point start, std::chrono::milliseconds runFor) : start_(start), runFor_(runFor) {}

    // To be asked again and again. True once the run's time has passed and a picture has been there long
    // enough to have been drawn; without one, some seconds later.
    [[nodiscard]] bool IsOver(Clock::time_point now, bool pictureThere);

private:
    Clock::time_point start_;
    std::chrono::milliseconds runFor_;
    std::optional<Clock::time_point> pictureSince_;
};

}  // namespace Corvanta::Host
