// Corvanta.MediaManager as recorders.

#include "platform/MediaManager.h"
#include "tests/fake_platform/FakePlatform.h"

using Corvanta::FrameCallback;
using Corvanta::StreamType;
using Corvanta::Testing::Calls;
using Corvanta::Testing::Fake;
using Corvanta::Testing::FakeResults;
using Corvanta::Testing::UncountedScope;

extern "C" {

void MediaManager_Init() {
    Calls().Record("MediaManager_Init");
}

void MediaManager_Close() {
    Calls().Record("MediaManager_Close");
    Fake().CloseMedia();
}

void MediaManager_SetAddRemoteVideoSourceSDLCallback(
    std::function<FrameCallback*(const std::string& streamId)> callback) {
    Calls().Record("MediaManager_SetAddRemoteVideoSourceSDLCallback", callback);
    Fake().callbacks.addRemoteVideoSource.Set(std::move(callback));
}

void MediaManager_SetAddOnVideoFrameTracksAddedSDLCallback(
    std::function<void(std::string streamId)> callback) {
    Calls().Record("MediaManager_SetAddOnVideoFrameTracksAddedSDLCallback", callback);
    Fake().callbacks.videoFrameTracksAdded.Set(std::move(callback));
}

void MediaManager_SetAddLocalVideoSourceSDLCallback(
    std::function<FrameCallback*(StreamType type, std::string sourceId)> callback) {
    Calls().Record("MediaManager_SetAddLocalVideoSourceSDLCallback", callback);
    Fake().callbacks.addLocalVideoSource.Set(std::move(callback));
}

void MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList(
    std::function<std::vector<Corvanta::DataChannelCallback>()> callback) {
    Calls().Record("MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList", callback);
    Fake().callbacks.remoteDataChannelCallbackList.Set(std::move(callback));
}

void MediaManager_SetRemoveRemoteVideoSourceSDLCallback(std::function<void(std::string streamId)> callback) {
    Calls().Record("MediaManager_SetRemoveRemoteVideoSourceSDLCallback", callback);
    Fake().callbacks.removeRemoteVideoSource.Set(std::move(callback));
}

void MediaManager_SetOnConnectionStatusUpdateSDLCallback(
    std::function<void(std::string streamId, bool lost)> callback) {
    Calls().Record("MediaManager_SetOnConnectionStatusUpdateSDLCallback", callback);
    Fake().callbacks.connectionStatusUpdate.Set(std::move(callback));
}

void MediaManager_SetOnVideoFilePlaybackStatusUpdateSDLCallback(
    std::function<void(const std::string& streamId, bool status)> callback) {
    Calls().Record("MediaManager_SetOnVideoFilePlaybackStatusUpdateSDLCallback", callback);
    Fake().callbacks.videoFilePlaybackStatusUpdate.Set(std::move(callback));
}

void MediaManager_SetRemoveLocalVideoSourceSDLCallback(std::function<void(std::string sourceId)> callback) {
    Calls().Record("MediaManager_SetRemoveLocalVideoSourceSDLCallback", callback);
    Fake().callbacks.removeLocalVideoSource.Set(std::move(callback));
}

void MediaManager_SetOnWindowCapturedClosedCallback(std::function<void()> callback) {
    Calls().Record("MediaManager_SetOnWindowCapturedClosedCallback", callback);
    Fake().callbacks.windowCapturedClosed.Set(std::move(callback));
}

void MediaManager_SetLocalVideoFrameAdaptationCallback(
    std::function<Corvanta::VideoFrameAdaptation()> callback) {
    Calls().Record("MediaManager_SetLocalVideoFrameAdaptationCallback", callback);
    Fake().callbacks.localVideoFrameAdaptation.Set(std::move(callback));
}

void MediaManager_RegisterCallback(const std::string& sourceId, FrameCallback* sink) {
    const UncountedScope uncounted;
    Calls().Record("MediaManager_RegisterCallback", sourceId, sink);
    Fake().RegisterSink(sourceId, sink);
}

void MediaManager_UnregisterCallback(const std::string& sourceId, FrameCallback* sink) {
    const UncountedScope uncounted;
    Calls().Record("MediaManager_UnregisterCallback", sourceId, sink);
    Fake().UnregisterSink(sourceId, sink);
}

std::string MediaManager_IsLocalVideoSourceRunning(int32_t captureIndex) {
    const UncountedScope uncounted;
    Calls().Record("MediaManager_IsLocalVideoSourceRunning", captureIndex);
    return Fake().Get([&](const FakeResults& results) {
        const auto found = results.runningLocalSources.find(captureIndex);
        return found == results.runningLocalSources.end() ? std::string() : found->second;
    });
}

void MediaManager_StopLocalVideoSource(const std::string& sourceId) {
    Calls().Record("MediaManager_StopLocalVideoSource", sourceId);
}

bool MediaManager_SendDatachannelMessage(const char* text) {
    Calls().Record("MediaManager_SendDatachannelMessage", text);
    return Fake().Get([](const FakeResults& results) { return results.messagesAccepted; });
}

bool MediaManager_SendNativeStreamDatachannelMessage(const char* text) {
    Calls().Record("MediaManager_SendNativeStreamDatachannelMessage", text);
    return Fake().Get([](const FakeResults& results) { return results.messagesAccepted; });
}
}
