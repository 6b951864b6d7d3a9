// Turns the signals that ask a program to end into an orderly end of a loop, and sees to it that the end
// comes: whoever is not gone some seconds later is ended by the system, whatever holds the loop up. One
// object, made on the main thread before any other thread.
#pragma once

#include <thread>

#include "engine/common/EngineLoop.h"

namespace Corvanta::Guest {

class EndSignal final {
public:
    // Between the first signal and the end, at most.
    static constexpr unsigned kLongestGoodbyeSeconds = 5;

    // Blocks the signals in this thread and those that it starts. They are taken on a thread of their own,
    // also before the loop runs.
    explicit EndSignal(Engine::EngineLoop& loop);
    ~EndSignal();
    EndSignal(const EndSignal&) = delete;
    EndSignal& operator=(const EndSignal&) = delete;

private:
    // What the thread waits for: a signal, or the end of this object.
    const int signals, goodbye;
    std::thread waiting;
};

}  // namespace Corvanta::Guest
