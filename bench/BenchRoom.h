// A room on a real window with one remote participant as its main video, as a host would have it, on the fake
// platform. Main thread; the platform's recorder is switched off while it lives.
#pragma once

#include <memory>

#include "platform/VideoFrameBuffer.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/fake_platform/XWindow.h"

namespace Corvanta::Bench {

class BenchRoom final {
public:
    // Opens the window, starts the library and enters the room. The participant sends pictures like spec.
    // Throws std::runtime_error when there is no window or no room.
    BenchRoom(int width, int height, const Testing::FrameSpec& spec);
    ~BenchRoom();
    BenchRoom(const BenchRoom&) = delete;
    BenchRoom& operator=(const BenchRoom&) = delete;

    // A frame arrives; returns when the tile's worker has made it ready for the next tick.
    void BringFrame();

private:
    Testing::XWindow window_;
    FrameCallback* sink_ = nullptr;
    // Delivered in turns: the older one is free again when the newer one has taken its place.
    std::shared_ptr<VideoFrameBuffer> frames_[2];
    int next_ = 0;
};

}  // namespace Corvanta::Bench
