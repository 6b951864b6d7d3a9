// Which of the monitored applications run, as the process monitor last told. Shared with the monitor, which
// may keep it longer than its room. Any thread.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>

#include "platform/Common.h"
#include "ui/LockOrder.h"

namespace Corvanta::Integrations {

class ProcessMonitorListenerSDL final : public ProcessMonitorListenerInterface {
public:
    // Keeps a copy, and does nothing else: the render thread looks when it draws.
    void OnProcessesChanged(const std::map<int32_t, int32_t>& processes) override;

    // Id of the application's process, -1 when it is not running. Allocates nothing.
    [[nodiscard]] int32_t IsProcessRunning(int32_t application) const;

private:
    mutable UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> processesMutex_;
    // Guarded by: processesMutex_. From application number to process id.
    std::map<int32_t, int32_t> processes_;
};

}  // namespace Corvanta::Integrations
