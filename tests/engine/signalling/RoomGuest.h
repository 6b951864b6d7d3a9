// A client of a room's hub in this process, driven from the test's thread.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "engine/signalling/HubClient.h"
#include "tests/engine/signalling/LoopThread.h"
#include "tests/engine/signalling/RoomEvents.h"

namespace Corvanta::Engine {

// Events that are noted in the list; it must live as long as the client.
[[nodiscard]] HubClientEvents NotedIn(RoomEvents& events);

class RoomGuest final {
public:
    RoomGuest(LoopThread& loopThread, std::filesystem::path productFolder);
    // Leaves.
    ~RoomGuest();
    RoomGuest(const RoomGuest&) = delete;
    RoomGuest& operator=(const RoomGuest&) = delete;

    void Join(const std::string& name, const std::string& room = "room");
    // Joins and waits for being in the room.
    [[nodiscard]] bool Enters(const std::string& name);
    void Leave();
    [[nodiscard]] bool Send(const std::string& memberId, const std::string& payload);
    [[nodiscard]] bool HasHub();
    [[nodiscard]] std::string OwnId();
    [[nodiscard]] std::vector<RoomMember> Members();

    RoomEvents events;
    // Called after each event is noted, inside the client's call. Set before Join.
    std::function<void(const std::string& kind, HubClient& client)> onEvent;

private:
    void Called(const char* kind);

    LoopThread& loop;
    const std::filesystem::path product;
    std::unique_ptr<HubClient> client;
};

}  // namespace Corvanta::Engine
