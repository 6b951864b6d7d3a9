// What the library and the host ask of the open room.
#include <utility>

#include "engine/connections/Room.h"
#include "engine/connections/RoomStatus.h"
#include "engine/connections/TrackSettings.h"
#include "engine/transport/StreamNames.h"
#include "platform/WebRTC.h"

namespace Corvanta::Engine {

bool Room::SendChat(const std::string& text) {
    auto message = chat.Write(text);
    return message && SendText(std::move(*message));
}

bool Room::SendText(std::string text) {
    if (isClosing || hasEnded || !sendsTexts) return false;
    loop.Post([this, sent = std::move(text)]() mutable { transport->SendText(std::move(sent)); });
    return true;
}

void Room::Remove(const std::shared_ptr<RoomParticipant>& participant) {
    loop.Post([this, participant] {
        if (participant->hasLeft) return;
        transport->Remove(participant->id);
        Leave(participant, "removed by the local user");
    });
}

void Room::Mute(const std::string& streamId) {
    if (TypeOfStream(OwnId(), streamId) == StreamType::Camera) loop.Post(TellMutedRemotely);
    const auto participant = Find(streamId);
    if (!participant) return;
    participant->muted = true;
    ApplyVolume(participant);
    loop.Post([this, participant] {
        if (!participant->hasLeft) transport->Mute(participant->id);
    });
}

void Room::ConfigureStream(const std::string& streamId, const TrackSwitches& switches) {
    const auto participant = Find(streamId);
    if (!participant) {
        if (switches.data && TypeOfStream(OwnId(), streamId) == StreamType::Camera)
            sendsTexts = *switches.data;
        loop.Post([this, streamId, switches] { transport->Configure(streamId, switches); });
        return;
    }
    if (switches.video) participant->videoPublished = *switches.video;
    if (switches.audio) participant->audioPublished = *switches.audio;
    if (switches.data) participant->dataPublished = *switches.data;
    ApplyVolume(participant);
}

void Room::Restart(const std::string& streamId, Pace pace) {
    const auto participant = Find(streamId);
    loop.Post([this, participant, streamId, pace] {
        if (!participant) {
            transport->RequestRestart(streamId, {.tracks = toldTracks, .immediately = pace == Pace::AtOnce});
        } else if (!participant->hasLeft) {
            participant->media->Restart(pace == Pace::AtOnce);
        }
    });
}

void Room::RestartLostCamera() {
    loop.Post([this] {
        if (cameraIsLost) Restart(StreamIdOf(OwnId(), StreamType::Camera), Pace::AtOnce);
    });
}

void Room::ApplyVolume(const std::shared_ptr<RoomParticipant>& participant) {
    loop.Post([participant] {
        if (participant->hasLeft) return;
        const auto group =
            participant->soundsAsStream ? RemoteAudioGroup::Streams : RemoteAudioGroup::Participants;
        participant->media->SetGain(participant->Volume() *
                                    TrackSettings::Get().groupFactors[static_cast<std::size_t>(group)]);
    });
    ApplyTracks(participant);
}

void Room::ApplyTracks(const std::shared_ptr<RoomParticipant>& participant) {
    loop.Post([participant] {
        if (!participant->hasLeft) participant->media->SetTracks(participant->WantedTracks());
    });
}

void Room::ApplyVolumes() {
    const ParticipantList::Snapshot all = participants.Get();
    for (const auto& participant : *all) ApplyVolume(participant);
    streams.ApplyVolume();
}

void Room::ApplyLocalTracks() {
    loop.Post([this] {
        sound.FollowMicrophone();
        ApplyCameraTracks();
    });
}

void Room::ApplyOutboundBitrate() {
    loop.Post([this] {
        if (const uint32_t bitrate = TrackSettings::Get().WantedBitrate(); bitrate > 0)
            transport->SetOutboundBitrate(bitrate);
    });
}

void Room::OpenSoundDevices() {
    loop.Post([this] { sound.Open(); });
}

}  // namespace Corvanta::Engine
