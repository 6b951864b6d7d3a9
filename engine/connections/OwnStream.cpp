#include "engine/connections/OwnStream.h"

#include <utility>

#include "engine/connections/TrackSettings.h"
#include "engine/mediamanager/MediaCallbacks.h"
#include "engine/transport/StreamNames.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

OwnStream::OwnStream(EngineLoop& engineLoop, OwnStreamDescription streamDescription,
                     std::string mediaSourceId, std::shared_ptr<SoundMixer> roomMixer,
                     Transport& roomTransport)
    : description(std::move(streamDescription)),
      sinks(description.displayName),
      loop(engineLoop),
      sourceId(std::move(mediaSourceId)),
      mixer(std::move(roomMixer)),
      transport(roomTransport) {}

void OwnStream::Open(const std::function<void()>& whenEnded) {
    if (hasEnded) return;
    // The stream owns the playback, so the events do not own the stream.
    PlaybackEvents events{
        .picture = [this](const std::shared_ptr<const MappedPicture>& picture) { Deliver(picture); },
        .loudness = [](double) {},
        .withoutPicture = [] {},
        .connection = [](bool) {},
        .ended = whenEnded,
        .failed = whenEnded,
        .sound =
            [this](GstBuffer* samples, GstClockTime due) {
                if (!hasEnded) outlet.PushSound(samples, due);
            }};
    playback = std::make_shared<Playback>(loop, description.source, mixer, std::move(events));
    SetVolume(TrackSettings::Get().localStreamsVolume);
    playback->Open();
}

void OwnStream::SetVolume(double volume) {
    if (playback) playback->SetGain(volume);
}

void OwnStream::Deliver(const std::shared_ptr<const MappedPicture>& picture) {
    if (hasEnded) return;
    outlet.PushPicture(picture);
    sinks.Deliver([&] { return MakeFrame(picture); });
}

bool OwnStream::Offer() {
    if (hasEnded) return true;
    const auto sink = MediaCallbacks::Get().addLocalVideoSource.Call(description.type, sourceId);
    if (!sink || *sink == nullptr) return false;
    isAnnounced = true;
    sinks.AddOwned(std::unique_ptr<FrameCallback>(*sink));
    if (hasEnded) {
        // Meanwhile, so its sinks were let go of before this one came.
        sinks.Clear();
        return true;
    }
    LOG(kLogInformation, "\"%s\" is shared", description.displayName.c_str());
    outlet.Set(transport.PublishStream(description.type, description.displayName));
    isPublished = true;
    if (playback) playback->Play();
    if (description.type == StreamType::File) {
        MediaCallbacks::Get().filePlaybackStatus.Call(StreamIdOf(transport.OwnId(), description.type), true);
    }
    return true;
}

bool OwnStream::End() {
    const bool isFirst = !hasEnded.exchange(true);
    sinks.Clear();
    return isFirst;
}

void OwnStream::Close(bool tellLibrary) {
    if (playback) playback->Close();
    playback.reset();
    outlet.Set(nullptr);
    if (std::exchange(isPublished, false)) transport.Unpublish(description.type);
    if (!std::exchange(isAnnounced, false) || !tellLibrary) return;
    LOG(kLogInformation, "\"%s\" is no longer shared", description.displayName.c_str());
    if (description.type == StreamType::File) {
        MediaCallbacks::Get().filePlaybackStatus.Call(StreamIdOf(transport.OwnId(), description.type), false);
    }
    MediaCallbacks::Get().removeLocalVideoSource.Call(sourceId);
}

}  // namespace Corvanta::Engine
