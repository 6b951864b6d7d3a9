// The host's commands on the room's bar.
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"

using namespace Corvanta::Interface;

void SDLInterface_VideoRoomUpdateRoomName(const char* name) {
    const auto view = CurrentView();
    if (view != nullptr && name != nullptr) view->SetTitle(name);
}

void SDLinterface_VideoRoomUntoggleOptionsButton(bool click) {
    if (const auto view = CurrentView()) CallIntoView([&] { view->UntoggleOptionsButton(click); });
}

void SDLInterface_VideoRoomUntoggleAudioMixer(void) {
    if (const auto view = CurrentView()) CallIntoView([&] { view->UntoggleAudioMixer(); });
}

void SDLInterface_VideoRoomSetShowSidebarNotification(bool shown) {
    if (const auto view = CurrentView()) view->SetSidebarNotification(shown);
}

void SDLinterface_VideoRoomSetDrawToolEnabled(bool enabled) {
    if (const auto view = CurrentView()) view->SetDrawTool(enabled);
}
