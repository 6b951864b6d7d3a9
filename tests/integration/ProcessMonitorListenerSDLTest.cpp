#include "integration/ProcessMonitorListenerSDL.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <thread>

#include "tests/fake_platform/AllocationCounter.h"

namespace Corvanta::Integrations {
namespace {

TEST(ProcessMonitorListenerSDL, KnowsOfNoProcessAtFirst) {
    const ProcessMonitorListenerSDL listener;
    EXPECT_EQ(listener.IsProcessRunning(0), -1);
}

TEST(ProcessMonitorListenerSDL, KeepsTheLastReportAlone) {
    ProcessMonitorListenerSDL listener;
    listener.OnProcessesChanged({{0, 4711}, {1, 0}});
    EXPECT_EQ(listener.IsProcessRunning(0), 4711);
    EXPECT_EQ(listener.IsProcessRunning(1), 0);
    listener.OnProcessesChanged({{1, 12}});
    EXPECT_EQ(listener.IsProcessRunning(0), -1);
    EXPECT_EQ(listener.IsProcessRunning(1), 12);
}

TEST(ProcessMonitorListenerSDL, KeepsACopy) {
    ProcessMonitorListenerSDL listener;
    std::map<int32_t, int32_t> processes{{0, 1}};
    listener.OnProcessesChanged(processes);
    processes[0] = 2;
    EXPECT_EQ(listener.IsProcessRunning(0), 1);
}

TEST(ProcessMonitorListenerSDL, MayBeReadWhileItIsTold) {
    ProcessMonitorListenerSDL listener;
    std::atomic<bool> stop = false;
    std::thread monitor([&] {
        while (!stop) {
            listener.OnProcessesChanged({{0, 7}});
            listener.OnProcessesChanged({});
        }
    });
    bool plausible = true;
    Testing::AllocationCounter::Start();
    for (int i = 0; i < 2000; ++i) {
        const int32_t process = listener.IsProcessRunning(0);
        plausible = plausible && (process == 7 || process == -1);
    }
    EXPECT_EQ(Testing::AllocationCounter::Stop(), 0U);
    stop = true;
    monitor.join();
    EXPECT_TRUE(plausible);
}

}  // namespace
}  // namespace Corvanta::Integrations
