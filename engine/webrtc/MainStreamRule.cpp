#include "engine/webrtc/MainStreamRule.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "platform/MediaManager.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;

constexpr const char* kType = "mainStream";
// Longer ones are not looked into: most messages are something else, and may be large.
constexpr std::size_t kLongestMessage = 1024;

}  // namespace

std::string WriteMainStream(const std::string& streamId) {
    const json message{{"type", kType}, {"message", {{"streamId", streamId}}}};
    return message.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<std::string> ReadMainStream(const std::string& text) {
    if (text.size() > kLongestMessage || text.find(kType) == std::string::npos) return std::nullopt;
    const json message = json::parse(text, nullptr, false);
    const auto type = message.is_object() ? message.find("type") : message.end();
    if (!message.is_object() || type == message.end() || *type != kType) return std::nullopt;
    const auto body = message.find("message");
    if (body == message.end() || !body->is_object()) return std::nullopt;
    const auto id = body->find("streamId");
    if (id == body->end() || !id->is_string()) return std::nullopt;
    return id->get<std::string>();
}

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
