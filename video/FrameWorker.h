// The thread of a tile that prepares frames: it takes them from the intake, brings their colours into what
// the output shows and, where SDL cannot show the planes, turns them into packed pixels. Neither a media
// thread nor the render thread ever converts. Made and destroyed on any thread but its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "platform/VideoFrameBuffer.h"
#include "platform/WebRTC.h"
#include "ui/HdrSdl.h"

namespace Corvanta::Video {

class FrameIntake;

using Frame = std::shared_ptr<VideoFrameBuffer>;

// Packed pixels, SDL's ARGB8888, rows tightly packed. Its memory is kept from frame to frame.
struct Raster {
    std::vector<uint32_t> pixels;

    [[nodiscard]] bool IsEmpty() const { return pixels.empty(); }
};

// A frame in the form in which it is uploaded.
struct PreparedFrame {
    Frame frame;
    // Shown instead of the frame's own planes when packed is set.
    Raster raster;
    bool packed = false;
};

// What the worker needs of its tile. Each call takes the tile's lock for a moment.
class FrameWorkerClient {
public:
    // A frame was taken from the intake. Returns the output that it is to be prepared for.
    virtual UI::DisplayTraits OnFrameTaken(const Frame& frame) = 0;
    // The frame to prepare once more because the output changed, and for which output; nothing when there is
    // none.
    virtual std::optional<std::pair<Frame, UI::DisplayTraits>> TakeFrameToPrepareAgain() = 0;
    // Installs the frame, handing the raster that it replaces back in prepared. When it was prepared for
    // another output than the present one nothing is installed, and the result is the output to prepare it
    // for.
    virtual std::optional<UI::DisplayTraits> Install(PreparedFrame& prepared,
                                                     const UI::DisplayTraits& display) = 0;
    // The frame that was taken, or was to be prepared again, comes to nothing.
    virtual void OnFrameGivenUp() = 0;

protected:
    ~FrameWorkerClient() = default;
};

// How planes of this frame are laid out; nothing for a frame without planes, or of another class than its
// type says.
[[nodiscard]] std::optional<UI::PlaneLayout> PlaneLayoutOf(const VideoFrameBuffer& frame);

class FrameWorker final {
public:
    FrameWorker(FrameIntake& intake, FrameWorkerClient& client);
    // Stops the thread, joins it and gives the converter back.
    ~FrameWorker();
    // Tells the thread to end, and refuses frames from here on. Any thread.
    void RequestStop();
    // The thread has nothing left to do, so that joining it does not wait for work. Any thread.
    [[nodiscard]] bool HasEnded() const { return ended_.load(); }
    // Stops the thread and joins it; later calls do nothing. The longest wait is for the frame in work.
    void Stop();

    FrameWorker(const FrameWorker&) = delete;
    FrameWorker& operator=(const FrameWorker&) = delete;

private:
    void Run();
    void Work();
    void PrepareAndInstall(const Frame& source, UI::DisplayTraits display);
    // False when the frame cannot be brought into the output's colours.
    [[nodiscard]] bool Prepare(const Frame& source, const UI::DisplayTraits& display);

    FrameIntake& intake_;
    FrameWorkerClient& client_;
    VideoFrameTransformer* transformer_;
    PreparedFrame prepared_;
    std::atomic<bool> running_{true};
    std::atomic<bool> ended_{false};
    std::thread thread_;
};

}  // namespace Corvanta::Video
