// The process monitor over /proc.
#include <dirent.h>

#include <array>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <fstream>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "engine/common/CallTracker.h"
#include "platform/Common.h"
#include "platform/Configuration.h"
#include "platform/Logger.h"

namespace Corvanta::Integrations {

namespace {

constexpr std::chrono::seconds kScanInterval{2};

// What /proc/<id>/comm gives of a program's file name.
constexpr std::size_t kNameLength = 15;

struct Application {
    MonitoredApplication number;
    // A configuration key, and the name where it says nothing.
    const char* key;
    const char* name;
};
constexpr std::array kApplications{
    Application{MonitoredApplication::DaVinciResolve, "ProcessMonitor.DaVinciResolve", "resolve"},
    Application{MonitoredApplication::AutodeskFlame, "ProcessMonitor.AutodeskFlame", "flame"},
};

// The process names that are looked for, in the order of the table.
std::array<std::string, kApplications.size()> WantedNames() {
    std::array<std::string, kApplications.size()> names;
    for (std::size_t index = 0; index < names.size(); ++index) {
        std::array<char, kNameLength + 1> text{};
        Configuration_GetPropertyString(kApplications[index].key, text.data(),
                                        static_cast<int32_t>(text.size()));
        names[index] = text[0] != '\0' ? text.data() : kApplications[index].name;
    }
    return names;
}

// One that has ended but whose parent has not asked for its result yet still has its name.
bool HasEnded(const std::string& folder) {
    std::ifstream stream(folder + "/stat");
    std::string line;
    std::getline(stream, line);
    // The state stands behind the name, which may hold anything.
    const std::size_t state = line.rfind(')') + 2;
    return state < line.size() && (line[state] == 'Z' || line[state] == 'X');
}

std::map<int32_t, int32_t> Scan() {
    std::map<int32_t, int32_t> running;
    DIR* folder = ::opendir("/proc");
    if (folder == nullptr) return running;
    const auto wanted = WantedNames();
    while (const dirent* entry = ::readdir(folder)) {
        const std::string_view name(entry->d_name);
        int32_t id = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), id);
        if (error != std::errc() || end != name.data() + name.size()) continue;
        std::string place = "/proc/";
        place += name;
        std::ifstream stream(place + "/comm");
        std::string program;
        std::getline(stream, program);
        for (std::size_t index = 0; index < wanted.size(); ++index) {
            if (program == wanted[index] && !HasEnded(place))
                running.emplace(static_cast<int32_t>(kApplications[index].number), id);
        }
    }
    ::closedir(folder);
    return running;
}

}  // namespace

struct ProcessMonitor::State {
    struct Subscription {
        explicit Subscription(std::shared_ptr<ProcessMonitorListenerInterface> target)
            : listener(std::move(target)) {}
        std::shared_ptr<ProcessMonitorListenerInterface> listener;
        Engine::CallTracker tracker;
        bool wasTold = false;  // touched by the watching thread alone
    };

    void Watch(const std::stop_token& stop) {
        std::map<int32_t, int32_t> last;
        std::unique_lock lock(stateMutex);
        while (!stop.stop_requested()) {
            lock.unlock();
            auto running = Scan();
            const bool changed = running != last;
            last = std::move(running);
            lock.lock();
            if (stop.stop_requested()) return;
            subscribed = false;
            const auto current = subscriptions;
            lock.unlock();
            for (const auto& subscription : current) {
                if (!changed && subscription->wasTold) continue;
                subscription->wasTold = true;
                const Engine::CallTracker::Call call(subscription->tracker);
                if (call) subscription->listener->OnProcessesChanged(last);
            }
            lock.lock();
            wake.wait_for(lock, stop, kScanInterval, [this] { return subscribed; });
        }
    }

    std::mutex stateMutex;  // guards: everything below
    std::condition_variable_any wake;
    std::vector<std::shared_ptr<Subscription>> subscriptions;
    bool subscribed = false;
    std::jthread watcher;
};

ProcessMonitor::ProcessMonitor() : state_(std::make_unique<State>()) {}

ProcessMonitor::~ProcessMonitor() {
    StopMonitoring();
}

ProcessMonitor* ProcessMonitor::GetInstance() {
    static ProcessMonitor monitor;
    return &monitor;
}

bool ProcessMonitor::Subscribe(std::shared_ptr<ProcessMonitorListenerInterface> listener) {
    if (!listener) return false;
    const std::lock_guard lock(state_->stateMutex);
    for (const auto& subscription : state_->subscriptions) {
        if (subscription->listener == listener) return false;
    }
    state_->subscriptions.push_back(std::make_shared<State::Subscription>(std::move(listener)));
    state_->subscribed = true;
    state_->wake.notify_all();
    if (!state_->watcher.joinable()) {
        state_->watcher =
            std::jthread([state = state_.get()](const std::stop_token& stop) { state->Watch(stop); });
    }
    return true;
}

bool ProcessMonitor::Unsubscribe(uint64_t key) {
    std::shared_ptr<State::Subscription> gone;
    {
        const std::lock_guard lock(state_->stateMutex);
        auto& all = state_->subscriptions;
        for (auto each = all.begin(); each != all.end() && !gone; ++each) {
            if (reinterpret_cast<uintptr_t>((*each)->listener.get()) != key) continue;
            gone = *each;
            all.erase(each);
            break;
        }
    }
    if (!gone) return false;
    gone->tracker.Close();
    return true;
}

void ProcessMonitor::StopMonitoring() {
    std::vector<std::shared_ptr<State::Subscription>> gone;
    std::jthread ending;
    {
        const std::lock_guard lock(state_->stateMutex);
        gone.swap(state_->subscriptions);
        ending = std::move(state_->watcher);
        ending.request_stop();
    }
    for (const auto& subscription : gone) subscription->tracker.Close();
    if (!ending.joinable()) return;
    if (ending.get_id() == std::this_thread::get_id()) {
        LOG(kLogError, "The process monitor was stopped by one of its own listeners");
        ending.detach();
        return;
    }
    ending.join();
}

}  // namespace Corvanta::Integrations
