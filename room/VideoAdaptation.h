// The link between the local camera's bitrate and the room: it tells the engine what this client watches, and
// applies the bitrate that the engine answers with. Made on any thread; the operations are called from the
// tick and from media threads.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "platform/DataChannelMessage.h"
#include "platform/VideoFrameAdaptation.h"

namespace Corvanta::Room {

class VideoAdaptation final {
public:
    // Starts it for the local user's camera. Nothing happens when the user has no camera stream, and after
    // Stop.
    void Start();
    // The engine asks no more; later calls do nothing. For good: a camera that comes up while the room ends
    // must not leave a function behind.
    void Stop();

    void SetMainStream(const std::string& streamId);
    void OnDataChannelMessage(const DataChannelMessage& message);
    void OnRemoteStreamRemoved(const std::string& streamId);

private:
    void Replace(std::shared_ptr<AdaptiveVideoSourceManagerInterface> manager);
    [[nodiscard]] std::shared_ptr<AdaptiveVideoSourceManagerInterface> Manager() const;

    std::atomic<bool> stopped_{false};

    mutable std::mutex mutex_;
    // guards: manager_, which is handed out as a shared owner, so that no call into it is made under the lock
    std::shared_ptr<AdaptiveVideoSourceManagerInterface> manager_;
};

}  // namespace Corvanta::Room
