// Who listens to what happens to the local user in the room. One set in the process; any thread. Listeners
// are called with no lock held.
#pragma once

#include <cstdint>

namespace Corvanta::Engine {

// The room's states as listeners get them.
constexpr int32_t kRoomClosed = 0;
constexpr int32_t kRoomOpen = 1;

// Both tell every listener, on the calling thread.
void TellRoomStatus(int32_t status);
void TellMutedRemotely();

}  // namespace Corvanta::Engine
