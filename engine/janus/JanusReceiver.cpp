#include "engine/janus/JanusReceiver.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "engine/janus/ServerConnection.h"
#include "engine/peer/PeerDescription.h"
#include "engine/transport/SentFigures.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;
using Kind = JanusMessage::Kind;

constexpr const char* kCodec = "VP8";
// How soon it is tried again where the server does not know the feed, whose publisher may be on its way.
constexpr std::chrono::milliseconds kTryAgain{500};

}  // namespace

JanusReceiver::JanusReceiver(EngineLoop& engineLoop, JanusClient& janusClient, Facts feedFacts,
                             JanusReceiverEvents receiverEvents, const std::shared_ptr<SoundMixer>& mixer)
    : loop(engineLoop),
      client(janusClient),
      facts(std::move(feedFacts)),
      events(std::move(receiverEvents)),
      link(std::make_shared<PeerLink>(engineLoop, ServerOptions(facts.name, ServerWay::FromServer),
                                      LinkEvents(), mixer)) {
    // Nobody takes pictures yet.
    link->Peer().SetVideoDecoded(false);
}

JanusReceiver::~JanusReceiver() {
    Close();
}

void JanusReceiver::Connect() {
    static_cast<void>(link->Start());
    Subscribe();
}

void JanusReceiver::OnNewSession() {
    handle = 0;
    OnNewFeed();
}

void JanusReceiver::OnNewFeed() {
    // Has the link ask for a restart, which is a new subscription.
    if (!isClosed) link->BeginAnew();
}

void JanusReceiver::Restart(bool immediately) {
    // Nothing is wrong with a subscription whose publisher says nothing, and the next one would be as silent.
    if (isAlive || !isConnected) link->Restart(immediately);
}

void JanusReceiver::OnFormerSession() {
    if (!isClosed) link->OnWayLost();
}

void JanusReceiver::Subscribe() {
    if (isClosed) return;
    Unsubscribe();
    // A new session has it subscribed again.
    if (!client.IsOpen()) return;
    client.Attach([this](const JanusMessage& message) { OnEvent(message); },
                  [weak = weak_from_this(), own = round, &janus = client](JanusClient::Handle attached) {
                      const auto self = weak.lock();
                      if (!self || self->isClosed || self->round != own) {
                          if (attached != 0) janus.Detach(attached);
                          return;
                      }
                      self->handle = attached;
                      if (attached != 0) {
                          self->Join();
                      } else {
                          self->SubscribeLater();
                      }
                  });
}

void JanusReceiver::SubscribeLater() {
    loop.PostAfter(kTryAgain, [weak = weak_from_this(), own = round] {
        const auto self = weak.lock();
        if (self && self->round == own) self->Subscribe();
    });
}

void JanusReceiver::Unsubscribe() {
    ++round;
    toldTracks.reset();
    streams.clear();
    if (const auto old = std::exchange(handle, 0); old != 0) client.Detach(old);
}

void JanusReceiver::Join() {
    const json body = {{"request", "join"},
                       {"ptype", "subscriber"},
                       {"room", facts.room},
                       {"streams", json::array({{{"feed", facts.feedId}}})}};
    client.Ask(handle, body, std::nullopt,
               [weak = weak_from_this(), own = round](const JanusMessage& answer) {
                   const auto self = weak.lock();
                   if (self && !self->isClosed && self->round == own) self->OnJoined(answer);
               });
}

void JanusReceiver::OnJoined(const JanusMessage& answer) {
    const bool isOffered =
        answer.room && answer.room->kind == "attached" && answer.description && answer.description->isOffer;
    if (!isOffered) {
        SubscribeLater();
        return;
    }
    streams = answer.room->streams;
    link->TakeDescription(
        WriteDescription({DescriptionKind::Offer, 0, WithServerBeginning(answer.description->sdp)}));
}

void JanusReceiver::OnEvent(const JanusMessage& message) {
    if (isClosed || message.handle != handle) return;
    if (message.kind == Kind::Trickle && message.candidate) {
        link->TakeCandidate(message.candidate->mediaLine, message.candidate->text);
    } else if (message.kind == Kind::Hangup || message.kind == Kind::Detached) {
        link->Restart(false);
    }
}

void JanusReceiver::OnDescription(const std::string& text) {
    const auto description = ReadDescription(text);
    if (!description) return;
    if (description->kind == DescriptionKind::Restart) {
        Subscribe();
    } else if (handle != 0) {
        client.Ask(handle, {{"request", "start"}}, JanusDescription{false, description->sdp},
                   [weak = weak_from_this(), own = round](const JanusMessage& answer) {
                       const auto self = weak.lock();
                       if (!self || self->round != own || answer.kind != Kind::Error) return;
                       self->link->Restart(false);
                   });
    }
}

PeerLinkEvents JanusReceiver::LinkEvents() {
    // The link is this receiver's own, and its events end with it.
    return {.description = [this](const std::string& text) { OnDescription(text); },
            .candidate =
                [this](std::uint32_t mediaLine, const std::string& text) {
                    if (handle != 0) client.Trickle(handle, mediaLine, text);
                },
            .connection =
                [this](bool connected) {
                    isConnected = connected;
                    linkIsLost = !connected;
                    if (!connected) {
                        const std::lock_guard lock(figuresMutex);
                        figures = {};
                    } else {
                        TellWanted();
                    }
                    TellConnection();
                },
            .channel = [this](bool isNew) { events.ear(isNew); },
            .message = [this](const std::string& message) { events.message(message); },
            .drained = [] {},
            .picture =
                [this](const std::shared_ptr<const MappedPicture>& picture) {
                    // None comes before Play has switched the decoder on.
                    handlers.picture(picture);
                },
            .loudness =
                [this](double meanSquare) {
                    if (isOpen) handlers.loudness(meanSquare);
                },
            .measured = [this](const PeerStatistics& statistics) { OnMeasured(statistics); }};
}

void JanusReceiver::OnMeasured(const PeerStatistics& statistics) {
    const bool hasPictures = statistics.width > 0;
    {
        const std::lock_guard lock(figuresMutex);
        figures = FiguresFrom(statistics);
        // Not every version tells it of what is only received. No other is decoded.
        figures.codec = hasPictures ? kCodec : "";
    }
    if (hasPictures || !isPlaying || !tracks.video) return;
    // Asks for a key frame, since the one that came with the connection did not arrive.
    link->Peer().SetVideoDecoded(false);
    link->Peer().SetVideoDecoded(true);
}

void JanusReceiver::SetAlive(bool alive) {
    if (std::exchange(isAlive, alive) != alive) TellConnection();
}

void JanusReceiver::TellConnection() {
    if (!isOpen) return;
    const bool lost = linkIsLost || !isAlive;
    if (std::exchange(isLost, lost) != lost) handlers.connection(lost);
}

void JanusReceiver::SetPublished(const LocalTracks& sent) {
    const LocalTracks before = std::exchange(published, sent);
    if (before == sent || !isOpen) return;
    if (!published.video) handlers.withoutPicture();
    if (before.audio != published.audio && handlers.soundPublished) handlers.soundPublished(published.audio);
}

void JanusReceiver::SetChannel(bool nowOpen) {
    channelIsOpen = nowOpen;
    if (isOpen && std::exchange(channelIsTold, nowOpen) != nowOpen) handlers.channel(nowOpen);
}

void JanusReceiver::Deliver(std::string text) {
    if (isOpen) handlers.text(std::move(text));
}

void JanusReceiver::Open(ParticipantMediaEvents mediaHandlers) {
    if (isClosed || isOpen) return;
    handlers = std::move(mediaHandlers);
    isOpen = true;
    // What has happened meanwhile.
    TellConnection();
    SetChannel(channelIsOpen);
    if (!published.video) handlers.withoutPicture();
}

void JanusReceiver::Play() {
    if (!isOpen || std::exchange(isPlaying, true)) return;
    ApplyTracks();
}

void JanusReceiver::SetTracks(const MediaTracks& wanted) {
    if (isClosed) return;
    tracks = wanted;
    ApplyTracks();
}

void JanusReceiver::ApplyTracks() {
    link->Peer().SetVideoDecoded(isPlaying && tracks.video);
    link->Peer().SetAudioDecoded(tracks.audio);
    if (isConnected) TellWanted();
}

void JanusReceiver::TellWanted() {
    if (handle == 0) return;
    MediaTracks wanted = tracks;
    wanted.video = wanted.video && isPlaying;
    // All of it is forwarded at first.
    if (toldTracks.value_or(MediaTracks{}) == wanted) return;
    toldTracks = wanted;
    json list = json::array();
    for (const JanusStream& stream : streams) {
        if (stream.type == "video") list.push_back({{"mid", stream.mid}, {"send", wanted.video}});
        if (stream.type == "audio") list.push_back({{"mid", stream.mid}, {"send", wanted.audio}});
    }
    if (!list.empty()) {
        client.Ask(handle, {{"request", "configure"}, {"streams", std::move(list)}}, std::nullopt, nullptr);
    }
}

void JanusReceiver::Close() {
    if (std::exchange(isClosed, true)) return;
    isOpen = false;
    Unsubscribe();
    link->Close();
}

ParticipantFigures JanusReceiver::Figures() {
    const std::lock_guard lock(figuresMutex);
    return figures;
}

}  // namespace Corvanta::Engine
