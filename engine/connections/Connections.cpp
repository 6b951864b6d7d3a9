// The functions of platform/Connections.h over the open room.
#include "platform/Connections.h"

#include <atomic>
#include <string>

#include "engine/EngineSettings.h"
#include "engine/connections/ConnectionCallbacks.h"
#include "engine/connections/Room.h"
#include "engine/connections/TrackSettings.h"
#include "engine/transport/StreamNames.h"
#include "platform/Logger.h"

namespace {

using Corvanta::StreamType;
using Corvanta::Engine::ConnectionCallbacks;
using Corvanta::Engine::kEmbeddedOwnId;
using Corvanta::Engine::Room;
using Corvanta::Engine::RoomParticipant;
using Corvanta::Engine::StreamIdOf;
using Corvanta::Engine::TrackSettings;
using Corvanta::Engine::TrackSwitches;
using Corvanta::Engine::TypeOfStream;

std::atomic<int32_t> gLastConnectionIndex = 0;

const char* NameOf(const char* text) {
    return text != nullptr && text[0] != '\0' ? text : "(no name)";
}

std::shared_ptr<RoomParticipant> Find(const std::string& streamId) {
    const auto room = Room::Current();
    return room ? room->Find(streamId) : nullptr;
}

std::string OwnId(const std::shared_ptr<Room>& room) {
    return room ? room->OwnId() : kEmbeddedOwnId;
}

}  // namespace

namespace Corvanta::Engine {

ConnectionCallbacks& ConnectionCallbacks::Get() {
    static ConnectionCallbacks callbacks;
    return callbacks;
}

}  // namespace Corvanta::Engine

int32_t Connections_InitConnection(void*, void*, const char* sessionName, const char*, const char*,
                                   const char*, const char* displayName, bool withAudio, bool withVideo, bool,
                                   void*) {
    // Nobody is to be heard before having said so: whoever opens the room switches the microphone on.
    TrackSettings& tracks = TrackSettings::Get();
    tracks.localAudioEnabled = false;
    tracks.localVideoEnabled = withVideo;
    tracks.carriesLocalAudio = withAudio;
    tracks.carriesLocalVideo = withVideo;
    tracks.outboundBitrate = 0;
    if (!Room::Open(Corvanta::Engine::CurrentOptions(), displayName != nullptr ? displayName : "",
                    sessionName != nullptr ? sessionName : ""))
        return -1;
    LOG(kLogInformation, "The room is open: session %s", NameOf(sessionName));
    return ++gLastConnectionIndex;
}

void Connections_CloseConnection() {
    Room::CloseCurrent();
}

void Connections_SetDefaultOutboundBitrate(uint32_t bitsPerSecond) {
    TrackSettings::Get().defaultOutboundBitrate = bitsPerSecond;
    // It holds until another rate is asked for.
    if (TrackSettings::Get().outboundBitrate > 0) return;
    if (const auto room = Room::Current()) room->ApplyOutboundBitrate();
}

void Connections_ConfigureOutboundBitrate(uint32_t bitsPerSecond) {
    if (TrackSettings::Get().outboundBitrate.exchange(bitsPerSecond) == bitsPerSecond) return;
    LOG(kLogDebug, "Outbound video: %u bit/s", bitsPerSecond);
    if (const auto room = Room::Current()) room->ApplyOutboundBitrate();
}

void Connections_RestartPeerConnection(const std::string& streamId, bool videoEnabled, bool audioEnabled,
                                       bool immediately) {
    const auto room = Room::Current();
    if (!room) return;
    if (TypeOfStream(room->OwnId(), streamId) == StreamType::Camera) {
        TrackSettings::Get().localAudioEnabled = audioEnabled;
        TrackSettings::Get().localVideoEnabled = videoEnabled;
        room->ApplyLocalTracks();
    }
    room->Restart(streamId, immediately ? Room::Pace::AtOnce : Room::Pace::InTime);
}

void Connections_RenegotiateOutboundPeerConnection(bool micEnabled, bool videoEnabled, const std::string&) {
    TrackSettings::Get().localAudioEnabled = micEnabled;
    TrackSettings::Get().localVideoEnabled = videoEnabled;
    const auto room = Room::Current();
    if (!room) return;
    room->ApplyLocalTracks();
    room->RestartLostCamera();
    // Brings back a camera that was stopped for a change of devices.
    room->Camera().Start();
}

void Connections_ConfigureStream(
    const std::string& streamId,
    const std::unordered_map<Corvanta::ConfigureStreamType, bool>& configuration) {
    const auto room = Room::Current();
    if (!room) return;
    TrackSwitches switches;
    for (const auto& [part, enabled] : configuration) {
        if (part == Corvanta::ConfigureStreamType::Video) switches.video = enabled;
        if (part == Corvanta::ConfigureStreamType::Audio) switches.audio = enabled;
        if (part == Corvanta::ConfigureStreamType::Data) switches.data = enabled;
    }
    room->ConfigureStream(streamId, switches);
}

void Connections_MuteParticipant(const std::string& streamId) {
    if (const auto room = Room::Current()) room->Mute(streamId);
}

void Connections_SetParticipantJoinedCallback(std::function<void()> callback) {
    ConnectionCallbacks::Get().participantJoined.Set(std::move(callback));
}

void Connections_SetConnectionDroppedCallback(void (*callback)(bool willRetry, bool endedHere)) {
    ConnectionCallbacks::Get().connectionDropped.Set(callback);
}

std::string Connections_GetLocalUserStreamID(StreamType type) {
    const auto room = Room::Current();
    const bool isThere = type == StreamType::Camera || (room && room->Streams().Find(type));
    return isThere ? StreamIdOf(OwnId(room), type) : std::string();
}

std::string Connections_GetLocalDisplayName(StreamType type) {
    const auto room = Room::Current();
    if (!room) return {};
    const auto stream = room->Streams().Find(type);
    return stream ? stream->description.displayName : room->LocalDisplayName();
}

std::string Connections_GetPublisherDisplayName(const std::string& streamId) {
    const auto participant = Find(streamId);
    return participant ? participant->name : std::string();
}

StreamType Connections_GetStreamType(const std::string& streamId) {
    const auto room = Room::Current();
    if (const auto own = TypeOfStream(OwnId(room), streamId)) return *own;
    if (!room) return StreamType::Camera;
    if (const auto participant = room->Find(streamId)) return participant->type;
    const auto stream = room->Streams().FindSource(streamId);
    return stream ? stream->description.type : StreamType::Camera;
}

bool Connections_IsPublisherFromExternalSource(const std::string& streamId) {
    const auto participant = Find(streamId);
    return participant && participant->isExternalSource;
}

bool Connections_IsOwnExternalSourceStream(const std::string& cameraStreamId, const std::string& streamId) {
    const auto external = Find(streamId);
    if (!external || !external->isExternalSource) return false;
    const auto room = Room::Current();
    if (room && cameraStreamId == StreamIdOf(room->OwnId(), StreamType::Camera)) {
        return external->memberId == room->OwnId();
    }
    const auto camera = Find(cameraStreamId);
    return camera && camera->memberId == external->memberId;
}

int32_t Connections_InitRecording(void*, const char*, void*, const Corvanta::RecordingPlaybackCallbacks&) {
    LOG(kLogWarning, "No recording can be opened: the rooms of this program keep none");
    return -1;
}

int32_t Connections_EndRecording(int32_t connectionIndex) {
    LOG(kLogDebug, "Recording %d is not open", connectionIndex);
    return -1;
}

void Connections_ClearRecordings() {}
