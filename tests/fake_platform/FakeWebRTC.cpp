// Corvanta.WebRTC as recorders.

#include "platform/WebRTC.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/TestFrames.h"

using Corvanta::ColorSpace;
using Corvanta::StreamType;
using Corvanta::VideoFrameBuffer;
using Corvanta::VideoFrameBufferType;
using Corvanta::VideoFrameTransformer;
using Corvanta::Testing::Calls;
using Corvanta::Testing::Fake;
using Corvanta::Testing::FakeResults;
using Corvanta::Testing::UncountedScope;

// The platform passes these texts by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
extern "C" {

void WebRTC_Init() {
    Calls().Record("WebRTC_Init");
}

void WebRTC_Terminate() {
    Calls().Record("WebRTC_Terminate");
}

void WebRTC_StopAllLocalVideoCaptures() {
    Calls().Record("WebRTC_StopAllLocalVideoCaptures");
}

void DeckLink_Initialize() {
    Calls().Record("DeckLink_Initialize");
}

void DeckLink_Shutdown() {
    Calls().Record("DeckLink_Shutdown");
}

void WebRTC_ADMStart() {
    Calls().Record("WebRTC_ADMStart");
}

bool WebRTC_MicIsNone() {
    Calls().Record("WebRTC_MicIsNone");
    return Fake().Get([](const FakeResults& results) { return results.micIsNone; });
}

bool WebRTC_SpeakerIsNone() {
    Calls().Record("WebRTC_SpeakerIsNone");
    return Fake().Get([](const FakeResults& results) { return results.speakerIsNone; });
}

int32_t WebRTC_GetVideoCaptureIndex(void* deviceName, void* deviceArg1, void* deviceArg2, void* deviceArg3) {
    Calls().Record("WebRTC_GetVideoCaptureIndex", deviceName, deviceArg1, deviceArg2, deviceArg3);
    return Fake().Get([](const FakeResults& results) { return results.videoCaptureIndex; });
}

void WebRTC_SetLocalCameraProperties(int32_t width, int32_t height, int32_t frameRate, int32_t bitrate) {
    Calls().Record("WebRTC_SetLocalCameraProperties", width, height, frameRate, bitrate);
}

uint32_t WebRTC_GetLocalCameraTargetBitrate() {
    Calls().Record("WebRTC_GetLocalCameraTargetBitrate");
    return Fake().Get([](const FakeResults& results) { return results.targetBitrate; });
}

void WebRTC_SetEnabledLocalAudioTrack(bool enabled, int32_t index) {
    Calls().Record("WebRTC_SetEnabledLocalAudioTrack", enabled, index);
    Fake().Set([&](FakeResults& results) { results.localAudioEnabled = enabled; });
}

void WebRTC_SetEnabledLocalVideoTrack(bool enabled, int32_t index) {
    Calls().Record("WebRTC_SetEnabledLocalVideoTrack", enabled, index);
    Fake().Set([&](FakeResults& results) { results.localVideoEnabled = enabled; });
}

bool WebRTC_IsLocalAudioTrackEnabled(int32_t index) {
    Calls().Record("WebRTC_IsLocalAudioTrackEnabled", index);
    return Fake().Get([](const FakeResults& results) { return results.localAudioEnabled; });
}

bool WebRTC_IsLocalVideoTrackEnabled(int32_t index) {
    Calls().Record("WebRTC_IsLocalVideoTrackEnabled", index);
    return Fake().Get([](const FakeResults& results) { return results.localVideoEnabled; });
}

bool WebRTC_IsScreenShareCapturing() {
    Calls().Record("WebRTC_IsScreenShareCapturing");
    return Fake().Get([](const FakeResults& results) { return results.screenShareCapturing; });
}

bool WebRTC_IsNativeStreamCapturing(StreamType type) {
    Calls().Record("WebRTC_IsNativeStreamCapturing", type);
    return Fake().Get(
        [&](const FakeResults& results) { return results.nativeStreamsCapturing.contains(type); });
}

void WebRTC_SetEnabledRemoteAudioTrack(std::string streamId, bool enabled) {
    Calls().Record("WebRTC_SetEnabledRemoteAudioTrack", streamId, enabled);
}

void WebRTC_SetEnabledRemoteVideoTrack(std::string streamId, bool enabled) {
    Calls().Record("WebRTC_SetEnabledRemoteVideoTrack", streamId, enabled);
}

void WebRTC_SetRemoteAudioTrackVolume(std::string streamId, double volume) {
    const UncountedScope uncounted;
    Calls().Record("WebRTC_SetRemoteAudioTrackVolume", streamId, volume);
    Fake().Set([&](FakeResults& results) { results.remoteVolumes[streamId] = volume; });
}

double WebRTC_GetRemoteAudioTrackVolume(const std::string& streamId) {
    Calls().Record("WebRTC_GetRemoteAudioTrackVolume", streamId);
    return Fake().Get([&](const FakeResults& results) {
        const auto found = results.remoteVolumes.find(streamId);
        return found == results.remoteVolumes.end() ? 1.0 : found->second;
    });
}

void WebRTC_SetRemoteAudioTrackIsExternalSource(const std::string& streamId, bool isExternalSource) {
    Calls().Record("WebRTC_SetRemoteAudioTrackIsExternalSource", streamId, isExternalSource);
}

void WebRTC_SetRemoteAudioTrackModifier(Corvanta::RemoteAudioGroup group, double volume) {
    Calls().Record("WebRTC_SetRemoteAudioTrackModifier", group, volume);
}

bool WebRTC_GetActiveSpeaker(std::string& streamId) {
    const UncountedScope uncounted;
    Calls().Record("WebRTC_GetActiveSpeaker", streamId);
    const auto speaker = Fake().Get([](const FakeResults& results) { return results.activeSpeaker; });
    if (speaker) {
        streamId = *speaker;
    }
    return speaker.has_value();
}

void WebRTC_SetConnectionStatsCallback(Corvanta::ConnectionStatsCallback callback) {
    Calls().Record("WebRTC_SetConnectionStatsCallback", callback);
    Fake().callbacks.connectionStats.Set(std::move(callback));
}

void WebRTC_SetVideoSourceMetadataListener(std::function<void(const Corvanta::VideoSourceData&)> listener) {
    Calls().Record("WebRTC_SetVideoSourceMetadataListener", listener);
    Fake().callbacks.videoSourceMetadata.Set(std::move(listener));
}

VideoFrameTransformer* WebRTC_GetFrameTransformerInstance() {
    const UncountedScope uncounted;
    Calls().Record("WebRTC_GetFrameTransformerInstance");
    return Fake().MakeTransformer();
}

void WebRTC_DeleteFrameTransformerInstance(VideoFrameTransformer* transformer) {
    Calls().Record("WebRTC_DeleteFrameTransformerInstance", transformer);
    Fake().DeleteTransformer(transformer);
}

std::shared_ptr<VideoFrameBuffer> WebRTC_ConvertFrame(VideoFrameTransformer* transformer,
                                                      const std::shared_ptr<VideoFrameBuffer>& frame,
                                                      int32_t width, int32_t height,
                                                      VideoFrameBufferType type,
                                                      const ColorSpace& colorSpace) {
    const UncountedScope uncounted;
    Fake().AddConversion(
        {transformer, std::this_thread::get_id(), frame->GetColorSpace(), width, height, type, colorSpace});
    Calls().Record("WebRTC_ConvertFrame", transformer, frame, width, height, type, colorSpace);
    const auto convert = Fake().Get([](const FakeResults& results) { return results.convert; });
    if (convert) {
        return convert(frame, width, height, type, colorSpace);
    }
    return Corvanta::Testing::MakeFrame(
        {.width = width, .height = height, .type = type, .colorSpace = colorSpace});
}

bool WebRTC_ExportStillImageFromVideoFrameBuffer(const std::string& path,
                                                 const std::shared_ptr<VideoFrameBuffer>& frame) {
    const UncountedScope uncounted;
    Fake().AddStillExport({path, std::this_thread::get_id(), frame.get()});
    Calls().Record("WebRTC_ExportStillImageFromVideoFrameBuffer", path, frame);
    return Fake().Get([](const FakeResults& results) { return results.exportSucceeds; });
}

void WebRTC_SetLocalStreamsLocalAudioVolume(float volume) {
    Calls().Record("WebRTC_SetLocalStreamsLocalAudioVolume", volume);
    Fake().Set([&](FakeResults& results) { results.localStreamsVolume = volume; });
}

float WebRTC_GetLocalStreamsLocalAudioVolume() {
    Calls().Record("WebRTC_GetLocalStreamsLocalAudioVolume");
    return Fake().Get([](const FakeResults& results) { return results.localStreamsVolume; });
}

void WebRTC_NativeStreamFilePlay() {
    Calls().Record("WebRTC_NativeStreamFilePlay");
    Fake().Set([](FakeResults& results) { results.fileIsPaused = false; });
}

void WebRTC_NativeStreamFilePause() {
    Calls().Record("WebRTC_NativeStreamFilePause");
    Fake().Set([](FakeResults& results) { results.fileIsPaused = true; });
}

void WebRTC_NativeStreamFileSeek(int64_t millis, bool relative) {
    Calls().Record("WebRTC_NativeStreamFileSeek", millis, relative);
}

void WebRTC_NativeStreamFileGetPlaybackStatus(int64_t* durationMs, int64_t* progressMs, bool* isPaused) {
    Calls().Record("WebRTC_NativeStreamFileGetPlaybackStatus");
    Fake().Get([&](const FakeResults& results) {
        *durationMs = results.fileDurationMs;
        *progressMs = results.fileProgressMs;
        *isPaused = results.fileIsPaused;
    });
}

void WebRTC_NativeStreamFileGetPlaybackControlPrivileges(int32_t* privileges) {
    Calls().Record("WebRTC_NativeStreamFileGetPlaybackControlPrivileges");
    *privileges = Fake().Get([](const FakeResults& results) { return results.filePrivileges; });
}

void WebRTC_NativeStreamFileGetPreviewForPosition(int64_t positionMs,
                                                  std::shared_ptr<VideoFrameBuffer>& frame, bool& loading) {
    Calls().Record("WebRTC_NativeStreamFileGetPreviewForPosition", positionMs);
    Fake().Get([&](const FakeResults& results) {
        loading = results.previewLoading;
        if (results.preview != nullptr) {
            frame = results.preview;
        }
    });
}

double WebRTC_NativeStreamGetVolume() {
    Calls().Record("WebRTC_NativeStreamGetVolume");
    return Fake().Get([](const FakeResults& results) { return results.nativeStreamVolume; });
}

void WebRTC_NativeStreamSetVolume(double volume) {
    Calls().Record("WebRTC_NativeStreamSetVolume", volume);
    Fake().Set([&](FakeResults& results) { results.nativeStreamVolume = volume; });
}

double WebRTC_NativeStreamGetDefaultVolume(StreamType type) {
    Calls().Record("WebRTC_NativeStreamGetDefaultVolume", type);
    return Fake().Get([&](const FakeResults& results) {
        const auto found = results.defaultVolumes.find(type);
        return found == results.defaultVolumes.end() ? 1.0 : found->second;
    });
}

double WebRTC_ConvertVolumePositionToGainDb(double position) {
    const UncountedScope uncounted;
    Calls().Record("WebRTC_ConvertVolumePositionToGainDb", position);
    return Fake().Get([](const FakeResults& results) { return results.gainDb; })(position);
}

void WebRTC_SubscribeToNativeStreamAudioMeter(Corvanta::AudioMeterCallback callback) {
    Calls().Record("WebRTC_SubscribeToNativeStreamAudioMeter", callback);
    Fake().callbacks.audioMeter.Set(std::move(callback));
}

void WebRTC_UnsubscribeFromNativeStreamAudioMeter() {
    Calls().Record("WebRTC_UnsubscribeFromNativeStreamAudioMeter");
    Fake().callbacks.audioMeter.Set({});
}
}
// NOLINTEND(performance-unnecessary-value-param)
