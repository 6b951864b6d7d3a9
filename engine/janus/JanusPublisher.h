// One of the local user's feeds on its way to a room of the forwarding server: a handle that joins the room
// under the feed's id, and a connection that carries the feed. It is kept up as long as it is open. The
// engine's thread alone.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/janus/JanusClient.h"
#include "engine/signalling/OwnedSource.h"
#include "engine/transport/PeerLink.h"
#include "engine/transport/SentStream.h"

namespace Corvanta::Engine {

// Not called after Close. Empty ones are not called.
struct JanusPublisherEvents {
    // In the room, with those who publish there.
    std::function<void(const std::vector<JanusFeed>& publishers)> joined;
    // The server takes the feed.
    std::function<void()> published;
    // It does not let it in: one line. It is tried again later, unless it is closed.
    std::function<void(const std::string& problem)> refused;
    // What the room says to its members.
    std::function<void(const JanusRoomWords& words)> words;
    // Whether what is sent reaches the server, when that changes.
    std::function<void(bool isConnected)> connection = {};
    // Of the channel for what this member says.
    std::function<void(bool isOpen)> channel;
    std::function<void()> drained;
    // WebRTC's figures, about once a second.
    std::function<void(const PeerStatistics& statistics)> measured = {};
};

class JanusPublisher final : public std::enable_shared_from_this<JanusPublisher> {
public:
    struct Facts {
        std::string room;
        std::string feedId;
        // What the others are told of it; see FeedFacts.h.
        std::string display;
        // For the log.
        std::string name;
    };

    // In a room that it makes.
    static constexpr int kMostPublishers = 64;

    JanusPublisher(EngineLoop& engineLoop, JanusClient& janusClient, Facts feedFacts,
                   JanusPublisherEvents publisherEvents);
    ~JanusPublisher();
    JanusPublisher(const JanusPublisher&) = delete;
    JanusPublisher& operator=(const JanusPublisher&) = delete;

    // Enters the room, which is made where it does not exist. The client is there until Close.
    void Open();
    void Close();
    // There is a new session with the server, and everything of the last one is void.
    void OnNewSession();
    // The session goes on; what was on its way is lost.
    void OnFormerSession();
    void Restart(bool immediately) { link->Restart(immediately); }

    // Null for none.
    void SetStream(std::shared_ptr<SentStream> sentStream);
    [[nodiscard]] const std::shared_ptr<SentStream>& Stream() const { return stream; }
    [[nodiscard]] bool SendMessage(const std::string& message) { return link->Peer().SendText(message); }

    // Has the feed of that id leave the room.
    void Kick(const std::string& feedId);
    // Has the publishers of the room listed, after which `onList` is called once, unless it fails.
    void List(std::function<void(const std::vector<JanusFeed>& publishers)> onList);

private:
    enum class Phase {
        // On its way into the room.
        Outside,
        // In the room, and the server has no connection of it.
        Free,
        // The server looks at an offer.
        Publishing,
        // The server has taken an offer.
        Published,
        // The server is to end the connection that it knows.
        Ending,
    };

    [[nodiscard]] PeerLinkEvents LinkEvents();
    void Enter();
    void EnterLater(std::chrono::milliseconds wait);
    void Attach();
    void MakeRoom();
    void Join();
    void OnJoined(const JanusMessage& answer);
    void OnEvent(const JanusMessage& message);
    void OnOffer(std::string sdp);
    // Has the server end the connection that it knows; then the newest offer goes out.
    void EndConnection();
    // After that time, unless something else has begun by then.
    void EndConnectionLater(std::chrono::milliseconds wait);
    void OnUnpublished(const JanusMessage& answer);
    void Publish();
    void OnPublished(const JanusMessage& answer);
    void Refuse(const JanusMessage& answer, const std::string& problem);
    // Answers come to nothing where the handle has changed meanwhile.
    void Ask(const nlohmann::json& body, const std::optional<JanusDescription>& description,
             std::function<void(const JanusMessage& answer)> onAnswer);

    EngineLoop& loop;
    JanusClient& client;
    const Facts facts;
    const JanusPublisherEvents events;
    const std::shared_ptr<PeerLink> link;
    std::shared_ptr<SentStream> stream;

    JanusClient::Handle handle = 0;
    // Tells the answers of one entry from those of another.
    std::uint64_t round = 0;
    int taken = 0, vainOffers = 0, vainEnds = 0;
    std::string offer;
    // Of an offer that waits for the end of the connection before.
    std::vector<std::pair<std::uint32_t, std::string>> candidates;
    Phase phase = Phase::Outside;
    // The server has taken an offer since the room was entered.
    bool wasTaken = false;
    // Tells the answer to one request for an end from that to another.
    std::uint64_t ending = 0;
    // The server has said so since it was asked for it.
    bool hasHungUp = false;
    // Runs from the server's word that it ends the connection until it has.
    OwnedSource hangingUp;
    bool isOpen = false, isStarted = false;
    bool offerIsSent = false;
    bool isLost = false;
};

}  // namespace Corvanta::Engine
