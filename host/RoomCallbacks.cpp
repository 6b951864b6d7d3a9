#include "host/RoomCallbacks.h"

#include <atomic>
#include <cassert>

#include <QMetaObject>

#include "host/HostWindow.h"

namespace Corvanta::Host {
namespace {

// The functions are plain C ones, so what they act on stands at process scope.
std::atomic<HostWindow*> gWindow{nullptr};

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

}  // namespace

RoomCallbacks::RoomCallbacks(HostWindow& window) {
    assert(gWindow == nullptr);
    gWindow = &window;
}

RoomCallbacks::~RoomCallbacks() {
    gWindow = nullptr;
}

HostCallbacks RoomCallbacks::Table() {
    HostCallbacks table{};
    table.SetFullscreen = SetFullscreen;
    table.LeaveRoom = LeaveRoom;
    return table;
}

}  // namespace Corvanta::Host
