// Ticks and their replays, measured in turns in the same run. Before each of them that shows a new frame
// another thread has written the picture: the tiles' workers for the tick, PictureWriter for the replay, so
// that both find it in the same caches. Main thread.
#pragma once

#include <atomic>
#include <semaphore>
#include <thread>
#include <vector>

#include "bench/Medians.h"
#include "bench/SdlReplay.h"
#include "tests/fake_platform/AllocationCounter.h"

namespace Corvanta::Bench {

enum class Arrival { Frame, None };

// Writes a replay's pictures on a thread of its own, as a tile's worker does for a tick.
class PictureWriter final {
public:
    // replay: outlives the writer.
    explicit PictureWriter(SdlReplay& replay) : thread_([this, &replay] { Run(replay); }) {}
    ~PictureWriter() {
        isOver_.store(true);
        wanted_.release();
        thread_.join();
    }
    PictureWriter(const PictureWriter&) = delete;
    PictureWriter& operator=(const PictureWriter&) = delete;

    // Returns when every picture is written; waits as FrameFeed::AwaitReady does.
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

// Adds rounds to the series: a tick, brought its frames before if there are to be new ones, and its replay.
template <typename Bring, typename Tick>
void MeasureInTurns(Series& series, SdlReplay& replay, Arrival arrival, int rounds, const Bring& bring,
                    const Tick& tick) {
    PictureWriter writer(replay);
    const auto ticked = [&] {
        if (arrival == Arrival::Frame) bring();
        series.ticks.push_back(TimeOf(tick));
    };
    const auto bare = [&] {
        if (arrival == Arrival::Frame) writer.Write();
        series.replays.push_back(TimeOf([&] { replay.Run(); }));
    };
    for (int round = 0; round < rounds; ++round) {
        // Neither always comes first.
        if (round % 2 == 0) {
            ticked();
            bare();
        } else {
            bare();
            ticked();
        }
    }
}

template <typename Tick>
[[nodiscard]] size_t AllocationsOf(const Tick& tick) {
    Testing::AllocationCounter::Start();
    tick();
    return Testing::AllocationCounter::Stop();
}

template <typename Tick>
[[nodiscard]] SdlReplay RecordingOf(const Tick& tick) {
    SdlReplay replay;
    replay.Record();
    tick();
    replay.Stop();
    return replay;
}

}  // namespace Corvanta::Bench
