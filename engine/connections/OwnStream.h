// One stream that the local user shares beside the camera: the screen, a window, a file, an address or a
// device. It lives from the moment in which the user starts it until it ends, for good.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/mediamanager/SinkList.h"
#include "engine/transport/Transport.h"
#include "engine/webrtc/MappedPicture.h"
#include "engine/webrtc/Playback.h"
#include "platform/Connections.h"

namespace Corvanta::Engine {

struct OwnStreamDescription {
    StreamType type = StreamType::Screenshare;
    // Shown to the others.
    std::string displayName;
    PlaybackSource source;
    // One window, of which the library is told when it closes.
    bool isWindow = false;
};

class OwnStream final {
public:
    // `mediaSourceId`: under which the media manager knows it.
    OwnStream(EngineLoop& engineLoop, OwnStreamDescription streamDescription, std::string mediaSourceId,
              std::shared_ptr<SoundMixer> roomMixer, Transport& roomTransport);

    // The engine's thread.

    // Opens the source and holds it at its first picture. `whenEnded` is called on the engine's thread,
    // inside the playback, when the source has ended or cannot be played.
    void Open(const std::function<void()>& whenEnded);
    // Announces it to the library, publishes it and starts it. False while the library has no room for it.
    [[nodiscard]] bool Offer();
    // Lets go of the source and takes the announcement back. The stream has ended before.
    void Close(bool tellLibrary);
    void SetVolume(double volume);

    // Any thread.

    // For good: on return no picture is on its way to a sink and none follows. False when it had ended
    // before.
    bool End();
    [[nodiscard]] bool HasEnded() const { return hasEnded; }
    [[nodiscard]] const std::string& SourceId() const { return sourceId; }

    const OwnStreamDescription description;
    SinkList sinks;

private:
    void Deliver(const std::shared_ptr<const MappedPicture>& picture);

    EngineLoop& loop;
    const std::string sourceId;
    const std::shared_ptr<SoundMixer> mixer;
    Transport& transport;
    FeedOutlet outlet;
    std::atomic<bool> hasEnded = false;

    // The engine's thread alone.
    std::shared_ptr<Playback> playback;
    bool isAnnounced = false;
    bool isPublished = false;
};

}  // namespace Corvanta::Engine
