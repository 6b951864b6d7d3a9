#include "interface/MediaCallbacks.h"

#include "drawing/DrawingCanvasManager.h"
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "video/StreamSubscription.h"

namespace Corvanta::Interface {
namespace {

// What the media manager owns and calls for every frame of a stream. It shares the tile's sink, so that a
// frame that comes after the tile has gone is dropped.
[[nodiscard]] FrameCallback* NewFrameCallback(std::shared_ptr<FrameCallback> sink, std::string streamId) {
    return new FrameCallback(
        [sink = std::move(sink), id = std::move(streamId)](const std::shared_ptr<VideoFrameBuffer>& frame) {
            if (sink != nullptr) (*sink)(frame);
        });
}

void OnTrackAdded(std::string streamId) {
    if (const auto view = CurrentView()) view->OnRemoteTrackAdded(streamId);
}

}  // namespace

void RegisterMediaCallbacks() {
    MediaManager_SetAddRemoteVideoSourceSDLCallback(&SDLinterface_VideoRoomAddRemoteVideoSource);
    MediaManager_SetAddOnVideoFrameTracksAddedSDLCallback(&OnTrackAdded);
    MediaManager_SetAddLocalVideoSourceSDLCallback(&SDLinterface_VideoRoomAddLocalVideoSource);
    MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList(
        &SDLinterface_VideoRoomGetRemoteDataChannelCallbacks);
    MediaManager_SetRemoveRemoteVideoSourceSDLCallback(&SDLinterface_VideoRoomRemoveRemoteVideoSource);
    MediaManager_SetOnConnectionStatusUpdateSDLCallback(&SDLinterface_VideoRoomOnConnectionStatusUpdate);
    MediaManager_SetOnVideoFilePlaybackStatusUpdateSDLCallback(
        &SDLinterface_OnNativeStreamPlaybackStatusUpdate);
    MediaManager_SetRemoveLocalVideoSourceSDLCallback(&SDLinterface_VideoRoomRemoveLocalVideoSource);
    // A shared window that closes ends its stream, which is all that the room needs to know.
    MediaManager_SetOnWindowCapturedClosedCallback([] {});
}

}  // namespace Corvanta::Interface

using namespace Corvanta;
using namespace Corvanta::Interface;

FrameCallback* SDLinterface_VideoRoomAddRemoteVideoSource(const std::string& streamId) {
    const auto view = CurrentView();
    if (view == nullptr) return nullptr;
    auto sink = view->AddRemoteVideoSource(streamId);
    return sink == nullptr ? nullptr : NewFrameCallback(std::move(sink), streamId);
}

FrameCallback* SDLinterface_VideoRoomAddLocalVideoSource(StreamType type, std::string streamId) {
    const auto view = CurrentView();
    if (view == nullptr) return nullptr;
    auto sink = view->AddLocalVideoSource(type, streamId);
    return sink == nullptr ? nullptr
                           : NewFrameCallback(std::move(sink), Connections_GetLocalUserStreamID(type));
}

FrameCallback* SDLinterface_VideoRoomAddStream(StreamType type, StreamSourceType sourceType,
                                               const std::string& streamId) {
    return sourceType == StreamSourceType::Local ? SDLinterface_VideoRoomAddLocalVideoSource(type, streamId)
                                                 : SDLinterface_VideoRoomAddRemoteVideoSource(streamId);
}

void SDLinterface_VideoRoomRemoveRemoteVideoSource(std::string streamId) {
    if (const auto view = CurrentView()) view->RemoveRemoteVideoSource(streamId);
}

void SDLinterface_VideoRoomRemoveLocalVideoSource(std::string streamId) {
    if (const auto view = CurrentView()) view->RemoveLocalVideoSource(streamId);
}

std::vector<std::function<void(const DataChannelMessage&)>>
SDLinterface_VideoRoomGetRemoteDataChannelCallbacks() {
    const auto view = CurrentView();
    if (view == nullptr) return {};
    return {[](const DataChannelMessage& message) {
                if (const auto drawings = Drawing::DrawingCanvasManager::Instance()) {
                    drawings->OnDataChannelMessage(message);
                }
            },
            [view](const DataChannelMessage& message) { view->OnDataChannelMessage(message); }};
}

void SDLinterface_VideoRoomOnConnectionStatusUpdate(std::string streamId, bool lost) {
    const auto view = CurrentView();
    if (view == nullptr || !view->UpdateConnectionStatus(streamId, lost) || !lost) return;
    if (streamId != Connections_GetLocalUserStreamID(StreamType::Camera)) {
        Connections_RestartPeerConnection(streamId, WebRTC_IsLocalVideoTrackEnabled(0),
                                          WebRTC_IsLocalAudioTrackEnabled(0), true);
        return;
    }
    Connections_RenegotiateOutboundPeerConnection(view->IsMicEnabled(), view->IsVideoEnabled(), streamId);
    if (const auto sink = view->GetLocalCameraSink()) {
        // The media manager only borrows it, and may still call it when the tile has gone.
        LendSink(sink);
        MediaManager_RegisterCallback(view->GetLocalStreamId(), sink.get());
    }
}

void SDLinterface_OnNativeStreamPlaybackStatusUpdate(const std::string& /*name*/, bool playing) {
    gNativeStreamStatusCallback(playing);
}

void SDLinterface_VideoRoomUpdateActiveSpeaker(std::string streamId) {
    if (const auto view = CurrentView()) view->SetActiveSpeaker(streamId);
}

void SDLinterface_ConfigureStream(std::string streamId, bool video, bool audio, bool data) {
    Video::ConfigureStream(streamId, video, audio, data);
}

void SDLinterface_SetNativeStreamPlaybackStatusCallback(void (*callback)(bool)) {
    gNativeStreamStatusCallback.Set(callback);
}
