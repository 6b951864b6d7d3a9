// What is heard: tones go into the mixer, and what it would play is taken from its sink.
#include "engine/webrtc/SoundMixer.h"

#include <gst/app/gstappsink.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <complex>
#include <memory>
#include <mutex>
#include <numbers>
#include <thread>
#include <utility>
#include <vector>

#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;

constexpr double kLowHz = 500;
constexpr double kHighHz = 1250;
constexpr double kAmplitude = 0.25;
// Whole periods of both tones.
constexpr std::size_t kWindow = SoundMixer::kRate / 50;

// A loop with a thread, and a mixer on it whose sink keeps the last window of what is played.
class Player {
public:
    Player() {
        EnsureStarted();
        loop.Start([this] { loop.Run(); });
        EXPECT_TRUE(Open());
    }
    ~Player() {
        OnLoop([this] { mixer.Close(); });
        loop.Quit();
        loop.Join();
    }

    bool Open() {
        bool isOpen = false;
        OnLoop([&] { isOpen = mixer.Open(MakeTap(), [this] { hasFailed = true; }); });
        return isOpen;
    }

    void OnLoop(const std::function<void()>& task) {
        std::atomic<bool> isDone = false;
        loop.Post([&] {
            task();
            isDone = true;
        });
        ASSERT_TRUE(Eventually([&] { return isDone.load(); }));
    }

    // Amplitude of a tone in what was played last.
    [[nodiscard]] double Amplitude(double frequency) {
        const std::lock_guard lock(playedMutex);
        if (played.size() < kWindow) return 0;
        std::complex<double> sum = 0;
        for (std::size_t index = 0; index < kWindow; ++index) {
            const double angle =
                2 * std::numbers::pi * frequency * static_cast<double>(index) / SoundMixer::kRate;
            sum += static_cast<double>(played[index]) * std::polar(1.0, -angle);
        }
        return 2 * std::abs(sum) / static_cast<double>(kWindow);
    }
    [[nodiscard]] bool Plays(double frequency, double amplitude) {
        return Eventually([&] { return std::abs(Amplitude(frequency) - amplitude) < kAmplitude / 100; });
    }

    EngineLoop loop;
    SoundMixer mixer{loop};
    std::atomic<bool> hasFailed = false;
    GstOwned<GstElement> tap;

private:
    static void EnsureStarted() { ASSERT_TRUE(EnsureGStreamer()); }

    const GstOwned<GstElement>& MakeTap() {
        tap = MakeElement("appsink");
        GstAppSinkCallbacks callbacks{};
        callbacks.new_sample = [](GstAppSink* sink, gpointer self) {
            const GstOwned<GstSample> sample(gst_app_sink_pull_sample(sink));
            if (sample) static_cast<Player*>(self)->Take(gst_sample_get_buffer(sample.get()));
            return GST_FLOW_OK;
        };
        gst_app_sink_set_callbacks(GST_APP_SINK(tap.get()), &callbacks, this, nullptr);
        const auto format = SoundMixer::Format();
        g_object_set(tap.get(), "caps", format.get(), nullptr);
        return tap;
    }

    void Take(GstBuffer* buffer) {
        GstMapInfo map;
        if (gst_buffer_map(buffer, &map, GST_MAP_READ) == FALSE) return;
        const auto* samples = reinterpret_cast<const float*>(map.data);
        const std::size_t frames = map.size / sizeof(float) / SoundMixer::kChannels;
        {
            const std::lock_guard lock(playedMutex);
            played.clear();
            for (std::size_t index = 0; index < frames; ++index)
                played.push_back(samples[index * SoundMixer::kChannels]);
        }
        gst_buffer_unmap(buffer, &map);
    }

    std::mutex playedMutex;  // guards: played
    std::vector<float> played;
};

// Feeds a tone into the mixer as fast as it is played, from a thread of its own.
class Tone {
public:
    Tone(Player& player, double hertz, double gain = 1.0)
        : frequency(hertz), input(player.mixer.MakeInput(gain)), thread([this](const std::stop_token& stop) {
              auto due = std::chrono::steady_clock::now();
              while (!stop.stop_requested()) {
                  if (isOn) input->Push(Piece().get(), GST_CLOCK_TIME_NONE);
                  std::this_thread::sleep_until(due += milliseconds(20));
              }
          }) {}

    const double frequency;
    const std::shared_ptr<SoundMixer::Input> input;
    std::atomic<bool> isOn = true;

private:
    GstOwned<GstBuffer> Piece() {
        GstOwned<GstBuffer> buffer(
            gst_buffer_new_allocate(nullptr, kWindow * SoundMixer::kChannels * sizeof(float), nullptr));
        GstMapInfo map;
        gst_buffer_map(buffer.get(), &map, GST_MAP_WRITE);
        auto* sample = reinterpret_cast<float*>(map.data);
        for (std::size_t index = 0; index < kWindow; ++index, ++frame) {
            const double angle =
                2 * std::numbers::pi * frequency * static_cast<double>(frame) / SoundMixer::kRate;
            for (int channel = 0; channel < SoundMixer::kChannels; ++channel)
                *sample++ = static_cast<float>(kAmplitude * std::sin(angle));
        }
        gst_buffer_unmap(buffer.get(), &map);
        return buffer;
    }

    std::size_t frame = 0;
    std::jthread thread;
};

TEST(SoundMixer, PlaysEverybodyAtOnce) {
    Player player;
    const Tone low(player, kLowHz);
    const Tone high(player, kHighHz);
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
    EXPECT_TRUE(player.Plays(kHighHz, kAmplitude));
}

TEST(SoundMixer, ScalesOneInputByItsGainAloneAndLeavesOutWhoseGainIsZero) {
    Player player;
    const Tone low(player, kLowHz);
    const Tone high(player, kHighHz, 0.5);
    EXPECT_TRUE(player.Plays(kHighHz, kAmplitude / 2));
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
    low.input->SetGain(0.25);
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude / 4));
    low.input->SetGain(0);
    EXPECT_TRUE(player.Plays(kLowHz, 0));
    EXPECT_TRUE(player.Plays(kHighHz, kAmplitude / 2));
    low.input->SetGain(1);
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
}

TEST(SoundMixer, PlaysOnWhenOneComesPausesAndLeaves) {
    Player player;
    Tone low(player, kLowHz);
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
    {
        Tone high(player, kHighHz);
        EXPECT_TRUE(player.Plays(kHighHz, kAmplitude));
        high.isOn = false;
        EXPECT_TRUE(player.Plays(kHighHz, 0));
        high.isOn = true;
        EXPECT_TRUE(player.Plays(kHighHz, kAmplitude));
    }
    EXPECT_TRUE(player.Plays(kHighHz, 0));
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
    low.isOn = false;
    EXPECT_TRUE(player.Plays(kLowHz, 0));
    EXPECT_FALSE(player.hasFailed);
}

TEST(SoundMixer, MeasuresWhatItPlays) {
    Player player;
    EXPECT_EQ(player.mixer.Loudness(), 0);
    const Tone low(player, kLowHz, 0.5);
    const double expected = std::pow(kAmplitude / 2, 2) / 2;
    EXPECT_TRUE(Eventually([&] { return std::abs(player.mixer.Loudness() - expected) < expected / 20; }));
}

TEST(SoundMixer, TakesItsInputsToAnotherSink) {
    Player player;
    const Tone low(player, kLowHz);
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
    low.input->SetGain(0.5);
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(player.Open());
        EXPECT_TRUE(player.Plays(kLowHz, kAmplitude / 2));
    }
}

TEST(SoundMixer, TellsWhenItsSinkFails) {
    Player player;
    const Tone low(player, kLowHz);
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
    GST_ELEMENT_ERROR(player.tap.get(), RESOURCE, WRITE, ("gone"), (nullptr));
    EXPECT_TRUE(Eventually([&] { return player.hasFailed.load(); }));
    EXPECT_EQ(player.mixer.Loudness(), 0);
    ASSERT_TRUE(player.Open());
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
}

TEST(SoundMixer, SurvivesInputsThatComeAndGoOnManyThreads) {
    Player player;
    const Tone low(player, kLowHz);
    {
        std::vector<std::jthread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&] {
                for (int round = 0; round < 15; ++round) {
                    const Tone other(player, kHighHz);
                    std::this_thread::sleep_for(milliseconds(round % 3));
                }
            });
        }
        for (int round = 0; round < 5; ++round) EXPECT_TRUE(player.Open());
    }
    EXPECT_TRUE(player.Plays(kLowHz, kAmplitude));
    EXPECT_TRUE(player.Plays(kHighHz, 0));
}

TEST(SoundMixer, LetsInputsOutliveIt) {
    std::shared_ptr<SoundMixer::Input> input;
    {
        Player player;
        input = player.mixer.MakeInput(1);
    }
    input->SetGain(0.5);
    const GstOwned<GstBuffer> buffer(gst_buffer_new_allocate(nullptr, 8, nullptr));
    input->Push(buffer.get(), GST_CLOCK_TIME_NONE);
}

}  // namespace
}  // namespace Corvanta::Engine
