// The local user's camera in the embedded room: a file, a URI or a generated clip stands for the device, and
// its sound is never heard.
//
// The library stops the device and has it brought back whenever the user changes a device, and keeps the tile
// meanwhile. So a stop does not take the source out of the room: it goes on under the same id, its borrowed
// sinks stay registered, and only the sink that the library gave away for the announcement goes, because the
// tile registers its own one when the device is back and would otherwise get each picture twice. The library
// is told that the source is gone only where it can never come back.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "engine/common/EngineLoop.h"
#include "engine/mediamanager/SinkList.h"
#include "engine/webrtc/MappedPicture.h"
#include "engine/webrtc/Playback.h"

namespace Corvanta::Engine {

class RoomCamera final : public std::enable_shared_from_this<RoomCamera> {
public:
    // Under which the media manager knows it, and the index of the device.
    static constexpr const char* kSourceId = "camera-0";
    static constexpr int32_t kCaptureIndex = 0;

    RoomCamera(EngineLoop& engineLoop, PlaybackSource playedSource);

    // The engine's thread.

    // Opens the source and holds it at its first picture. `whenEnded` is called on the engine's thread,
    // inside the playback, when the source can never be played again.
    void Open(std::function<void()> whenEnded);
    // Announces it to the library and starts it. False while the library has no room for it.
    [[nodiscard]] bool Offer();
    // For good: on return no picture is on its way to a sink and none follows.
    void End();

    // Any thread, from memory.

    [[nodiscard]] bool IsRunning() const { return state == State::Running; }
    [[nodiscard]] bool HasEnded() const { return state == State::Ended; }
    // Nothing happens where it does not run, and where it was not stopped. Stop waits for a picture that is
    // on its way to the announcement's sink.
    void Stop();
    void Start();

    SinkList sinks{"Own camera"};

private:
    enum class State { Offered, Running, Stopped, Ended };

    void Deliver(const std::shared_ptr<const MappedPicture>& picture);
    // Brings the playback to where the state wants it. The engine's thread.
    void Follow();
    void FollowLater();

    EngineLoop& loop;
    const PlaybackSource source;
    std::atomic<State> state = State::Offered;
    // The announcement's, to know it in `sinks`, which own it.
    std::atomic<FrameCallback*> announcedSink = nullptr;

    // The engine's thread alone.
    std::shared_ptr<Playback> playback;
    bool isOpen = false;
};

}  // namespace Corvanta::Engine
