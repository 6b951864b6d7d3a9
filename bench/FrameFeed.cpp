#include "bench/FrameFeed.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace Corvanta::Bench {
namespace {

constexpr std::chrono::seconds kLongestWait{10};

}  // namespace

FrameFeed::FrameFeed(FrameCallback& sink, const Testing::FrameSpec& spec)
    : sink_(&sink), frames_{Testing::MakeFrame(spec), Testing::MakeFrame(spec)} {}

bool FrameFeed::Deliver() {
    const auto& frame = frames_[next_];
    const long before = frame.use_count();
    (*sink_)(frame);
    if (frame.use_count() == before) return false;
    next_ = 1 - next_;
    return true;
}

void FrameFeed::AwaitReady() const {
    const auto& frame = frames_[1 - next_];
    const auto& previous = frames_[next_];
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    // The tile owns the new frame beside us, and has let go of the one before.
    while (frame.use_count() != 2 || previous.use_count() != 1) {
        if (std::chrono::steady_clock::now() > end) throw std::runtime_error("A frame was not taken up");
        std::this_thread::yield();
    }
}

}  // namespace Corvanta::Bench
