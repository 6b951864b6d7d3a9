// One client's time in one room, from entering to leaving, over as many hubs as the room has meanwhile. A
// part of HubClient, on the same thread; shared, because what it calls may let go of it.
#pragma once

#include <gio/gio.h>

#include <chrono>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/signalling/Hub.h"
#include "engine/signalling/HubClient.h"
#include "engine/signalling/LineConnection.h"
#include "engine/signalling/OwnedSource.h"
#include "engine/signalling/RoomFolder.h"
#include "engine/signalling/RoomMessage.h"

namespace Corvanta::Engine {

class HubClient::Stay final : public std::enable_shared_from_this<Stay> {
public:
    Stay(GMainContext* mainContext, std::shared_ptr<const HubClientEvents> clientEvents,
         RoomFolder roomFolder, std::string ownName);

    // Looks for a hub from the context's next round on.
    void Begin();
    // Nothing is called any more.
    void End();
    [[nodiscard]] bool Send(const std::string& memberId, std::string_view payload);

    [[nodiscard]] const std::string& OwnId() const { return ownId; }
    [[nodiscard]] const std::vector<RoomMember>& Members() const { return members; }
    [[nodiscard]] bool HasHub() const { return hub != nullptr; }

private:
    using Clock = std::chrono::steady_clock;

    // Calls the function of the events, if the stay has not ended.
    template <class Function, class... Arguments>
    void Tell(Function HubClientEvents::*function, const Arguments&... arguments);

    void SeekAfter(std::chrono::milliseconds time);
    void SeekLater();
    void Seek();
    // A connected socket, or null; then `mayOpen` tells whether there is no hub at all.
    [[nodiscard]] GSocket* Connect(bool& mayOpen, std::string& complaint) const;
    // The hub is here then, unless another process has the lock, or there is a complaint.
    void OpenHub(std::string& complaint);
    void Greet(GSocket* connected);
    // What keeps us from a hub. Ends the stay before it has entered.
    void OnTrouble(const std::string& complaint);
    void Fail(const std::string& line);

    void OnLine(std::string_view line);
    void OnNonsense();
    void OnLost();
    void OnMessage(const RoomMessages::Welcome& welcome);
    void OnMessage(const RoomMessages::Joined& joined);
    void OnMessage(const RoomMessages::Left& left);
    void OnMessage(const RoomMessages::Settled& settled);
    void OnMessage(const RoomMessages::From& message);
    void OnMessage(const RoomMessages::Refused& refused);
    void OnMessage(const RoomMessages::Unknown&) {}
    // What only a client says.
    void OnMessage(const RoomMessages::Hello&) { OnNonsense(); }
    void OnMessage(const RoomMessages::To&) { OnNonsense(); }
    void OnMessage(const RoomMessages::Leaving&) { OnNonsense(); }

    [[nodiscard]] bool Knows(const std::string& memberId) const;
    void Add(const RoomMember& member, Initiator initiator);
    void Remove(const std::string& memberId, bool orderly = false);
    // The member is with the hub: sends what waited for that.
    void Deliver(const std::string& memberId);
    [[nodiscard]] std::vector<std::string> IdsOfMembers() const;
    [[nodiscard]] std::vector<std::string> ExpectedAtHub() const;

    GMainContext* const context;
    const std::shared_ptr<const HubClientEvents> events;
    const RoomFolder folder;
    const std::string name;
    const std::string key;

    std::string ownId;
    std::vector<RoomMember> members;
    // Members who have not come to the new hub yet.
    std::set<std::string> absent;
    // By member, in order: lines that wait for the hub or for the member to be there.
    std::deque<std::pair<std::string, std::string>> kept;
    std::size_t keptBytes = 0;

    std::unique_ptr<Hub> hub;
    std::shared_ptr<LineConnection> connection;
    OwnedSource seeking;
    OwnedSource answering;
    std::chrono::milliseconds delay;
    // When the search for a hub began, and when one took us in.
    Clock::time_point sought;
    Clock::time_point welcomed;
    bool hasEntered = false;
    bool isInside = false;
    bool hasComplained = false;
    bool hasEnded = false;
};

}  // namespace Corvanta::Engine
