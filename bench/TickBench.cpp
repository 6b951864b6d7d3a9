// One tick of a room with one main video against its own SDL calls made bare, on the same renderer in the
// same run. Arguments: --rounds N; --count-instructions frame|steady makes a fixed number of ticks through
// CorvantaCountedTick and measures nothing, for callgrind.
#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/BenchMain.h"
#include "bench/BenchRoom.h"
#include "bench/Medians.h"
#include "bench/SdlReplay.h"
#include "bench/Turns.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Bench {
namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kDefaultRounds = 400;
// Between two refreshings of the picture: one that stands for 7 seconds is dropped from the tile on the wall.
constexpr int kRoundsInARow = 20;
constexpr int kWarmUpTicks = 50;
constexpr int kCountedTicks = 100;
constexpr double kGoal = 1.10;

const std::vector<std::pair<const char*, Testing::FrameSpec>>& Pictures() {
    static const std::vector<std::pair<const char*, Testing::FrameSpec>> pictures{
        {"8-bit 4:2:0", {.width = kWidth, .height = kHeight, .type = VideoFrameBufferType::YUV420}},
        {"10-bit 4:2:0", {.width = kWidth, .height = kHeight, .type = VideoFrameBufferType::YUV420_16}}};
    return pictures;
}

void Tick() {
    SDL_WPFVideoRoomCheckInputAndRender();
}

void Refresh(BenchRoom& room) {
    room.BringFrame();
    Tick();
}

void MeasureArrival(BenchRoom& room, const std::string& name, Arrival arrival, int rounds) {
    if (arrival == Arrival::Frame) room.BringFrame();
    SdlReplay replay = RecordingOf(&Tick);
    if (arrival == Arrival::Frame) room.BringFrame();
    const size_t allocations = AllocationsOf(&Tick);
    std::printf("\n%s: %zu SDL calls, %zu allocations\n", name.c_str(), replay.GetCallCount(), allocations);
    for (const std::string& call : replay.GetDescriptions()) std::printf("    %s\n", call.c_str());
    Series series;
    for (int done = 0; done < rounds; done += kRoundsInARow) {
        Refresh(room);
        MeasureInTurns(
            series, replay, arrival, std::min(kRoundsInARow, rounds - done), [&] { room.BringFrame(); },
            &Tick);
    }
    PrintRatio(name.c_str(), MedianOf(series.ticks), MedianOf(series.replays),
               MedianRatioOf(series.ticks, series.replays), kGoal);
}

void MeasureAll(int rounds) {
    for (const auto& [format, spec] : Pictures()) {
        BenchRoom room(kWidth, kHeight, spec);
        for (int i = 0; i < kWarmUpTicks; ++i) Refresh(room);
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
    for (int i = 0; i < kWarmUpTicks; ++i) Refresh(room);
    for (int i = 0; i < kCountedTicks; ++i) {
        if (i % kRoundsInARow == 0) Refresh(room);
        if (arrival == Arrival::Frame) room.BringFrame();
        CorvantaCountedTick();
    }
    std::printf("TICKS %d\n", kCountedTicks);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    return RunBench(argumentCount, arguments, "bench_tick", kDefaultRounds, &MeasureAll, &CountInstructions);
}
