#include "engine/signalling/RateLimit.h"

#include <algorithm>
#include <cmath>

namespace Corvanta::Engine {

RateLimit::RateLimit(double perSecond, double burst) : rate(perSecond), capacity(burst), level(burst) {}

bool RateLimit::Allow(Clock::time_point now, double share) {
    Fill(now);
    if (level < share) return false;
    level -= share;
    return true;
}

std::chrono::milliseconds RateLimit::Charge(Clock::time_point now, double share) {
    Fill(now);
    level -= share;
    if (level >= 0) return std::chrono::milliseconds::zero();
    return std::chrono::milliseconds(
        static_cast<std::chrono::milliseconds::rep>(std::ceil(-level * 1000.0 / rate)));
}

void RateLimit::Fill(Clock::time_point now) {
    if (filled) {
        const double seconds = std::max(0.0, std::chrono::duration<double>(now - *filled).count());
        level = std::min(capacity, level + seconds * rate);
    }
    filled = now;
}

}  // namespace Corvanta::Engine
