#include "host/RoomSession.h"

#include <QGuiApplication>

#include <string>

#include "engine/Engine.h"
#include "host/HostWindow.h"
#include "host/RoomControls.h"
#include "host/WallControls.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

constexpr int kMainWindow = 0;

}  // namespace

std::variant<std::unique_ptr<RoomSession>, Failure> RoomSession::Enter(const RoomParts& parts) {
    // The library reaches the window over a connection of its own: the server must know it by then.
    QGuiApplication::sync();

    std::unique_ptr<RoomSession> session(new RoomSession(parts));
    HostWindow& window = parts.window;
    SDLinterface_VideoRoomSetConnectionDroppedCallback(RoomCallbacks::OnConnectionDropped);
    const HostCallbacks callbacks = RoomCallbacks::Table();
    SDLinterface_SetHostCallbacks(&callbacks);
    session->told_ = window.Room().Metrics();
    session->told_.windowScale = 1.0F;  // what a new view starts with; the first tick tells the true one
    SDLinterface_SetRoomWindow(window.Room().NativeHandle(), session->told_.physicalWidth,
                               session->told_.physicalHeight);
    if (EnterRoom(nullptr, nullptr, parts.sessionName.c_str(), parts.roomName.c_str(), false, true, false,
                  nullptr, false) == -1) {
        const std::string problem = Engine::EntryProblem();
        return Failure{problem.empty() ? "the room cannot be entered, the log says why"
                                       : "the room cannot be entered: " + problem};
    }
    parts.controls.TellEntered();
    return session;
}

RoomSession::RoomSession(const RoomParts& parts)
    : window_(parts.window), wall_(parts.wall), callbacks_(parts) {
    SDLinterface_GlobalInit();
}

RoomSession::~RoomSession() {
    SDLinterface_GlobalQuit();
    SDLinterface_VideoRoomSetConnectionDroppedCallback(nullptr);
}

void RoomSession::Tick() {
    SDL_WPFVideoRoomCheckInputAndRender();
    const SurfaceMetrics metrics = window_.Room().Metrics();
    if (metrics != told_) TellMetrics(metrics);
    wall_.Tick();
}

void RoomSession::TellMetrics(const SurfaceMetrics& metrics) {
    // What SDL has seen of the window on its way to this size is dropped. All other waiting input goes with
    // it, so this comes after a tick, which has taken that; and it ends before the size is told, since the
    // renderer itself learns of it by such an event.
    SDLinterface_DisableWindowResizingEvents(true);
    SDLinterface_DisableWindowResizingEvents(false);
    SDLinterface_VideoRoomResize(metrics.physicalWidth, metrics.physicalHeight);
    SDLinterface_VideoRoomSetContentScaleFactor(kContentScale);
    SDLinterface_VideoRoomSetViewport(metrics.physicalWidth, metrics.physicalHeight);
    SDLinterface_UpdateWindowScale(kMainWindow, metrics.windowScale);
    told_ = metrics;
}

}  // namespace Corvanta::Host
