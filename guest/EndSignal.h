// Turns the signals that ask a program to end into an orderly end of a loop, and sees to it that the end
// comes: whoever is not gone some seconds later is ended by the system. One object, made on the main thread
// before any other thread.
#pragma once

#include "engine/common/EngineLoop.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Guest {

class EndSignal final {
public:
    // Between the first signal and the end, at most.
    static constexpr unsigned kLongestGoodbyeSeconds = 5;

    // Blocks the signals in this thread and those that it starts. They are taken while the loop runs.
    explicit EndSignal(Engine::EngineLoop& loop);
    ~EndSignal();
    EndSignal(const EndSignal&) = delete;
    EndSignal& operator=(const EndSignal&) = delete;

private:
    int descriptor;
    Engine::GstOwned<GSource> source;
};

}  // namespace Corvanta::Guest
