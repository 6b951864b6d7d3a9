// The library's life in this program: started, one room entered, and everything taken down again before the
// window goes. Main thread only.
#pragma once

#include <memory>
#include <variant>

#include "host/Failure.h"
#include "host/RoomCallbacks.h"
#include "host/SurfaceMetrics.h"

namespace Corvanta::Host {

class RoomSession final {
public:
    // Starts the library and enters the room of that name on the window's surface, which must be shown
    // already. The parts must outlive the session.
    [[nodiscard]] static std::variant<std::unique_ptr<RoomSession>, Failure> Enter(const RoomParts& parts);

    ~RoomSession();
    RoomSession(const RoomSession&) = delete;
    RoomSession& operator=(const RoomSession&) = delete;

    // Ticks each window once, then tells the library what has changed about the surface.
    void Tick();

private:
    explicit RoomSession(const RoomParts& parts);

    void TellMetrics(const SurfaceMetrics& metrics);

    HostWindow& window_;
    WallControls& wall_;
    RoomCallbacks callbacks_;
    SurfaceMetrics told_;
};

}  // namespace Corvanta::Host
