#include "engine/embedded/PlaybackMedia.h"

#include <utility>

namespace Corvanta::Engine {

namespace {

// A picture of 1280x720 at a tenth of a bit a pixel, as video calls have it.
constexpr double kBitsPerPicture = 1280.0 * 720.0 * 0.1;

}  // namespace

PlaybackMedia::PlaybackMedia(EngineLoop& engineLoop, PlaybackSource playedSource,
                             std::shared_ptr<SoundMixer> roomMixer)
    : loop(engineLoop), source(std::move(playedSource)), mixer(std::move(roomMixer)) {}

void PlaybackMedia::Open(ParticipantMediaEvents handlers) {
    events = std::move(handlers);
    // The playback is this object's own, so its events do not own this object.
    playback = std::make_shared<Playback>(
        loop, std::move(source), mixer,
        PlaybackEvents{.picture =
                           [this](const std::shared_ptr<const MappedPicture>& picture) {
                               if (videoIsWanted) ++pictures;
                               width = picture->Width();
                               height = picture->Height();
                               events.picture(picture);
                           },
                       .loudness = [this](double meanSquare) { events.loudness(meanSquare); },
                       .withoutPicture = [this] { events.withoutPicture(); },
                       .connection = [this](bool lost) { events.connection(lost); },
                       .ended = [this] { events.ended(); }});
    playback->Open();
}

void PlaybackMedia::Play() {
    if (!playback || std::exchange(isPlaying, true)) return;
    // Texts need no connection within one process.
    events.channel(true);
    playback->Play();
}

void PlaybackMedia::SetGain(double linear) {
    if (playback) playback->SetGain(linear);
}

void PlaybackMedia::SetTracks(const MediaTracks& tracks) {
    // A file is decoded all the same, so that it goes on where it would be by then.
    videoIsWanted = tracks.video;
}

void PlaybackMedia::Restart(bool immediately) {
    if (playback) playback->Restart(immediately);
}

void PlaybackMedia::Close() {
    isPlaying = false;
    if (playback) playback->Close();
    playback.reset();
}

ParticipantFigures PlaybackMedia::Figures() {
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<double> span = now - std::exchange(countedAt, now);
    const std::size_t all = pictures;
    const std::size_t counted = all - std::exchange(countedPictures, all);
    ParticipantFigures figures{.width = width, .height = height};
    if (span.count() <= 0) return figures;
    figures.frameRate = static_cast<double>(counted) / span.count();
    figures.receivedRate = figures.frameRate * kBitsPerPicture;
    return figures;
}

}  // namespace Corvanta::Engine
