// One stream's frames, delivered into a tile's sink in turns, as a decoder hands them over. One thread. The
// sink is borrowed.
#pragma once

#include <memory>

#include "platform/VideoFrameBuffer.h"
#include "tests/fake_platform/TestFrames.h"

namespace Corvanta::Bench {

class FrameFeed final {
public:
    FrameFeed(FrameCallback& sink, const Testing::FrameSpec& spec);

    // The next frame arrives. False when the tile has refused it, as one does that nobody subscribes to.
    [[nodiscard]] bool Deliver();
    // Returns when the tile's worker has made the last delivered frame ready for the next tick. Throws
    // std::runtime_error when it never does.
    void AwaitReady() const;

private:
    FrameCallback* sink_;
    // In turns: the older one is free again when the newer one has taken its place.
    std::shared_ptr<VideoFrameBuffer> frames_[2];
    int next_ = 0;
};

}  // namespace Corvanta::Bench
