// One participant of the open room: what the library may ask and switch on any thread, and the sinks that its
// pictures go to.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "engine/mediamanager/DataChannel.h"
#include "engine/mediamanager/SinkList.h"
#include "engine/transport/TextBacklog.h"
#include "engine/transport/Transport.h"
#include "engine/webrtc/MappedPicture.h"

namespace Corvanta::Engine {

class RoomParticipant final {
public:
    // `joinNumber`: the larger the later it joined.
    RoomParticipant(std::uint64_t joinNumber, ParticipantDescription description)
        : number(joinNumber),
          id(std::move(description.id)),
          name(std::move(description.name)),
          memberId(description.memberId.empty() ? id : std::move(description.memberId)),
          type(description.type),
          isExternalSource(description.isExternalSource),
          reportsItself(description.reportsItself),
          media(std::move(description.media)),
          sinks(name),
          earlyTexts(name) {}

    // Hands a picture to the sinks unless the video is switched off. The media's streaming thread.
    void Deliver(const std::shared_ptr<const MappedPicture>& picture) {
        if (!videoEnabled || !videoPublished) return;
        const std::size_t taken = sinks.Deliver([&] {
            auto frame = MakeFrame(picture);
            if (pictures == 0) NoteFirst(frame);
            return frame;
        });
        if (taken > 0) ++pictures;
    }
    // Whether the library may still have no picture of it although there will be one. What the library does
    // with a picture it does on threads of its own, and it is sure to be done with the first one only when it
    // has let go of it for another.
    [[nodiscard]] bool IsStillToBeShown() const {
        if (hasNoPicture || !videoEnabled || !videoPublished) return false;
        const std::lock_guard lock(firstMutex);
        return !hasFirst || !first.expired();
    }

    // The linear volume with which the sound is heard, by everything but the group's factor.
    [[nodiscard]] double Volume() const { return audioEnabled && Speaks() ? volume.load() : 0.0; }
    // Whether any sound comes from it.
    [[nodiscard]] bool Speaks() const { return audioPublished && !muted; }
    // What the media is to bring. Sound also where this listener has turned it off, because who speaks is
    // told by it; and one picture in any case (see hasPicture).
    [[nodiscard]] MediaTracks WantedTracks() const {
        return {.audio = Speaks(),
                .video = (videoEnabled && videoPublished) || !hasPicture,
                .data = dataPublished};
    }

    const std::uint64_t number;
    const std::string id;
    const std::string name;
    const std::string memberId;
    const StreamType type;
    const bool isExternalSource;
    const bool reportsItself;
    const std::shared_ptr<ParticipantMedia> media;
    SinkList sinks;

    // Switched by this listener, and for all.
    std::atomic<bool> audioEnabled = true, audioPublished = true;
    // By a host of the room; nobody here switches the microphone on again.
    std::atomic<bool> muted = false;
    std::atomic<bool> videoEnabled = true, videoPublished = true;
    std::atomic<bool> dataPublished = true;
    std::atomic<double> volume = 1.0;
    // Its sound belongs to the group of the streams.
    std::atomic<bool> soundsAsStream = false;
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
    // Its connection, as it was told last.
    bool isLost = false;
    // When the library learned of it.
    std::chrono::steady_clock::time_point enteredAt = {};
    bool hasChannel = false;
    DataChannel channel;
    // What it said before the library could make anything of it.
    TextBacklog earlyTexts;

private:
    void NoteFirst(const std::shared_ptr<VideoFrameBuffer>& frame) {
        const std::lock_guard lock(firstMutex);
        if (!std::exchange(hasFirst, true)) first = frame;
    }

    mutable std::mutex firstMutex;  // guards: everything below
    std::weak_ptr<VideoFrameBuffer> first;
    bool hasFirst = false;
};

}  // namespace Corvanta::Engine
