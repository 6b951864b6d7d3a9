// A participant's tie to the hub of a room on this machine: who is in the room, and short messages between
// them. Opens the hub itself where there is none, and takes part in the race for the next one when the hub
// goes, so that the room goes on under the same ids. Lives on the thread of one GLib main context, and calls
// back there with no lock held; a call may leave the room or destroy the client.
//
// Messages arrive in order and at most once: what is on its way while a hub ends is lost. So whoever
// negotiates with another member starts that again on onHubBack if it had not come to an end.
#pragma once

#include <glib.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/signalling/RoomMessage.h"

namespace Corvanta::Engine {

// Which of two members begins to talk. Each pair is told alike: one finds the other there and begins, the
// other hears that somebody came and waits.
enum class Initiator { Us, Them };

struct HubClientEvents {
    // In the room, with those who are there, with each of whom we begin. Comes again when the others have
    // been told that we left, after having been stopped for long: then all that was known of members is void,
    // and they take us for a newcomer.
    std::function<void(const std::string& ownId, const std::vector<RoomMember>& members)> onEntered;
    std::function<void(const RoomMember& member, Initiator initiator)> onMemberJoined;
    // `orderly`: it has said so. Otherwise its process may have died, or have been stopped for long.
    std::function<void(const std::string& memberId, bool orderly)> onMemberLeft;
    std::function<void(const std::string& fromId, const std::string& payload)> onMessage;
    // Followed by onHubBack, where we return as who we were, by onEntered, or by onFailed.
    std::function<void()> onHubLost;
    std::function<void()> onHubBack;
    // One line for the user; the client is as after Leave.
    std::function<void(const std::string& line)> onFailed;
};

class HubClient final {
public:
    // What Send keeps while there is no hub, and while the hub does not read.
    static constexpr std::size_t kMostKept = std::size_t{1024} * 1024;

    HubClient(GMainContext* context, HubClientEvents events);
    // Leaves.
    ~HubClient();
    HubClient(const HubClient&) = delete;
    HubClient& operator=(const HubClient&) = delete;

    // Enters the room of that name under a fresh id, out of another one if need be. Nothing is called before
    // it returns. `product` is the folder in which rooms lie; empty for the user's.
    void Join(const std::string& room, const std::string& name, const std::filesystem::path& product = {});
    // The others are told at once; another one of them opens the next hub if it was here. Nothing is called
    // any more.
    void Leave();

    // Sends a UTF-8 text to a member, at the latest when the hub is back. False when it is left out: unknown
    // member, longer than a line of the hub (about kLongestLine), too much kept already.
    [[nodiscard]] bool Send(const std::string& memberId, std::string_view payload);

    // Empty outside a room.
    [[nodiscard]] const std::string& OwnId() const;
    [[nodiscard]] const std::vector<RoomMember>& Members() const;
    // Whether the room's hub is in this client.
    [[nodiscard]] bool HasHub() const;

private:
    class Stay;

    GMainContext* const context;
    const std::shared_ptr<const HubClientEvents> events;
    // In one room, from Join to Leave.
    std::shared_ptr<Stay> stay;
};

}  // namespace Corvanta::Engine
