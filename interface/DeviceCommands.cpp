// Changes of camera, microphone and speaker.
#include <SDL.h>

#include <array>
#include <chrono>
#include <cstring>
#include <mutex>
#include <optional>
#include <string>
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

// What the host chose last; the values beside the name are its own and only handed through.
struct DeviceChoice {
    std::optional<std::string> name;
    std::array<void*, 3> others{};
};
std::mutex gLastChoiceMutex;
// guards: what follows
DeviceChoice gLastChoice;

[[nodiscard]] DeviceChoice LastChoice() {
    const std::scoped_lock lock(gLastChoiceMutex);
    return gLastChoice;
}

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

void SDLInterface_AudioQuit(void) {
    SDL_AudioQuit();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

int SDL_GetAudioDeviceIndex(const char* name, bool capture) {
    if (name == nullptr) return -1;
    if (SDL_WasInit(SDL_INIT_AUDIO) == 0 && SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) return -1;
    const int count = SDL_GetNumAudioDevices(capture ? 1 : 0);
    for (int index = 0; index < count; ++index) {
        const char* const device = SDL_GetAudioDeviceName(index, capture ? 1 : 0);
        if (device != nullptr && std::strcmp(device, name) == 0) return index;
    }
    return -1;
}

bool SDLinterface_VideoRoomAudioDeviceUpdate(bool renegotiate) {
    const auto view = CurrentView();
    if (view == nullptr) return false;
    if (renegotiate) {
        DeviceChoice choice = LastChoice();
        return SDLinterface_VideoRoomTriggerDeviceRenegociation(choice.name ? choice.name->data() : nullptr,
                                                                choice.others[0], choice.others[1],
                                                                choice.others[2]);
    }
    WebRTC_ADMStart();
    TellDevices(*view);
    return true;
}

bool SDLinterface_VideoRoomTriggerDeviceRenegociation(void* deviceName, void* deviceArg1, void* deviceArg2,
                                                      void* deviceArg3) {
    const auto view = CurrentView();
    if (view == nullptr) return false;
    {
        const std::scoped_lock lock(gLastChoiceMutex);
        gLastChoice = {deviceName != nullptr
                           ? std::optional<std::string>(static_cast<const char*>(deviceName))
                           : std::nullopt,
                       {deviceArg1, deviceArg2, deviceArg3}};
    }
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
