#include "engine/connections/RoomCamera.h"

#include <chrono>
#include <utility>

#include "engine/connections/TrackSettings.h"
#include "engine/mediamanager/MediaCallbacks.h"
#include "engine/webrtc/CameraChoice.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// How often the camera is offered again while the library has no room for it.
constexpr std::chrono::milliseconds kOfferInterval{50};

}  // namespace

RoomCamera::RoomCamera(EngineLoop& engineLoop, SourceMaker sourceMaker, int32_t index,
                       const std::atomic<bool>& roomIsClosing, std::function<void()> whenChanged)
    : loop(engineLoop),
      makeSource(std::move(sourceMaker)),
      isClosing(roomIsClosing),
      onChanged(std::move(whenChanged)),
      state(index < 0 ? State::Absent : State::Offered),
      chosen(index),
      current(index),
      lost(kNoCapture),
      openIndex(kNoCapture) {}

void RoomCamera::OpenPlayback(int32_t index) {
    ClosePlayback();
    openIndex = index;
    auto source = makeSource(index);
    if (!source) {
        LOG(kLogWarning, "The own camera shows no picture: its device is gone");
        return;
    }
    // The camera owns the playback, so the events do not own the camera. A device has no connection of its
    // own that could be lost, and nobody listens to it.
    PlaybackEvents events{
        .picture = [this](const std::shared_ptr<const MappedPicture>& picture) { Deliver(picture); },
        .loudness = [](double) {},
        .withoutPicture = [] {},
        .connection = [](bool) {},
        // Posted, since the playback that says so is closed then.
        .ended = [this] { loop.Post([self = shared_from_this()] { self->Lose(); }); },
        .failed = {}};
    playback = std::make_shared<Playback>(loop, std::move(*source), nullptr, std::move(events));
    playback->Open();
}

void RoomCamera::ClosePlayback() {
    if (playback) playback->Close();
    playback.reset();
    openIndex = kNoCapture;
}

void RoomCamera::Deliver(const std::shared_ptr<const MappedPicture>& picture) {
    if (!delivers || !TrackSettings::Get().localVideoEnabled) return;
    outlet.PushPicture(picture);
    sinks.Deliver([&] { return MakeFrame(picture); });
}

void RoomCamera::Follow() {
    State wanted = State::Ended;
    int32_t index = kNoCapture;
    {
        const std::lock_guard lock(stateMutex);
        wanted = state;
        index = current;
    }
    if (wanted == State::Ended || isClosing) return;
    onChanged();
    const bool isOpen = wanted == State::Offered || wanted == State::Running;
    if (!isOpen) index = kNoCapture;
    if (index != openIndex) {
        if (isOpen) {
            OpenPlayback(index);
        } else {
            ClosePlayback();
        }
    }
    if (wanted == State::Running && playback) playback->Play();
    if (wanted == State::Offered && !std::exchange(isOfferPending, true)) Announce();
}

void RoomCamera::Announce() {
    if (isClosing) return;
    {
        const std::lock_guard lock(stateMutex);
        isOfferPending = state == State::Offered;
    }
    // Lost before anybody had taken it.
    if (!isOfferPending) return;
    const auto sink = MediaCallbacks::Get().addLocalVideoSource.Call(StreamType::Camera, kSourceId);
    if (!sink || *sink == nullptr) {
        loop.PostAfter(kOfferInterval, [self = shared_from_this()] { self->Announce(); });
        return;
    }
    isOfferPending = false;
    sinks.AddOwned(std::unique_ptr<FrameCallback>(*sink));
    {
        const std::lock_guard lock(stateMutex);
        if (state == State::Offered) state = State::Running;
        announcedSink = *sink;
        delivers = state == State::Running;
    }
    LOG(kLogInformation, "The own camera runs");
    Follow();
}

void RoomCamera::End() {
    {
        const std::lock_guard lock(stateMutex);
        state = State::Ended;
        announcedSink = nullptr;
        delivers = false;
    }
    ClosePlayback();
    sinks.Clear();
}

void RoomCamera::Lose() {
    bool isAnnounced = false;
    {
        const std::lock_guard lock(stateMutex);
        isAnnounced = state == State::Running;
        if (isClosing || (!isAnnounced && state != State::Offered) || current != openIndex) return;
        state = State::Absent;
        lost = current;
        announcedSink = nullptr;
        delivers = false;
    }
    LOG(kLogInformation, "The own camera is gone: the source has ended");
    ClosePlayback();
    sinks.Clear();
    onChanged();
    if (isAnnounced) MediaCallbacks::Get().removeLocalVideoSource.Call(kSourceId);
}

bool RoomCamera::HasDevice() const {
    const std::lock_guard lock(stateMutex);
    return state == State::Offered || state == State::Running;
}

bool RoomCamera::IsRunning() const {
    const std::lock_guard lock(stateMutex);
    return state == State::Running;
}

bool RoomCamera::IsRunning(int32_t index) const {
    const std::lock_guard lock(stateMutex);
    return state == State::Running && index == current;
}

void RoomCamera::Choose(int32_t index) {
    const std::lock_guard lock(stateMutex);
    chosen = index;
}

void RoomCamera::Stop() {
    FrameCallback* sink = nullptr;
    {
        const std::lock_guard lock(stateMutex);
        if (state != State::Running) return;
        state = State::Stopped;
        delivers = false;
        sink = std::exchange(announcedSink, nullptr);
    }
    if (sink != nullptr) sinks.Remove(sink);
    FollowLater();
}

void RoomCamera::Start() {
    {
        const std::lock_guard lock(stateMutex);
        if (chosen < 0 || (state != State::Stopped && (state != State::Absent || chosen == lost))) return;
        state = state == State::Stopped ? State::Running : State::Offered;
        current = chosen;
        lost = kNoCapture;
        delivers = state == State::Running;
    }
    FollowLater();
}

void RoomCamera::Reopen() {
    loop.Post([self = shared_from_this()] {
        self->ClosePlayback();
        self->Follow();
    });
}

void RoomCamera::FollowLater() {
    // The state is looked at when the task runs: tasks of two threads may come in either order.
    loop.Post([self = shared_from_this()] { self->Follow(); });
}

}  // namespace Corvanta::Engine
