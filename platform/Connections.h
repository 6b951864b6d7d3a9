// Sibling library Corvanta.Connections: signalling, the live room and the playback of a recorded one.
// Functions may be called on any thread, answer from memory and hold no lock of the library while they call
// back. Callbacks come on the library's own signalling thread unless said otherwise; passing an empty
// function (or null) ends them, and on return no call of the old function is in progress on another thread.
// Stream ids are UTF-8.
//
// Reconciled forms: bit rates are unsigned 32-bit; the texts of Connections_InitConnection and
// Connections_InitRecording are zero-terminated and copied; Connections_StartRecording and
// Connections_StopRecording take the connection index, as the playback functions do, while
// Connections_GetRoomID and Connections_GetRecordingID speak of the one room that is open;
// Connections_GetLocalUserStreamID takes a StreamType where callers write a plain 0.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Api.h"

namespace Corvanta {

// Kind of a stream.
enum class StreamType : int32_t {
    Camera = 0,
    Screenshare = 1,
    // A second screen-like kind: published beside a participant's camera by another program of the same user.
    ExternalScreen = 2,
    Device = 3,
    File = 4,
    NDI = 5,
    DeckLink = 6,
    URL = 7,
    Elgato = 8,
};

// Keys of Connections_ConfigureStream. The signalling layer may know more.
enum class ConfigureStreamType : int32_t { Audio = 0, Video = 1, Data = 2 };

// What a recording's server reports to the status function of RecordingPlaybackCallbacks. Other values may
// come.
enum class RecordingPlaybackStatus : int32_t {
    Opening = 1,
    Reopening = 2,
    Ready = 101,
    Playing = 102,
    Paused = 103,
    Resumed = 104,
    Seeking = 105,
    Ended = 106,
};

// What the update callback of a live recording reports.
enum class LiveRecordingStatus : int32_t { Started = 0, Stopped = 1 };

// Plain functions that playback of a recording calls, in this order. Any of them may be null.
struct RecordingPlaybackCallbacks {
    // A RecordingPlaybackStatus as a number.
    void (*status)(int status);
    // Two counters of the server: units played, units in all.
    void (*progress)(int played, int total);
    // A seek has been carried out; the offset in whole seconds.
    void (*offsetSeeked)(long long seconds);
    // Ids of all streams that are on at the present position.
    void (*activeStreams)(std::vector<std::string> streamIds);
};

namespace Connections {

// Told what happens to the local user in the room, on the signalling thread. The order of the operations is
// part of the binary interface.
class RoomStatusListener {
public:
    // The room's own state changed; the number is the signalling layer's.
    virtual void OnRoomStatusChanged(int32_t status) = 0;
    // Another participant switched off this user's microphone for all.
    virtual void OnMutedRemotely() = 0;

protected:
    ~RoomStatusListener() = default;
};

}  // namespace Connections
}  // namespace Corvanta

extern "C" {

// Connecting

// Enters a room and returns the index of the connection, or -1. `connectionArg0`, `connectionArg1` and
// `connectionArg7` are handed through from the host. `cookie` is the credential and is never logged. Texts
// are copied; null counts as empty. Blocks for the handshake.
CORVANTA_PLATFORM_API int32_t Connections_InitConnection(void* connectionArg0, void* connectionArg1,
                                                         const char* sessionName, const char* cookie,
                                                         const char* email, const char* profileId,
                                                         const char* displayName, bool withAudio,
                                                         bool withVideo, bool withData, void* connectionArg7);
// Leaves the room. On return no callback of the connection is in progress, and none follows. May be called
// with no connection.
CORVANTA_PLATFORM_API void Connections_CloseConnection();

// Bit rate in bits a second with which outbound video starts, and the one it is to have from now on.
CORVANTA_PLATFORM_API void Connections_SetDefaultOutboundBitrate(uint32_t bitsPerSecond);
CORVANTA_PLATFORM_API void Connections_ConfigureOutboundBitrate(uint32_t bitsPerSecond);

// Connects the stream of a remote participant again, or the local user's outbound ones, with these tracks on.
CORVANTA_PLATFORM_API void Connections_RestartPeerConnection(const std::string& streamId, bool videoEnabled,
                                                             bool audioEnabled, bool immediately);
CORVANTA_PLATFORM_API void Connections_RenegotiateOutboundPeerConnection(bool micEnabled, bool videoEnabled,
                                                                         const std::string& streamId);

// Switches parts of a stream on and off, for all who receive it. Keys that are absent stay as they are.
CORVANTA_PLATFORM_API void Connections_ConfigureStream(
    const std::string& streamId,
    const std::unordered_map<Corvanta::ConfigureStreamType, bool>& configuration);

// Somebody entered the room.
CORVANTA_PLATFORM_API void Connections_SetParticipantJoinedCallback(std::function<void()> callback);
// The connection broke: whether it will be tried again, and whether this side ended it.
CORVANTA_PLATFORM_API void Connections_SetConnectionDroppedCallback(void (*callback)(bool willRetry,
                                                                                     bool endedHere));
// The listener is borrowed until it is removed. Removing waits for a call in progress on another thread.
CORVANTA_PLATFORM_API void Connections_AddRoomStatusListener(
    Corvanta::Connections::RoomStatusListener* listener);
CORVANTA_PLATFORM_API void Connections_RemoveRoomStatusListener(
    Corvanta::Connections::RoomStatusListener* listener);

// Who is who

// Id under which the local user's stream of a kind is published; empty when there is none.
CORVANTA_PLATFORM_API std::string Connections_GetLocalUserStreamID(Corvanta::StreamType type);
// Name under which others see the local user's stream of a kind.
CORVANTA_PLATFORM_API std::string Connections_GetLocalDisplayName(Corvanta::StreamType type);
// Name of a stream's publisher; empty when it is unknown.
CORVANTA_PLATFORM_API std::string Connections_GetPublisherDisplayName(const std::string& streamId);
// Kind of a stream; Camera for an unknown id.
CORVANTA_PLATFORM_API Corvanta::StreamType Connections_GetStreamType(const std::string& streamId);
// Whether a stream comes from a program that is no participant's client.
CORVANTA_PLATFORM_API bool Connections_IsPublisherFromExternalSource(const std::string& streamId);
// Whether `streamId` is an external stream of the very user whose camera stream is `cameraStreamId`.
CORVANTA_PLATFORM_API bool Connections_IsOwnExternalSourceStream(const std::string& cameraStreamId,
                                                                 const std::string& streamId);
// Switches a participant's microphone off for all. Only a host of the room is obeyed.
CORVANTA_PLATFORM_API void Connections_MuteParticipant(const std::string& streamId);

// Tells the room that a stream begins, with its description, and that it ends. The five texts and the two
// further ones describe the source and go out as they stand; `colorDescription` is JSON.
CORVANTA_PLATFORM_API void Connections_SendStreamMetadataStart(
    std::string sourceText1, std::string streamTypeName, std::string sourceText2, std::string sourceText3,
    std::string sourceText4, std::string sourceText5, std::string sourceText6, std::string colorDescription,
    std::string streamId);
CORVANTA_PLATFORM_API void Connections_SendStreamMetadataEnd(std::string streamId);

// Recording a live room

// Asks the server; the answer comes by the update callback.
CORVANTA_PLATFORM_API void Connections_StartRecording(int32_t connectionIndex);
CORVANTA_PLATFORM_API void Connections_StopRecording(int32_t connectionIndex);
// `status` is a LiveRecordingStatus as a number, `time` seconds since the start of 1970, UTC.
CORVANTA_PLATFORM_API void Connections_SetRecordingUpdateCallback(
    std::function<void(int32_t status, int64_t time)> callback);
// Ids of the open room and of the recording that runs in it; empty when there is none.
CORVANTA_PLATFORM_API std::string Connections_GetRoomID();
CORVANTA_PLATFORM_API std::string Connections_GetRecordingID();

// Playing a recorded room

// Opens a recording and returns the index of the connection, or -1. The first and third argument are handed
// through from the host. The table is copied.
CORVANTA_PLATFORM_API int32_t
Connections_InitRecording(void* connectionArg0, const char* cookie, void* connectionArg1,
                          const Corvanta::RecordingPlaybackCallbacks& callbacks);
// Closes a recording: 0, or -1 for an index that is not open. On return no callback of it is in progress.
CORVANTA_PLATFORM_API int32_t Connections_EndRecording(int32_t connectionIndex);
// Closes every recording that is open.
CORVANTA_PLATFORM_API void Connections_ClearRecordings();
CORVANTA_PLATFORM_API void Connections_PlaybackStart(int32_t connectionIndex);
CORVANTA_PLATFORM_API void Connections_PlaybackPause(int32_t connectionIndex);
CORVANTA_PLATFORM_API void Connections_PlaybackResume(int32_t connectionIndex);
// `seconds` from the beginning of the recording. The answer comes by the offset-seeked function.
CORVANTA_PLATFORM_API void Connections_PlaybackSeek(int32_t connectionIndex, int64_t seconds);
}
