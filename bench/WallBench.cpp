// One tick of a room with a detached wall and a main video against its own SDL calls made bare, on the same
// renderers in the same run; and what a hundred participants cost where nine are in sight. Arguments:
// --rounds N; --count-instructions frame|steady makes a fixed number of ticks of 25 tiles through
// CorvantaCountedTick and measures nothing, for callgrind.
#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/BenchMain.h"
#include "bench/BenchWall.h"
#include "bench/Medians.h"
#include "bench/SdlReplay.h"
#include "bench/Turns.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Bench {
namespace {

constexpr int kDefaultRounds = 100;
// Between two refreshings of the pictures, so that none becomes stale.
constexpr int kRoundsInARow = 10;
constexpr int kScrollPositions = 5;
constexpr int kAllocationTicks = 5;
constexpr int kCountedTiles = 25;
constexpr int kCountedTicks = 20;
constexpr int kCostTurns = 4;
constexpr double kTickGoal = 1.10;
constexpr double kCostGoal = 1.15;

struct Wall {
    int tiles;
    WallLayout layout;
    int positions;
    bool hasMenu;
    const char* name;
};

constexpr Wall kWalls[] = {
    {1, WallLayout::Grid, 1, false, "1 live tile in a grid"},
    {9, WallLayout::Grid, 1, false, "9 live tiles in a grid"},
    {25, WallLayout::Grid, 1, false, "25 live tiles in a grid"},
    {25, WallLayout::Grid, 1, true, "25 live tiles in a grid, the bar and an open menu"},
    {49, WallLayout::Column, kScrollPositions, false, "49 live tiles in a column"},
    {100, WallLayout::Strip, kScrollPositions, false, "100 live tiles in a strip"}};

// What a tick is made of, at its highest over the scroll positions.
struct Content {
    size_t calls = 0;
    size_t wallCalls = 0;
    size_t drawnTiles = 0;
    size_t allocations = 0;
    size_t texturesMade = 0;
    size_t textsRasterised = 0;

    void Raise(const Content& other) {
        if (other.wallCalls > wallCalls) {
            calls = other.calls;
            wallCalls = other.wallCalls;
            drawnTiles = other.drawnTiles;
        }
        allocations = std::max(allocations, other.allocations);
        texturesMade = std::max(texturesMade, other.texturesMade);
        textsRasterised = std::max(textsRasterised, other.textsRasterised);
    }
};

void BringIf(BenchWall& wall, Arrival arrival) {
    if (arrival == Arrival::Frame) wall.BringFrames();
}

SdlReplay RecordTick(BenchWall& wall, Arrival arrival) {
    BringIf(wall, arrival);
    SdlReplay replay = RecordingOf([&] { wall.Tick(); });
    // The main video's own tile on the wall stays subscribed to when it is scrolled out of sight.
    const size_t highest = arrival == Arrival::Frame ? wall.GetFedTiles() + 1 : 0;
    const size_t uploads = replay.GetUploadCount();
    if (uploads > highest || uploads + 1 < highest) {
        throw std::runtime_error("A tick did not show what had arrived");
    }
    return replay;
}

Content ContentOf(BenchWall& wall, const SdlReplay& replay, Arrival arrival) {
    Content content{.calls = replay.GetCallCount(),
                    .texturesMade = replay.GetTexturesMade(),
                    .textsRasterised = replay.GetTextsRasterised()};
    const auto& calls = replay.GetDescriptions();
    // The room's tick ends with its window's presenting.
    const auto shown = std::find(calls.begin(), calls.end(), "SDL_RenderPresent");
    content.wallCalls = static_cast<size_t>(calls.end() - shown) - 1;
    // Each picture's brightness is set and taken back.
    content.drawnTiles = static_cast<size_t>(std::count(shown, calls.end(), "SDL_SetTextureColorMod")) / 2;
    for (int i = 0; i < kAllocationTicks; ++i) {
        BringIf(wall, arrival);
        content.allocations = std::max(content.allocations, AllocationsOf([&] { wall.Tick(); }));
    }
    return content;
}

Series MeasurePosition(BenchWall& wall, SdlReplay& replay, Arrival arrival, int rounds) {
    Series series;
    for (int done = 0; done < rounds; done += kRoundsInARow) {
        wall.Refresh();
        MeasureInTurns(
            series, replay, arrival, std::min(kRoundsInARow, rounds - done), [&] { wall.BringFrames(); },
            [&] { wall.Tick(); });
    }
    return series;
}

void Print(const std::string& name, const Content& content) {
    std::printf(
        "\n%s: %zu SDL calls, %.1f for each of %zu tiles drawn, %zu allocations, %zu textures made, "
        "%zu texts rasterised\n",
        name.c_str(), content.calls,
        static_cast<double>(content.wallCalls) / static_cast<double>(content.drawnTiles), content.drawnTiles,
        content.allocations, content.texturesMade, content.textsRasterised);
}

void MeasureArrival(const Wall& kind, Arrival arrival, int rounds) {
    BenchWall wall(kind.tiles, kind.layout);
    if (kind.hasMenu) wall.OpenMenu();
    Content content;
    Nanoseconds ticks = 0.0;
    Nanoseconds replays = 0.0;
    double weightedRatios = 0.0;
    for (int position = 0; position < kind.positions; ++position) {
        if (position > 0) wall.ScrollOn(kind.positions - 1);
        SdlReplay replay = RecordTick(wall, arrival);
        content.Raise(ContentOf(wall, replay, arrival));
        const Series series =
            MeasurePosition(wall, replay, arrival, kind.positions > 1 ? rounds / 2 : rounds);
        const Nanoseconds replayed = MedianOf(series.replays);
        ticks += MedianOf(series.ticks);
        replays += replayed;
        weightedRatios += replayed * MedianRatioOf(series.ticks, series.replays);
    }
    if (kind.positions > 1 && !wall.IsLastFed())
        throw std::runtime_error("The wall did not scroll to its end");
    std::string name = "Tick over replay, ";
    name += kind.name;
    name += kind.positions > 1 ? ", scrolled through" : "";
    name += arrival == Arrival::Frame ? ", new frames" : ", no new frame";
    Print(name, content);
    PrintRatio(name.c_str(), ticks, replays, weightedRatios / replays, kTickGoal);
    if (content.allocations + content.texturesMade + content.textsRasterised > 0) {
        throw std::runtime_error("A steady tick allocates, makes textures or rasterises text");
    }
}

// In time that the process computes. No worker does so during a tick, but a driver's own threads may.
std::vector<Nanoseconds> TicksOf(int tiles, Arrival arrival, int rounds) {
    BenchWall wall(tiles, WallLayout::Grid);
    std::vector<Nanoseconds> ticks;
    for (int round = 0; round < rounds; ++round) {
        if (round % kRoundsInARow == 0) wall.Refresh();
        BringIf(wall, arrival);
        const Nanoseconds before = CpuTimeOf(CLOCK_PROCESS_CPUTIME_ID);
        wall.Tick();
        ticks.push_back(CpuTimeOf(CLOCK_PROCESS_CPUTIME_ID) - before);
    }
    return ticks;
}

void MeasureCost(Arrival arrival, int rounds) {
    constexpr int kFew = 9;
    constexpr int kMany = 100;
    std::vector<Nanoseconds> few;
    std::vector<Nanoseconds> many;
    for (int turn = 0; turn < kCostTurns; ++turn) {
        for (const int tiles : {kFew, kMany}) {
            const std::vector<Nanoseconds> ticks = TicksOf(tiles, arrival, rounds / kCostTurns);
            auto& all = tiles == kFew ? few : many;
            all.insert(all.end(), ticks.begin(), ticks.end());
        }
    }
    std::string name = "Cost of 100 participants with a page of 9 in sight over 9 participants, ";
    name += arrival == Arrival::Frame ? "new frames" : "no new frame";
    PrintRatio(name.c_str(), MedianOf(many), MedianOf(few), kCostGoal);
}

void MeasureAll(int rounds) {
    for (const Wall& kind : kWalls) {
        for (const Arrival arrival : {Arrival::Frame, Arrival::None}) MeasureArrival(kind, arrival, rounds);
    }
    for (const Arrival arrival : {Arrival::Frame, Arrival::None}) MeasureCost(arrival, rounds);
}

}  // namespace
}  // namespace Corvanta::Bench

using namespace Corvanta::Bench;

// The function at which callgrind switches its collection on and off.
extern "C" __attribute__((noinline)) void CorvantaCountedTick() {
    SDL_WPFVideoRoomCheckInputAndRender();
    SDLinterface_TickDetachedView();
    // Keeps the call above from becoming a jump, which would leave the collection on.
    asm volatile("" ::: "memory");
}

namespace {

void CountInstructions(Arrival arrival) {
    BenchWall wall(kCountedTiles, WallLayout::Grid);
    for (int i = 0; i < kCountedTicks; ++i) {
        // A slow machine's pictures would become stale.
        if (i % kRoundsInARow == 0) wall.Refresh();
        BringIf(wall, arrival);
        CorvantaCountedTick();
    }
    std::printf("TICKS %d\nTILES %zu\n", kCountedTicks, wall.GetFedTiles());
}

}  // namespace

int main(int argumentCount, char** arguments) {
    return RunBench(argumentCount, arguments, "bench_wall", kDefaultRounds, &MeasureAll, &CountInstructions);
}
