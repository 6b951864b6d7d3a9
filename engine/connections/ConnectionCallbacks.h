// The functions that the library registered with Connections. One set in the process; any thread.
#pragma once

#include "engine/common/GuardedCallback.h"

namespace Corvanta::Engine {

struct ConnectionCallbacks {
    [[nodiscard]] static ConnectionCallbacks& Get();

    GuardedCallback<void()> participantJoined;
    GuardedCallback<void(bool, bool)> connectionDropped;
};

}  // namespace Corvanta::Engine
