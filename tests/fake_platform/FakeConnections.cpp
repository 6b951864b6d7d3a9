// Corvanta.Connections as recorders. Opaque values are recorded as "null" or their address, a stream
// configuration as its pairs in ascending order of the key, such as "0=true 1=false".

#include "platform/Connections.h"
#include "tests/fake_platform/FakePlatform.h"

using Corvanta::StreamType;
using Corvanta::Testing::Calls;
using Corvanta::Testing::Fake;
using Corvanta::Testing::FakeResults;
using Corvanta::Testing::UncountedScope;

namespace {

template <typename Key>
std::string Find(const std::map<Key, std::string>& map, const Key& key, const std::string& otherwise) {
    const auto found = map.find(key);
    return found == map.end() ? otherwise : found->second;
}

const char* Presence(bool isThere) {
    return isThere ? "set" : "empty";
}

}  // namespace

// The platform passes these texts by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
extern "C" {

int32_t Connections_InitConnection(void* connectionArg0, void* connectionArg1, const char* sessionName,
                                   const char* cookie, const char* email, const char* profileId,
                                   const char* displayName, bool withAudio, bool withVideo, bool withData,
                                   void* connectionArg7) {
    const UncountedScope uncounted;
    Calls().Record("Connections_InitConnection", connectionArg0, connectionArg1, sessionName, cookie, email,
                   profileId, displayName, withAudio, withVideo, withData, connectionArg7);
    return Fake().Get([](const FakeResults& results) { return results.connectionIndex; });
}

void Connections_CloseConnection() {
    Calls().Record("Connections_CloseConnection");
}

void Connections_SetDefaultOutboundBitrate(uint32_t bitsPerSecond) {
    Calls().Record("Connections_SetDefaultOutboundBitrate", bitsPerSecond);
}

void Connections_ConfigureOutboundBitrate(uint32_t bitsPerSecond) {
    Calls().Record("Connections_ConfigureOutboundBitrate", bitsPerSecond);
}

void Connections_RestartPeerConnection(const std::string& streamId, bool videoEnabled, bool audioEnabled,
                                       bool immediately) {
    Calls().Record("Connections_RestartPeerConnection", streamId, videoEnabled, audioEnabled, immediately);
}

void Connections_RenegotiateOutboundPeerConnection(bool micEnabled, bool videoEnabled,
                                                   const std::string& streamId) {
    Calls().Record("Connections_RenegotiateOutboundPeerConnection", micEnabled, videoEnabled, streamId);
}

void Connections_ConfigureStream(
    const std::string& streamId,
    const std::unordered_map<Corvanta::ConfigureStreamType, bool>& configuration) {
    const UncountedScope uncounted;
    std::string pairs;
    for (const auto& [key, on] : std::map(configuration.begin(), configuration.end())) {
        if (!pairs.empty()) pairs += ' ';
        pairs += std::to_string(static_cast<int>(key));
        pairs += on ? "=true" : "=false";
    }
    Calls().Record("Connections_ConfigureStream", streamId, pairs);
}

void Connections_SetParticipantJoinedCallback(std::function<void()> callback) {
    Calls().Record("Connections_SetParticipantJoinedCallback", callback);
    Fake().callbacks.participantJoined.Set(std::move(callback));
}

void Connections_SetConnectionDroppedCallback(void (*callback)(bool willRetry, bool endedHere)) {
    Calls().Record("Connections_SetConnectionDroppedCallback", Presence(callback != nullptr));
    Fake().callbacks.connectionDropped.Set(callback);
}

void Connections_AddRoomStatusListener(Corvanta::Connections::RoomStatusListener* listener) {
    const UncountedScope uncounted;
    Calls().Record("Connections_AddRoomStatusListener", listener);
    Fake().AddListener(listener);
}

void Connections_RemoveRoomStatusListener(Corvanta::Connections::RoomStatusListener* listener) {
    Calls().Record("Connections_RemoveRoomStatusListener", listener);
    Fake().RemoveListener(listener);
}

std::string Connections_GetLocalUserStreamID(StreamType type) {
    const UncountedScope uncounted;
    Calls().Record("Connections_GetLocalUserStreamID", type);
    return Fake().Get([&](const FakeResults& results) { return Find(results.localUserStreamIds, type, ""); });
}

std::string Connections_GetLocalDisplayName(StreamType type) {
    const UncountedScope uncounted;
    Calls().Record("Connections_GetLocalDisplayName", type);
    return Fake().Get([&](const FakeResults& results) { return Find(results.localDisplayNames, type, ""); });
}

std::string Connections_GetPublisherDisplayName(const std::string& streamId) {
    const UncountedScope uncounted;
    Calls().Record("Connections_GetPublisherDisplayName", streamId);
    return Fake().Get(
        [&](const FakeResults& results) { return Find(results.publisherNames, streamId, streamId); });
}

StreamType Connections_GetStreamType(const std::string& streamId) {
    const UncountedScope uncounted;
    Calls().Record("Connections_GetStreamType", streamId);
    return Fake().Get([&](const FakeResults& results) {
        const auto found = results.streamTypes.find(streamId);
        return found == results.streamTypes.end() ? StreamType::Camera : found->second;
    });
}

bool Connections_IsPublisherFromExternalSource(const std::string& streamId) {
    const UncountedScope uncounted;
    Calls().Record("Connections_IsPublisherFromExternalSource", streamId);
    return Fake().Get([&](const FakeResults& results) { return results.externalSources.contains(streamId); });
}

bool Connections_IsOwnExternalSourceStream(const std::string& cameraStreamId, const std::string& streamId) {
    const UncountedScope uncounted;
    Calls().Record("Connections_IsOwnExternalSourceStream", cameraStreamId, streamId);
    return Fake().Get([&](const FakeResults& results) {
        return results.ownExternalStreams.contains({cameraStreamId, streamId});
    });
}

void Connections_MuteParticipant(const std::string& streamId) {
    Calls().Record("Connections_MuteParticipant", streamId);
}

void Connections_SendStreamMetadataStart(std::string sourceText1, std::string streamTypeName,
                                         std::string sourceText2, std::string sourceText3,
                                         std::string sourceText4, std::string sourceText5,
                                         std::string sourceText6, std::string colorDescription,
                                         std::string streamId) {
    Calls().Record("Connections_SendStreamMetadataStart", sourceText1, streamTypeName, sourceText2,
                   sourceText3, sourceText4, sourceText5, sourceText6, colorDescription, streamId);
}

void Connections_SendStreamMetadataEnd(std::string streamId) {
    Calls().Record("Connections_SendStreamMetadataEnd", streamId);
}

void Connections_StartRecording(int32_t connectionIndex) {
    Calls().Record("Connections_StartRecording", connectionIndex);
}

void Connections_StopRecording(int32_t connectionIndex) {
    Calls().Record("Connections_StopRecording", connectionIndex);
}

void Connections_SetRecordingUpdateCallback(std::function<void(int32_t status, int64_t time)> callback) {
    Calls().Record("Connections_SetRecordingUpdateCallback", callback);
    Fake().callbacks.recordingUpdate.Set(std::move(callback));
}

std::string Connections_GetRoomID() {
    const UncountedScope uncounted;
    Calls().Record("Connections_GetRoomID");
    return Fake().Get([](const FakeResults& results) { return results.roomId; });
}

std::string Connections_GetRecordingID() {
    const UncountedScope uncounted;
    Calls().Record("Connections_GetRecordingID");
    return Fake().Get([](const FakeResults& results) { return results.recordingId; });
}

int32_t Connections_InitRecording(void* connectionArg0, const char* cookie, void* connectionArg1,
                                  const Corvanta::RecordingPlaybackCallbacks& callbacks) {
    const UncountedScope uncounted;
    Calls().Record("Connections_InitRecording", connectionArg0, cookie, connectionArg1,
                   Presence(callbacks.status != nullptr), Presence(callbacks.progress != nullptr),
                   Presence(callbacks.offsetSeeked != nullptr), Presence(callbacks.activeStreams != nullptr));
    Fake().SetRecordingCallbacks(callbacks);
    return Fake().Get([](const FakeResults& results) { return results.recordingConnectionIndex; });
}

int32_t Connections_EndRecording(int32_t connectionIndex) {
    const UncountedScope uncounted;
    Calls().Record("Connections_EndRecording", connectionIndex);
    return Fake().Get([](const FakeResults& results) { return results.endRecordingResult; });
}

void Connections_ClearRecordings() {
    Calls().Record("Connections_ClearRecordings");
}

void Connections_PlaybackStart(int32_t connectionIndex) {
    Calls().Record("Connections_PlaybackStart", connectionIndex);
}

void Connections_PlaybackPause(int32_t connectionIndex) {
    Calls().Record("Connections_PlaybackPause", connectionIndex);
}

void Connections_PlaybackResume(int32_t connectionIndex) {
    Calls().Record("Connections_PlaybackResume", connectionIndex);
}

void Connections_PlaybackSeek(int32_t connectionIndex, int64_t seconds) {
    Calls().Record("Connections_PlaybackSeek", connectionIndex, seconds);
}
}
// NOLINTEND(performance-unnecessary-value-param)
