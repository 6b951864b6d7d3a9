// A generated person of 640x360, painted 30 times a second on a thread of its own, each picture with the time
// at which it was finished. Made and destroyed on one thread.
#pragma once

#include <gst/video/video.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "engine/webrtc/ClipScene.h"
#include "engine/webrtc/MappedPicture.h"

namespace Corvanta::Bench {

class StampedClip final {
public:
    static constexpr int kWidth = 640, kHeight = 360, kRate = 30;

    // On the clip's thread; the buffer is borrowed.
    using Taker = std::function<void(GstBuffer* picture, const GstVideoInfo& info)>;

    // `look`: of the person.
    StampedClip(const std::string& name, std::size_t look, Taker pictureTaker);
    ~StampedClip();
    StampedClip(const StampedClip&) = delete;
    StampedClip& operator=(const StampedClip&) = delete;

    // How its colours are to be understood.
    [[nodiscard]] static ColorSpace Colors();

private:
    void Run() const;

    const std::unique_ptr<const Engine::ClipScene> scene;
    const Taker taker;
    std::atomic<bool> isRunning = true;
    std::thread thread;
};

}  // namespace Corvanta::Bench
