#include "engine/mesh/MeshMember.h"

#include <chrono>
#include <utility>
#include <variant>

#include "engine/peer/PeerDescription.h"
#include "engine/transport/StreamNames.h"

namespace Corvanta::Engine {

using namespace MeshMessages;

namespace {

constexpr const char* kTextChannel = "texts";
// From one look at whether a delayed stream may come to the next.
constexpr auto kDelay = std::chrono::milliseconds(250);

}  // namespace

MeshMember::MeshMember(EngineLoop& engineLoop, Facts memberFacts, MeshMemberEvents memberEvents,
                       std::shared_ptr<SoundMixer> roomMixer)
    : loop(engineLoop),
      facts(std::move(memberFacts)),
      events(std::move(memberEvents)),
      mixer(std::move(roomMixer)),
      camera(MakeStream(StreamType::Camera, kCameraLink,
                        {.name = facts.name,
                         .role = facts.offers ? PeerOptions::Role::Offerer : PeerOptions::Role::Answerer,
                         .sends = true,
                         .receives = true,
                         .channelLabel = kTextChannel,
                         .loopbackOnly = facts.loopbackOnly})) {}

std::function<void(const std::string&)> MeshMember::DescriptionSender(const std::string& link) {
    return [this, link](const std::string& text) { events.send(Description{link, text}); };
}

std::function<void(std::uint32_t, const std::string&)> MeshMember::CandidateSender(const std::string& link) {
    return [this, link](std::uint32_t mediaLine, const std::string& text) {
        events.send(Candidate{link, mediaLine, text});
    };
}

std::shared_ptr<PeerStream> MeshMember::MakeStream(StreamType type, const std::string& link,
                                                   const PeerOptions& options) {
    // The streams are this member's own, and their events end with it.
    PeerStreamEvents streamEvents{
        .description = DescriptionSender(link),
        .candidate = CandidateSender(link),
        .wanted =
            [this, type](const MediaTracks& tracks) {
                events.send(Want{type, {.audio = tracks.audio, .video = tracks.video}});
            },
        .measured =
            [this, type](const PeerStatistics& statistics) {
                if (type == StreamType::Camera) events.measured(type, statistics);
            }};
    return std::make_shared<PeerStream>(loop, options, std::move(streamEvents), mixer);
}

void MeshMember::Open() {
    events.joined({.id = StreamIdOf(facts.id, StreamType::Camera),
                   .name = facts.name,
                   .memberId = facts.id,
                   .reportsItself = true,
                   .media = camera});
    camera->Connect();
}

void MeshMember::Close() {
    if (std::exchange(isClosed, true)) return;
    camera->Close();
    for (const auto& [type, stream] : streams) stream->Close();
    for (const auto& [type, sending] : sendings) {
        if (sending.link) sending.link->Close();
    }
}

void MeshMember::Leave(const std::string& reason) {
    if (isClosed) return;
    const auto self = shared_from_this();
    for (const auto& [type, stream] : streams) events.left(StreamIdOf(facts.id, type), reason);
    events.left(StreamIdOf(facts.id, StreamType::Camera), reason);
    Close();
}

void MeshMember::Lose() {
    if (isClosed || std::exchange(isLost, true)) return;
    const auto self = shared_from_this();
    for (auto& [type, sending] : sendings) {
        if (sending.link) sending.link->Close();
    }
    camera->Lose();
    for (const auto& [type, stream] : streams) stream->Lose();
}

void MeshMember::Publish(StreamType type, const std::string& name,
                         const std::shared_ptr<SentStream>& stream) {
    if (isClosed || isLost) return;
    Sending& sending = sendings[type];
    const bool isNew = sending.stream != stream;
    sending.stream = stream;
    events.send(MeshMessages::Publish{type, name, stream->Sent()});
    if (isNew) OpenSending(type, sending);
}

void MeshMember::OpenSending(StreamType type, Sending& sending) {
    if (type == StreamType::Camera) {
        camera->SetFeed(sending.stream->Feed());
        return;
    }
    const std::string link = StreamIdOf(facts.ownId, type);
    if (sending.link) sending.link->Close();
    sending.link = std::make_shared<PeerLink>(
        loop,
        PeerOptions{.name = facts.name,
                    .role = PeerOptions::Role::Offerer,
                    .sends = true,
                    .receives = false,
                    .channelLabel = {},
                    .loopbackOnly = facts.loopbackOnly},
        PeerLinkEvents{
            .description = DescriptionSender(link),
            .candidate = CandidateSender(link),
            .connection =
                [this, type](bool isConnected) {
                    if (!isConnected) events.unreached(type);
                },
            .channel = [](bool) {},
            .message = [](const std::string&) {},
            .drained = [] {},
            .picture = {},
            .loudness = {},
            .measured = [this,
                         type](const PeerStatistics& statistics) { events.measured(type, statistics); }},
        nullptr);
    sending.link->Peer().SetFeed(sending.stream->Feed());
    static_cast<void>(sending.link->Start());
}

void MeshMember::Unpublish(StreamType type) {
    const auto place = sendings.find(type);
    if (place == sendings.end()) return;
    if (type == StreamType::Camera) camera->SetFeed(nullptr);
    if (place->second.link) place->second.link->Close();
    sendings.erase(place);
    if (!isClosed && !isLost) events.send(MeshMessages::Unpublish{type});
}

void MeshMember::Take(MeshMessage message) {
    if (isClosed || isLost) return;
    const auto self = shared_from_this();
    std::visit([this](const auto& known) { TakeKind(known); }, message);
}

void MeshMember::TakeKind(const Description& message) {
    if (PeerLink* const link = FindLink(message.link)) {
        link->TakeDescription(message.text);
    } else if (Delayed* const waiting = FindDelayed(message.link)) {
        // The candidates that belong to it follow.
        waiting->offer = message;
        waiting->candidates.clear();
    }
}

void MeshMember::TakeKind(const Candidate& message) {
    if (PeerLink* const link = FindLink(message.link)) {
        link->TakeCandidate(message.line, message.text);
    } else if (Delayed* const waiting = FindDelayed(message.link);
               waiting != nullptr && waiting->candidates.size() < kMaxCandidates &&
               message.text.size() <= kMaxCandidateBytes) {
        waiting->candidates.push_back(message);
    }
}

void MeshMember::TakeKind(const MeshMessages::Publish& message) {
    if (message.type == StreamType::Camera) {
        camera->SetPublished(message.tracks);
        return;
    }
    if (const auto place = streams.find(message.type); place != streams.end()) {
        place->second->SetPublished(message.tracks);
    } else if (const auto waiting = delayed.find(message.type); waiting != delayed.end()) {
        waiting->second.publish = message;
    } else if (newStreams.Allow(RateLimit::Clock::now())) {
        AddStream(message);
    } else {
        delayed[message.type].publish = message;
        AddDelayedLater();
    }
}

void MeshMember::AddStream(const MeshMessages::Publish& message) {
    const std::string id = StreamIdOf(facts.id, message.type);
    const auto joining = MakeStream(message.type, id,
                                    {.name = facts.name,
                                     .role = PeerOptions::Role::Answerer,
                                     .sends = false,
                                     .receives = true,
                                     .channelLabel = {},
                                     .loopbackOnly = facts.loopbackOnly});
    streams[message.type] = joining;
    joining->SetPublished(message.tracks);
    joining->Connect();
    events.joined({.id = id,
                   .name = message.name.empty() ? facts.name : message.name,
                   .memberId = facts.id,
                   .type = message.type,
                   .isExternalSource = message.type == StreamType::ExternalScreen,
                   .reportsItself = true,
                   .media = joining});
}

void MeshMember::AddDelayedLater() {
    if (delayed.empty() || std::exchange(addsDelayed, true)) return;
    loop.PostAfter(kDelay, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->AddDelayed();
    });
}

void MeshMember::AddDelayed() {
    addsDelayed = false;
    while (!isClosed && !isLost && !delayed.empty() && newStreams.Allow(RateLimit::Clock::now())) {
        const Delayed waited = std::move(delayed.begin()->second);
        delayed.erase(delayed.begin());
        AddStream(waited.publish);
        if (waited.offer) Take(*waited.offer);
        for (const Candidate& candidate : waited.candidates) Take(candidate);
    }
    if (!isClosed && !isLost) AddDelayedLater();
}

MeshMember::Delayed* MeshMember::FindDelayed(const std::string& link) {
    const auto type = TypeOfStream(facts.id, link);
    const auto place = type ? delayed.find(*type) : delayed.end();
    return place != delayed.end() ? &place->second : nullptr;
}

void MeshMember::TakeKind(const MeshMessages::Unpublish& message) {
    delayed.erase(message.type);
    const auto place = streams.find(message.type);
    if (place == streams.end()) return;
    const auto gone = place->second;
    streams.erase(place);
    events.left(StreamIdOf(facts.id, message.type), "it is no longer shared");
    gone->Close();
}

void MeshMember::TakeKind(const Want& message) {
    // The camera's connection is there before the local user publishes anything.
    if (message.type == StreamType::Camera) {
        camera->Link().Peer().SetSent(message.tracks.video, message.tracks.audio);
    } else if (const auto place = sendings.find(message.type); place != sendings.end()) {
        place->second.link->Peer().SetSent(message.tracks.video, message.tracks.audio);
    }
}

void MeshMember::TakeKind(const MeshMessages::Mute& message) {
    events.muted(message.type);
}

void MeshMember::TakeKind(const MeshMessages::Remove&) {
    events.removed();
}

void MeshMember::OnWayLost() {
    if (isClosed || isLost) return;
    camera->Link().OnWayLost();
    for (const auto& [type, stream] : streams) stream->Link().OnWayLost();
    for (const auto& [type, sending] : sendings) {
        if (sending.link) sending.link->OnWayLost();
    }
}

void MeshMember::RestartSending(StreamType type, bool immediately) {
    if (isClosed || isLost) return;
    if (type == StreamType::Camera) {
        camera->Link().Restart(immediately);
    } else if (const auto place = sendings.find(type); place != sendings.end()) {
        place->second.link->Restart(immediately);
    }
}

PeerLink* MeshMember::FindLink(const std::string& link) const {
    if (link == kCameraLink) return &camera->Link();
    if (const auto type = TypeOfStream(facts.id, link)) {
        const auto place = streams.find(*type);
        return place != streams.end() ? &place->second->Link() : nullptr;
    }
    if (const auto type = TypeOfStream(facts.ownId, link)) {
        const auto place = sendings.find(*type);
        return place != sendings.end() ? place->second.link.get() : nullptr;
    }
    return nullptr;
}

}  // namespace Corvanta::Engine
