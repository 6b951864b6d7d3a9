// Turns the signals that ask a program to end (Ctrl+C in the terminal, a session's end) into an orderly end
// of the event loop. One object, on the main thread, made before any other thread so that all of them inherit
// the mask.
#pragma once

#include <memory>

class QSocketNotifier;

namespace Corvanta::Host {

class QuitOnSignal final {
public:
    // Blocks the signals; they wait until Watch.
    QuitOnSignal();
    ~QuitOnSignal();
    QuitOnSignal(const QuitOnSignal&) = delete;
    QuitOnSignal& operator=(const QuitOnSignal&) = delete;

    // Starts to listen. The application object must exist and outlive this object's watch.
    void Watch();

private:
    int descriptor_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace Corvanta::Host
