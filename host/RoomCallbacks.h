// The host's functions that the room calls. They carry no context of their own and may come from any thread,
// so they are passed on to the event loop of the one window that is registered here.
#pragma once

#include "interface/SDLinterface.h"

namespace Corvanta::Host {

class HostWindow;

class RoomCallbacks final {
public:
    // Registers `window`, which must outlive this object. One at a time, made and destroyed on the main
    // thread while there is no room.
    explicit RoomCallbacks(HostWindow& window);
    ~RoomCallbacks();
    RoomCallbacks(const RoomCallbacks&) = delete;
    RoomCallbacks& operator=(const RoomCallbacks&) = delete;

    // The record for SDLinterface_SetHostCallbacks.
    [[nodiscard]] static HostCallbacks Table();
};

}  // namespace Corvanta::Host
