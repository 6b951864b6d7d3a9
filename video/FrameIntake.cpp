#include "video/FrameIntake.h"

#include <utility>

#include "platform/Logger.h"
#include "platform/WebRTC.h"

namespace Corvanta::Video {

void FrameIntake::OnFrame(const Frame& frame) {
    if (closed_.load()) {
        if (!lateFrameReported_.exchange(true)) LOG(2, "Dropped a video frame: its stream has gone");
        return;
    }
    if (frame == nullptr) {
        LOG(3, "Dropped a video frame: there is none");
        return;
    }
    if (exportPending_.exchange(false)) {
        std::string path;
        std::function<void()> whenWritten;
        {
            const std::scoped_lock lock(exportMutex_);
            path = exportPath_;
            whenWritten = whenWritten_;
        }
        if (WebRTC_ExportStillImageFromVideoFrameBuffer(path, frame) && whenWritten) whenWritten();
    }
    if (!videoEnabled_.load()) return;
    queue_.TryPush(frame);
}

void FrameIntake::RequestStillExport(const std::string& path, std::function<void()> whenWritten) {
    {
        const std::scoped_lock lock(exportMutex_);
        exportPath_ = path;
        whenWritten_ = std::move(whenWritten);
    }
    exportPending_.store(true);
}

void FrameIntake::Close() {
    closed_.store(true);
    queue_.Close();
}

}  // namespace Corvanta::Video
