// The functions of platform/WebRTC.h that concern tracks, the active speaker and the engine's life.
#include "platform/WebRTC.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/EngineSettings.h"
#include "engine/common/GuardedCallback.h"
#include "engine/connections/Room.h"
#include "engine/connections/TrackSettings.h"
#include "engine/webrtc/AudioSink.h"
#include "engine/webrtc/ConnectionStatsFeed.h"
#include "engine/webrtc/GstSupport.h"
#include "platform/Logger.h"

namespace {

using Corvanta::Engine::CurrentOptions;
using Corvanta::Engine::GuardedCallback;
using Corvanta::Engine::HasSoundDevice;
using Corvanta::Engine::Room;
using Corvanta::Engine::RoomCamera;
using Corvanta::Engine::RoomParticipant;
using Corvanta::Engine::SoundOutput;
using Corvanta::Engine::TrackSettings;

// Enough for a camera's 1280x720 at 30 pictures a second.
constexpr uint32_t kCameraTargetBitrate = 2'500'000;
constexpr int32_t kNoCamera = -1;

struct EngineCallbacks {
    static EngineCallbacks& Get() {
        static EngineCallbacks callbacks;
        return callbacks;
    }

    GuardedCallback<void(int, double, int, double, double, double, double)> connectionStats;
    GuardedCallback<void(const Corvanta::VideoSourceData&)> sourceMetadata;
};

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

void Corvanta::Engine::FeedConnectionStats(const LocalConnectionFigures& figures) {
    EngineCallbacks::Get().connectionStats.Call(0, figures.uploadRate, 0, figures.downloadRate, 0.0,
                                                figures.jitterMs, figures.roundTripMs);
}

void WebRTC_Init() {
    static_cast<void>(Corvanta::Engine::EnsureGStreamer());
}

void WebRTC_Terminate() {
    Room::CloseCurrent();
    EngineCallbacks::Get().connectionStats.Set({});
    EngineCallbacks::Get().sourceMetadata.Set({});
}

void WebRTC_StopAllLocalVideoCaptures() {
    const auto room = Room::Current();
    if (const auto camera = room ? room->Camera() : nullptr) camera->Stop();
}

// Each clip opens the speaker for itself, and no sound is captured.
void WebRTC_ADMStart() {}

bool WebRTC_MicIsNone() {
    return true;
}

bool WebRTC_SpeakerIsNone() {
    return CurrentOptions().soundOutput == SoundOutput::Silent || !HasSoundDevice();
}

int32_t WebRTC_GetVideoCaptureIndex(void*, void*, void*, void*) {
    const auto room = Room::Current();
    const bool hasCamera = room ? room->Camera() != nullptr : !CurrentOptions().camera.empty();
    return hasCamera ? RoomCamera::kCaptureIndex : kNoCamera;
}

void WebRTC_SetLocalCameraProperties(int32_t, int32_t, int32_t, int32_t) {}

uint32_t WebRTC_GetLocalCameraTargetBitrate() {
    return kCameraTargetBitrate;
}

void WebRTC_SetEnabledLocalAudioTrack(bool enabled, int32_t index) {
    if (index == 0) TrackSettings::Get().localAudioEnabled = enabled;
}

void WebRTC_SetEnabledLocalVideoTrack(bool enabled, int32_t index) {
    if (index == 0) TrackSettings::Get().localVideoEnabled = enabled;
}

bool WebRTC_IsLocalAudioTrackEnabled(int32_t index) {
    return index == 0 && TrackSettings::Get().localAudioEnabled;
}

bool WebRTC_IsLocalVideoTrackEnabled(int32_t index) {
    return index == 0 && TrackSettings::Get().localVideoEnabled;
}

// The three take their texts by value, as the platform declares them.
// NOLINTBEGIN(performance-unnecessary-value-param)
void WebRTC_SetEnabledRemoteAudioTrack(std::string streamId, bool enabled) {
    ChangeParticipant(streamId, [&](RoomParticipant& participant) { participant.audioEnabled = enabled; });
}

void WebRTC_SetEnabledRemoteVideoTrack(std::string streamId, bool enabled) {
    ChangeParticipant(streamId, [&](RoomParticipant& participant) { participant.videoEnabled = enabled; });
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
                      [&](RoomParticipant& participant) { participant.isExternalSource = isExternalSource; });
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

void WebRTC_SetConnectionStatsCallback(Corvanta::ConnectionStatsCallback callback) {
    EngineCallbacks::Get().connectionStats.Set(std::move(callback));
}

void WebRTC_SetVideoSourceMetadataListener(std::function<void(const Corvanta::VideoSourceData&)> listener) {
    EngineCallbacks::Get().sourceMetadata.Set(std::move(listener));
}

void WebRTC_SetLocalStreamsLocalAudioVolume(float volume) {
    TrackSettings::Get().localStreamsVolume = static_cast<float>(ToVolume(volume));
}

float WebRTC_GetLocalStreamsLocalAudioVolume() {
    return TrackSettings::Get().localStreamsVolume;
}

void DeckLink_Initialize() {
    static const bool wasLogged = [] {
        LOG(kLogInformation, "No capture cards: this machine has no driver for them");
        return true;
    }();
    static_cast<void>(wasLogged);
}

// Nothing was started.
void DeckLink_Shutdown() {}
