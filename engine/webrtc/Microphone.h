// The local user's microphone: captured while it is open, measured, and never played back to the user. Opened
// and closed on the engine's thread; the loudness may be asked on any.
#pragma once

#include <gst/gst.h>

#include <atomic>

#include "engine/common/EngineLoop.h"
#include "engine/webrtc/AudioSink.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

class Microphone final {
public:
    // The listener, which may be empty, gets what is captured.
    Microphone(EngineLoop& engineLoop, AudioSink::Listener soundListener);
    ~Microphone();
    Microphone(const Microphone&) = delete;
    Microphone& operator=(const Microphone&) = delete;

    // Captures from `source` instead of from what was captured before. False, and a log line, when it cannot.
    bool Open(const GstOwned<GstElement>& source);
    // On return nothing is captured.
    void Close();

    [[nodiscard]] bool IsOpen() const { return isOpen; }
    // Mean square of what was captured last; 0 while closed.
    [[nodiscard]] double Loudness() const { return loudness; }

private:
    bool OnMessage(GstMessage* message);

    EngineLoop& loop;
    std::atomic<bool> isOpen = false;
    std::atomic<double> loudness = 0;
    // The engine's thread alone. The sink outlives its pipeline.
    AudioSink soundSink;
    GstOwned<GstElement> pipeline;
    GstOwned<GSource> watch;
};

}  // namespace Corvanta::Engine
