// The end of a pipeline's sound: measures its loudness and hands it to the room's mixer, to a listener, to
// both or to nobody. Any thread.
#pragma once

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/SoundMixer.h"

namespace Corvanta::Engine {

class AudioSink final {
public:
    // Sound in the mixer's format on the pipeline's streaming thread, ahead of the gain, with when it is due
    // on the clock of GStreamer's system; GST_CLOCK_TIME_NONE: at once.
    using Listener = std::function<void(GstBuffer* samples, GstClockTime due)>;

    // Without a mixer the sound is not heard; the listener may be empty.
    explicit AudioSink(std::shared_ptr<SoundMixer> roomMixer, Listener soundListener = {});
    AudioSink(const AudioSink&) = delete;
    AudioSink& operator=(const AudioSink&) = delete;

    // A new bin with one sink pad, floating; null, and a log line, when an element is missing. The pipeline's
    // streaming threads must have ended before this object goes.
    [[nodiscard]] GstElement* MakeBin(double gain);

    // Linear; 0 is silence.
    void SetGain(double gain);

    // Mean square over all channels when the message is a measurement of sound.
    [[nodiscard]] static std::optional<double> ReadLoudness(GstMessage* message);

    // Lets go of what belonged to a pipeline that is no more.
    void Forget();

private:
    [[nodiscard]] std::shared_ptr<SoundMixer::Input> CurrentInput();
    GstFlowReturn OnSample(GstAppSink* sink);

    const std::shared_ptr<SoundMixer> mixer;
    const Listener listener;
    std::mutex inputMutex;  // guards: input
    std::shared_ptr<SoundMixer::Input> input;
};

}  // namespace Corvanta::Engine
