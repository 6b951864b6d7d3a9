// Ticks a session at the rate of the display that its window is on. Main thread only.
#pragma once

#include <chrono>

#include <QTimer>

#include "host/TickSchedule.h"

namespace Corvanta::Host {

class HostWindow;
class RoomSession;

class RoomLoop final {
public:
    // Ticks from the next pass of the event loop until this object goes. Both arguments must outlive it.
    RoomLoop(RoomSession& session, const HostWindow& window);
    ~RoomLoop() = default;
    RoomLoop(const RoomLoop&) = delete;
    RoomLoop& operator=(const RoomLoop&) = delete;

private:
    void Tick();

    RoomSession& session_;
    const HostWindow& window_;
    TickSchedule schedule_;
    QTimer timer_;
};

}  // namespace Corvanta::Host
