// The functions of platform/WebRTC.h that concern sound: devices, the local microphone, what is heard of the
// others, and who speaks.
#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/connections/Room.h"
#include "engine/connections/TrackSettings.h"
#include "engine/webrtc/SoundDevices.h"
#include "platform/WebRTC.h"

namespace {

using Corvanta::Engine::Room;
using Corvanta::Engine::RoomParticipant;
using Corvanta::Engine::TrackSettings;

// Calls `change` with the participant of that id, if there is one, and lets the room take over its volume.
template <class Change>
void ChangeParticipant(const std::string& streamId, const Change& change) {
    const auto room = Room::Current();
    const auto participant = room ? room->Find(streamId) : nullptr;
    if (!participant) return;
    change(*participant);
    room->ApplyVolume(participant);
}

double ToVolume(double position) {
    return std::isfinite(position) ? std::clamp(position, 0.0, 1.0) : 1.0;
}

}  // namespace

void WebRTC_ADMStart() {
    if (const auto room = Room::Current()) room->OpenSoundDevices();
}

bool WebRTC_MicIsNone() {
    return Corvanta::Engine::MicrophoneIsNone();
}

bool WebRTC_SpeakerIsNone() {
    return Corvanta::Engine::SpeakerIsNone();
}

void WebRTC_SetEnabledLocalAudioTrack(bool enabled, int32_t index) {
    if (index != 0 || TrackSettings::Get().localAudioEnabled.exchange(enabled) == enabled) return;
    if (const auto room = Room::Current()) room->ApplyLocalTracks();
}

bool WebRTC_IsLocalAudioTrackEnabled(int32_t index) {
    return index == 0 && TrackSettings::Get().localAudioEnabled;
}

// The two take their texts by value, as the platform declares them.
// NOLINTBEGIN(performance-unnecessary-value-param)
void WebRTC_SetEnabledRemoteAudioTrack(std::string streamId, bool enabled) {
    ChangeParticipant(streamId, [&](RoomParticipant& participant) { participant.audioEnabled = enabled; });
}

void WebRTC_SetRemoteAudioTrackVolume(std::string streamId, double volume) {
    ChangeParticipant(streamId, [&](RoomParticipant& participant) { participant.volume = ToVolume(volume); });
}
// NOLINTEND(performance-unnecessary-value-param)

double WebRTC_GetRemoteAudioTrackVolume(const std::string& streamId) {
    const auto room = Room::Current();
    const auto participant = room ? room->Find(streamId) : nullptr;
    return participant ? participant->volume.load() : 1.0;
}

void WebRTC_SetRemoteAudioTrackIsExternalSource(const std::string& streamId, bool isExternalSource) {
    ChangeParticipant(streamId,
                      [&](RoomParticipant& participant) { participant.soundsAsStream = isExternalSource; });
}

void WebRTC_SetRemoteAudioTrackModifier(Corvanta::RemoteAudioGroup group, double volume) {
    auto& factors = TrackSettings::Get().groupFactors;
    const auto index = static_cast<std::size_t>(group);
    if (index >= factors.size()) return;
    factors[index] = ToVolume(volume);
    if (const auto room = Room::Current()) room->ApplyVolumes();
}

bool WebRTC_GetActiveSpeaker(std::string& streamId) {
    const auto room = Room::Current();
    auto id = room ? room->SpeakerId() : std::nullopt;
    if (!id) return false;
    streamId = std::move(*id);
    return true;
}

void WebRTC_SetLocalStreamsLocalAudioVolume(float volume) {
    TrackSettings::Get().localStreamsVolume = static_cast<float>(ToVolume(volume));
    if (const auto room = Room::Current()) room->Streams().ApplyVolume();
}

float WebRTC_GetLocalStreamsLocalAudioVolume() {
    return TrackSettings::Get().localStreamsVolume;
}
