// The functions of platform/WebRTC.h that concern video tracks and the engine's life.
#include "platform/WebRTC.h"

#include <utility>

#include "engine/common/GuardedCallback.h"
#include "engine/connections/Room.h"
#include "engine/connections/TrackSettings.h"
#include "engine/webrtc/CameraChoice.h"
#include "engine/webrtc/ConnectionStatsFeed.h"
#include "engine/webrtc/GstSupport.h"
#include "platform/Logger.h"

namespace {

using Corvanta::Engine::GuardedCallback;
using Corvanta::Engine::Room;
using Corvanta::Engine::TrackSettings;

struct EngineCallbacks {
    static EngineCallbacks& Get() {
        static EngineCallbacks callbacks;
        return callbacks;
    }

    GuardedCallback<void(int, double, int, double, double, double, double)> connectionStats;
    GuardedCallback<void(const Corvanta::VideoSourceData&)> sourceMetadata;
};

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
    Corvanta::Engine::SetCameraProperties(0, 0, 0, 0);
    EngineCallbacks::Get().connectionStats.Set({});
    EngineCallbacks::Get().sourceMetadata.Set({});
}

void WebRTC_SetEnabledLocalVideoTrack(bool enabled, int32_t index) {
    if (index != 0 || TrackSettings::Get().localVideoEnabled.exchange(enabled) == enabled) return;
    if (const auto room = Room::Current()) room->ApplyLocalTracks();
}

bool WebRTC_IsLocalVideoTrackEnabled(int32_t index) {
    return index == 0 && TrackSettings::Get().localVideoEnabled;
}

// By value, as the platform declares it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void WebRTC_SetEnabledRemoteVideoTrack(std::string streamId, bool enabled) {
    const auto room = Room::Current();
    const auto participant = room ? room->Find(streamId) : nullptr;
    if (!participant || participant->videoEnabled.exchange(enabled) == enabled) return;
    room->ApplyTracks(participant);
}

void WebRTC_SetConnectionStatsCallback(Corvanta::ConnectionStatsCallback callback) {
    EngineCallbacks::Get().connectionStats.Set(std::move(callback));
}

void WebRTC_SetVideoSourceMetadataListener(std::function<void(const Corvanta::VideoSourceData&)> listener) {
    EngineCallbacks::Get().sourceMetadata.Set(std::move(listener));
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
