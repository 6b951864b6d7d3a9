// Ends a run that nobody watches: after the time that was asked for, or somewhat later on a machine so slow
// that no picture is there yet. Main thread only.
#pragma once

#include <chrono>

#include <QTimer>

#include "host/PictureWait.h"

namespace Corvanta::Host {

class HeadlessEnd final {
public:
    // Counts from now, and ends the event loop when the time has come.
    explicit HeadlessEnd(std::chrono::milliseconds runFor);
    HeadlessEnd(const HeadlessEnd&) = delete;
    HeadlessEnd& operator=(const HeadlessEnd&) = delete;

private:
    PictureWait wait_;
    QTimer timer_;
};

}  // namespace Corvanta::Host
