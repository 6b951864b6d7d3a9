#include "video/FrameIntake.h"

#include "platform/WebRTC.h"

namespace Corvanta::Video {

void FrameIntake::OnFrame(const Frame& frame) {
    if (frame == nullptr || closed_.load()) return;
    if (exportPending_.exchange(false)) {
        std::string path;
        {
            const std::scoped_lock lock(exportMutex_);
            path = exportPath_;
        }
        WebRTC_ExportStillImageFromVideoFrameBuffer(path, frame);
    }
    if (!videoEnabled_.load()) return;
    queue_.TryPush(frame);
}

void FrameIntake::RequestStillExport(const std::string& path) {
    {
        const std::scoped_lock lock(exportMutex_);
        exportPath_ = path;
    }
    exportPending_.store(true);
}

void FrameIntake::Close() {
    closed_.store(true);
    queue_.Close();
}

}  // namespace Corvanta::Video
