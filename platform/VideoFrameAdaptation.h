// The link between the room and the local camera's picture size and bit rate. The engine owns the logic, the
// room feeds it what it sees.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Api.h"
#include "platform/DataChannelMessage.h"

namespace Corvanta {

// Plain record of three words; the first two are the engine's own and are only passed through.
struct VideoFrameAdaptation {
    // By how much the source's size is divided.
    uint32_t scaleDown = 1;
    // Lines below which the picture is not made smaller.
    uint32_t minimumHeight = 240;
    // Bits a second; 0 leaves the choice to the camera's own target.
    uint32_t bitrate = 786432;

    bool operator==(const VideoFrameAdaptation&) const = default;
};
static_assert(sizeof(VideoFrameAdaptation) == 12);

// One per room. Operations may be called on any thread and must not block: SetMainStream runs in every
// drawing. Their order is part of the binary interface.
class CORVANTA_PLATFORM_API AdaptiveVideoSourceManagerInterface {
public:
    // Every message of every data channel.
    virtual void OnDataChannelMessage(const DataChannelMessage& message) = 0;
    virtual void OnRemoteStreamRemoved(const std::string& streamId) = 0;
    // Id of the stream that this client shows as its main video; empty for none.
    virtual void SetMainStream(const std::string& streamId) = 0;
    // What the local camera is to do now.
    [[nodiscard]] virtual VideoFrameAdaptation GetAdaptation() = 0;

    // Makes the manager for the local camera's stream, starting with `adaptation`; `enabled` false makes one
    // that keeps to it. Never null.
    static std::shared_ptr<AdaptiveVideoSourceManagerInterface> Create(const std::string& streamId,
                                                                       const VideoFrameAdaptation& adaptation,
                                                                       bool enabled);

protected:
    ~AdaptiveVideoSourceManagerInterface() = default;
};

}  // namespace Corvanta
