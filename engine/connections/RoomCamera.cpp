#include "engine/connections/RoomCamera.h"

#include <utility>

#include "engine/connections/TrackSettings.h"
#include "engine/mediamanager/MediaCallbacks.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

RoomCamera::RoomCamera(EngineLoop& engineLoop, PlaybackSource playedSource)
    : loop(engineLoop), source(std::move(playedSource)) {}

void RoomCamera::Open(std::function<void()> whenEnded) {
    // The camera owns the playback, so the events do not own the camera. A device has no connection of its
    // own that could be lost, and nobody listens to it.
    PlaybackEvents events{
        .picture = [this](const std::shared_ptr<const MappedPicture>& picture) { Deliver(picture); },
        .loudness = [](double) {},
        .withoutPicture = [] {},
        .connection = [](bool) {},
        .ended = std::move(whenEnded)};
    playback = std::make_shared<Playback>(loop, source, nullptr, std::move(events));
    playback->Open();
    isOpen = true;
}

void RoomCamera::Deliver(const std::shared_ptr<const MappedPicture>& picture) {
    if (!IsRunning() || !TrackSettings::Get().localVideoEnabled) return;
    sinks.Deliver([&] { return MakeFrame(picture); });
}

bool RoomCamera::Offer() {
    if (state != State::Offered) return true;
    const auto sink = MediaCallbacks::Get().addLocalVideoSource.Call(StreamType::Camera, kSourceId);
    if (!sink || *sink == nullptr) return false;
    sinks.AddOwned(std::unique_ptr<FrameCallback>(*sink));
    announcedSink = *sink;
    state = State::Running;
    LOG(kLogInformation, "The own camera runs");
    playback->Play();
    return true;
}

void RoomCamera::End() {
    state = State::Ended;
    if (playback) playback->Close();
    sinks.Clear();
    playback.reset();
    isOpen = false;
}

void RoomCamera::Stop() {
    State expected = State::Running;
    if (!state.compare_exchange_strong(expected, State::Stopped)) return;
    if (FrameCallback* const sink = announcedSink.exchange(nullptr)) sinks.Remove(sink);
    FollowLater();
}

void RoomCamera::Start() {
    State expected = State::Stopped;
    if (!state.compare_exchange_strong(expected, State::Running)) return;
    FollowLater();
}

void RoomCamera::FollowLater() {
    // The state is looked at when the task runs: tasks of two threads may come in either order.
    loop.Post([self = shared_from_this()] { self->Follow(); });
}

void RoomCamera::Follow() {
    if (!playback || IsRunning() == isOpen) return;
    isOpen = !isOpen;
    if (isOpen) {
        playback->Open();
    } else {
        playback->Close();
    }
}

}  // namespace Corvanta::Engine
