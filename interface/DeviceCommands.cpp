// Changes of camera, microphone and speaker.
#include <chrono>
#include <thread>

#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"

namespace Corvanta::Interface {
namespace {

// What the other side needs to see the track end before its source goes.
constexpr std::chrono::milliseconds kTrackEnd{100};

void TellDevices(Room::VideoRoomView& view) {
    view.SetMicNone(WebRTC_MicIsNone());
    view.SetSpeakerNone(WebRTC_SpeakerIsNone());
}

}  // namespace
}  // namespace Corvanta::Interface

using namespace Corvanta;
using namespace Corvanta::Interface;

bool SDLinterface_SetLocalCameraProperties(int width, int height, int frameRate, int bitrate) {
    WebRTC_SetLocalCameraProperties(width, height, frameRate, bitrate);
    Connections_ConfigureOutboundBitrate(WebRTC_GetLocalCameraTargetBitrate());
    return true;
}

bool SDLinterface_VideoRoomAudioDeviceUpdate(bool renegotiate) {
    const auto view = CurrentView();
    if (view == nullptr) return false;
    if (renegotiate)
        return SDLinterface_VideoRoomTriggerDeviceRenegociation(nullptr, nullptr, nullptr, nullptr);
    WebRTC_ADMStart();
    TellDevices(*view);
    return true;
}

bool SDLinterface_VideoRoomTriggerDeviceRenegociation(void* deviceName, void* deviceArg1, void* deviceArg2,
                                                      void* deviceArg3) {
    const auto view = CurrentView();
    if (view == nullptr) return false;
    const int index = WebRTC_GetVideoCaptureIndex(deviceName, deviceArg1, deviceArg2, deviceArg3);
    if (index < 0 && index != view->GetCaptureIndex()) {
        WebRTC_SetEnabledLocalVideoTrack(false, 0);
        std::this_thread::sleep_for(kTrackEnd);
    }
    MediaManager_StopLocalVideoSource(view->GetLocalStreamId());
    const std::string other = MediaManager_IsLocalVideoSourceRunning(index);
    if (!other.empty()) MediaManager_StopLocalVideoSource(other);
    Connections_RenegotiateOutboundPeerConnection(view->IsMicEnabled(), view->IsVideoEnabled(),
                                                  Connections_GetLocalUserStreamID(StreamType::Camera));
    // The media manager only borrows it, and may still call it when the tile has gone.
    if (const auto sink = view->GetLocalCameraSink()) LendSink(sink);
    view->OnCaptureChanged(index);
    TellDevices(*view);
    return true;
}
