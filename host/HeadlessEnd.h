// Ends a run that nobody watches: after the time that was asked for, or somewhat later on a machine so slow
// that no picture is there yet. Main thread only.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

#include <QTimer>

#include "host/PictureWait.h"

namespace Corvanta::Host {

class HeadlessEnd final {
public:
    // How many others are known to come into the room.
    using Expected = std::function<std::size_t()>;

    // Counts from now, and ends the event loop when the time has come.
    HeadlessEnd(std::chrono::milliseconds runFor, Expected expected);
    HeadlessEnd(const HeadlessEnd&) = delete;
    HeadlessEnd& operator=(const HeadlessEnd&) = delete;

private:
    [[nodiscard]] bool PictureThere() const;

    const Expected expected_;
    PictureWait wait_;
    QTimer timer_;
};

}  // namespace Corvanta::Host
