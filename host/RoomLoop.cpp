#include "host/RoomLoop.h"

#include <QScreen>

#include "host/HostWindow.h"
#include "host/RoomSession.h"

namespace Corvanta::Host {

RoomLoop::RoomLoop(RoomSession& session, const HostWindow& window) : session_(session), window_(window) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setSingleShot(true);
    timer_.callOnTimeout([this] { Tick(); });
    timer_.start(0);
}

void RoomLoop::Tick() {
    session_.Tick();
    const std::chrono::nanoseconds period = TickSchedule::PeriodOf(window_.screen()->refreshRate());
    timer_.start(schedule_.NextDelay(TickSchedule::Clock::now(), period));
}

}  // namespace Corvanta::Host
