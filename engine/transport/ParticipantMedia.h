// What comes from one participant's stream, whatever carries it: a file that plays, or a connection to
// another program. Used on the engine's thread, where nothing else is said.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "engine/webrtc/MappedPicture.h"

namespace Corvanta::Engine {

// Of about the last second.
struct ParticipantFigures {
    // Bits a second: what comes from the stream, and what goes to it.
    double receivedRate = 0;
    double sentRate = 0;
    // Milliseconds; nothing where there is no connection to measure.
    std::optional<double> jitterMs = {};
    std::optional<double> roundTripMs = {};
    // Share of the packets that were lost on their way here, 0 to 1.
    double lossShare = 0;
    // Pictures a second, and the size of the last one in pixels.
    double frameRate = 0;
    int width = 0, height = 0;
    // Of the pictures; empty where none is known.
    std::string codec = {};
};

// What of a stream is wanted. The rest need be neither fetched nor decoded.
struct MediaTracks {
    bool audio = true;
    bool video = true;
    bool data = true;

    bool operator==(const MediaTracks&) const = default;
};

// On the engine's thread, but for the picture.
struct ParticipantMediaEvents {
    // On a streaming thread.
    std::function<void(const std::shared_ptr<const MappedPicture>&)> picture;
    // Mean square of a piece of sound, measured ahead of the gain. Some ten a second.
    std::function<void(double)> loudness;
    // It is known that there is no picture, at least until another connection is made.
    std::function<void()> withoutPicture;
    // Its publisher has switched its sound on or off.
    std::function<void(bool isOn)> soundPublished = {};
    // The connection was lost, or is back.
    std::function<void(bool lost)> connection;
    // The way for texts is open, or is no longer. Each opening is one of a new channel.
    std::function<void(bool isOpen)> channel;
    // A text of the participant's, joined again where it came in pieces.
    std::function<void(std::string text)> text;
    // Nothing comes any more, for good.
    std::function<void()> ended;
};

class ParticipantMedia {
public:
    ParticipantMedia() = default;
    // Any thread, when it was closed or never opened.
    virtual ~ParticipantMedia() = default;
    ParticipantMedia(const ParticipantMedia&) = delete;
    ParticipantMedia& operator=(const ParticipantMedia&) = delete;

    // Makes ready what Play is to start; called once. No event comes before it is called.
    virtual void Open(ParticipantMediaEvents events) = 0;
    // Pictures may come from now on: there is somebody who takes them.
    virtual void Play() = 0;
    // Linear; 0 is silence. After Open.
    virtual void SetGain(double linear) = 0;
    // What is to be fetched and decoded; all of it until this is called. After Open.
    virtual void SetTracks(const MediaTracks& tracks) = 0;
    // Connects or opens it anew, after a wait that grows when it fails again and again.
    virtual void Restart(bool immediately) = 0;
    // For good: on return no event is in progress on another thread and none follows. Not inside an event.
    virtual void Close() = 0;

    // Any thread, but one at a time; from memory.
    [[nodiscard]] virtual ParticipantFigures Figures() = 0;
};

}  // namespace Corvanta::Engine
