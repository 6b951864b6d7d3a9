// For functions that a C library calls: its frames cannot be unwound, so no exception may leave them.
#pragma once

#include <exception>

#include "platform/Logger.h"

namespace Corvanta::Engine {

// Runs the work; what it throws ends in the log, where `what` names it. Whether it came to its end.
template <class Work>
bool CallGuarded(const char* what, const Work& work) noexcept {
    try {
        work();
        return true;
    } catch (const std::exception& error) {
        LOG(kLogError, "%s failed: %s", what, error.what());
    } catch (...) {
        LOG(kLogError, "%s failed", what);
    }
    return false;
}

}  // namespace Corvanta::Engine
