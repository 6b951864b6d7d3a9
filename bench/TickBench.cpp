// One tick of a room with one main video against its own SDL calls made bare, on the same renderer in the
// same run. Arguments: --rounds N; --count-instructions frame|steady makes a fixed number of ticks through
// CorvantaCountedTick and measures nothing, for callgrind.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <semaphore>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "bench/BenchRoom.h"
#include "bench/Medians.h"
#include "bench/SdlReplay.h"
#include "interface/SDLinterface.h"
#include "tests/fake_platform/AllocationCounter.h"

namespace Corvanta::Bench {
namespace {

using Testing::AllocationCounter;

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kDefaultRounds = 400;
constexpr int kWarmUpTicks = 50;
constexpr int kCountedTicks = 100;
constexpr double kGoal = 1.10;

enum class Arrival { Frame, None };

const std::vector<std::pair<const char*, Testing::FrameSpec>>& Pictures() {
    static const std::vector<std::pair<const char*, Testing::FrameSpec>> pictures{
        {"8-bit 4:2:0", {.width = kWidth, .height = kHeight, .type = VideoFrameBufferType::YUV420}},
        {"10-bit 4:2:0", {.width = kWidth, .height = kHeight, .type = VideoFrameBufferType::YUV420_16}}};
    return pictures;
}

void Tick() {
    SDL_WPFVideoRoomCheckInputAndRender();
}

size_t AllocationsOfTick() {
    AllocationCounter::Start();
    Tick();
    return AllocationCounter::Stop();
}

SdlReplay RecordTick() {
    SdlReplay replay;
    replay.Record();
    Tick();
    replay.Stop();
    return replay;
}

// Writes a replay's pictures on a thread of its own, as a tile's worker does for a tick.
class PictureWriter final {
public:
    explicit PictureWriter(SdlReplay& replay) : thread_([this, &replay] { Run(replay); }) {}
    ~PictureWriter() {
        isOver_.store(true);
        wanted_.release();
        thread_.join();
    }
    PictureWriter(const PictureWriter&) = delete;
    PictureWriter& operator=(const PictureWriter&) = delete;

    // Returns when a picture is written; waits as BenchRoom::BringFrame does.
    void Write() {
        isDone_.store(false);
        wanted_.release();
        while (!isDone_.load()) std::this_thread::yield();
    }

private:
    void Run(SdlReplay& replay) {
        while (true) {
            wanted_.acquire();
            if (isOver_.load()) return;
            replay.RewritePixels();
            isDone_.store(true);
        }
    }

    std::counting_semaphore<> wanted_{0};
    std::atomic<bool> isDone_{false};
    std::atomic<bool> isOver_{false};
    std::thread thread_;
};

struct Series {
    std::vector<Nanoseconds> ticks;
    std::vector<Nanoseconds> replays;
};

// Ticks and replays in turns, each after another thread wrote the picture that it shows, if it is a new one.
Series Measure(BenchRoom& room, SdlReplay& replay, Arrival arrival, int rounds) {
    Series series;
    PictureWriter writer(replay);
    const auto tick = [&] {
        if (arrival == Arrival::Frame) room.BringFrame();
        series.ticks.push_back(TimeOf(&Tick));
    };
    const auto bare = [&] {
        if (arrival == Arrival::Frame) writer.Write();
        series.replays.push_back(TimeOf([&] { replay.Run(); }));
    };
    for (int round = 0; round < rounds; ++round) {
        // Neither always comes first.
        if (round % 2 == 0) {
            tick();
            bare();
        } else {
            bare();
            tick();
        }
    }
    return series;
}

void MeasureArrival(BenchRoom& room, const std::string& name, Arrival arrival, int rounds) {
    if (arrival == Arrival::Frame) room.BringFrame();
    SdlReplay replay = RecordTick();
    if (arrival == Arrival::Frame) room.BringFrame();
    const size_t allocations = AllocationsOfTick();
    std::printf("\n%s: %zu SDL calls, %zu allocations\n", name.c_str(), replay.GetCallCount(), allocations);
    for (const std::string& call : replay.GetDescriptions()) std::printf("    %s\n", call.c_str());
    const Series series = Measure(room, replay, arrival, rounds);
    PrintRatio(name.c_str(), MedianOf(series.ticks), MedianOf(series.replays), kGoal);
}

void MeasureAll(int rounds) {
    for (const auto& [format, spec] : Pictures()) {
        BenchRoom room(kWidth, kHeight, spec);
        for (int i = 0; i < kWarmUpTicks; ++i) {
            room.BringFrame();
            Tick();
        }
        const std::string name = std::string("Tick over replay, one main video, ") + format;
        MeasureArrival(room, name + ", a new frame", Arrival::Frame, rounds);
        MeasureArrival(room, name + ", no new frame", Arrival::None, rounds);
    }
}

}  // namespace
}  // namespace Corvanta::Bench

using namespace Corvanta::Bench;

// The function at which callgrind switches its collection on and off.
extern "C" __attribute__((noinline)) void CorvantaCountedTick() {
    Tick();
    // Keeps the call above from becoming a jump, which would leave the collection on.
    asm volatile("" ::: "memory");
}

namespace {

void CountInstructions(Arrival arrival) {
    BenchRoom room(kWidth, kHeight, Pictures().front().second);
    for (int i = 0; i < kWarmUpTicks; ++i) Tick();
    for (int i = 0; i < kCountedTicks; ++i) {
        if (arrival == Arrival::Frame) room.BringFrame();
        CorvantaCountedTick();
    }
    std::printf("TICKS %d\n", kCountedTicks);
}

void Run(const std::vector<std::string_view>& arguments) {
    int rounds = kDefaultRounds;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const bool hasValue = i + 1 < arguments.size();
        if (arguments[i] == "--rounds" && hasValue) {
            rounds = std::atoi(arguments[++i].data());
        } else if (arguments[i] == "--count-instructions" && hasValue) {
            CountInstructions(arguments[i + 1] == "frame" ? Arrival::Frame : Arrival::None);
            return;
        }
    }
    MeasureAll(rounds);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    // What a host without a graphics card chooses.
    setenv("SDL_RENDER_DRIVER", "software", 0);
    setenv("SDL_FRAMEBUFFER_ACCELERATION", "0", 0);
    try {
        Run({arguments + 1, arguments + argumentCount});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_tick: %s\n", error.what());
        return 1;
    }
    return 0;
}
