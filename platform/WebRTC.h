// Sibling library Corvanta.WebRTC: the media engine. Functions may be called on any thread; those that the
// tick calls (the queries, the active speaker, the switches of tracks) answer from memory at once. Callbacks
// come on threads of the engine with no lock of the engine held; an empty function ends them, and on return
// no call of the old one is in progress on another thread. Volumes are slider positions from 0.0 to 1.0.
//
// Reconciled forms: WebRTC_SetEnabledLocalAudioTrack and WebRTC_SetEnabledLocalVideoTrack take (enabled,
// index), with index 0 for the one local track of each kind, so a call written (0, false) switches off;
// WebRTC_GetActiveSpeaker fills the string it is given; the out values of
// WebRTC_NativeStreamFileGetPlaybackStatus and WebRTC_NativeStreamFileGetPlaybackControlPrivileges are
// pointers, those of WebRTC_NativeStreamFileGetPreviewForPosition references;
// WebRTC_ExportStillImageFromVideoFrameBuffer returns whether the file was written; the device arguments of
// WebRTC_GetVideoCaptureIndex are four pointer-sized values; volumes of remote tracks are doubles, those of
// the local streams' own sound floats.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Api.h"
#include "platform/ColorSpace.h"
#include "platform/Connections.h"
#include "platform/VideoFrameBuffer.h"
#include "platform/VideoSourceData.h"

namespace Corvanta {

// Opaque converter of frames, for use by one thread at a time. Keeps its tables from frame to frame.
class VideoFrameTransformer;

// The two groups of remote sound that have a common factor.
enum class RemoteAudioGroup : int32_t { Participants = 0, Streams = 1 };

// What viewers of a shared file may do.
enum class PlaybackControlPrivileges : int32_t { OwnerOnly = 0, Everyone = 1 };

// Connection figures of the local user, about once a second: an engine counter, upload and download rate in
// bits a second with an engine counter between, an engine figure, jitter and round-trip time in milliseconds.
using ConnectionStatsCallback =
    std::function<void(int reserved0, double uploadRate, int reserved1, double downloadRate, double reserved2,
                       double jitterMs, double roundTripMs)>;

// Level of each channel, then the minimum and the maximum of their scale, in decibels.
using AudioMeterCallback =
    std::function<void(const std::vector<double>& levels, double scaleMinimum, double scaleMaximum)>;

}  // namespace Corvanta

extern "C" {

// Start and stop

CORVANTA_PLATFORM_API void WebRTC_Init();
// Ends every track and thread of the engine; on return no callback is in progress on another thread. May
// throw an int when the clean-up fails.
CORVANTA_PLATFORM_API void WebRTC_Terminate();
CORVANTA_PLATFORM_API void WebRTC_StopAllLocalVideoCaptures();
// Capture cards.
CORVANTA_PLATFORM_API void DeckLink_Initialize();
CORVANTA_PLATFORM_API void DeckLink_Shutdown();

// Devices and local tracks

// Opens the microphone and the speaker that the configuration names.
CORVANTA_PLATFORM_API void WebRTC_ADMStart();
// Whether no microphone, or no speaker, is in use.
CORVANTA_PLATFORM_API bool WebRTC_MicIsNone();
CORVANTA_PLATFORM_API bool WebRTC_SpeakerIsNone();
// Index of the camera to capture, negative for none. The first value is the device's name as zero-terminated
// UTF-8, or null for the configured camera; the others are handed through from the host. All are read during
// the call.
CORVANTA_PLATFORM_API int32_t WebRTC_GetVideoCaptureIndex(void* deviceName, void* deviceArg1,
                                                          void* deviceArg2, void* deviceArg3);
// Pixels, frames a second, and bits a second of the local camera's picture.
CORVANTA_PLATFORM_API void WebRTC_SetLocalCameraProperties(int32_t width, int32_t height, int32_t frameRate,
                                                           int32_t bitrate);
// Bits a second.
CORVANTA_PLATFORM_API uint32_t WebRTC_GetLocalCameraTargetBitrate();
CORVANTA_PLATFORM_API void WebRTC_SetEnabledLocalAudioTrack(bool enabled, int32_t index);
CORVANTA_PLATFORM_API void WebRTC_SetEnabledLocalVideoTrack(bool enabled, int32_t index);
CORVANTA_PLATFORM_API bool WebRTC_IsLocalAudioTrackEnabled(int32_t index);
CORVANTA_PLATFORM_API bool WebRTC_IsLocalVideoTrackEnabled(int32_t index);
CORVANTA_PLATFORM_API bool WebRTC_IsScreenShareCapturing();
CORVANTA_PLATFORM_API bool WebRTC_IsNativeStreamCapturing(Corvanta::StreamType type);

// Remote tracks. An unknown id is ignored; its volume reads as 1.0.

CORVANTA_PLATFORM_API void WebRTC_SetEnabledRemoteAudioTrack(std::string streamId, bool enabled);
CORVANTA_PLATFORM_API void WebRTC_SetEnabledRemoteVideoTrack(std::string streamId, bool enabled);
CORVANTA_PLATFORM_API void WebRTC_SetRemoteAudioTrackVolume(std::string streamId, double volume);
CORVANTA_PLATFORM_API double WebRTC_GetRemoteAudioTrackVolume(const std::string& streamId);
// Puts a stream's sound into the group Streams instead of Participants.
CORVANTA_PLATFORM_API void WebRTC_SetRemoteAudioTrackIsExternalSource(const std::string& streamId,
                                                                      bool isExternalSource);
// A factor for the sound of all streams of a group.
CORVANTA_PLATFORM_API void WebRTC_SetRemoteAudioTrackModifier(Corvanta::RemoteAudioGroup group,
                                                              double volume);

// Fills in the id of the stream that speaks and returns true, or returns false and leaves the string alone.
CORVANTA_PLATFORM_API bool WebRTC_GetActiveSpeaker(std::string& streamId);

// One listener in all: a new one replaces the old.
CORVANTA_PLATFORM_API void WebRTC_SetConnectionStatsCallback(Corvanta::ConnectionStatsCallback callback);
CORVANTA_PLATFORM_API void WebRTC_SetVideoSourceMetadataListener(
    std::function<void(const Corvanta::VideoSourceData&)> listener);

// Frames

// A converter, never null, that the caller gives back.
CORVANTA_PLATFORM_API Corvanta::VideoFrameTransformer* WebRTC_GetFrameTransformerInstance();
// Null is ignored.
CORVANTA_PLATFORM_API void WebRTC_DeleteFrameTransformerInstance(
    Corvanta::VideoFrameTransformer* transformer);
// A new frame of that size (pixels) and type with its pixels in that colour space, or null when the frame
// cannot be converted, which the engine logs. The frame given is only read.
CORVANTA_PLATFORM_API std::shared_ptr<Corvanta::VideoFrameBuffer> WebRTC_ConvertFrame(
    Corvanta::VideoFrameTransformer* transformer, const std::shared_ptr<Corvanta::VideoFrameBuffer>& frame,
    int32_t width, int32_t height, Corvanta::VideoFrameBufferType type,
    const Corvanta::ColorSpace& colorSpace);
// Writes the frame to a file before it returns. The engine chooses the format and completes the name by it.
// False, and one log line, when the file cannot be written.
CORVANTA_PLATFORM_API bool WebRTC_ExportStillImageFromVideoFrameBuffer(
    const std::string& path, const std::shared_ptr<Corvanta::VideoFrameBuffer>& frame);

// Native streams: sound of the local user's shared streams as this user hears it.

CORVANTA_PLATFORM_API void WebRTC_SetLocalStreamsLocalAudioVolume(float volume);
CORVANTA_PLATFORM_API float WebRTC_GetLocalStreamsLocalAudioVolume();

// The one file or URL that plays locally. Without one these do nothing, and out values are left alone.

CORVANTA_PLATFORM_API void WebRTC_NativeStreamFilePlay();
CORVANTA_PLATFORM_API void WebRTC_NativeStreamFilePause();
// `millis` is a position in milliseconds, or with `relative` a number of frames to step.
CORVANTA_PLATFORM_API void WebRTC_NativeStreamFileSeek(int64_t millis, bool relative);
CORVANTA_PLATFORM_API void WebRTC_NativeStreamFileGetPlaybackStatus(int64_t* durationMs, int64_t* progressMs,
                                                                    bool* isPaused);
// A PlaybackControlPrivileges as a number.
CORVANTA_PLATFORM_API void WebRTC_NativeStreamFileGetPlaybackControlPrivileges(int32_t* privileges);
// Fills `frame` if a picture is ready for the position; sets `loading` while it is being made.
CORVANTA_PLATFORM_API void WebRTC_NativeStreamFileGetPreviewForPosition(
    int64_t positionMs, std::shared_ptr<Corvanta::VideoFrameBuffer>& frame, bool& loading);

// Volume with which the local native stream is sent.
CORVANTA_PLATFORM_API double WebRTC_NativeStreamGetVolume();
CORVANTA_PLATFORM_API void WebRTC_NativeStreamSetVolume(double volume);
// Volume with which a new stream of that kind starts.
CORVANTA_PLATFORM_API double WebRTC_NativeStreamGetDefaultVolume(Corvanta::StreamType type);
// Decibels of a slider position; minus infinity at 0.
CORVANTA_PLATFORM_API double WebRTC_ConvertVolumePositionToGainDb(double position);

// One subscriber in all, called on a media thread some twenty times a second while a native stream plays.
CORVANTA_PLATFORM_API void WebRTC_SubscribeToNativeStreamAudioMeter(Corvanta::AudioMeterCallback callback);
CORVANTA_PLATFORM_API void WebRTC_UnsubscribeFromNativeStreamAudioMeter();
}
