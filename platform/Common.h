// Sibling library Corvanta.Common: the monitor that watches which of the known applications run on this
// machine. Every operation may be called on any thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "platform/Api.h"

namespace Corvanta::Integrations {

// Numbers of the applications that the monitor knows.
enum class MonitoredApplication : int32_t { DaVinciResolve = 0, AutodeskFlame = 1 };

class ProcessMonitorListenerInterface {
public:
    virtual ~ProcessMonitorListenerInterface() = default;

    // Called on the monitor's own thread, once after subscribing and then at each change. `processes` goes
    // from application number to the id of its process; an application that is not running has no entry.
    virtual void OnProcessesChanged(const std::map<int32_t, int32_t>& processes) = 0;
};

class CORVANTA_PLATFORM_API ProcessMonitor final {
public:
    // The one monitor of the process, never null. It starts watching at the first Subscribe.
    static ProcessMonitor* GetInstance();

    // Shares ownership of the listener until it is unsubscribed. False for null or a listener that is known
    // already.
    bool Subscribe(std::shared_ptr<ProcessMonitorListenerInterface> listener);

    // `key` is the listener's address. Waits for a call in progress on another thread. False for an unknown
    // key.
    bool Unsubscribe(uint64_t key);

    // Ends the watching and lets go of every listener. A later Subscribe starts anew.
    void StopMonitoring();

    ProcessMonitor(const ProcessMonitor&) = delete;
    ProcessMonitor& operator=(const ProcessMonitor&) = delete;

private:
    struct State;

    ProcessMonitor();
    ~ProcessMonitor();

    std::unique_ptr<State> state_;
};

}  // namespace Corvanta::Integrations
