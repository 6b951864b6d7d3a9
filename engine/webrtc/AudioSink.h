// The end of a pipeline's sound: measures its loudness, applies the listener's volume, and plays it on the
// machine's device or into nothing. Any thread.
#pragma once

#include <gst/gst.h>

#include <mutex>
#include <optional>

#include "engine/Engine.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

class AudioSink final {
public:
    // A new bin with one sink pad, floating; null, and a log line, when an element is missing.
    [[nodiscard]] GstElement* MakeBin(SoundOutput output, double gain);

    // Linear; 0 is silence.
    void SetGain(double gain);

    // Mean square over all channels when the message is this sink's measurement.
    [[nodiscard]] static std::optional<double> ReadLoudness(GstMessage* message);

    // Whether the message's sender is the device element of this sink.
    [[nodiscard]] bool IsDevice(GstObject* sender);

    // Lets go of the elements of a pipeline that is no more.
    void Forget();

private:
    std::mutex elementsMutex;  // guards: everything below
    GstOwned<GstElement> volume, device;
};

// Whether the machine has a device for sound. The first call may take a while; the answer is kept
// for the process.
[[nodiscard]] bool HasSoundDevice();

}  // namespace Corvanta::Engine
