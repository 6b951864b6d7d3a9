// Who else is in the open room and how to reach them: brings the participants, and takes what the local user
// sends and publishes. The room owns one. Used on the engine's thread, where nothing else is said.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/transport/LocalFeed.h"
#include "engine/transport/ParticipantMedia.h"
#include "engine/webrtc/SoundMixer.h"
#include "platform/Connections.h"
#include "platform/VideoFrameAdaptation.h"

namespace Corvanta::Engine {

// One stream of somebody else's: a camera, or what is shared beside it.
struct ParticipantDescription {
    // The stream's id, the same for all in the room: marks are drawn on streams under it.
    std::string id;
    // Of its publisher, UTF-8.
    std::string name;
    // Whose stream it is; empty where it is that member's only one.
    std::string memberId = {};
    StreamType type = StreamType::Camera;
    // It comes from a program that is no participant's client.
    bool isExternalSource = false;
    // Its own program tells the room service how its connection does, so nobody else has to.
    bool reportsItself = false;
    std::shared_ptr<ParticipantMedia> media = {};
};

// How the room hears of what happens. The engine's thread, with no lock held, from Start to Stop.
struct TransportEvents {
    // One of the two, once: the local user is in the room, or cannot be, with one line for the user. Whoever
    // is there already may be told before, and is opened after. Nothing of the library is called ahead of
    // it.
    std::function<void()> entered;
    std::function<void(const std::string& problem)> failed;

    // One whose id is in the room already is left out.
    std::function<void(ParticipantDescription)> joined;
    // For good. Not inside an event of that one's media, which is closed by this.
    std::function<void(const std::string& streamId, const std::string& reason)> left;

    // The way to the others broke, and whether it is tried again.
    std::function<void(bool willRetry)> dropped;
    // The way to the others is there again.
    std::function<void()> restored = {};
    // The connection on which the local user's camera goes out was lost, or is back. Left out where each
    // participant has one of its own, which tells of itself.
    std::function<void(bool lost)> ownConnection = {};
    // Another one has switched the local user's microphone off for all.
    std::function<void()> muted;
};

// What the local user's own camera stream carries at the moment.
struct LocalTracks {
    bool audio = true;
    bool video = true;

    bool operator==(const LocalTracks&) const = default;
};

// Absent ones stay as they are.
struct TrackSwitches {
    std::optional<bool> audio;
    std::optional<bool> video;
    std::optional<bool> data;
};

// Of a way on which one of the local user's own streams goes out.
struct OwnStreamFigures {
    StreamType type = StreamType::Camera;
    ParticipantFigures figures = {};
};

struct RestartRequest {
    LocalTracks tracks;
    bool immediately = false;
};

class Transport {
public:
    Transport() = default;
    virtual ~Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    // Enters the room. Called once.
    virtual void Start(TransportEvents events) = 0;
    // Leaves it; the loop does not run any more, so what must still go out goes out before this returns. On
    // return no event is in progress and none follows. Called once, also when the room could not be entered.
    virtual void Stop() = 0;

    // Any thread, from memory: under which the others know the local user; empty while nobody knows. The ids
    // of the local user's streams are made of it (see StreamNames.h).
    [[nodiscard]] virtual std::string OwnId() const = 0;

    // To everybody, in the order of the calls. For those who cannot be reached at the moment it is kept.
    virtual void SendText(std::string text) = 0;

    // The local user's camera with the microphone, from the moment of entering; and another stream, one of
    // each kind. The feed takes what is to be sent; null where nobody is interested in it.
    [[nodiscard]] virtual std::shared_ptr<LocalFeed> PublishCamera(const LocalTracks& tracks) = 0;
    [[nodiscard]] virtual std::shared_ptr<LocalFeed> PublishStream(StreamType type,
                                                                   const std::string& displayName) = 0;
    virtual void Unpublish(StreamType type) = 0;
    // What is off need be neither encoded nor sent, and the others may know.
    virtual void SetCameraTracks(const LocalTracks& tracks) = 0;
    // Bits a second of outbound video.
    virtual void SetOutboundBitrate(uint32_t bitsPerSecond) = 0;
    // Size and bit rate of the camera's pictures as the room shows them at the moment.
    virtual void SetCameraAdaptation(const VideoFrameAdaptation& adaptation) = 0;

    // Any thread, from memory: of the ways on which nothing but the local user's own streams goes.
    [[nodiscard]] virtual std::vector<OwnStreamFigures> OwnFigures() const = 0;

    // For one of the local user's own streams: switches parts of it for all who receive it, or connects it
    // again. Unknown ids are ignored.
    virtual void Configure(const std::string& streamId, const TrackSwitches& switches) = 0;
    virtual void RequestRestart(const std::string& streamId, const RestartRequest& request) = 0;

    // For a stream of somebody else's: switches the sound off for all, or has that one leave the room.
    virtual void Mute(const std::string& streamId) = 0;
    virtual void Remove(const std::string& streamId) = 0;
};

// Makes the transport of a room on its loop, with the mixer in which the others are heard.
using TransportMaker =
    std::function<std::unique_ptr<Transport>(EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer)>;

}  // namespace Corvanta::Engine
