// One participant of the embedded room: what the library may ask and switch on any thread, and the sinks that
// its pictures go to.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>

#include "engine/mediamanager/DataChannel.h"
#include "engine/mediamanager/SinkList.h"
#include "engine/webrtc/MappedPicture.h"
#include "engine/webrtc/Playback.h"

namespace Corvanta::Engine {

class RoomParticipant final {
public:
    RoomParticipant(std::size_t position, std::string streamId, std::string displayName)
        : index(position), id(std::move(streamId)), name(std::move(displayName)), sinks(name) {}

    // Hands a picture to the sinks unless the video is switched off. The playback's streaming thread.
    void Deliver(const std::shared_ptr<const MappedPicture>& picture) {
        if (!videoEnabled || !videoPublished) return;
        if (sinks.Deliver([&] { return MakeFrame(picture); }) > 0) ++pictures;
    }

    // The linear volume with which the sound is heard, by everything but the group's factor.
    [[nodiscard]] double Volume() const { return audioEnabled && Speaks() ? volume.load() : 0.0; }
    // Whether any sound comes from it.
    [[nodiscard]] bool Speaks() const { return audioPublished && !muted; }

    const std::size_t index;
    const std::string id;
    const std::string name;
    SinkList sinks;

    // Switched by this listener, and for all.
    std::atomic<bool> audioEnabled = true, audioPublished = true;
    // By a host of the room; nobody here switches the microphone on again.
    std::atomic<bool> muted = false;
    std::atomic<bool> videoEnabled = true, videoPublished = true;
    std::atomic<bool> dataPublished = true;
    std::atomic<double> volume = 1.0;
    std::atomic<bool> isExternalSource = false;
    // Of the last piece of sound: the root of its mean square, 0 to 1.
    std::atomic<double> loudness = 0.0;

    // Pictures that sinks have taken; and whether there is any at all, which a listener who has switched the
    // video off must learn too, or nobody would ever be shown.
    std::atomic<std::size_t> pictures = 0;
    std::atomic<bool> hasPicture = false;
    std::atomic<bool> hasNoPicture = false;
    // Whether the library knows of it; and whether it has gone for good.
    std::atomic<bool> hasEntered = false;
    std::atomic<bool> hasLeft = false;

    // The engine's thread alone.
    std::shared_ptr<Playback> playback;
    DataChannel channel;
};

}  // namespace Corvanta::Engine
