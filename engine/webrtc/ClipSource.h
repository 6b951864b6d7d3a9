// Feeds a pipeline with the pictures and the tone of a generated clip, through two elements of its own. Made
// and destroyed on the engine's thread; the elements ask for data on their streaming threads, which must have
// ended before the object goes.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>

#include "engine/webrtc/ClipScene.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

class ClipSource final {
public:
    explicit ClipSource(std::unique_ptr<const ClipScene> shownScene);
    ~ClipSource();
    ClipSource(const ClipSource&) = delete;
    ClipSource& operator=(const ClipSource&) = delete;

    // The clip's time when the pipeline's is zero; to be set before it runs.
    void SetStart(std::chrono::nanoseconds start) { startNs = start.count(); }

    [[nodiscard]] const GstCaps* PictureCaps() const { return pictureCaps.get(); }

    // Elements with one source pad each, to be added to the pipeline. Null when GStreamer lacks them.
    [[nodiscard]] GstElement* Video() const { return video.get(); }
    [[nodiscard]] GstElement* Audio() const { return audio.get(); }

private:
    void PushPicture();
    void PushSound();

    const std::unique_ptr<const ClipScene> scene;
    std::atomic<int64_t> startNs = 0;
    GstOwned<GstCaps> pictureCaps;
    GstOwned<GstElement> video, audio;
    GstOwned<GstBufferPool> pool;
    // Touched by the one streaming thread of each element.
    guint64 nextPicture = 0;
    guint64 nextSound = 0;
    double tonePhase = 0;
};

}  // namespace Corvanta::Engine
