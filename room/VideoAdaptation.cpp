#include "room/VideoAdaptation.h"

#include <atomic>
#include <utility>

#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"

namespace Corvanta::Room {
namespace {

constexpr VideoFrameAdaptation kInitialAdaptation{1, 240, 786432};

}  // namespace

void VideoAdaptation::Start() {
    if (stopped_.load()) return;
    // Shared with the function below, which the media manager may be calling while the room goes.
    const auto targetBitrate = std::make_shared<std::atomic<uint32_t>>(WebRTC_GetLocalCameraTargetBitrate());
    const std::string streamId = Connections_GetLocalUserStreamID(StreamType::Camera);
    if (streamId.empty()) return;
    const auto manager = AdaptiveVideoSourceManagerInterface::Create(streamId, kInitialAdaptation, true);
    Replace(manager);
    MediaManager_SetLocalVideoFrameAdaptationCallback([manager, targetBitrate] {
        const VideoFrameAdaptation adaptation = manager->GetAdaptation();
        const uint32_t bitrate =
            adaptation.bitrate != 0 ? adaptation.bitrate : WebRTC_GetLocalCameraTargetBitrate();
        if (targetBitrate->exchange(bitrate) != bitrate) Connections_ConfigureOutboundBitrate(bitrate);
        return adaptation;
    });
    // A stop that came meanwhile may have found nothing to take away.
    if (stopped_.load()) Stop();
}

void VideoAdaptation::Stop() {
    stopped_.store(true);
    MediaManager_SetLocalVideoFrameAdaptationCallback({});
    Replace(nullptr);
}

void VideoAdaptation::SetMainStream(const std::string& streamId) {
    if (const auto manager = Manager()) manager->SetMainStream(streamId);
}

void VideoAdaptation::OnDataChannelMessage(const DataChannelMessage& message) {
    if (const auto manager = Manager()) manager->OnDataChannelMessage(message);
}

void VideoAdaptation::OnRemoteStreamRemoved(const std::string& streamId) {
    if (const auto manager = Manager()) manager->OnRemoteStreamRemoved(streamId);
}

void VideoAdaptation::Replace(std::shared_ptr<AdaptiveVideoSourceManagerInterface> manager) {
    const std::scoped_lock lock(mutex_);
    manager_.swap(manager);
}

std::shared_ptr<AdaptiveVideoSourceManagerInterface> VideoAdaptation::Manager() const {
    const std::scoped_lock lock(mutex_);
    return manager_;
}

}  // namespace Corvanta::Room
