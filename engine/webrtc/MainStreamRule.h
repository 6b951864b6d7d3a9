// How well the local camera is sent: at its full rate while somebody shows it as the main video, here or in
// another program, and at the initial one while it is a thumbnail for all. The programs tell each other over
// the data channels what they show. Any thread.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "platform/VideoFrameAdaptation.h"

namespace Corvanta::Engine {

class MainStreamRule final : public AdaptiveVideoSourceManagerInterface {
public:
    // `tell` sends a text to all others; it is called with no lock held and must not block.
    MainStreamRule(std::string cameraStreamId, const VideoFrameAdaptation& adaptation, bool isEnabled,
                   std::function<void(const std::string& text)> tell);

    // Tells the own main stream to somebody who is heard of for the first time, who came after it was told.
    void OnDataChannelMessage(const DataChannelMessage& message) override;
    void OnRemoteStreamRemoved(const std::string& streamId) override;
    void SetMainStream(const std::string& streamId) override;
    [[nodiscard]] VideoFrameAdaptation GetAdaptation() override;

private:
    // People in a room are fewer. Whoever comes beyond does not count.
    static constexpr std::size_t kMostOthers = 256;

    const std::string camera;
    const VideoFrameAdaptation initial;
    const bool enabled;
    const std::function<void(const std::string&)> tellOthers;

    std::mutex stateMutex;  // guards: everything below
    std::string mainStream;
    // By their stream ids: whether they show the camera.
    std::map<std::string, bool> others;
};

}  // namespace Corvanta::Engine
