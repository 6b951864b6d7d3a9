#include "engine/janus/JanusPublisher.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>

#include "engine/janus/ServerConnection.h"
#include "engine/peer/PeerDescription.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;
using std::chrono::milliseconds;
using Kind = JanusMessage::Kind;

constexpr milliseconds kTryAgain{1000};
// After having the former self of a feed leave, that the server has not missed yet.
constexpr milliseconds kAfterKick{200};
constexpr int kMostTaken = 10;
constexpr int kMostVainOffers = 10;
// The server refuses, for this reason or that, what comes while it still clears up after the connection
// before.
constexpr int kMostVainEnds = 5;
constexpr milliseconds kClearingUp{300};
// What the server may take to end a connection.
constexpr milliseconds kHangupPatience{1000};

int ErrorOf(const JanusMessage& answer) {
    return answer.room && answer.room->errorCode != 0 ? answer.room->errorCode : answer.errorCode;
}

// Whether the offer tells the numbers of the packets of picture and sound, without which the server cannot
// know one from the other.
bool NamesItsSources(std::string_view sdp) {
    std::size_t media = 0, named = 0;
    bool isNamed = true;
    for (std::size_t place = 0; place < sdp.size();) {
        const std::size_t end = std::min(sdp.find('\n', place), sdp.size());
        const std::string_view line = sdp.substr(place, end - place);
        place = end + 1;
        if (line.starts_with("m=")) isNamed = true;
        if (line.starts_with("m=video") || line.starts_with("m=audio")) {
            ++media;
            isNamed = false;
        }
        if (line.starts_with("a=ssrc:") && !std::exchange(isNamed, true)) ++named;
    }
    return named == media;
}

std::string ReasonOf(const JanusMessage& answer) {
    return answer.room && !answer.room->error.empty() ? answer.room->error : answer.reason;
}

}  // namespace

JanusPublisher::JanusPublisher(EngineLoop& engineLoop, JanusClient& janusClient, Facts feedFacts,
                               JanusPublisherEvents publisherEvents)
    : loop(engineLoop),
      client(janusClient),
      facts(std::move(feedFacts)),
      events(std::move(publisherEvents)),
      link(std::make_shared<PeerLink>(engineLoop, ServerOptions(facts.name, ServerWay::ToServer),
                                      LinkEvents(), nullptr)) {}

JanusPublisher::~JanusPublisher() {
    Close();
}

void JanusPublisher::Open() {
    isOpen = true;
    Enter();
}

void JanusPublisher::Close() {
    if (!std::exchange(isOpen, false)) return;
    ++round;
    hangingUp.reset();
    link->Close();
    if (const auto old = std::exchange(handle, 0); old != 0) client.Detach(old);
    if (stream) stream->Close();
    stream.reset();
}

void JanusPublisher::OnNewSession() {
    if (!isOpen) return;
    handle = 0;
    Enter();
}

void JanusPublisher::OnFormerSession() {
    if (!isOpen) return;
    if (phase == Phase::Outside) {
        Enter();
        return;
    }
    if (phase == Phase::Publishing || phase == Phase::Ending) {
        // Nobody knows what has become of the offer, or of the wish for an end.
        offer.clear();
        EndConnection();
    }
    link->OnWayLost();
}

void JanusPublisher::SetStream(std::shared_ptr<SentStream> sentStream) {
    if (stream) stream->Close();
    stream = std::move(sentStream);
    link->Peer().SetFeed(stream ? stream->Feed() : nullptr);
}

PeerLinkEvents JanusPublisher::LinkEvents() {
    // The link is this publisher's own, and its events end with it.
    return {.description =
                [this](const std::string& text) {
                    auto description = ReadDescription(text);
                    if (description) OnOffer(std::move(description->sdp));
                },
            .candidate =
                [this](std::uint32_t mediaLine, const std::string& text) {
                    if (!offerIsSent) {
                        candidates.emplace_back(mediaLine, text);
                    } else if (handle != 0) {
                        client.Trickle(handle, mediaLine, text);
                    }
                },
            .connection =
                [this](bool isConnected) {
                    if (std::exchange(isLost, !isConnected) != isLost && events.connection) {
                        events.connection(isConnected);
                    }
                },
            .channel =
                [this](bool isNew) {
                    if (events.channel) events.channel(isNew);
                },
            .message = [](const std::string&) {},
            .drained =
                [this] {
                    if (events.drained) events.drained();
                },
            .picture = {},
            .loudness = {},
            .measured =
                [this](const PeerStatistics& statistics) {
                    if (events.measured) events.measured(statistics);
                    if (stream && statistics.remoteLossShare) {
                        stream->ReportLoss("server", *statistics.remoteLossShare);
                    }
                }};
}

void JanusPublisher::Ask(const json& body, const std::optional<JanusDescription>& description,
                         std::function<void(const JanusMessage& answer)> onAnswer) {
    client.Ask(
        handle, body, description,
        [weak = weak_from_this(), own = round, answered = std::move(onAnswer)](const JanusMessage& answer) {
            const auto self = weak.lock();
            if (self && self->isOpen && self->round == own) answered(answer);
        });
}

void JanusPublisher::Enter() {
    ++round;
    taken = 0;
    vainEnds = 0;
    wasTaken = false;
    phase = Phase::Outside;
    hangingUp.reset();
    if (const auto old = std::exchange(handle, 0); old != 0) client.Detach(old);
    // A new session has it entered again.
    if (client.IsOpen()) Attach();
}

void JanusPublisher::EnterLater(milliseconds wait) {
    loop.PostAfter(wait, [weak = weak_from_this(), own = round] {
        const auto self = weak.lock();
        if (self && self->isOpen && self->round == own) self->Enter();
    });
}

void JanusPublisher::Attach() {
    client.Attach([this](const JanusMessage& message) { OnEvent(message); },
                  [weak = weak_from_this(), own = round, &janus = client](JanusClient::Handle attached) {
                      const auto self = weak.lock();
                      if (!self || !self->isOpen || self->round != own) {
                          if (attached != 0) janus.Detach(attached);
                          return;
                      }
                      self->handle = attached;
                      if (attached != 0) {
                          self->MakeRoom();
                      } else {
                          self->EnterLater(kTryAgain);
                      }
                  });
}

void JanusPublisher::MakeRoom() {
    const json body = {
        {"request", "create"},           {"room", facts.room},   {"permanent", false}, {"is_private", true},
        {"publishers", kMostPublishers}, {"audiocodec", "opus"}, {"videocodec", "vp8"}};
    Ask(body, std::nullopt, [this](const JanusMessage& answer) {
        if (ErrorOf(answer) == JanusErrors::kBadElement) {
            Refuse(answer, "it has no rooms with names (its setting string_ids is off)");
        } else {
            // Where it is not allowed, or is done already, joining shows whether there is one.
            Join();
        }
    });
}

void JanusPublisher::Join() {
    const json body = {{"request", "join"},
                       {"ptype", "publisher"},
                       {"room", facts.room},
                       {"id", facts.feedId},
                       {"display", facts.display}};
    Ask(body, std::nullopt, [this](const JanusMessage& answer) { OnJoined(answer); });
}

void JanusPublisher::OnJoined(const JanusMessage& answer) {
    if (answer.room && answer.room->kind == "joined") {
        phase = Phase::Free;
        if (events.joined) events.joined(answer.room->publishers);
        if (!isOpen) return;
        if (!std::exchange(isStarted, true)) {
            static_cast<void>(link->Start());
        } else {
            link->BeginAnew();
        }
        return;
    }
    if (ErrorOf(answer) == JanusErrors::kIdTaken && ++taken <= kMostTaken) {
        // Nobody else has this id: it is this feed as the server knew it before.
        Kick(facts.feedId);
        loop.PostAfter(kAfterKick, [weak = weak_from_this(), own = round] {
            const auto self = weak.lock();
            if (self && self->isOpen && self->round == own) self->Join();
        });
        return;
    }
    Refuse(answer, ErrorOf(answer) == JanusErrors::kNoSuchRoom
                       ? "it has no such room, and makes none"
                       : "it does not let us in: " + ReasonOf(answer));
}

void JanusPublisher::Refuse(const JanusMessage& answer, const std::string& problem) {
    EnterLater(kTryAgain);
    // The tie has broken, which is told by others.
    if (ErrorOf(answer) != JanusClient::kNoAnswer && events.refused) events.refused(problem);
}

void JanusPublisher::OnOffer(std::string sdp) {
    offer = std::move(sdp);
    offerIsSent = false;
    candidates.clear();
    if (handle == 0 || !client.IsOpen()) return;
    // It was made before the first caps came to the connection.
    if (!NamesItsSources(offer) && ++vainOffers < kMostVainOffers) {
        offer.clear();
        loop.Post([weak = weak_from_this(), own = round] {
            const auto self = weak.lock();
            if (self && self->isOpen && self->round == own) self->link->BeginAnew();
        });
        return;
    }
    vainOffers = 0;
    if (phase == Phase::Free) {
        Publish();
    } else if (phase == Phase::Publishing || phase == Phase::Published) {
        EndConnection();
    }
}

void JanusPublisher::EndConnection() {
    phase = Phase::Ending;
    hasHungUp = false;
    hangingUp.reset();
    Ask({{"request", "unpublish"}}, std::nullopt, [this, own = ++ending](const JanusMessage& answer) {
        if (phase == Phase::Ending && ending == own) OnUnpublished(answer);
    });
}

void JanusPublisher::EndConnectionLater(milliseconds wait) {
    phase = Phase::Ending;
    hangingUp.reset();
    loop.PostAfter(wait, [weak = weak_from_this(), own = ++ending] {
        const auto self = weak.lock();
        if (!self || !self->isOpen || self->phase != Phase::Ending || self->ending != own) return;
        // Where the tie has broken, its return brings the next attempt.
        if (self->client.IsOpen()) self->EndConnection();
    });
}

void JanusPublisher::OnUnpublished(const JanusMessage& answer) {
    const int error = ErrorOf(answer);
    if (error == JanusClient::kNoAnswer) {
        EndConnectionLater(kTryAgain);
    } else if (hasHungUp || error == JanusErrors::kNotPublished) {
        Publish();
    } else if (error != 0) {
        Refuse(answer, "it does not let go of what we sent: " + ReasonOf(answer));
    } else {
        hangingUp = StartTimer(loop.Context(), kHangupPatience, [this] {
            const auto timer = std::move(hangingUp);
            Publish();
        });
    }
}

void JanusPublisher::Publish() {
    phase = Phase::Free;
    // The next one is on its way.
    if (offer.empty()) return;
    phase = Phase::Publishing;
    offerIsSent = true;
    Ask({{"request", "publish"}, {"display", facts.display}}, JanusDescription{true, offer},
        [this, sent = offer](const JanusMessage& answer) {
            // There may be another offer by now.
            if (phase == Phase::Publishing && sent == offer) OnPublished(answer);
        });
    for (const auto& [mediaLine, text] : std::exchange(candidates, {})) {
        client.Trickle(handle, mediaLine, text);
    }
}

void JanusPublisher::OnPublished(const JanusMessage& answer) {
    const int error = ErrorOf(answer);
    if (answer.description && !answer.description->isOffer) {
        phase = Phase::Published;
        wasTaken = true;
        vainEnds = 0;
        link->TakeDescription(WriteDescription({DescriptionKind::Answer, 0, answer.description->sdp}));
        if (events.published) events.published();
    } else if (error == JanusClient::kNoAnswer || (wasTaken && ++vainEnds < kMostVainEnds)) {
        // The refused one may be half known there.
        offer.clear();
        EndConnectionLater(kClearingUp);
        link->BeginAnew();
    } else if (error == JanusErrors::kRoomFull) {
        Refuse(answer, "the room is full");
    } else {
        Refuse(answer, "it does not take what we send: " + ReasonOf(answer));
    }
}

void JanusPublisher::OnEvent(const JanusMessage& message) {
    if (!isOpen || message.handle != handle) return;
    switch (message.kind) {
        case Kind::Trickle:
            if (message.candidate) {
                link->TakeCandidate(message.candidate->mediaLine, message.candidate->text);
            }
            break;
        case Kind::Hangup:
            if (phase == Phase::Ending) {
                hasHungUp = true;
                if (const auto waited = std::move(hangingUp)) Publish();
            } else if (phase == Phase::Published) {
                phase = Phase::Free;
                link->Restart(false);
            }
            break;
        case Kind::Detached: EnterLater(kTryAgain); break;
        case Kind::Event:
            if (message.room && events.words) events.words(*message.room);
            break;
        default: break;
    }
}

void JanusPublisher::Kick(const std::string& feedId) {
    if (handle == 0) return;
    client.Ask(handle, {{"request", "kick"}, {"room", facts.room}, {"id", feedId}}, std::nullopt, nullptr);
}

void JanusPublisher::List(std::function<void(const std::vector<JanusFeed>& publishers)> onList) {
    if (handle == 0) return;
    Ask({{"request", "listparticipants"}, {"room", facts.room}}, std::nullopt,
        [listed = std::move(onList)](const JanusMessage& answer) {
            if (answer.room && answer.room->participants) listed(*answer.room->participants);
        });
}

}  // namespace Corvanta::Engine
