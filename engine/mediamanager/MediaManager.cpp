// The functions of platform/MediaManager.h over the open room.
#include "platform/MediaManager.h"

#include <utility>

#include "engine/connections/Room.h"
#include "engine/mediamanager/MediaCallbacks.h"
#include "engine/webrtc/GstSupport.h"

namespace {

using Corvanta::Engine::MediaCallbacks;
using Corvanta::Engine::Room;
using Corvanta::Engine::RoomCamera;
using Corvanta::Engine::SinkList;

std::shared_ptr<SinkList> FindSinks(const std::string& sourceId) {
    const auto room = Room::Current();
    return room ? room->FindSinks(sourceId) : nullptr;
}

}  // namespace

namespace Corvanta::Engine {

MediaCallbacks& MediaCallbacks::Get() {
    static MediaCallbacks callbacks;
    return callbacks;
}

void MediaCallbacks::Clear() {
    addRemoteVideoSource.Set({});
    videoTrackAdded.Set({});
    addLocalVideoSource.Set({});
    dataChannelHandlers.Set({});
    removeRemoteVideoSource.Set({});
    connectionStatus.Set({});
    filePlaybackStatus.Set({});
    removeLocalVideoSource.Set({});
    capturedWindowClosed.Set({});
    localVideoAdaptation.Set({});
}

}  // namespace Corvanta::Engine

void MediaManager_Init() {
    // What is wrong with GStreamer is logged here and now; a room then fails to open.
    static_cast<void>(Corvanta::Engine::EnsureGStreamer());
}

void MediaManager_Close() {
    Room::CloseCurrent();
    MediaCallbacks::Get().Clear();
}

void MediaManager_SetAddRemoteVideoSourceSDLCallback(
    std::function<Corvanta::FrameCallback*(const std::string& streamId)> callback) {
    MediaCallbacks::Get().addRemoteVideoSource.Set(std::move(callback));
}

void MediaManager_SetAddOnVideoFrameTracksAddedSDLCallback(
    std::function<void(std::string streamId)> callback) {
    MediaCallbacks::Get().videoTrackAdded.Set(std::move(callback));
}

void MediaManager_SetAddLocalVideoSourceSDLCallback(
    std::function<Corvanta::FrameCallback*(Corvanta::StreamType type, std::string sourceId)> callback) {
    MediaCallbacks::Get().addLocalVideoSource.Set(std::move(callback));
}

void MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList(
    std::function<std::vector<Corvanta::DataChannelCallback>()> callback) {
    MediaCallbacks::Get().dataChannelHandlers.Set(std::move(callback));
}

void MediaManager_SetRemoveRemoteVideoSourceSDLCallback(std::function<void(std::string streamId)> callback) {
    MediaCallbacks::Get().removeRemoteVideoSource.Set(std::move(callback));
}

void MediaManager_SetOnConnectionStatusUpdateSDLCallback(
    std::function<void(std::string streamId, bool lost)> callback) {
    MediaCallbacks::Get().connectionStatus.Set(std::move(callback));
}

void MediaManager_SetOnVideoFilePlaybackStatusUpdateSDLCallback(
    std::function<void(const std::string& streamId, bool status)> callback) {
    MediaCallbacks::Get().filePlaybackStatus.Set(std::move(callback));
}

void MediaManager_SetRemoveLocalVideoSourceSDLCallback(std::function<void(std::string sourceId)> callback) {
    MediaCallbacks::Get().removeLocalVideoSource.Set(std::move(callback));
}

void MediaManager_SetOnWindowCapturedClosedCallback(std::function<void()> callback) {
    MediaCallbacks::Get().capturedWindowClosed.Set(std::move(callback));
}

void MediaManager_SetLocalVideoFrameAdaptationCallback(
    std::function<Corvanta::VideoFrameAdaptation()> callback) {
    MediaCallbacks::Get().localVideoAdaptation.Set(std::move(callback));
}

void MediaManager_RegisterCallback(const std::string& sourceId, Corvanta::FrameCallback* sink) {
    if (const auto sinks = FindSinks(sourceId)) sinks->AddBorrowed(sink);
}

void MediaManager_UnregisterCallback(const std::string& sourceId, Corvanta::FrameCallback* sink) {
    if (const auto sinks = FindSinks(sourceId)) sinks->Remove(sink);
}

std::string MediaManager_IsLocalVideoSourceRunning(int32_t captureIndex) {
    const auto room = Room::Current();
    return room && room->Camera().IsRunning(captureIndex) ? RoomCamera::kSourceId : std::string();
}

bool MediaManager_SendDatachannelMessage(const char* text) {
    const auto room = Room::Current();
    return text != nullptr && room != nullptr && room->SendText(text);
}

void MediaManager_StopLocalVideoSource(const std::string& sourceId) {
    const auto room = Room::Current();
    if (!room) return;
    if (sourceId == RoomCamera::kSourceId) {
        room->Camera().Stop();
    } else {
        room->Streams().StopSource(sourceId);
    }
}
