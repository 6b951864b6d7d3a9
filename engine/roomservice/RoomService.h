// Keeps the room service of this user running: the first process that opens a room serves it, and the others
// take over when that one goes. Runs on a thread of its own with a GLib main context of its own; the
// functions here may be called on any other thread.
#pragma once

#include <atomic>
#include <memory>

#include "engine/common/EngineLoop.h"
#include "engine/roomservice/RoomServer.h"
#include "engine/roomservice/RoomServicePlace.h"
#include "engine/signalling/RoomFolder.h"

namespace Corvanta::Engine {

class RoomService final {
public:
    explicit RoomService(RoomServicePlace servicePlace);
    // Stops.
    ~RoomService();
    RoomService(const RoomService&) = delete;
    RoomService& operator=(const RoomService&) = delete;

    // On return the service can be reached if at all possible: here, or in the process that was first; else
    // it is tried again. Once.
    void Start();
    // Ends the thread; another process may serve from then on.
    void Stop();

    // Whether it is this process that serves.
    [[nodiscard]] bool IsServing() const { return isServing; }

private:
    void Run();
    void TryToServe();

    const RoomServicePlace place;
    EngineLoop loop;
    bool isStarted = false;
    std::atomic<bool> isServing = false;

    // The service's thread alone.
    bool isTroubleTold = false;
    std::unique_ptr<HubLock> lock;
    std::unique_ptr<RoomServer> server;
};

}  // namespace Corvanta::Engine
