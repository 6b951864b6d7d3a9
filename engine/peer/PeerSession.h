// One webrtcbin from its first description to its end: gives and takes SDP and candidates, carries one
// picture and one sound each way, and a data channel. It cannot change what it carries or how it is reached;
// whoever wants that makes another. The engine's thread alone.
#pragma once

#include <gst/gst.h>
#include <gst/webrtc/webrtc.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/peer/OutboundFeed.h"
#include "engine/peer/PacketOutlet.h"
#include "engine/peer/PeerMedia.h"
#include "engine/peer/PeerStatistics.h"
#include "engine/peer/TextChannel.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

struct PeerSessionOptions {
    std::string name;
    bool offers = false;
    bool sends = false;
    bool receives = false;
    bool loopbackOnly = true;
    // Whether there is to be a way for texts, made by one of the two.
    bool hasChannel = false;
    // Empty: none is created; one that the peer creates is used.
    std::string channelLabel;
};

// On the engine's thread.
struct PeerSessionEvents {
    // Its own, to be handed to the peer.
    std::function<void(const std::string& sdp)> description;
    std::function<void(std::uint32_t mediaLine, const std::string& text)> candidate;
    std::function<void()> connected;
    std::function<void(const std::string& reason)> ended;
    std::function<void()> channelOpen;
    std::function<void(const std::string& text)> text;
    // A text was refused since too much waited, and there is room again.
    std::function<void()> textsDrained;
    std::function<void(double meanSquare)> loudness;
};

class PeerSession final : public std::enable_shared_from_this<PeerSession> {
public:
    PeerSession(EngineLoop& engineLoop, PeerSessionOptions sessionOptions, PeerSessionEvents handlers,
                std::shared_ptr<SoundMixer> mixer, VideoSink::PictureCallback picture);
    ~PeerSession();
    PeerSession(const PeerSession&) = delete;
    PeerSession& operator=(const PeerSession&) = delete;

    // Makes the offer where it offers. False, and a log line, when an element is missing.
    [[nodiscard]] bool Open();
    // On return no event is in progress and none follows.
    void Close();

    // What the peer has handed out, of which the description has been looked at. TakeOffer once, where this
    // side answers, and TakeAnswer once, where it offers; a description that webrtcbin refuses ends the
    // session.
    void TakeOffer(const std::string& sdp);
    void TakeAnswer(const std::string& sdp);
    // Any number of them, also before the description.
    void AddCandidate(std::uint32_t mediaLine, const std::string& text);

    // Lives as long as this; open from channelOpen on.
    [[nodiscard]] TextChannel& Texts() { return *texts; }
    // The feed's packets go to the peer as soon as it is connected. Null for none.
    void SetFeed(std::shared_ptr<OutboundFeed> sentFeed);
    // What of the feed goes to the peer.
    void SetSent(bool video, bool audio);
    // The answer comes on the engine's thread, unless the session ends before.
    void RequestReport(std::function<void(const PeerReport&)> handler);

    [[nodiscard]] PeerMedia& Media() { return media; }

private:
    // What threads of GStreamer share with the session, and may hold on to when it has gone.
    struct Link;
    struct Heard;

    void ConnectSignals();
    void SetUpAgent();
    // The thread of the handshake.
    static void OnCertificate(GstElement* element, GParamSpec* property, Link* link);
    [[nodiscard]] std::shared_ptr<PacketOutlet> AddSender(bool isVideo);
    void AddReceiver(bool isVideo);
    void AddMedia();
    void AttachVideo();
    void AttachAudio();
    void OnConnectionState();
    void OnDescription(GstWebRTCSessionDescription* description);
    void SetRemote(const std::string& sdp, bool isOffer);
    void CreateDescription(const char* signal);
    bool OnMessage(GstMessage* message);
    void Watch();
    void End(const std::string& reason);
    [[nodiscard]] Link* MakeLink();
    // Runs a task on the engine's thread while the session is open. Any thread.
    static void Post(const Link& link, std::function<void(PeerSession&)> task);
    static void DeleteLink(gpointer data);
    // A promise whose reply goes to `handler` on the engine's thread.
    [[nodiscard]] GstPromise* MakePromise(std::function<void(PeerSession&, const GstStructure*)> handler);

    EngineLoop& loop;
    const PeerSessionOptions options;
    const PeerSessionEvents events;
    PeerMedia media;
    const std::shared_ptr<Heard> heard;
    const std::shared_ptr<TextChannel> texts;
    std::shared_ptr<OutboundFeed> feed;
    std::shared_ptr<PacketOutlet> videoOutlet, audioOutlet;
    bool sendsVideo = true, sendsAudio = true;
    GstOwned<GstElement> pipeline, webrtc;
    GstOwned<GSource> watch;
    bool isConnected = false;
    bool hasEnded = false;
};

}  // namespace Corvanta::Engine
