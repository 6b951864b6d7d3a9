#include "host/PictureWait.h"

namespace Corvanta::Host {
namespace {

// The room looks once a second for the speaker whose picture is the main video; then the frame's way to the
// window.
constexpr std::chrono::milliseconds kTimeToDraw{1500};
constexpr std::chrono::milliseconds kLongestExtraWait{10000};

}  // namespace

bool PictureWait::IsOver(Clock::time_point now, bool pictureThere) {
    if (!pictureThere) {
        pictureSince_.reset();
    } else if (!pictureSince_) {
        pictureSince_ = now;
    }
    if (now < start_ + runFor_) {
        return false;
    }
    const bool drawn = pictureSince_ && now >= *pictureSince_ + kTimeToDraw;
    return drawn || now >= start_ + runFor_ + kLongestExtraWait;
}

}  // namespace Corvanta::Host
