#include "bench/BenchPerson.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <functional>
#include <future>
#include <iterator>
#include <numbers>
#include <string_view>
#include <utility>

#include "bench/Medians.h"
#include "bench/PictureStamp.h"
#include "engine/Engine.h"
#include "engine/connections/TransportChoice.h"
#include "engine/embedded/ScriptedShapes.h"
#include "engine/webrtc/SoundMixer.h"

namespace Corvanta::Bench {

using Engine::MappedPicture;
using Engine::ParticipantMedia;

namespace {

constexpr std::chrono::seconds kPatience{30};
constexpr std::chrono::milliseconds kLook{1};
constexpr std::string_view kSaid = "bench ";
constexpr double kMsPerNs = 1e-6;

template <typename Duration>
double Ms(Duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

std::int64_t NowNs() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool Until(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(kLook);
    }
    return true;
}

}  // namespace

BenchPerson::BenchPerson(const BenchPersonOptions& personOptions)
    : options(personOptions),
      wantsPictures(options.takesPictures),
      wantsSound(options.takesSound),
      random(static_cast<std::mt19937::result_type>(std::hash<std::string>()(options.name))),
      resetAt(Clock::now()),
      cpuAtReset(CpuTimeOf(CLOCK_PROCESS_CPUTIME_ID)) {
    Engine::EngineOptions room;
    room.room = options.room;
    // Never opened: nobody listens here.
    transport = Engine::ChooseTransport(room, options.name)(loop, std::make_shared<Engine::SoundMixer>(loop));
    loop.Start([this] { loop.Run(); });
}

BenchPerson::~BenchPerson() {
    tone = {};
    clip.reset();
    Do([this] {
        if (isInside) {
            for (auto& [id, stream] : streams) stream.media->Close();
            transport->Stop();
        }
        feed.reset();
        transport.reset();
    });
    loop.Quit();
    loop.Join();
}

void BenchPerson::Do(const std::function<void()>& task) {
    std::promise<void> done;
    loop.Post([&] {
        task();
        done.set_value();
    });
    done.get_future().wait();
}

bool BenchPerson::Enter() {
    // Painted ahead, as a camera is open before a person enters.
    if (options.showsPictures) {
        clip = std::make_unique<StampedClip>(
            options.name, options.look, [this](GstBuffer* buffer, const GstVideoInfo& info) {
                std::shared_ptr<Engine::LocalFeed> taker;
                {
                    const std::lock_guard lock(mutex);
                    taker = feed;
                }
                if (!taker) return;
                if (auto picture = MappedPicture::Make(buffer, info, StampedClip::Colors()))
                    taker->PushPicture(std::move(picture));
            });
    }
    enteredAt = Clock::now();
    isInside = true;
    Do([this] { transport->Start(Events()); });
    const bool isTold = Until([this] {
        const std::lock_guard lock(mutex);
        return entered.has_value();
    });
    if (!isTold) std::fprintf(stderr, "bench_rooms: the room does not answer\n");
    return isTold && *entered;
}

Engine::TransportEvents BenchPerson::Events() {
    return {.entered = [this] { OnEntered(); },
            .failed =
                [this](const std::string& problem) {
                    std::fprintf(stderr, "bench_rooms: %s\n", problem.c_str());
                    const std::lock_guard lock(mutex);
                    entered = false;
                },
            .joined = [this](const Engine::ParticipantDescription& description) { OnJoined(description); },
            .left =
                [this](const std::string& streamId, const std::string&) {
                    std::shared_ptr<ParticipantMedia> media;
                    {
                        const std::lock_guard lock(mutex);
                        const auto place = streams.find(streamId);
                        if (place == streams.end()) return;
                        media = std::move(place->second.media);
                        streams.erase(place);
                    }
                    media->Close();
                },
            .dropped = [](bool) {},
            .muted = [] {}};
}

void BenchPerson::OnEntered() {
    const Engine::LocalTracks tracks{.audio = options.sounds, .video = options.showsPictures};
    auto camera = transport->PublishCamera(tracks);
    {
        const std::lock_guard lock(mutex);
        feed = std::move(camera);
        entered = true;
    }
    if (options.sounds) {
        tone = std::jthread([this](const std::stop_token& stop) {
            auto due = Clock::now();
            while (!stop.stop_requested()) {
                Sound();
                due += std::chrono::milliseconds(20);
                std::this_thread::sleep_until(due);
            }
        });
    }
}

void BenchPerson::Sound() {
    constexpr std::size_t kFrames = Engine::SoundMixer::kRate / 50;
    constexpr double kAmplitude = 0.05;
    const Engine::GstOwned<GstBuffer> sound(
        gst_buffer_new_allocate(nullptr, kFrames * Engine::SoundMixer::kChannels * sizeof(float), nullptr));
    GstMapInfo map;
    if (gst_buffer_map(sound.get(), &map, GST_MAP_WRITE) == FALSE) return;
    auto* samples = reinterpret_cast<float*>(map.data);
    for (std::size_t frame = 0; frame < kFrames; ++frame) {
        // Whole periods of a tone of 500 Hz.
        const double phase =
            2 * std::numbers::pi * 500 * static_cast<double>(frame) / Engine::SoundMixer::kRate;
        samples[2 * frame] = samples[2 * frame + 1] = static_cast<float>(kAmplitude * std::sin(phase));
    }
    gst_buffer_unmap(sound.get(), &map);
    std::shared_ptr<Engine::LocalFeed> taker;
    {
        const std::lock_guard lock(mutex);
        taker = feed;
    }
    if (taker) taker->PushSound(sound.get(), GST_CLOCK_TIME_NONE);
}

void BenchPerson::OnJoined(const Engine::ParticipantDescription& description) {
    const std::string id = description.id;
    const auto media = description.media;
    {
        const std::lock_guard lock(mutex);
        Stream& stream = streams[id];
        stream.name = description.name;
        stream.media = media;
    }
    media->Open(
        {.picture = [this,
                     id](const std::shared_ptr<const MappedPicture>& picture) { OnPicture(id, *picture); },
         .loudness = [](double) {},
         .withoutPicture = [] {},
         .connection = [](bool) {},
         .channel = [](bool) {},
         .text = [this](const std::string& text) { OnText(text); },
         .ended = [] {}});
    media->SetGain(0.0);
    media->SetTracks({.audio = wantsSound, .video = wantsPictures, .data = true});
    media->Play();
}

void BenchPerson::OnPicture(const std::string& id, const MappedPicture& picture) {
    const auto stamp = ReadStamp(picture);
    const double age = stamp ? StampAgeMs(*stamp) : 0.0;
    const std::lock_guard lock(mutex);
    const auto place = streams.find(id);
    if (place == streams.end()) return;
    Stream& stream = place->second;
    ++stream.pictures;
    if (stamp) stream.agesMs.push_back(age);
    if (!stream.firstMs) stream.firstMs = Ms(Clock::now() - enteredAt);
}

void BenchPerson::OnText(const std::string& text) {
    const std::int64_t now = NowNs();
    if (!text.starts_with(kSaid)) return;
    std::int64_t sent = 0;
    std::from_chars(text.data() + kSaid.size(), text.data() + text.size(), sent);
    const std::lock_guard lock(mutex);
    textsMs.push_back(kMsPerNs * static_cast<double>(now - sent));
}

void BenchPerson::ApplyWishes() {
    for (const auto& [id, stream] : streams)
        stream.media->SetTracks({.audio = wantsSound, .video = wantsPictures, .data = true});
}

void BenchPerson::WantPictures(bool wanted) {
    Do([&] {
        wantsPictures = wanted;
        ApplyWishes();
    });
}

void BenchPerson::WantSound(bool wanted) {
    Do([&] {
        wantsSound = wanted;
        ApplyWishes();
    });
}

void BenchPerson::Say() {
    Do([this] { transport->SendText(std::string(kSaid) + std::to_string(NowNs())); });
}

void BenchPerson::Draw() {
    Do([this] {
        if (streams.empty()) return;
        // One after the other, and not all on one.
        const std::size_t number = marks++;
        const auto place = std::next(streams.begin(), static_cast<std::ptrdiff_t>(number % streams.size()));
        transport->SendText(Engine::WriteBroadcast(
            place->first, nlohmann::json::array({Engine::MakeScriptedShape(number, options.look, random)}),
            Engine::ApplyShapes::Add));
    });
}

void BenchPerson::Reset() {
    const std::lock_guard lock(mutex);
    for (auto& [id, stream] : streams) {
        stream.pictures = 0;
        stream.agesMs.clear();
    }
    textsMs.clear();
    resetAt = Clock::now();
    cpuAtReset = CpuTimeOf(CLOCK_PROCESS_CPUTIME_ID);
}

nlohmann::json BenchPerson::Report() const {
    const std::lock_guard lock(mutex);
    nlohmann::json report{{"cpuMs", kMsPerNs * (CpuTimeOf(CLOCK_PROCESS_CPUTIME_ID) - cpuAtReset)},
                          {"wallMs", Ms(Clock::now() - resetAt)},
                          {"textsMs", textsMs},
                          {"streams", nlohmann::json::object()}};
    for (const auto& [id, stream] : streams) {
        report["streams"][stream.name] = {{"pictures", stream.pictures},
                                          {"agesMs", stream.agesMs},
                                          {"firstMs", stream.firstMs.value_or(-1.0)}};
    }
    return report;
}

std::optional<std::vector<double>> BenchPerson::FirstPictures(std::size_t count) const {
    std::vector<double> times;
    const bool allCame = Until([&] {
        const std::lock_guard lock(mutex);
        times.clear();
        for (const auto& [id, stream] : streams) {
            if (stream.firstMs) times.push_back(*stream.firstMs);
        }
        return times.size() >= count;
    });
    if (!allCame) return std::nullopt;
    std::ranges::sort(times);
    return times;
}

}  // namespace Corvanta::Bench
