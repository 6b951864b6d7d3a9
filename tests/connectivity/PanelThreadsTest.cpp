// Statistics that come on another thread while the panel is drawn, refreshed, reported, hidden and destroyed.
#include <atomic>
#include <thread>

#include "tests/connectivity/PanelTest.h"

namespace Corvanta::Connectivity {
namespace {

using Testing::Calls;

class PanelThreads : public Testing::PanelTest {
protected:
    PanelThreads() { Calls().SetRecording(false); }
};

TEST_F(PanelThreads, TakeStatisticsWhileThePanelWorks) {
    constexpr int kRounds = 400;
    for (const bool isLocal : {true, false}) {
        if (isLocal) {
            MakeLocal();
        } else {
            MakeRemote();
        }
        std::atomic<bool> isOver = false;
        const std::shared_ptr<ConnectionStats> stats = Panel().GetConnectionStats();
        std::thread media([&] {
            double rate = 0;
            while (!isOver) {
                ++rate;
                stats->OnConnectionStats(0, rate, 0, rate, 0, rate, rate);
            }
        });
        for (int round = 0; round < kRounds; ++round) {
            Panel().SetVisible(round % 7 != 0);
            TurnMs(1700);
            Update();
        }
        isOver = true;
        media.join();
        EXPECT_GT(stats->Get().sample, 0U);
    }
}

TEST_F(PanelThreads, TakeStatisticsAfterThePanelHasGone) {
    MakeLocal();
    const std::shared_ptr<ConnectionStats> stats = Panel().GetConnectionStats();
    std::atomic<bool> isOver = false;
    std::thread media([&] {
        while (!isOver) stats->OnConnectionStats(0, 8.0, 0, 0, 0, 0, 0);
    });
    DeletePanel();
    isOver = true;
    media.join();
    stats->OnConnectionStats(0, 8.0, 0, 0, 0, 0, 0);
    EXPECT_EQ(stats->Get().uploadBytes, 1.0);
}

TEST_F(PanelThreads, EndARequestWithThePanelAtAnyMoment) {
    for (int round = 0; round < 100; ++round) {
        MakeRemote().SetVisible(true);
        TurnMs(3001);
        Update();
        if (round % 2 == 0) {
            TurnMs(3001);
            Update();
        }
        MakeLocal();
    }
    DeletePanel();
}

}  // namespace
}  // namespace Corvanta::Connectivity
