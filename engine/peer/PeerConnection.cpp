#include "engine/peer/PeerConnection.h"

#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

Reach ReachOf(const PeerOptions& options) {
    return options.loopbackOnly ? Reach::LoopbackAlone : Reach::AllAddresses;
}

}  // namespace

PeerConnection::PeerConnection(EngineLoop& engineLoop, PeerOptions peerOptions, PeerEvents peerEvents,
                               std::shared_ptr<SoundMixer> roomMixer)
    : loop(engineLoop),
      options(std::move(peerOptions)),
      events(std::move(peerEvents)),
      mixer(std::move(roomMixer)) {}

PeerConnection::~PeerConnection() {
    Close();
}

bool PeerConnection::Start() {
    isStarted = true;
    if (options.role == PeerOptions::Role::Answerer) return true;
    ++sessionNumber;
    return OpenSession();
}

void PeerConnection::Close() {
    isStarted = false;
    isConnected = false;
    if (const auto closed = std::exchange(session, nullptr)) closed->Close();
}

void PeerConnection::Restart() {
    if (!isStarted) return;
    if (options.role == PeerOptions::Role::Offerer) {
        ++sessionNumber;
        if (!OpenSession()) OnEnded("no session can be made");
    } else if (events.onDescription) {
        events.onDescription(WriteDescription({DescriptionKind::Restart, sessionNumber, {}}));
    }
}

bool PeerConnection::OpenSession() {
    isConnected = false;
    isAnswered = false;
    candidates = 0;
    rates = {};
    if (const auto closed = std::exchange(session, nullptr)) closed->Close();
    const bool offers = options.role == PeerOptions::Role::Offerer;
    PeerSessionOptions wanted{.name = options.name,
                              .offers = offers,
                              .sends = options.sends,
                              .receives = options.receives,
                              .loopbackOnly = options.loopbackOnly,
                              .hasChannel = !options.channelLabel.empty(),
                              .channelLabel = options.channelLabel};
    if (!offers && !options.answererMakesChannel) wanted.channelLabel.clear();
    auto opened = std::make_shared<PeerSession>(loop, std::move(wanted), MakeEvents(), mixer, events.onVideo);
    opened->Media().SetGain(gain);
    opened->Media().SetVideoDecoded(videoDecoded);
    opened->Media().SetAudioDecoded(audioDecoded);
    opened->SetSent(videoSent, audioSent);
    opened->SetFeed(feed);
    if (!opened->Open()) return false;
    session = std::move(opened);
    ++sessionsMade;
    return true;
}

PeerSessionEvents PeerConnection::MakeEvents() {
    // A session's events end with it, and it ends with this.
    return {.description =
                [this](const std::string& sdp) {
                    const auto kind = options.role == PeerOptions::Role::Offerer ? DescriptionKind::Offer
                                                                                 : DescriptionKind::Answer;
                    if (events.onDescription)
                        events.onDescription(WriteDescription({kind, sessionNumber, sdp}));
                },
            .candidate =
                [this](std::uint32_t mediaLine, const std::string& text) {
                    if (events.onCandidate) events.onCandidate(mediaLine, text);
                },
            .connected =
                [this] {
                    isConnected = true;
                    LOG(kLogInformation, "Connected with \"%s\"", options.name.c_str());
                    if (events.onConnected) events.onConnected();
                },
            .ended = [this](const std::string& reason) { OnEnded(reason); },
            .channelOpen =
                [this] {
                    if (events.onChannelOpen) events.onChannelOpen();
                },
            .text =
                [this](const std::string& text) {
                    if (events.onText) events.onText(text);
                },
            .textsDrained =
                [this] {
                    if (events.onTextsDrained) events.onTextsDrained();
                },
            .loudness =
                [this](double meanSquare) {
                    if (events.onLoudness) events.onLoudness(meanSquare);
                }};
}

void PeerConnection::OnEnded(const std::string& reason) {
    // The session is among the callers.
    const auto self = shared_from_this();
    const auto closed = std::exchange(session, nullptr);
    if (closed) {
        closed->Close();
        loop.Post([closed] {});
    }
    isConnected = false;
    LOG(kLogInformation, "The connection with \"%s\" is lost: %s", options.name.c_str(), reason.c_str());
    if (events.onDisconnected) events.onDisconnected(reason);
}

bool PeerConnection::Refuse(bool& wasLogged, const char* what) {
    if (!std::exchange(wasLogged, true)) {
        LOG(kLogWarning, "\"%s\" has sent %s that cannot be used", options.name.c_str(), what);
    }
    return false;
}

bool PeerConnection::TakeDescription(const std::string& text) {
    if (!isStarted) return false;
    auto description = ReadDescription(text, ReachOf(options));
    if (!description) return Refuse(badDescriptionWasLogged, "a description");
    const bool offers = options.role == PeerOptions::Role::Offerer;
    switch (description->kind) {
        case DescriptionKind::Offer:
            if (offers) return Refuse(badDescriptionWasLogged, "an offer");
            return TakeOffer(*description);
        case DescriptionKind::Answer:
            if (!offers) return Refuse(badDescriptionWasLogged, "an answer");
            // Of an earlier session, which is nobody's fault; a second answer is.
            if (!session || (description->session != 0 && description->session != sessionNumber))
                return false;
            if (std::exchange(isAnswered, true)) return Refuse(badDescriptionWasLogged, "a second answer");
            candidates += description->candidates;
            session->TakeAnswer(description->sdp);
            return true;
        case DescriptionKind::Restart:
            if (!offers) return Refuse(badDescriptionWasLogged, "a request");
            // A session that is being set up is as new as can be.
            if (session && !isConnected) return true;
            Restart();
            return true;
    }
    return false;
}

bool PeerConnection::TakeOffer(const PeerDescription& description) {
    if (description.session != 0 && description.session <= sessionNumber && session) return false;
    sessionNumber = description.session;
    if (!OpenSession()) return false;
    candidates = description.candidates;
    session->TakeOffer(description.sdp);
    return true;
}

bool PeerConnection::TakeCandidate(std::uint32_t mediaLine, const std::string& text) {
    if (!isStarted) return false;
    // How the end of the candidates is told, and what cannot be used though nothing is wrong with it.
    if (text.empty() || !session) return false;
    if (!IsUsableCandidate(mediaLine, text, ReachOf(options)) || candidates >= kMaxCandidates) {
        return Refuse(badCandidateWasLogged, "a candidate");
    }
    ++candidates;
    session->AddCandidate(mediaLine, text);
    return true;
}

bool PeerConnection::SendText(const std::string& text) {
    return session && session->Texts().Send(text);
}

void PeerConnection::SetFeed(std::shared_ptr<OutboundFeed> sentFeed) {
    feed = std::move(sentFeed);
    if (session) session->SetFeed(feed);
}

void PeerConnection::SetSent(bool video, bool audio) {
    videoSent = video;
    audioSent = audio;
    if (session) session->SetSent(video, audio);
}

void PeerConnection::SetVideoDecoded(bool decoded) {
    videoDecoded = decoded;
    if (session) session->Media().SetVideoDecoded(decoded);
}

void PeerConnection::SetAudioDecoded(bool decoded) {
    audioDecoded = decoded;
    if (session) session->Media().SetAudioDecoded(decoded);
}

void PeerConnection::SetGain(double linear) {
    gain = linear;
    if (session) session->Media().SetGain(linear);
}

void PeerConnection::RequestStatistics(std::function<void(const PeerStatistics&)> handler) {
    if (!session) return;
    session->RequestReport([this, handler = std::move(handler)](const PeerReport& report) {
        handler(rates.Add(report, std::chrono::steady_clock::now()));
    });
}

}  // namespace Corvanta::Engine
