// The way into a live room.
#include "drawing/DrawingCanvasManager.h"
#include "interface/Credential.h"
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"
#include "platform/Connections.h"
#include "platform/GraphQLClient.h"
#include "platform/Logger.h"
#include "platform/WebRTC.h"
#include "ui/LockOrder.h"
#include "ui/RoomActive.h"

namespace Corvanta::Interface {
namespace {

// The signed-in user's facts as the client hands them out.
struct ClientProfile {
    GraphQLClientString* id = GraphQLClient_GetProfileId();
    GraphQLClientString* email = GraphQLClient_GetEmail();
    GraphQLClientString* displayName = GraphQLClient_GetDisplayName();

    void Release() const {
        for (GraphQLClientString* string : {id, email, displayName}) GraphQLClient_CStringDealloc(string);
    }
};

[[nodiscard]] const char* OrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

// Puts a new view in the current one's place and frees the old one's window, which the new view may be about
// to use.
std::shared_ptr<Room::VideoRoomView> MakeCurrentView() {
    auto view = std::make_shared<Room::VideoRoomView>(0, gRoomSetting.callbacks);
    AbandonView(ReplaceCurrentView(view));
    return view;
}

void EndFailedEntry(const ClientProfile& profile) {
    LOG(4, "The room's view could not be started on the host's window");
    profile.Release();
    Connections_CloseConnection();
    // A media thread may be the last to let go of it, and must find no window to destroy.
    AbandonView(ReplaceCurrentView(nullptr));
    roomActive.store(false);
    gConnectionIndex.store(-1);
}

}  // namespace
}  // namespace Corvanta::Interface

using namespace Corvanta;
using namespace Corvanta::Interface;

int EnterRoom(void* connectionArg0, void* connectionArg1, const char* sessionName, const char* roomName,
              bool flagB, bool isHost, bool flagC, void* connectionArg7, bool flagD) {
    const HostScope host;
    const UI::OtherRoomScope fromAnother;
    const std::string cookie = ConnectionCookie();
    const ClientProfile profile;
    gConnectionIndex.store(Connections_InitConnection(
        connectionArg0, connectionArg1, OrEmpty(sessionName), cookie.c_str(), profile.email->c_str(),
        profile.id->c_str(), profile.displayName->c_str(), !flagD, !flagD, true, connectionArg7));
    if (gConnectionIndex.load() == -1) {
        LOG(2, "Connection failed");
        return -1;
    }
    LOG(2, "Successfully connected");
    const auto view = MakeCurrentView();
    if (view->Init(gRoomSetting.nativeHandle, gRoomSetting.width, gRoomSetting.height) != 1) {
        EndFailedEntry(profile);
        return -1;
    }
    view->Configure({.roomName = OrEmpty(roomName),
                     .isHost = isHost,
                     .flagB = flagB,
                     .flagC = flagC,
                     .sessionName = OrEmpty(sessionName),
                     .profileId = profile.id->c_str()});
    view->ReadRenderScalingSetting();
    CallIntoView([&] { view->BuildControls(); });
    // The host may have left again from inside a function that was called there.
    if (CurrentView() != view) {
        profile.Release();
        gConnectionIndex.store(-1);
        return -1;
    }
    SDL_SetVideoRoomConection(gConnectionIndex.load());
    Connections_SetDefaultOutboundBitrate(WebRTC_GetLocalCameraTargetBitrate());
    WebRTC_SetEnabledLocalAudioTrack(false, 0);
    view->SetSpeakerEnabled(false);
    ResetTickTimers();
    Connections_SetParticipantJoinedCallback([] {
        if (const auto drawings = Drawing::DrawingCanvasManager::Instance()) drawings->PublishLocalDrawings();
    });
    profile.Release();
    roomActive.store(true);
    return gConnectionIndex.load();
}

void SDLinterface_SetRoomWindow(void* nativeHandle, int width, int height) {
    const HostScope host;
    gRoomSetting.nativeHandle = nativeHandle;
    gRoomSetting.width = width;
    gRoomSetting.height = height;
}

void SDLinterface_SetHostCallbacks(const HostCallbacks* callbacks) {
    const HostScope host;
    gRoomSetting.callbacks = callbacks != nullptr ? *callbacks : HostCallbacks{};
}

void SDLinterface_VideoRoomSetConnectionDroppedCallback(void (*callback)(bool willRetry, bool endedHere)) {
    Connections_SetConnectionDroppedCallback(callback);
}
