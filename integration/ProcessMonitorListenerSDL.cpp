#include "integration/ProcessMonitorListenerSDL.h"

#include <utility>

namespace Corvanta::Integrations {

void ProcessMonitorListenerSDL::OnProcessesChanged(const std::map<int32_t, int32_t>& processes) {
    // Copied, and the old nodes freed, outside the lock that a drawing may be waiting for.
    std::map<int32_t, int32_t> copy = processes;
    const std::scoped_lock lock(processesMutex_);
    std::swap(processes_, copy);
}

int32_t ProcessMonitorListenerSDL::IsProcessRunning(int32_t application) const {
    const std::scoped_lock lock(processesMutex_);
    const auto found = processes_.find(application);
    return found == processes_.end() ? -1 : found->second;
}

}  // namespace Corvanta::Integrations
