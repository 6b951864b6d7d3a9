// What comes from one feed of a room over the forwarding server: pictures, sound and the messages of its
// publisher, over a connection of its own with the server. The engine's thread, where nothing else is said.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/janus/JanusClient.h"
#include "engine/transport/ParticipantMedia.h"
#include "engine/transport/PeerLink.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

// For the transport. Not called after Close.
struct JanusReceiverEvents {
    // The channel is open over which the publisher's messages come, or it is no longer.
    std::function<void(bool isOpen)> ear;
    // One message of it, as it came.
    std::function<void(const std::string& message)> message;
};

class JanusReceiver final : public ParticipantMedia, public std::enable_shared_from_this<JanusReceiver> {
public:
    struct Facts {
        std::string room;
        std::string feedId;
        // For the log.
        std::string name;
    };

    JanusReceiver(EngineLoop& engineLoop, JanusClient& janusClient, Facts feedFacts,
                  JanusReceiverEvents receiverEvents, const std::shared_ptr<SoundMixer>& mixer);
    ~JanusReceiver() override;

    // For the transport:

    // Begins to connect; nothing of it is reported before Open. The client is there until Close.
    void Connect();
    // There is a new session with the server, and everything of the last one is void.
    void OnNewSession();
    // The session goes on; what was on its way is lost.
    void OnFormerSession();
    // The publisher has set the feed up anew, and what was subscribed is void.
    void OnNewFeed();
    // Whether its publisher gives a sign of life. Until this is called: it does.
    void SetAlive(bool alive);
    // What its publisher says that it sends.
    void SetPublished(const LocalTracks& tracks);
    // Texts go both ways between this participant and the publisher.
    void SetChannel(bool isOpen);
    void Deliver(std::string text);
    [[nodiscard]] bool IsConnected() const { return link->IsConnected(); }

    void Open(ParticipantMediaEvents mediaHandlers) override;
    void Play() override;
    void SetGain(double linear) override { link->Peer().SetGain(linear); }
    void SetTracks(const MediaTracks& wanted) override;
    void Restart(bool immediately) override;
    void Close() override;
    [[nodiscard]] ParticipantFigures Figures() override;

private:
    [[nodiscard]] PeerLinkEvents LinkEvents();
    void Subscribe();
    void SubscribeLater();
    void Join();
    void OnJoined(const JanusMessage& answer);
    void OnEvent(const JanusMessage& message);
    void OnDescription(const std::string& text);
    void OnMeasured(const PeerStatistics& statistics);
    void Unsubscribe();
    void TellConnection();
    void ApplyTracks();
    void TellWanted();

    EngineLoop& loop;
    JanusClient& client;
    const Facts facts;
    const JanusReceiverEvents events;
    // Set by Open, before any picture comes, and never again.
    ParticipantMediaEvents handlers;
    const std::shared_ptr<PeerLink> link;

    JanusClient::Handle handle = 0;
    // Tells the answers to one subscription from those to another.
    std::uint64_t round = 0;
    std::vector<JanusStream> streams;
    // What the server knows of what is wanted; nothing where it does not.
    std::optional<MediaTracks> toldTracks;
    MediaTracks tracks;
    LocalTracks published;
    bool isOpen = false, isPlaying = false, isClosed = false;
    bool isConnected = false, isAlive = true;
    // It was lost, or did not come about; one that is only on its way is not lost.
    bool linkIsLost = false;
    bool isLost = false, channelIsOpen = false, channelIsTold = false;

    std::mutex figuresMutex;  // guards: figures
    ParticipantFigures figures;
};

}  // namespace Corvanta::Engine
