#include "host/RoomSession.h"

#include <QGuiApplication>

#include "host/HostWindow.h"
#include "host/WallControls.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

constexpr int kMainWindow = 0;

}  // namespace

std::variant<std::unique_ptr<RoomSession>, Failure> RoomSession::Enter(HostWindow& window, WallControls& wall,
                                                                       const std::string& roomName) {
    // The library reaches the window over a connection of its own: the server must know it by then.
    QGuiApplication::sync();

    std::unique_ptr<RoomSession> session(new RoomSession(window, wall));
    const HostCallbacks callbacks = RoomCallbacks::Table();
    SDLinterface_SetHostCallbacks(&callbacks);
    session->told_ = window.Room().Metrics();
    session->told_.windowScale = 1.0F;  // what a new view starts with; the first tick tells the true one
    SDLinterface_SetRoomWindow(window.Room().NativeHandle(), session->told_.physicalWidth,
                               session->told_.physicalHeight);
    if (EnterRoom(nullptr, nullptr, roomName.c_str(), roomName.c_str(), false, true, false, nullptr, false) ==
        -1) {
        return Failure{"the room cannot be entered, the log says why"};
    }
    return session;
}

RoomSession::RoomSession(HostWindow& window, WallControls& wall)
    : window_(window), wall_(wall), callbacks_(window, wall) {
    SDLinterface_GlobalInit();
}

RoomSession::~RoomSession() {
    SDLinterface_GlobalQuit();
}

void RoomSession::Tick() {
    const SurfaceMetrics metrics = window_.Room().Metrics();
    if (metrics != told_) {
        TellMetrics(metrics);
    }
    SDL_WPFVideoRoomCheckInputAndRender();
    wall_.Tick();
}

void RoomSession::TellMetrics(const SurfaceMetrics& metrics) {
    SDLinterface_VideoRoomResize(metrics.physicalWidth, metrics.physicalHeight);
    SDLinterface_VideoRoomSetContentScaleFactor(kContentScale);
    SDLinterface_VideoRoomSetViewport(metrics.physicalWidth, metrics.physicalHeight);
    SDLinterface_UpdateWindowScale(kMainWindow, metrics.windowScale);
    told_ = metrics;
}

}  // namespace Corvanta::Host
