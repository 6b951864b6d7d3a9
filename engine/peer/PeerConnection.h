// Media and texts between this participant and one other, over WebRTC. Who carries the descriptions and the
// candidates is not its matter: they are handed out and in as texts. The engine's thread alone, where nothing
// else is said.
//
// A connection that is set up again, because the network has changed or a side asks for it, gets a session of
// its own with new keys and new candidates; texts of an earlier one that are still under way are ignored.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/peer/OutboundFeed.h"
#include "engine/peer/PeerDescription.h"
#include "engine/peer/PeerSession.h"
#include "engine/peer/PeerStatistics.h"
#include "engine/webrtc/SoundMixer.h"
#include "engine/webrtc/VideoSink.h"

namespace Corvanta::Engine {

struct PeerOptions {
    enum class Role { Offerer, Answerer };

    // For the log.
    std::string name;
    Role role = Role::Offerer;
    // Whether it has room for a feed of this side. The feed itself may come, change and go at any time,
    // without another offer.
    bool sends = true;
    // Whether the peer's picture and sound are wanted.
    bool receives = true;
    // The label of the data channel; empty for none.
    std::string channelLabel = "texts";
    // Who answers usually waits for the channel of the one who offers. A forwarding server wants the answerer
    // to make it.
    bool answererMakesChannel = false;
    // Reached over this machine's loopback alone; otherwise over all its other addresses.
    bool loopbackOnly = true;
};

// Called on the engine's thread, the picture on a streaming thread; no lock is held. Empty ones are not
// called.
struct PeerEvents {
    // To be handed to the other side's TakeDescription and TakeCandidate, in this order.
    std::function<void(const std::string& text)> onDescription;
    std::function<void(std::uint32_t mediaLine, const std::string& text)> onCandidate;
    // Once for each session.
    std::function<void()> onConnected;
    // The other side is gone, has been silent for some five seconds or was never reached. Nothing follows
    // until Restart, or until an offer comes.
    std::function<void(const std::string& reason)> onDisconnected;
    // Texts can be sent from then on; once for each session.
    std::function<void()> onChannelOpen;
    std::function<void(const std::string& text)> onText;
    // A text was refused since too much waited, and there is room for several again.
    std::function<void()> onTextsDrained = {};
    // In the decoder's own planar format.
    VideoSink::PictureCallback onVideo;
    // Mean square of a piece of sound, which goes to the mixer by itself.
    std::function<void(double meanSquare)> onLoudness;
};

class PeerConnection final : public std::enable_shared_from_this<PeerConnection> {
public:
    // Without a mixer the peer is measured and not heard.
    PeerConnection(EngineLoop& engineLoop, PeerOptions peerOptions, PeerEvents peerEvents,
                   std::shared_ptr<SoundMixer> roomMixer);
    ~PeerConnection();
    PeerConnection(const PeerConnection&) = delete;
    PeerConnection& operator=(const PeerConnection&) = delete;

    // The offerer makes its offer; the answerer waits for one. False, and a log line, when an element is
    // missing.
    bool Start();
    // On return no event is in progress and none follows. The other side hears nothing more, and takes the
    // connection for lost some five seconds later unless it learns of it in another way.
    void Close();
    // Sets the connection up again: the offerer makes another offer, the answerer asks for one.
    void Restart();

    // What the other side has handed out. Anything may be in it: what cannot be used is refused, with one log
    // line for each kind and connection.
    bool TakeDescription(const std::string& text);
    bool TakeCandidate(std::uint32_t mediaLine, const std::string& text);

    // At most 16 KiB without a zero byte, in order and without loss; never waits. False for any other text,
    // when no channel is open, or when 16 MiB wait already, where each counts half a KiB more than it has.
    [[nodiscard]] bool SendText(const std::string& text);

    // Null for none. Nothing is sent where the options have no room for a feed.
    void SetFeed(std::shared_ptr<OutboundFeed> sentFeed);
    // What of the feed is sent: all of it until this is called.
    void SetSent(bool video, bool audio);
    // What is turned off is not decoded.
    void SetVideoDecoded(bool decoded);
    void SetAudioDecoded(bool decoded);
    // Linear; 0 is silence.
    void SetGain(double linear);

    [[nodiscard]] bool IsConnected() const { return isConnected; }
    // Another number for each session that is made; 0 while there is none.
    [[nodiscard]] std::uint64_t Session() const { return session ? sessionsMade : 0; }

    // WebRTC's own figures since the last time, on the engine's thread a moment later; never where there is
    // no session, or where it ends before.
    void RequestStatistics(std::function<void(const PeerStatistics&)> handler);

private:
    [[nodiscard]] bool OpenSession();
    [[nodiscard]] bool TakeOffer(const PeerDescription& description);
    bool Refuse(bool& wasLogged, const char* what);
    [[nodiscard]] PeerSessionEvents MakeEvents();
    void OnEnded(const std::string& reason);

    EngineLoop& loop;
    const PeerOptions options;
    const PeerEvents events;
    const std::shared_ptr<SoundMixer> mixer;
    std::shared_ptr<PeerSession> session;
    std::shared_ptr<OutboundFeed> feed;
    StatisticsRates rates;
    std::uint64_t sessionsMade = 0;
    // What the two sides call the present one.
    std::uint32_t sessionNumber = 0;
    unsigned candidates = 0;
    double gain = 1.0;
    bool videoDecoded = true, audioDecoded = true;
    bool videoSent = true, audioSent = true;
    bool isStarted = false;
    bool isConnected = false;
    // Of the session's offer.
    bool isAnswered = false;
    bool badDescriptionWasLogged = false, badCandidateWasLogged = false;
};

}  // namespace Corvanta::Engine
