// The end of a pipeline's sound: measures its loudness and hands it to the room's mixer, or lets it end in
// nothing. Any thread.
#pragma once

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <memory>
#include <mutex>
#include <optional>

#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/SoundMixer.h"

namespace Corvanta::Engine {

class AudioSink final {
public:
    // Without a mixer the sound is measured and not heard.
    explicit AudioSink(std::shared_ptr<SoundMixer> roomMixer);
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
    std::mutex inputMutex;  // guards: input
    std::shared_ptr<SoundMixer::Input> input;
};

}  // namespace Corvanta::Engine
