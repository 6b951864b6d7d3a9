#include "tests/engine/signalling/RoomGuest.h"

#include <utility>

namespace Corvanta::Engine {

HubClientEvents NotedIn(RoomEvents& events) {
    return {
        .onEntered =
            [&events](const std::string& ownId, const std::vector<RoomMember>& members) {
                std::string ids;
                for (const RoomMember& member : members) {
                    ids += member.id;
                    ids += ' ';
                }
                events.Add({"entered", ownId, ids});
            },
        .onMemberJoined =
            [&events](const RoomMember& member, Initiator initiator) {
                std::string text = initiator == Initiator::Us ? "us " : "them ";
                text += member.name;
                events.Add({"joined", member.id, text});
            },
        .onMemberLeft =
            [&events](const std::string& memberId, bool orderly) {
                events.Add({"left", memberId, orderly ? "in order" : ""});
            },
        .onMessage =
            [&events](const std::string& fromId, const std::string& payload) {
                events.Add({"message", fromId, payload});
            },
        .onHubLost =
            [&events] {
                events.Add({"lost", {}, {}});
            },
        .onHubBack =
            [&events] {
                events.Add({"back", {}, {}});
            },
        .onFailed =
            [&events](const std::string& line) {
                events.Add({"failed", {}, line});
            },
    };
}

RoomGuest::RoomGuest(LoopThread& loopThread, std::filesystem::path productFolder)
    : loop(loopThread), product(std::move(productFolder)) {
    const HubClientEvents noted = NotedIn(events);
    HubClientEvents told = {
        .onEntered =
            [this, noted](const std::string& ownId, const std::vector<RoomMember>& members) {
                noted.onEntered(ownId, members);
                Called("entered");
            },
        .onMemberJoined =
            [this, noted](const RoomMember& member, Initiator initiator) {
                noted.onMemberJoined(member, initiator);
                Called("joined");
            },
        .onMemberLeft =
            [this, noted](const std::string& memberId, bool orderly) {
                noted.onMemberLeft(memberId, orderly);
                Called("left");
            },
        .onMessage =
            [this, noted](const std::string& fromId, const std::string& payload) {
                noted.onMessage(fromId, payload);
                Called("message");
            },
        .onHubLost =
            [this, noted] {
                noted.onHubLost();
                Called("lost");
            },
        .onHubBack =
            [this, noted] {
                noted.onHubBack();
                Called("back");
            },
        .onFailed =
            [this, noted](const std::string& line) {
                noted.onFailed(line);
                Called("failed");
            },
    };
    client = std::make_unique<HubClient>(loop.Context(), std::move(told));
}

RoomGuest::~RoomGuest() {
    loop.Do([this] { client.reset(); });
}

void RoomGuest::Join(const std::string& name, const std::string& room) {
    loop.Do([&] { client->Join(room, name, product); });
}

bool RoomGuest::Enters(const std::string& name) {
    const std::size_t before = events.Count("entered");
    Join(name);
    return events.Hears("entered", {}, before + 1);
}

void RoomGuest::Leave() {
    loop.Do([this] { client->Leave(); });
}

bool RoomGuest::Send(const std::string& memberId, const std::string& payload) {
    bool isSent = false;
    loop.Do([&] { isSent = client->Send(memberId, payload); });
    return isSent;
}

bool RoomGuest::HasHub() {
    bool hasHub = false;
    loop.Do([&] { hasHub = client->HasHub(); });
    return hasHub;
}

std::string RoomGuest::OwnId() {
    std::string id;
    loop.Do([&] { id = client->OwnId(); });
    return id;
}

std::vector<RoomMember> RoomGuest::Members() {
    std::vector<RoomMember> members;
    loop.Do([&] { members = client->Members(); });
    return members;
}

void RoomGuest::Called(const char* kind) {
    if (onEvent && client) onEvent(kind, *client);
}

}  // namespace Corvanta::Engine
