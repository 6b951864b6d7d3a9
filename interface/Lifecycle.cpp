// Start and stop of the library: what is brought up and taken down, and in which order.
#include <SDL.h>
#include <SDL_ttf.h>

#include <utility>

#include "interface/MediaCallbacks.h"
#include "interface/MessagePeek.h"
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/SdlLog.h"
#include "interface/TickState.h"
#include "platform/Common.h"
#include "platform/Connections.h"
#include "platform/Logger.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "ui/FontManager.h"
#include "ui/RoomActive.h"

namespace Corvanta::Interface {
namespace {

void StartSdl() {
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "best");
    // The host's messages are the host's: all input comes by injection.
    SDL_SetHint(SDL_HINT_WINDOWS_ENABLE_MESSAGELOOP, "0");
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    // Signals and the screen saver are the host's too.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    SDL_Init(SDL_INIT_VIDEO);
    SDL_LogSetAllPriority(SDL_LOG_PRIORITY_VERBOSE);
    SDL_LogSetOutputFunction(&SDLLogOutput, nullptr);
    // SDL starts with text input on, which would take the host's input method.
    SDL_StopTextInput();
}

void EndView() {
    const std::shared_ptr<Room::VideoRoomView> view = CurrentView();
    if (view == nullptr) return;
    gLastMicEnabled.store(view->IsMicEnabled());
    gLastVideoEnabled.store(view->IsVideoEnabled());
    view->Shutdown();
    RetireView(ReplaceCurrentView(nullptr));
}

// The network and media layers go down before the view, so that no frame can arrive at a dying view.
void StopEverything() {
    WebRTC_SetVideoSourceMetadataListener({});
    Connections_SetParticipantJoinedCallback({});
    roomActive.store(false);
    Connections_CloseConnection();
    Connections_ClearRecordings();
    MediaManager_Close();
    ReleaseLentSinks();
    WebRTC_StopAllLocalVideoCaptures();
    WebRTC_Terminate();
    SDLinterface_CloseLocalPreview();
    EndView();
    DeckLink_Shutdown();
    UI::FontManager::Clear();
    Integrations::ProcessMonitor::GetInstance()->StopMonitoring();
    SDL_Quit();
}

}  // namespace
}  // namespace Corvanta::Interface

using namespace Corvanta::Interface;

void SDLinterface_GlobalInit(void) {
    const HostScope host;
    StartSdl();
    TTF_Init();
    Corvanta::UI::FontManager::Instance().Init();
    DeckLink_Initialize();
    WebRTC_Init();
    MediaManager_Init();
    RegisterMediaCallbacks();
    WebRTC_SetVideoSourceMetadataListener({});
}

void SDLinterface_GlobalQuit(void) {
    const HostScope host;
    if (DeferUntilViewIsLeft(&SDLinterface_GlobalQuit)) return;
    try {
        StopEverything();
    } catch (int number) {
        LOG(3, "Cleanup failed with exception number: %d", number);
    }
}

void SDLinterface_VideoRoomQuit(void) {
    SDLinterface_GlobalQuit();
}

int SDLinterface_WindowsFlushEvents(void) {
    return PeekThreadMessages();
}

int SDL_GetCurrentConnectionIndex(void) {
    return gConnectionIndex.load();
}

void SDL_SetVideoRoomConection(int connectionIndex) {
    gConnectionIndex.store(connectionIndex);
}
