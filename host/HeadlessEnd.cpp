#include "host/HeadlessEnd.h"

#include <utility>

#include <QCoreApplication>

#include "engine/Engine.h"

namespace Corvanta::Host {
namespace {

constexpr std::chrono::milliseconds kCheckEvery{20};

}  // namespace

HeadlessEnd::HeadlessEnd(std::chrono::milliseconds runFor, Expected expected)
    : expected_(std::move(expected)), wait_(PictureWait::Clock::now(), runFor) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] {
        if (wait_.IsOver(PictureWait::Clock::now(), PictureThere())) {
            QCoreApplication::exit(0);
        }
    });
    timer_.start(kCheckEvery);
}

// One picture of a participant is enough, since streams that the room does not show at the moment need not
// deliver any; but whoever is still to come is waited for.
bool HeadlessEnd::PictureThere() const {
    const Engine::RoomStatus status = Engine::GetRoomStatus();
    if (!status.connected || status.participants < expected_()) return false;
    return status.showing > 0 || status.withoutPicture >= status.participants;
}

}  // namespace Corvanta::Host
