// Volumes and switches that outlive a room: the common factors of remote sound, and the local tracks, which
// each entry begins anew. One set in the process; any thread.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace Corvanta::Engine {

struct TrackSettings {
    [[nodiscard]] static TrackSettings& Get();

    // By RemoteAudioGroup.
    std::array<std::atomic<double>, 2> groupFactors{1.0, 1.0};
    std::atomic<float> localStreamsVolume = 1.0F;
    std::atomic<bool> localAudioEnabled = true;
    std::atomic<bool> localVideoEnabled = true;
    // Whether the room that is entered takes them at all.
    std::atomic<bool> carriesLocalAudio = true;
    std::atomic<bool> carriesLocalVideo = true;
    // Bits a second of outbound video, at its start and from now on; 0 before anybody has said.
    std::atomic<uint32_t> defaultOutboundBitrate = 0;
    std::atomic<uint32_t> outboundBitrate = 0;

    // Bits a second of outbound video, as they were asked for last; 0 for none.
    [[nodiscard]] uint32_t WantedBitrate() const {
        const uint32_t asked = outboundBitrate;
        return asked > 0 ? asked : defaultOutboundBitrate.load();
    }
    // Whether the local user is heard, and seen where there is a camera.
    [[nodiscard]] bool SendsAudio() const { return localAudioEnabled && carriesLocalAudio; }
    [[nodiscard]] bool SendsVideo() const { return localVideoEnabled && carriesLocalVideo; }
};

}  // namespace Corvanta::Engine
