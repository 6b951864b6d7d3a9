// The library's life in this program: started, one room entered, and everything taken down again before the
// window goes. Main thread only.
#pragma once

#include <memory>
#include <string>
#include <variant>

#include "host/Failure.h"
#include "host/RoomCallbacks.h"
#include "host/SurfaceMetrics.h"

namespace Corvanta::Host {

class HostWindow;
class WallControls;

class RoomSession final {
public:
    // Starts the library and enters `roomName` on the window's surface, which must be shown already. `window`
    // and `wall` must outlive the session.
    [[nodiscard]] static std::variant<std::unique_ptr<RoomSession>, Failure> Enter(
        HostWindow& window, WallControls& wall, const std::string& roomName);

    ~RoomSession();
    RoomSession(const RoomSession&) = delete;
    RoomSession& operator=(const RoomSession&) = delete;

    // Tells the library what changed about the surface since the last tick, then ticks each window once.
    void Tick();

private:
    RoomSession(HostWindow& window, WallControls& wall);

    void TellMetrics(const SurfaceMetrics& metrics);

    HostWindow& window_;
    WallControls& wall_;
    RoomCallbacks callbacks_;
    SurfaceMetrics told_;
};

}  // namespace Corvanta::Host
