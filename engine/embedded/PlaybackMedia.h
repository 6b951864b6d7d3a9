// The media of a participant who is a file, a URI or a generated clip of this process. Threads as
// ParticipantMedia says.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>

#include "engine/common/EngineLoop.h"
#include "engine/transport/ParticipantMedia.h"
#include "engine/webrtc/Playback.h"

namespace Corvanta::Engine {

class PlaybackMedia final : public ParticipantMedia {
public:
    PlaybackMedia(EngineLoop& engineLoop, PlaybackSource playedSource, std::shared_ptr<SoundMixer> roomMixer);

    void Open(ParticipantMediaEvents handlers) override;
    void Play() override;
    void SetGain(double linear) override;
    void SetTracks(const MediaTracks& tracks) override;
    void Restart(bool immediately) override;
    void Close() override;
    // Rates as they would be on a wire.
    [[nodiscard]] ParticipantFigures Figures() override;

private:
    EngineLoop& loop;
    PlaybackSource source;
    const std::shared_ptr<SoundMixer> mixer;
    // Since it was made; those that nobody wants left out.
    std::atomic<std::size_t> pictures = 0;
    std::atomic<bool> videoIsWanted = true;
    std::atomic<int> width = 0, height = 0;

    // The engine's thread alone.
    ParticipantMediaEvents events;
    std::shared_ptr<Playback> playback;
    bool isPlaying = false;

    // Of whoever asks for the figures.
    std::size_t countedPictures = 0;
    std::chrono::steady_clock::time_point countedAt = std::chrono::steady_clock::now();
};

}  // namespace Corvanta::Engine
