#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "engine/configuration/ConfigurationStore.h"
#include "platform/Common.h"
#include "platform/Configuration.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Integrations {
namespace {

using Engine::Eventually;

class Listener final : public ProcessMonitorListenerInterface {
public:
    void OnProcessesChanged(const std::map<int32_t, int32_t>& processes) override {
        const std::lock_guard lock(lastMutex);
        last = processes;
    }
    std::optional<std::map<int32_t, int32_t>> Last() {
        const std::lock_guard lock(lastMutex);
        return last;
    }

private:
    std::mutex lastMutex;
    std::optional<std::map<int32_t, int32_t>> last;
};

// A process that bears a program's name, until the object goes.
class NamedProcess {
public:
    explicit NamedProcess(const char* name) : id(::fork()) {
        if (id != 0) return;
        ::prctl(PR_SET_NAME, name);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        while (true) ::pause();
    }
    ~NamedProcess() {
        ::kill(id, SIGKILL);
        ::waitpid(id, nullptr, 0);
    }
    NamedProcess(const NamedProcess&) = delete;
    NamedProcess& operator=(const NamedProcess&) = delete;
    const pid_t id;
};

uint64_t KeyOf(const std::shared_ptr<Listener>& listener) {
    return reinterpret_cast<uintptr_t>(listener.get());
}

TEST(ProcessMonitor, TellsWhichApplicationsRun) {
    const auto listener = std::make_shared<Listener>();
    ProcessMonitor* const monitor = ProcessMonitor::GetInstance();
    EXPECT_TRUE(monitor->Subscribe(listener));
    EXPECT_TRUE(Eventually([&] { return listener->Last().has_value(); }));
    EXPECT_TRUE(listener->Last()->empty());
    {
        const NamedProcess process("resolve");
        const std::map<int32_t, int32_t> expected{{0, process.id}};
        EXPECT_TRUE(Eventually([&] { return listener->Last() == expected; }));
    }
    EXPECT_TRUE(Eventually([&] { return listener->Last()->empty(); }));
    monitor->StopMonitoring();
}

TEST(ProcessMonitor, CountsAProcessAsEndedBeforeItsParentHasAskedForItsResult) {
    const auto listener = std::make_shared<Listener>();
    ProcessMonitor* const monitor = ProcessMonitor::GetInstance();
    ASSERT_TRUE(monitor->Subscribe(listener));
    const NamedProcess process("flame");
    const std::map<int32_t, int32_t> expected{{1, process.id}};
    EXPECT_TRUE(Eventually([&] { return listener->Last() == expected; }));
    ::kill(process.id, SIGKILL);
    EXPECT_TRUE(Eventually([&] { return listener->Last()->empty(); }));
    monitor->StopMonitoring();
}

TEST(ProcessMonitor, LooksForTheNamesThatTheConfigurationGives) {
    const Engine::TemporaryFolder folder;
    Engine::ConfigurationStore::Get().Open(folder.path);
    const auto listener = std::make_shared<Listener>();
    ProcessMonitor* const monitor = ProcessMonitor::GetInstance();
    Configuration_SetPropertyString("ProcessMonitor.DaVinciResolve", "a-long-name-for-a-program");
    ASSERT_TRUE(monitor->Subscribe(listener));
    const NamedProcess usual("resolve");
    // A process bears 15 bytes of a name.
    const NamedProcess longer("a-long-name-for-a-program");
    const std::map<int32_t, int32_t> expected{{0, longer.id}};
    EXPECT_TRUE(Eventually([&] { return listener->Last() == expected; }));

    const NamedProcess other("my-flame");
    Configuration_SetPropertyString("ProcessMonitor.AutodeskFlame", "my-flame");
    Configuration_SetPropertyString("ProcessMonitor.DaVinciResolve", "");
    const std::map<int32_t, int32_t> changed{{0, usual.id}, {1, other.id}};
    EXPECT_TRUE(Eventually([&] { return listener->Last() == changed; }));
    monitor->StopMonitoring();
    Configuration_SetPropertyString("ProcessMonitor.AutodeskFlame", "");
    Engine::ConfigurationStore::Get().Flush();
}

TEST(ProcessMonitor, RefusesWhatItKnowsAndWhatItDoesNotKnow) {
    const auto listener = std::make_shared<Listener>();
    ProcessMonitor* const monitor = ProcessMonitor::GetInstance();
    EXPECT_FALSE(monitor->Subscribe(nullptr));
    EXPECT_TRUE(monitor->Subscribe(listener));
    EXPECT_FALSE(monitor->Subscribe(listener));
    EXPECT_TRUE(monitor->Unsubscribe(KeyOf(listener)));
    EXPECT_FALSE(monitor->Unsubscribe(KeyOf(listener)));
    monitor->StopMonitoring();
}

TEST(ProcessMonitor, LetsGoOfItsListenersWhenItStopsAndStartsAnew) {
    const auto listener = std::make_shared<Listener>();
    ProcessMonitor* const monitor = ProcessMonitor::GetInstance();
    monitor->Subscribe(listener);
    monitor->StopMonitoring();
    EXPECT_EQ(listener.use_count(), 1);
    monitor->StopMonitoring();
    const auto next = std::make_shared<Listener>();
    EXPECT_TRUE(monitor->Subscribe(next));
    EXPECT_TRUE(Eventually([&] { return next->Last().has_value(); }));
    monitor->StopMonitoring();
}

}  // namespace
}  // namespace Corvanta::Integrations
