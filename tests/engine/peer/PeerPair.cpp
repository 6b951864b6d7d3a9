#include "tests/engine/peer/PeerPair.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <numbers>
#include <utility>

#include "engine/webrtc/SoundMixer.h"
#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

namespace {

// `fill` is given each plane's number, bytes and size.
std::shared_ptr<const MappedPicture> Fill(int width, int height,
                                          const std::function<void(guint, guint8*, std::size_t)>& fill) {
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, static_cast<guint>(width),
                              static_cast<guint>(height));
    const GstOwned<GstBuffer> buffer(gst_buffer_new_allocate(nullptr, info.size, nullptr));
    GstVideoFrame frame;
    gst_video_frame_map(&frame, &info, buffer.get(), GST_MAP_WRITE);
    for (guint plane = 0; plane < 3; ++plane) {
        fill(plane, static_cast<guint8*>(frame.data[plane]),
             static_cast<std::size_t>(frame.info.stride[plane]) *
                 static_cast<std::size_t>(GST_VIDEO_FRAME_COMP_HEIGHT(&frame, plane)));
    }
    gst_video_frame_unmap(&frame);
    return MappedPicture::Make(
        buffer.get(), info,
        ColorSpace(ColorMatrix::SMPTE170M, ColorRange::Limited, ColorPrimaries::BT709, ColorTransfer::BT709));
}

}  // namespace

std::shared_ptr<const MappedPicture> MakePicture(int width, int height, Yuv color) {
    const std::array<int, 3> values = {color.y, color.u, color.v};
    return Fill(width, height, [&](guint plane, guint8* bytes, std::size_t size) {
        std::memset(bytes, values[plane], size);
    });
}

std::shared_ptr<const MappedPicture> MakeNoise(int width, int height) {
    return Fill(width, height, [](guint plane, guint8* bytes, std::size_t size) {
        std::generate_n(bytes, size, [plane] {
            return static_cast<guint8>(plane == 0 ? g_random_int_range(16, 235) : 128);
        });
    });
}

Yuv MeanColor(const MappedPicture& picture) {
    std::array<int, 3> means{};
    for (int plane = 0; plane < 3; ++plane) {
        const int width = plane == 0 ? picture.Width() : (picture.Width() + 1) / 2;
        const int height = plane == 0 ? picture.Height() : (picture.Height() + 1) / 2;
        std::int64_t sum = 0;
        for (int y = 0; y < height; ++y) {
            const uint8_t* row =
                picture.Plane(plane) + static_cast<std::ptrdiff_t>(y) * picture.Stride(plane);
            for (int x = 0; x < width; ++x) sum += row[x];
        }
        means[static_cast<std::size_t>(plane)] = static_cast<int>(sum / (std::int64_t{width} * height));
    }
    return {means[0], means[1], means[2]};
}

RunningLoop::RunningLoop() {
    EXPECT_TRUE(EnsureGStreamer());
    loop.Start([this] { loop.Run(); });
}

RunningLoop::~RunningLoop() {
    loop.Quit();
    loop.Join();
}

void RunningLoop::Do(const std::function<void()>& task) {
    std::promise<void> done;
    loop.Post([&] {
        task();
        done.set_value();
    });
    done.get_future().wait();
}

FeedPump::FeedPump(std::shared_ptr<OutboundFeed> fedFeed, int width, int height, Yuv color,
                   double amplitude) {
    thread = std::thread([this, feed = std::move(fedFeed), width, height, color, amplitude] {
        const auto picture = MakePicture(width, height, color);
        constexpr std::chrono::nanoseconds kInterval{1'000'000'000 / 30};
        constexpr std::size_t kFrames = SoundMixer::kRate / 30;
        auto next = std::chrono::steady_clock::now();
        double phase = 0;
        while (isRunning) {
            feed->PushPicture(picture);
            const GstOwned<GstBuffer> sound(
                gst_buffer_new_allocate(nullptr, kFrames * SoundMixer::kChannels * sizeof(float), nullptr));
            GstMapInfo map;
            gst_buffer_map(sound.get(), &map, GST_MAP_WRITE);
            auto* samples = reinterpret_cast<float*>(map.data);
            for (std::size_t frame = 0; frame < kFrames; ++frame) {
                const auto value = static_cast<float>(amplitude * std::sin(phase));
                phase += 2 * std::numbers::pi * 440 / SoundMixer::kRate;
                samples[2 * frame] = samples[2 * frame + 1] = value;
            }
            gst_buffer_unmap(sound.get(), &map);
            feed->PushSound(sound.get(), GST_CLOCK_TIME_NONE);
            next += kInterval;
            std::this_thread::sleep_until(next);
        }
    });
}

FeedPump::~FeedPump() {
    isRunning = false;
    thread.join();
}

std::vector<std::string> PeerEnd::Texts() {
    const std::lock_guard lock(mutex);
    return texts;
}

std::vector<std::string> PeerEnd::Candidates() {
    const std::lock_guard lock(mutex);
    return candidates;
}

std::string PeerEnd::LastDescription() {
    const std::lock_guard lock(mutex);
    return lastDescription;
}

std::shared_ptr<const MappedPicture> PeerEnd::LastPicture() {
    const std::lock_guard lock(mutex);
    return lastPicture;
}

PeerPair::PeerPair(RunningLoop& runningLoop) : running(runningLoop) {}

PeerPair::~PeerPair() {
    Destroy(offerer);
    Destroy(answerer);
}

void PeerPair::Make(PeerEnd& end, PeerEnd& other, PeerOptions options) {
    const auto hand = [this](std::function<void()> task) { running.loop.Post(std::move(task)); };
    PeerEvents events{.onDescription =
                          [this, hand, &end, &other](const std::string& text) {
                              {
                                  const std::lock_guard lock(end.mutex);
                                  end.lastDescription = text;
                              }
                              ++end.descriptions;
                              hand([&other, handed = onTheWay ? onTheWay(text) : text] {
                                  if (other.connection) other.connection->TakeDescription(handed);
                              });
                          },
                      .onCandidate =
                          [hand, &end, &other](std::uint32_t line, const std::string& text) {
                              {
                                  const std::lock_guard lock(end.mutex);
                                  end.candidates.push_back(text);
                              }
                              hand([&other, line, text] {
                                  if (other.connection) other.connection->TakeCandidate(line, text);
                              });
                          },
                      .onConnected = [&end] { ++end.connects; },
                      .onDisconnected = [&end](const std::string&) { ++end.disconnects; },
                      .onChannelOpen = [&end] { ++end.channels; },
                      .onText =
                          [&end](const std::string& text) {
                              const std::lock_guard lock(end.mutex);
                              end.texts.push_back(text);
                          },
                      .onTextsDrained = [&end] { ++end.drains; },
                      .onVideo =
                          [&end](const std::shared_ptr<const MappedPicture>& picture) {
                              ++end.pictures;
                              const std::lock_guard lock(end.mutex);
                              end.lastPicture = picture;
                          },
                      .onLoudness = [&end](double meanSquare) { end.loudness = meanSquare; }};
    end.connection =
        std::make_shared<PeerConnection>(running.loop, std::move(options), std::move(events), nullptr);
}

void PeerPair::Start(const std::shared_ptr<OutboundFeed>& offererFeed,
                     const std::shared_ptr<OutboundFeed>& answererFeed, PeerOptions offererOptions,
                     PeerOptions answererOptions) {
    offererOptions.name = "answerer";
    offererOptions.role = PeerOptions::Role::Offerer;
    answererOptions.name = "offerer";
    answererOptions.role = PeerOptions::Role::Answerer;
    running.Do([&] {
        Make(offerer, answerer, std::move(offererOptions));
        Make(answerer, offerer, std::move(answererOptions));
        offerer.connection->SetFeed(offererFeed);
        answerer.connection->SetFeed(answererFeed);
        answerer.connection->Start();
        offerer.connection->Start();
    });
}

void PeerPair::Destroy(PeerEnd& end) {
    running.Do([&] {
        if (end.connection) end.connection->Close();
        end.connection.reset();
    });
}

bool PeerPair::AreConnected() const {
    return offerer.connects > 0 && answerer.connects > 0;
}

PeerStatistics PeerPair::Statistics(PeerEnd& end) {
    struct Answer {
        std::mutex mutex;
        std::optional<PeerStatistics> statistics;
    };
    const auto answer = std::make_shared<Answer>();
    running.Do([&] {
        end.connection->RequestStatistics([answer](const PeerStatistics& statistics) {
            const std::lock_guard lock(answer->mutex);
            answer->statistics = statistics;
        });
    });
    PeerStatistics result;
    EXPECT_TRUE(Eventually([&] {
        const std::lock_guard lock(answer->mutex);
        if (answer->statistics) result = *answer->statistics;
        return answer->statistics.has_value();
    }));
    return result;
}

std::size_t CountDescriptors() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
    return count;
}

std::size_t CountThreads(std::string_view name) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string own;
        std::ifstream(entry.path() / "comm") >> own;
        if (own.starts_with(name)) ++count;
    }
    return count;
}

std::size_t ResidentBytes() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

}  // namespace Corvanta::Engine
