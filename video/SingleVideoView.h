// The smallest view: the picture of one local stream in a window of its own, without wall or bars. It draws
// only when there is something new to show. Host thread, but for the frames, which come in through the sink
// on any thread, and Shutdown, which waits for a drawing in progress.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "platform/VideoFrameBuffer.h"
#include "ui/AbstractView.h"
#include "ui/LockOrder.h"
#include "video/SinglePicture.h"
#include "video/VideoFrame.h"

namespace Corvanta::Video {

class SingleVideoView final : public UI::AbstractView {
public:
    SingleVideoView(int id, PictureFit fit);
    // Frees what Shutdown would have freed. No other thread may be inside the view.
    ~SingleVideoView();

    // The base's Init with its result. Whatever the result, the view may draw from here on, as far as it has
    // a window.
    int Init(void* nativeHandle, int width, int height);
    // Makes the frame that takes and shows the pictures; a frame that is there already goes.
    void CreateLocalFrame();
    // Destroys the frame, the renderer and the window. Init may run again afterwards.
    void Shutdown();

    // One drawing if a picture came or the size changed since the last; otherwise nothing, not even a
    // present. Never waits.
    void Render() override;

    // Kept for whoever asks for it.
    void SetFrameCallback(FrameCallback callback) { frameCallback_ = std::move(callback); }
    void SetStreamName(const std::string& name);
    // Off drops incoming frames and blackens the picture.
    void SetVideoEnabled(bool enabled);

    [[nodiscard]] bool IsWindowReady() const { return windowReady_; }
    [[nodiscard]] bool IsVideoEnabled() const { return videoEnabled_; }
    [[nodiscard]] const std::string& GetStreamName() const { return streamName_; }
    // Takes the frame's pictures; shared with whoever feeds it, whom it may outlive. Null without a frame.
    [[nodiscard]] std::shared_ptr<FrameCallback> GetFrameSink() const;
    // Null while none is set.
    [[nodiscard]] const FrameCallback* GetFrameCallback() const;

private:
    // Takes the frame out without its textures, to be destroyed where no lock is held: that joins its worker.
    [[nodiscard]] std::unique_ptr<VideoFrame> TakeFrame();
    void Draw();

    std::unique_ptr<VideoFrame> frame_;
    FrameCallback frameCallback_;
    std::string streamName_;
    bool windowReady_ = false;
    bool videoEnabled_ = true;
    mutable UI::OrderedMutex<std::mutex, UI::LockRank::View> drawMutex_;
    // guards: frame_, and the renderer while it is drawn on
    std::atomic<bool> active_{true};
    const PictureFit fit_;
};

}  // namespace Corvanta::Video
