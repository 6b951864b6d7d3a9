// The host's functions that the room calls. They carry no context of their own and may come from any thread,
// in the midst of a tick, so they are passed on to the event loop of what is registered here.
#pragma once

#include <string>

#include "interface/SDLinterface.h"

namespace Corvanta::Host {

class HostWindow;
class RoomControls;
class WallControls;

// What the functions act on; all must outlive the RoomCallbacks.
struct RoomParts {
    HostWindow& window;
    WallControls& wall;
    RoomControls& controls;
    std::string roomName;
    // Under which the others' programs and the room service know the room.
    std::string sessionName;
};

class RoomCallbacks final {
public:
    // One at a time, made and destroyed on the main thread while there is no room.
    explicit RoomCallbacks(RoomParts parts);
    ~RoomCallbacks();
    RoomCallbacks(const RoomCallbacks&) = delete;
    RoomCallbacks& operator=(const RoomCallbacks&) = delete;

    // The record for SDLinterface_SetHostCallbacks.
    [[nodiscard]] static HostCallbacks Table();
    // For SDLinterface_VideoRoomSetConnectionDroppedCallback.
    static void OnConnectionDropped(bool willRetry, bool endedHere);

private:
    RoomParts parts_;
};

}  // namespace Corvanta::Host
