#include "engine/transport/PeerStream.h"

#include <utility>

#include "engine/peer/TextChannel.h"
#include "engine/signalling/TextPieces.h"
#include "engine/transport/SentFigures.h"

namespace Corvanta::Engine {

// Otherwise a piece would be refused for ever.
static_assert(kLongestPiece <= TextChannel::kMaxTextBytes);

PeerStream::PeerStream(EngineLoop& engineLoop, const PeerOptions& options, PeerStreamEvents streamEvents,
                       const std::shared_ptr<SoundMixer>& mixer)
    : loop(engineLoop),
      events(std::move(streamEvents)),
      link(std::make_shared<PeerLink>(engineLoop, options, LinkEvents(), mixer)) {
    if (!options.channelLabel.empty()) {
        line = std::make_shared<TextLine>(
            loop, options.name,
            TextLine::Events{
                .send = [this](const std::string& message) { return link->Peer().SendText(message); },
                .text =
                    [this](std::string text) {
                        if (isOpen) handlers.text(std::move(text));
                    }});
    }
    // Nobody takes pictures yet.
    link->Peer().SetVideoDecoded(false);
}

PeerStream::~PeerStream() {
    Close();
}

void PeerStream::Connect() {
    static_cast<void>(link->Start());
}

PeerLinkEvents PeerStream::LinkEvents() {
    // The link is this stream's own, and its events end with it.
    return {.description = [this](const std::string& text) { events.description(text); },
            .candidate = [this](std::uint32_t mediaLine,
                                const std::string& text) { events.candidate(mediaLine, text); },
            .connection = [this](bool isConnected) { OnConnection(isConnected); },
            .channel = [this](bool isNew) { OnChannel(isNew); },
            .message =
                [this](const std::string& message) {
                    if (line) line->Take(message);
                },
            .drained =
                [this] {
                    if (line) line->OnDrained();
                },
            .picture =
                [this](const std::shared_ptr<const MappedPicture>& picture) {
                    // None comes before Play has switched the decoder on.
                    handlers.picture(picture);
                },
            .loudness =
                [this](double meanSquare) {
                    if (isOpen) handlers.loudness(meanSquare);
                },
            .measured =
                [this](const PeerStatistics& statistics) {
                    {
                        const std::lock_guard lock(figuresMutex);
                        figures = FiguresFrom(statistics);
                    }
                    if (events.measured) events.measured(statistics);
                }};
}

void PeerStream::OnConnection(bool isConnected) {
    if (!isConnected) {
        const std::lock_guard lock(figuresMutex);
        figures = {};
    }
    toldTracks.reset();
    if (isConnected) TellWanted();
    if (std::exchange(isLost, !isConnected) == isLost || !isOpen) return;
    handlers.connection(isLost);
}

void PeerStream::OnChannel(bool isNew) {
    channelIsOpen = isNew;
    // Texts that come before somebody listens would be lost.
    if (!line || !isOpen) return;
    if (isNew) {
        line->Open();
    } else {
        line->Close();
    }
    handlers.channel(isNew);
}

void PeerStream::SetPublished(const LocalTracks& wanted) {
    const LocalTracks before = std::exchange(published, wanted);
    if (before == wanted || !isOpen) return;
    if (!published.video) handlers.withoutPicture();
    if (before.audio != published.audio && handlers.soundPublished) handlers.soundPublished(published.audio);
}

void PeerStream::Lose() {
    // The handlers may let go of it.
    const auto self = shared_from_this();
    link->Close();
    if (channelIsOpen) OnChannel(false);
    OnConnection(false);
}

void PeerStream::Send(std::string text) {
    if (line && !isClosed) line->Send(std::move(text));
}

void PeerStream::Open(ParticipantMediaEvents mediaHandlers) {
    if (isClosed || isOpen) return;
    handlers = std::move(mediaHandlers);
    isOpen = true;
    // What has happened meanwhile.
    if (isLost) handlers.connection(true);
    if (channelIsOpen) OnChannel(true);
    if (!published.video) handlers.withoutPicture();
}

void PeerStream::Play() {
    if (!isOpen || std::exchange(isPlaying, true)) return;
    ApplyTracks();
}

void PeerStream::SetTracks(const MediaTracks& wanted) {
    if (isClosed) return;
    tracks = wanted;
    ApplyTracks();
}

void PeerStream::ApplyTracks() {
    link->Peer().SetVideoDecoded(isPlaying && tracks.video);
    link->Peer().SetAudioDecoded(tracks.audio);
    if (link->IsConnected()) TellWanted();
}

void PeerStream::TellWanted() {
    if (toldTracks == tracks || !events.wanted) return;
    toldTracks = tracks;
    events.wanted(tracks);
}

void PeerStream::Close() {
    if (std::exchange(isClosed, true)) return;
    isOpen = false;
    link->Close();
    if (line) line->Close();
}

ParticipantFigures PeerStream::Figures() {
    const std::lock_guard lock(figuresMutex);
    return figures;
}

}  // namespace Corvanta::Engine
