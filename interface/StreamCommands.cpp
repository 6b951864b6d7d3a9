// Commands about one stream, or about the sound of all.
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"

using namespace Corvanta;
using namespace Corvanta::Interface;

bool SDLinterface_ExportRemoteFrame(const char* streamId) {
    const auto view = CurrentView();
    return view != nullptr && streamId != nullptr && view->ExportRemoteFrame(streamId);
}

void SDLinterface_SetStreamVideoEnabled(const char* streamId, bool enabled) {
    const auto view = CurrentView();
    if (view != nullptr && streamId != nullptr) view->SetStreamVideoEnabled(streamId, enabled);
}

void SDLinterface_SetStreamSoundToggle(const char* streamId, bool on) {
    const auto view = CurrentView();
    if (view != nullptr && streamId != nullptr) view->SetStreamSoundToggle(streamId, on);
}

void SDLinterface_SetStreamSpotlight(const char* streamId, bool respectToggle) {
    const auto view = CurrentView();
    if (view != nullptr && streamId != nullptr) view->SetStreamSpotlight(streamId, respectToggle);
}

void SDLInterface_VideoRoomSetParticipantVolume(const char* streamId, float volume) {
    const auto view = CurrentView();
    if (view != nullptr && streamId != nullptr) view->SetStreamVolume(streamId, volume, false);
}

void SDLInterface_VideoRoomSetParticipantsVolume(float volume) {
    if (const auto view = CurrentView()) view->SetParticipantsVolume(volume);
}

void SDLInterface_VideoRoomSetStreamsVolume(float volume) {
    if (const auto view = CurrentView()) view->SetStreamsVolume(volume);
}

void SDLinterface_RegisterLocalStreamCallback(std::string name, FrameCallback* sink) {
    if (const auto view = CurrentView()) {
        MediaManager_RegisterCallback(view->ResolveMediaSourceId(name), sink);
    }
}

void SDLinterface_UnregisterLocalStreamCallback(std::string name, FrameCallback* sink) {
    if (const auto view = CurrentView()) {
        MediaManager_UnregisterCallback(view->ResolveMediaSourceId(name), sink);
    }
}

void SDLinterface_SetConnectionStatsCallback(void (*callback)(int, double, int, double, double, double,
                                                              double)) {
    WebRTC_SetConnectionStatsCallback(callback != nullptr ? ConnectionStatsCallback(callback)
                                                          : ConnectionStatsCallback());
}
