#include "host/PictureWait.h"

namespace Corvanta::Host {
namespace {

// A frame's way from the engine to the window, with room for a busy machine.
constexpr std::chrono::milliseconds kTimeToDraw{300};
constexpr std::chrono::milliseconds kLongestExtraWait{10000};

}  // namespace

bool PictureWait::IsOver(Clock::time_point now, bool allPicturesThere) {
    if (!allPicturesThere) {
        picturesSince_.reset();
    } else if (!picturesSince_) {
        picturesSince_ = now;
    }
    if (now < start_ + runFor_) {
        return false;
    }
    const bool drawn = picturesSince_ && now >= *picturesSince_ + kTimeToDraw;
    return drawn || now >= start_ + runFor_ + kLongestExtraWait;
}

}  // namespace Corvanta::Host
