// What comes from one participant's stream over a connection between the two: pictures, sound, and texts
// where the connection has a channel for them. The engine's thread, where nothing else is said.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/transport/ParticipantMedia.h"
#include "engine/transport/PeerLink.h"
#include "engine/transport/TextLine.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

// For whoever carries what the two sides have to tell each other. Not called after Close.
struct PeerStreamEvents {
    std::function<void(const std::string& text)> description;
    std::function<void(std::uint32_t mediaLine, const std::string& text)> candidate;
    // What of the stream is wanted has changed.
    std::function<void(const MediaTracks& tracks)> wanted;
    // WebRTC's figures, about once a second.
    std::function<void(const PeerStatistics& statistics)> measured;
};

class PeerStream final : public ParticipantMedia, public std::enable_shared_from_this<PeerStream> {
public:
    // Without a channel's label in the options there are no texts.
    PeerStream(EngineLoop& engineLoop, const PeerOptions& options, PeerStreamEvents streamEvents,
               const std::shared_ptr<SoundMixer>& mixer);
    ~PeerStream() override;

    // For the transport:

    // Begins to connect; nothing of it is reported before Open.
    void Connect();
    [[nodiscard]] PeerLink& Link() { return *link; }
    // What the local user sends over the same connection; null for nothing.
    void SetFeed(const std::shared_ptr<OutboundFeed>& feed) { link->Peer().SetFeed(feed); }
    // What its publisher says that it sends.
    void SetPublished(const LocalTracks& tracks);
    // Its publisher cannot be found any more, and may come back as another one or never.
    void Lose();
    // Kept until the other side has it.
    void Send(std::string text);

    void Open(ParticipantMediaEvents handlers) override;
    void Play() override;
    void SetGain(double linear) override { link->Peer().SetGain(linear); }
    void SetTracks(const MediaTracks& tracks) override;
    void Restart(bool immediately) override { link->Restart(immediately); }
    void Close() override;
    [[nodiscard]] ParticipantFigures Figures() override;

private:
    [[nodiscard]] PeerLinkEvents LinkEvents();
    void OnConnection(bool isConnected);
    void OnChannel(bool isOpen);
    void ApplyTracks();
    void TellWanted();

    EngineLoop& loop;
    const PeerStreamEvents events;
    // Set by Open, before any picture comes, and never again.
    ParticipantMediaEvents handlers;
    const std::shared_ptr<PeerLink> link;
    // Null without a channel.
    std::shared_ptr<TextLine> line;
    MediaTracks tracks;
    // What the publisher of the present connection knows.
    std::optional<MediaTracks> toldTracks;
    LocalTracks published;
    bool isOpen = false, isPlaying = false, isClosed = false;
    bool isLost = false, channelIsOpen = false;

    std::mutex figuresMutex;  // guards: figures
    ParticipantFigures figures;
};

}  // namespace Corvanta::Engine
