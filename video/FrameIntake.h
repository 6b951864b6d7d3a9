// Where a tile's frames come in. Media threads call OnFrame through the tile's sink; the intake is shared
// with every sink, so a sink that is called after its tile has gone finds a closed intake and drops the
// frame. Nothing here waits for the renderer.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/VideoFrameBuffer.h"
#include "ui/LockOrder.h"
#include "video/BoundedQueue.h"

namespace Corvanta::Video {

class FrameIntake final {
public:
    using Frame = std::shared_ptr<VideoFrameBuffer>;

    // A frame of the stream. Serves a pending still request first, whatever else holds; then drops the frame
    // if the video is off or three frames wait already, else queues it. No frame, and the first one after
    // Close, is dropped with a log line.
    void OnFrame(const Frame& frame);

    // The next frame is written to the path, which the engine completes by its format. whenWritten: called on
    // the media thread once the file is there; not when it could not be written. Any thread.
    void RequestStillExport(const std::string& path, std::function<void()> whenWritten = {});

    // Off drops incoming frames. Any thread; a frame may slip through at the moment of a change.
    void SetVideoEnabled(bool enabled) { videoEnabled_.store(enabled); }
    [[nodiscard]] bool IsVideoEnabled() const { return videoEnabled_.load(); }

    // The next frame; nothing when none came in time or the intake was woken. The tile's worker only.
    [[nodiscard]] std::optional<Frame> Take(std::chrono::milliseconds timeout) {
        return queue_.PopFor(timeout);
    }
    void Wake() { queue_.Wake(); }

    // The tile goes: queued frames are released, later ones dropped.
    void Close();

private:
    // A smoothing buffer: the oldest frames win.
    static constexpr std::size_t kQueueCapacity = 3;

    BoundedQueue<Frame, kQueueCapacity> queue_;
    std::atomic<bool> videoEnabled_{true};
    std::atomic<bool> exportPending_{false};
    std::atomic<bool> closed_{false};
    std::atomic<bool> lateFrameReported_{false};

    UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> exportMutex_;
    // guards: exportPath_, whenWritten_
    std::string exportPath_ = "videoFrame";
    std::function<void()> whenWritten_;
};

}  // namespace Corvanta::Video
