// The local user's camera in the open room: one of the machine's cameras, the test picture, or what the
// host lets stand for the camera (a file, a URI or a generated clip). Its sound is never heard.
//
// The library stops the device and has it, or another one, brought back whenever the user changes a device,
// and keeps the tile meanwhile. So a stop does not take the source out of the room: it goes on under the same
// id, its borrowed sinks stay registered, and only the sink that the library gave away for the announcement
// goes, because the tile registers its own one when the device is back and would otherwise get each picture
// twice. The library is told that the source is gone only where that device can never come back; another one
// is announced anew.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "engine/common/EngineLoop.h"
#include "engine/mediamanager/SinkList.h"
#include "engine/transport/LocalFeed.h"
#include "engine/webrtc/MappedPicture.h"
#include "engine/webrtc/Playback.h"

namespace Corvanta::Engine {

class RoomCamera final : public std::enable_shared_from_this<RoomCamera> {
public:
    // Under which the media manager knows it, whichever device it is.
    static constexpr const char* kSourceId = "camera-0";

    // What plays for the device of an index; nothing where there is no such device. The engine's thread.
    using SourceMaker = std::function<std::optional<PlaybackSource>(int32_t index)>;

    // Starts with the device of that index, with none for a negative one. `whenChanged` is called on the
    // engine's thread when HasDevice may answer otherwise than before. Nothing of the library is called from
    // the moment on at which `roomIsClosing` is set.
    RoomCamera(EngineLoop& engineLoop, SourceMaker sourceMaker, int32_t index,
               const std::atomic<bool>& roomIsClosing, std::function<void()> whenChanged);

    // The engine's thread.

    // Brings the playback to where the state wants it, and announces what is to be announced.
    void Follow();
    // At the end of the room: on return no picture is on its way to a sink and none follows.
    void End();

    // Any thread, from memory.

    // Whether there is a device that brings pictures, or is about to.
    [[nodiscard]] bool HasDevice() const;
    [[nodiscard]] bool IsRunning() const;
    // Whether the device of that index does.
    [[nodiscard]] bool IsRunning(int32_t index) const;
    // The device that the next Start is to bring.
    void Choose(int32_t index);
    // Nothing happens where it does not run. Waits for a picture that is on its way to the announcement's
    // sink.
    void Stop();
    // Nothing happens where it runs, or where no device is chosen.
    void Start();
    // Opens the device again, with the properties that hold by then.
    void Reopen();

    SinkList sinks{"Own camera"};
    // Where the pictures go that others are to see; none while the video track is off.
    FeedOutlet outlet;

private:
    // Absent: the library does not know of it. Offered: it is to be announced.
    enum class State { Absent, Offered, Running, Stopped, Ended };

    void Deliver(const std::shared_ptr<const MappedPicture>& picture);
    void FollowLater();
    void OpenPlayback(int32_t index);
    void ClosePlayback();
    void Announce();
    void Lose();

    EngineLoop& loop;
    const SourceMaker makeSource;
    const std::atomic<bool>& isClosing;
    const std::function<void()> onChanged;

    mutable std::mutex stateMutex;  // guards: everything down to announcedSink
    State state;
    int32_t chosen;
    // The device that runs, is stopped, or is to be announced.
    int32_t current;
    // That came to its end and is not tried again before another one was.
    int32_t lost;
    // The announcement's, to know it in `sinks`, which own it.
    FrameCallback* announcedSink = nullptr;

    std::atomic<bool> delivers = false;

    // The engine's thread alone.
    std::shared_ptr<Playback> playback;
    int32_t openIndex;
    bool isOfferPending = false;
};

}  // namespace Corvanta::Engine
