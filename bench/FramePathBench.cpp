// A frame's way from its sink to the texture (queue, worker, installation, upload) against the bare calls
// that do the same work: the converter on another thread and SDL's update of the texture. What counts is the
// time that the threads compute; the worker's sleep between frames is no cost. Arguments: --rounds N.
#include <SDL.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "bench/Medians.h"
#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/TestFrames.h"
#include "ui/HdrSdl.h"
#include "video/FrameConverter.h"
#include "video/FrameObserver.h"
#include "video/VideoFrame.h"

namespace Corvanta::Bench {
namespace {

constexpr int kDefaultRounds = 15;
// Pixels that one round works through, so that short times are summed up before they are read and caches hold
// what the next frame of the same kind finds there, not what the other side left.
constexpr int kPixelsARound = 32'000'000;

struct Format {
    const char* name;
    VideoFrameBufferType type;
    ColorSpace colorSpace;
};
const std::array kFormats{
    Format{"8-bit 4:2:0", VideoFrameBufferType::YUV420, Testing::kBt709Limited},
    Format{"8-bit 4:2:2", VideoFrameBufferType::YUV422, Testing::kBt709Limited},
    Format{"8-bit 4:4:4", VideoFrameBufferType::YUV444, Testing::kBt709Limited},
    Format{"10-bit 4:2:0", VideoFrameBufferType::YUV420_16, Testing::kBt709Limited},
    Format{"10-bit 4:2:2", VideoFrameBufferType::YUV422_16, Testing::kBt709Limited},
    Format{"10-bit 4:4:4", VideoFrameBufferType::YUV444_16, Testing::kBt709Limited},
    Format{"RGB", VideoFrameBufferType::RGB, Testing::kSrgb},
};

struct Size {
    int width;
    int height;
};
constexpr std::array kSizes{Size{640, 360}, Size{1280, 720}, Size{1920, 1080}, Size{3840, 2160}};
// The size whose ratios stand in the table of results.
constexpr int kTableHeight = 1080;

// A renderer of SDL's software driver that needs no display.
class SurfaceRenderer final {
public:
    SurfaceRenderer()
        : surface_(SDL_CreateRGBSurfaceWithFormat(0, 64, 64, 32, SDL_PIXELFORMAT_ARGB8888)),
          renderer_(SDL_CreateSoftwareRenderer(surface_)) {
        if (renderer_ == nullptr) throw std::runtime_error(SDL_GetError());
    }
    ~SurfaceRenderer() {
        SDL_DestroyRenderer(renderer_);
        SDL_FreeSurface(surface_);
    }
    SurfaceRenderer(const SurfaceRenderer&) = delete;
    SurfaceRenderer& operator=(const SurfaceRenderer&) = delete;
    [[nodiscard]] SDL_Renderer* Get() const { return renderer_; }

private:
    SDL_Surface* surface_;
    SDL_Renderer* renderer_;
};

// Tells on which clock the worker's time can be read.
class WorkerClock final : public Video::FrameObserver {
public:
    explicit WorkerClock(std::atomic<clockid_t>& clock) : clock_(clock) {}
    void OnFrame(const Video::Frame&, int, Uint32, const SDL_Rect&, int, const VideoSourceData&) override {
        clockid_t clock = 0;
        pthread_getcpuclockid(pthread_self(), &clock);
        clock_.store(clock);
    }

private:
    std::atomic<clockid_t>& clock_;
};

// Thread time of a call.
template <typename Call>
Nanoseconds CpuTimeOfCall(Call&& call) {
    const Nanoseconds start = CpuTimeOf(CLOCK_THREAD_CPUTIME_ID);
    std::forward<Call>(call)();
    return CpuTimeOf(CLOCK_THREAD_CPUTIME_ID) - start;
}

// A tile and the frames that are sent to it in turns.
class FramePath final {
public:
    FramePath(SDL_Renderer* renderer, const std::array<Video::Frame, 2>& frames)
        : renderer_(renderer),
          frames_(frames),
          tile_("stream", "session", "profile", Video::TileOrigin::Remote) {
        // The picture is drawn as one pixel: uploading is measured, not drawing.
        tile_.sourceRect = tile_.rect = {0, 0, 1, 1};
        std::atomic<clockid_t> clock{0};
        tile_.SetFrameObserver(std::make_unique<WorkerClock>(clock));
        for (size_t i = 0; i < frames_.size(); ++i) Send();
        tile_.ClearFrameObserver();
        workerClock_ = clock.load();
    }
    ~FramePath() {
        tile_.ReleaseGraphics();
        tile_.Retire();
    }
    FramePath(const FramePath&) = delete;
    FramePath& operator=(const FramePath&) = delete;

    // What all threads compute for that many frames, one after the other.
    Nanoseconds Run(int count) {
        const Nanoseconds start = CpuTimeOf(workerClock_);
        Nanoseconds caller = 0.0;
        for (int i = 0; i < count; ++i) caller += Send();
        return caller + CpuTimeOf(workerClock_) - start;
    }

private:
    // One frame through sink, worker and upload. What the calling thread computes for it, without the wait.
    Nanoseconds Send() {
        const Video::Frame& frame = frames_[next_];
        next_ = 1 - next_;
        const Video::Frame& previous = frames_[next_];
        const long othersOfFrame = frame.use_count();
        Nanoseconds time = CpuTimeOfCall([&] { (*tile_.GetFrameSink())(frame); });
        // The tile owns the new frame and has let go of the one before.
        while (frame.use_count() != othersOfFrame + 1 || previous.use_count() != othersOfFrame) {
            std::this_thread::yield();
        }
        return time + CpuTimeOfCall([&] { tile_.Render(renderer_, {0, 0}); });
    }

    SDL_Renderer* renderer_;
    std::array<Video::Frame, 2> frames_;
    size_t next_ = 0;
    Video::VideoFrame tile_;
    clockid_t workerClock_ = 0;
};

// The same work without the library around it: a thread that converts when it is told to, and the update of a
// texture. It reads and writes as much memory: frames come in turns, and while one picture is uploaded the
// next is already being written.
class BareCalls final {
public:
    BareCalls(SDL_Renderer* renderer, const std::array<Video::Frame, 2>& frames)
        : frames_(frames),
          width_(frames_[0]->GetWidth()),
          height_(frames_[0]->GetHeight()),
          texture_(SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, width_,
                                     height_)),
          thread_([this] { Convert(); }) {
        for (auto& pixels : pixels_) {
            pixels.resize(static_cast<size_t>(width_) * static_cast<size_t>(height_));
        }
        Run(static_cast<int>(frames_.size()));
    }
    ~BareCalls() {
        isOver_.store(true);
        wanted_.release();
        thread_.join();
        SDL_DestroyTexture(texture_);
    }
    BareCalls(const BareCalls&) = delete;
    BareCalls& operator=(const BareCalls&) = delete;

    Nanoseconds Run(int count) {
        Nanoseconds time = 0.0;
        for (int i = 0; i < count; ++i) time += RunOnce();
        return time;
    }

private:
    Nanoseconds RunOnce() {
        next_ = 1 - next_;
        const int pitch = 4 * width_;
        if (const auto* rgb = dynamic_cast<const RGBFrameBuffer*>(frames_[next_].get())) {
            return CpuTimeOfCall([&] { SDL_UpdateTexture(texture_, nullptr, rgb->GetBuffer(), pitch); });
        }
        isDone_.store(false);
        wanted_.release();
        while (!isDone_.load()) std::this_thread::yield();
        return conversionTime_ +
               CpuTimeOfCall([&] { SDL_UpdateTexture(texture_, nullptr, pixels_[next_].data(), pitch); });
    }

    void Convert() {
        while (true) {
            wanted_.acquire();
            if (isOver_.load()) return;
            const auto* frame = dynamic_cast<const PlanarYUVFrameBuffer*>(frames_[next_].get());
            auto* target = pixels_[next_].data();
            const size_t pitch = static_cast<size_t>(width_) * sizeof(uint32_t);
            conversionTime_ = CpuTimeOfCall([&] { Video::ConvertToArgb(*frame, target, pitch); });
            isDone_.store(true);
        }
    }

    std::array<Video::Frame, 2> frames_;
    int width_;
    int height_;
    std::array<std::vector<uint32_t>, 2> pixels_;
    size_t next_ = 0;
    SDL_Texture* texture_;
    Nanoseconds conversionTime_ = 0.0;
    std::counting_semaphore<> wanted_{0};
    std::atomic<bool> isDone_{false};
    std::atomic<bool> isOver_{false};
    std::thread thread_;
};

// A packed picture copied within memory.
Nanoseconds Copy(const Size& size, int count) {
    const std::vector<uint32_t> source(static_cast<size_t>(size.width) * static_cast<size_t>(size.height), 1);
    std::vector<uint32_t> target(source.size());
    return CpuTimeOfCall([&] {
        for (int i = 0; i < count; ++i) {
            std::memcpy(target.data(), source.data(), source.size() * sizeof(uint32_t));
            // Otherwise the copies might be seen to be the same.
            asm volatile("" ::"r"(target.data()) : "memory");
        }
    });
}

// Nanoseconds a frame.
struct Result {
    Nanoseconds path = 0.0;
    Nanoseconds bare = 0.0;
    Nanoseconds copy = 0.0;
};

Result Measure(SDL_Renderer* renderer, const Format& format, const Size& size, int rounds) {
    const Testing::FrameSpec spec{
        .width = size.width, .height = size.height, .type = format.type, .colorSpace = format.colorSpace};
    const std::array frames{Testing::MakeFrame(spec), Testing::MakeFrame(spec)};
    FramePath path(renderer, frames);
    BareCalls bare(renderer, {Testing::MakeFrame(spec), Testing::MakeFrame(spec)});
    const int count = kPixelsARound / (size.width * size.height);
    std::vector<Nanoseconds> pathTimes;
    std::vector<Nanoseconds> bareTimes;
    std::vector<Nanoseconds> copyTimes;
    for (int round = 0; round < rounds; ++round) {
        pathTimes.push_back(path.Run(count) / count);
        bareTimes.push_back(bare.Run(count) / count);
        copyTimes.push_back(Copy(size, count) / count);
    }
    return {MedianOf(pathTimes), MedianOf(bareTimes), MedianOf(copyTimes)};
}

void MeasureAll(int rounds) {
    Testing::Fake().Reset();
    Testing::Calls().SetRecording(false);
    const SurfaceRenderer renderer;
    std::vector<std::pair<std::string, Result>> table;
    std::printf("%-14s %-10s %10s %10s %7s %10s %7s\n", "format", "size", "path ms", "bare ms", "ratio",
                "memcpy ms", "ratio");
    for (const Format& format : kFormats) {
        for (const Size& size : kSizes) {
            const Result result = Measure(renderer.Get(), format, size, rounds);
            const std::string dimensions = std::to_string(size.width) + "x" + std::to_string(size.height);
            std::printf("%-14s %-10s %10.3f %10.3f %7.3f %10.3f %7.2f\n", format.name, dimensions.c_str(),
                        result.path / 1e6, result.bare / 1e6, result.path / result.bare, result.copy / 1e6,
                        result.path / result.copy);
            if (size.height == kTableHeight) table.emplace_back(dimensions + " " + format.name, result);
        }
    }
    for (const auto& [name, result] : table) {
        PrintRatio(("Frame from sink to texture over bare calls, " + name).c_str(), result.path, result.bare,
                   0.0);
    }
    const auto& [name, result] = table.front();
    PrintRatio(("Frame from sink to texture over memcpy, " + name).c_str(), result.path, result.copy, 0.0);
}

}  // namespace
}  // namespace Corvanta::Bench

int main(int argumentCount, char** arguments) {
    int rounds = Corvanta::Bench::kDefaultRounds;
    if (argumentCount == 3 && std::string_view(arguments[1]) == "--rounds") rounds = std::atoi(arguments[2]);
    try {
        Corvanta::Bench::MeasureAll(rounds);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_frame_path: %s\n", error.what());
        return 1;
    }
    return 0;
}
