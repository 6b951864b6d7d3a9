#include "engine/webrtc/MainStreamRule.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "engine/webrtc/MainStreamMessage.h"
#include "platform/MediaManager.h"

namespace Corvanta::Engine {

MainStreamRule::MainStreamRule(std::string cameraStreamId, const VideoFrameAdaptation& adaptation,
                               bool isEnabled, std::function<void(const std::string& text)> tell)
    : camera(std::move(cameraStreamId)),
      initial(adaptation),
      enabled(isEnabled),
      tellOthers(std::move(tell)) {}

void MainStreamRule::OnDataChannelMessage(const DataChannelMessage& message) {
    const auto shown = ReadMainStream(message.text);
    if (!shown) return;
    std::string own;
    {
        const std::lock_guard lock(stateMutex);
        const bool isNew = !others.contains(message.senderId);
        if (isNew && others.size() >= kMostOthers) return;
        others[message.senderId] = *shown == camera;
        if (!isNew || mainStream.empty()) return;
        own = mainStream;
    }
    tellOthers(WriteMainStream(own));
}

void MainStreamRule::OnRemoteStreamRemoved(const std::string& streamId) {
    const std::lock_guard lock(stateMutex);
    if (mainStream == streamId) mainStream.clear();
    others.erase(streamId);
}

void MainStreamRule::SetMainStream(const std::string& streamId) {
    {
        const std::lock_guard lock(stateMutex);
        if (mainStream == streamId) return;
        mainStream = streamId;
    }
    tellOthers(WriteMainStream(streamId));
}

VideoFrameAdaptation MainStreamRule::GetAdaptation() {
    const std::lock_guard lock(stateMutex);
    VideoFrameAdaptation adaptation = initial;
    const bool isMain =
        mainStream == camera || std::ranges::any_of(others, [](const auto& other) { return other.second; });
    // Zero leaves the rate to the camera's own target, which is its best.
    if (enabled && !camera.empty() && isMain) adaptation.bitrate = 0;
    return adaptation;
}

}  // namespace Corvanta::Engine

namespace Corvanta {

std::shared_ptr<AdaptiveVideoSourceManagerInterface> AdaptiveVideoSourceManagerInterface::Create(
    const std::string& streamId, const VideoFrameAdaptation& adaptation, bool enabled) {
    return std::make_shared<Engine::MainStreamRule>(
        streamId, adaptation, enabled,
        [](const std::string& text) { MediaManager_SendDatachannelMessage(text.c_str()); });
}

}  // namespace Corvanta
