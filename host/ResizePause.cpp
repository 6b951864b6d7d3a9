#include "host/ResizePause.h"

#include <utility>

namespace Corvanta::Host {
namespace {

constexpr std::chrono::milliseconds kStill{200};

}  // namespace

bool ResizePause::Begin(Clock::time_point now) {
    return !std::exchange(lastChange_, now).has_value();
}

bool ResizePause::TakeEnd(Clock::time_point now) {
    if (!lastChange_ || now < *lastChange_ + kStill) return false;
    lastChange_.reset();
    return true;
}

}  // namespace Corvanta::Host
