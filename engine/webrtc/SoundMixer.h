// Mixes the sound of all who are heard and plays it on one device, which so is opened once however many
// there are, or into nothing. Opened and closed on the engine's thread; inputs may be made, fed, changed and
// destroyed on any.
#pragma once

#include <gst/gst.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

class SoundMixer final {
public:
    // One source's way into the mix. It may outlive the mixer, and is heard whenever the mixer is open.
    class Input final {
    public:
        ~Input();
        Input(const Input&) = delete;
        Input& operator=(const Input&) = delete;

        // Sound in the mixer's format. `due` is when it is to enter the mix, on the clock of GStreamer's
        // system; GST_CLOCK_TIME_NONE for at once. Sound of one input is played without gaps as long as it
        // comes steadily. One thread at a time.
        void Push(GstBuffer* buffer, GstClockTime due);

        // Linear; 0 is silence.
        void SetGain(double linear);

    private:
        friend class SoundMixer;

        explicit Input(double linear) : gain(linear) {}
        void Attach(GstElement* roomPipeline, GstElement* mixingElement);
        void Detach();

        std::mutex elementsMutex;  // guards: everything below
        double gain;
        GstOwned<GstElement> source, mixer;
        GstOwned<GstPad> pad;
        GstClockTime next = GST_CLOCK_TIME_NONE;
        bool isPausing = false;
    };

    explicit SoundMixer(EngineLoop& engineLoop);
    ~SoundMixer();
    SoundMixer(const SoundMixer&) = delete;
    SoundMixer& operator=(const SoundMixer&) = delete;

    // Starts to play on `sink`, instead of where it played before. False, and a log line, when an element is
    // missing or the sink refuses. `onFailure` is called on the engine's thread when the sink fails later;
    // then the mixer is closed.
    bool Open(const GstOwned<GstElement>& sink, std::function<void()> onFailure);
    void Close();

    [[nodiscard]] std::shared_ptr<Input> MakeInput(double gain);

    // Mean square of the mixed sound, of the last moment.
    [[nodiscard]] double Loudness() const { return loudness; }

    // How much later than it enters the mix a sound is heard.
    [[nodiscard]] std::chrono::nanoseconds Latency() const;

    // What inputs take: interleaved native floats.
    static constexpr int kRate = 48000;
    static constexpr int kChannels = 2;
    [[nodiscard]] static GstOwned<GstCaps> Format();

private:
    [[nodiscard]] bool Build(const GstOwned<GstElement>& sink);
    bool OnMessage(GstMessage* message);
    // With elementsMutex held.
    void CloseLocked();

    EngineLoop& loop;
    std::atomic<double> loudness = 0;
    // The engine's thread alone.
    std::function<void()> failureHandler;
    GstOwned<GSource> watch;

    mutable std::mutex elementsMutex;  // guards: everything below
    GstOwned<GstElement> pipeline, mixer;
    std::vector<std::weak_ptr<Input>> inputs;
};

}  // namespace Corvanta::Engine
