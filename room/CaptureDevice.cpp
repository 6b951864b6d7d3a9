// The room follows the capture device that the user has chosen.
#include "platform/MediaManager.h"
#include "room/VideoRoomView.h"

namespace Corvanta::Room {

int VideoRoomView::GetCaptureIndex() {
    const std::scoped_lock lock(localLock_);
    return captureIndex_;
}

void VideoRoomView::OnCaptureChanged(int captureIndex) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (localCameraTile_ == nullptr) return;
    captureIndex_ = captureIndex;
    FrameCallback* const sink = localCameraTile_->GetFrameSink().get();
    const std::string running = MediaManager_IsLocalVideoSourceRunning(captureIndex);
    Video::VideoFrame* const clone = CloneOf(localCameraTile_->GetStreamId());
    const bool spotlit = clone != nullptr && spotlightTile_ == clone;
    // While the old source's name is still known.
    if (clone != nullptr) DropClone();
    if (running.empty() || running != localStreamId_) {
        MediaManager_UnregisterCallback(localStreamId_, sink);
        localStreamId_ = running;
    }
    if (!running.empty()) MediaManager_RegisterCallback(localStreamId_, sink);
    toolbar_.SetVideoNone(captureIndex < 0);
    if (spotlit) SetSpotlightClone(*localCameraTile_);
}

}  // namespace Corvanta::Room
