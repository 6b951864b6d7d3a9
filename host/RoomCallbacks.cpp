#include "host/RoomCallbacks.h"

#include <atomic>
#include <cassert>

#include <QMetaObject>

#include "host/HostWindow.h"
#include "host/WallControls.h"

namespace Corvanta::Host {
namespace {

// The functions are plain C ones, so what they act on stands at process scope.
std::atomic<HostWindow*> gWindow{nullptr};
std::atomic<WallControls*> gWall{nullptr};

template <typename Action>
void OnMainThread(Action action) {
    if (HostWindow* const window = gWindow) {
        QMetaObject::invokeMethod(
            window, [window, action] { action(*window); }, Qt::QueuedConnection);
    }
}

void SetFullscreen(bool on) {
    OnMainThread([on](HostWindow& window) { window.SetFullscreen(on); });
}

void LeaveRoom() {
    OnMainThread([](HostWindow& window) { window.close(); });
}

void DetachWall() {
    if (WallControls* const wall = gWall) {
        wall->Later([](WallControls& controls) { controls.Detach(controls.Layout()); });
    }
}

void AttachWall() {
    if (WallControls* const wall = gWall) wall->Later(&WallControls::Attach);
}

}  // namespace

RoomCallbacks::RoomCallbacks(HostWindow& window, WallControls& wall) {
    assert(gWindow == nullptr);
    gWindow = &window;
    gWall = &wall;
}

RoomCallbacks::~RoomCallbacks() {
    gWall = nullptr;
    gWindow = nullptr;
}

HostCallbacks RoomCallbacks::Table() {
    HostCallbacks table{};
    table.SetFullscreen = SetFullscreen;
    table.DetachWall = DetachWall;
    table.AttachWall = AttachWall;
    table.LeaveRoom = LeaveRoom;
    return table;
}

}  // namespace Corvanta::Host
