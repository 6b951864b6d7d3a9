#include "host/HeadlessEnd.h"

#include <QCoreApplication>

#include "engine/Engine.h"

namespace Corvanta::Host {
namespace {

constexpr std::chrono::milliseconds kCheckEvery{20};

// One picture is enough: streams that the room does not show at the moment need not deliver any.
bool PictureThere() {
    const Engine::RoomStatus status = Engine::GetRoomStatus();
    return status.connected && (status.showing > 0 || status.withoutPicture >= status.participants);
}

}  // namespace

HeadlessEnd::HeadlessEnd(std::chrono::milliseconds runFor) : wait_(PictureWait::Clock::now(), runFor) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] {
        if (wait_.IsOver(PictureWait::Clock::now(), PictureThere())) {
            QCoreApplication::exit(0);
        }
    });
    timer_.start(kCheckEvery);
}

}  // namespace Corvanta::Host
