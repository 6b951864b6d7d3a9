#include "host/HeadlessEnd.h"

#include <QCoreApplication>

#include "engine/Engine.h"

namespace Corvanta::Host {
namespace {

constexpr std::chrono::milliseconds kCheckEvery{20};

bool AllPicturesThere() {
    const Engine::RoomStatus status = Engine::GetRoomStatus();
    return status.connected && status.showing + status.withoutPicture >= status.participants;
}

}  // namespace

HeadlessEnd::HeadlessEnd(std::chrono::milliseconds runFor) : wait_(PictureWait::Clock::now(), runFor) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] {
        if (wait_.IsOver(PictureWait::Clock::now(), AllPicturesThere())) {
            QCoreApplication::exit(0);
        }
    });
    timer_.start(kCheckEvery);
}

}  // namespace Corvanta::Host
