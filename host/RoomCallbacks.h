// The host's functions that the room calls. They carry no context of their own and may come from any thread,
// so they are passed on to the event loop of what is registered here.
#pragma once

#include "interface/SDLinterface.h"

namespace Corvanta::Host {

class HostWindow;
class WallControls;

class RoomCallbacks final {
public:
    // Registers both, which must outlive this object. One at a time, made and destroyed on the main thread
    // while there is no room.
    RoomCallbacks(HostWindow& window, WallControls& wall);
    ~RoomCallbacks();
    RoomCallbacks(const RoomCallbacks&) = delete;
    RoomCallbacks& operator=(const RoomCallbacks&) = delete;

    // The record for SDLinterface_SetHostCallbacks.
    [[nodiscard]] static HostCallbacks Table();
};

}  // namespace Corvanta::Host
