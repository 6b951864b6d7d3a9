// The local camera's adaptation: the full rate while this client shows the camera as its main video, the
// initial one while it is a thumbnail.
#include <mutex>
#include <string>

#include "platform/VideoFrameAdaptation.h"

namespace Corvanta {

namespace {

class AdaptiveVideoSourceManager final : public AdaptiveVideoSourceManagerInterface {
public:
    AdaptiveVideoSourceManager(std::string camera, const VideoFrameAdaptation& adaptation, bool isEnabled)
        : cameraStreamId(std::move(camera)), initial(adaptation), enabled(isEnabled) {}

    // Participants do not yet tell each other what they show, so no message changes the adaptation.
    void OnDataChannelMessage(const DataChannelMessage&) override {}

    void OnRemoteStreamRemoved(const std::string& streamId) override {
        const std::lock_guard lock(stateMutex);
        if (mainStreamId == streamId) mainStreamId.clear();
    }

    void SetMainStream(const std::string& streamId) override {
        const std::lock_guard lock(stateMutex);
        if (mainStreamId != streamId) mainStreamId = streamId;
    }

    [[nodiscard]] VideoFrameAdaptation GetAdaptation() override {
        const std::lock_guard lock(stateMutex);
        VideoFrameAdaptation adaptation = initial;
        // Zero leaves the rate to the camera's own target, which is its best.
        if (enabled && !cameraStreamId.empty() && mainStreamId == cameraStreamId) adaptation.bitrate = 0;
        return adaptation;
    }

private:
    const std::string cameraStreamId;
    const VideoFrameAdaptation initial;
    const bool enabled;
    std::mutex stateMutex;  // guards: mainStreamId
    std::string mainStreamId;
};

}  // namespace

std::shared_ptr<AdaptiveVideoSourceManagerInterface> AdaptiveVideoSourceManagerInterface::Create(
    const std::string& streamId, const VideoFrameAdaptation& adaptation, bool enabled) {
    return std::make_shared<AdaptiveVideoSourceManager>(streamId, adaptation, enabled);
}

}  // namespace Corvanta
