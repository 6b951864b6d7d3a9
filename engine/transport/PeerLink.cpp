#include "engine/transport/PeerLink.h"

#include <algorithm>
#include <utility>

namespace Corvanta::Engine {

PeerLink::PeerLink(EngineLoop& engineLoop, PeerOptions options, PeerLinkEvents linkEvents,
                   std::shared_ptr<SoundMixer> mixer)
    : loop(engineLoop),
      events(std::move(linkEvents)),
      peer(std::make_shared<PeerConnection>(engineLoop, std::move(options), MakeEvents(), std::move(mixer))) {
}

PeerLink::~PeerLink() {
    Close();
}

bool PeerLink::Start() {
    isOpen = true;
    loop.PostAfter(kMeasureInterval, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->Measure();
    });
    begun = Clock::now();
    const bool isStarted = peer->Start();
    RestartAfter(isStarted ? kPatience : nextWait);
    return isStarted;
}

void PeerLink::Close() {
    isOpen = false;
    ++plan;
    peer->Close();
}

void PeerLink::Restart(bool immediately) {
    if (!isOpen) return;
    if (!immediately) {
        RestartAfter(nextWait);
    } else if (wasConnected || !begun || Clock::now() - *begun >= kYoungFor) {
        BeginAnew();
    }
}

void PeerLink::BeginAnew() {
    if (!isOpen) return;
    const auto self = shared_from_this();
    ++plan;
    OnLost();
    Begin();
}

void PeerLink::OnWayLost() {
    if (isOpen && !peer->IsConnected()) Begin();
}

void PeerLink::TakeDescription(const std::string& text) {
    if (!isOpen || !descriptions.Allow(Clock::now())) return;
    const bool wasUp = peer->IsConnected();
    const auto before = peer->Session();
    if (!peer->TakeDescription(text)) return;
    // The other side sets the connection up again, or answers; nothing needs to be done here meanwhile.
    begun = Clock::now();
    if (peer->Session() != 0) RestartAfter(kPatience);
    if (wasUp && !peer->IsConnected()) {
        OnLost();
    } else {
        DropChannelOf(before);
    }
}

void PeerLink::DropChannelOf(std::uint64_t session) {
    if (peer->Session() != session && std::exchange(channelIsOpen, false)) events.channel(false);
}

void PeerLink::TakeCandidate(std::uint32_t mediaLine, const std::string& text) {
    if (isOpen) static_cast<void>(peer->TakeCandidate(mediaLine, text));
}

PeerEvents PeerLink::MakeEvents() {
    // The connection is this link's own, and its events end with it.
    return {.onDescription =
                [this](const std::string& text) {
                    if (isOpen) events.description(text);
                },
            .onCandidate =
                [this](std::uint32_t mediaLine, const std::string& text) {
                    if (isOpen) events.candidate(mediaLine, text);
                },
            .onConnected = [this] { OnConnected(); },
            .onDisconnected =
                [this](const std::string&) {
                    const auto self = shared_from_this();
                    OnLost();
                    RestartAfter(nextWait);
                    nextWait = std::min(2 * nextWait, kLongestWait);
                },
            .onChannelOpen =
                [this] {
                    if (!isOpen) return;
                    channelIsOpen = true;
                    events.channel(true);
                },
            .onText =
                [this](const std::string& text) {
                    if (isOpen) events.message(text);
                },
            .onTextsDrained =
                [this] {
                    if (isOpen) events.drained();
                },
            .onVideo = events.picture,
            .onLoudness =
                [this](double meanSquare) {
                    if (isOpen && events.loudness) events.loudness(meanSquare);
                }};
}

void PeerLink::OnConnected() {
    if (!isOpen) return;
    ++plan;
    connectedSince = Clock::now();
    wasConnected = true;
    events.connection(true);
}

void PeerLink::OnLost() {
    if (!isOpen) return;
    if (std::exchange(wasConnected, false) && Clock::now() - connectedSince >= kSoundTime)
        nextWait = kFirstWait;
    const auto self = shared_from_this();
    if (std::exchange(channelIsOpen, false)) events.channel(false);
    if (isOpen) events.connection(false);
}

void PeerLink::RestartAfter(std::chrono::milliseconds wait) {
    if (!isOpen) return;
    loop.PostAfter(wait, [weak = weak_from_this(), planned = ++plan] {
        const auto self = weak.lock();
        if (!self || !self->isOpen || self->plan != planned) return;
        if (self->wasConnected) self->OnLost();
        self->Begin();
    });
}

void PeerLink::Begin() {
    if (!isOpen) return;
    RestartAfter(kPatience);
    begun = Clock::now();
    const auto before = peer->Session();
    peer->Restart();
    DropChannelOf(before);
}

void PeerLink::Measure() {
    if (!isOpen) return;
    if (peer->IsConnected() && events.measured) {
        peer->RequestStatistics([this](const PeerStatistics& statistics) {
            if (isOpen) events.measured(statistics);
        });
    }
    loop.PostAfter(kMeasureInterval, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->Measure();
    });
}

}  // namespace Corvanta::Engine
