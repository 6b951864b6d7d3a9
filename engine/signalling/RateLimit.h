// How much may come in a time: a bucket that fills steadily and from which everything that comes takes its
// share. Told the time, which never goes back. One thread.
#pragma once

#include <chrono>
#include <optional>

namespace Corvanta::Engine {

// Messages that a decent peer stays below. The pieces of a long text come faster than that: count whole
// texts, and pieces that belong to none.
constexpr double kMessagesPerSecond = 1000.0;

class RateLimit final {
public:
    using Clock = std::chrono::steady_clock;

    // At most `burst` at once, `perSecond` in the long run. Both are positive.
    RateLimit(double perSecond, double burst);

    // Takes the share if it is there, for what can be refused.
    [[nodiscard]] bool Allow(Clock::time_point now, double share = 1.0);
    // Takes the share in any case, for what has come already. Returns how long to wait until nothing is owed.
    [[nodiscard]] std::chrono::milliseconds Charge(Clock::time_point now, double share);

private:
    void Fill(Clock::time_point now);

    const double rate;
    const double capacity;
    double level;
    std::optional<Clock::time_point> filled;
};

}  // namespace Corvanta::Engine
