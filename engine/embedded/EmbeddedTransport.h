// The transport of a room that needs nobody else: participants of this process, who play files, URIs and
// generated clips. What the local user sends and publishes goes nowhere.
// Threads as Transport says.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

// How many of them are generated persons, who take turns in speaking.
[[nodiscard]] std::size_t CountPersons(const std::vector<Participant>& participants);

class EmbeddedTransport final : public Transport {
public:
    EmbeddedTransport(EngineLoop& engineLoop, std::shared_ptr<SoundMixer> roomMixer,
                      std::vector<Participant> participants);

    void Start(TransportEvents handlers) override;
    void Stop() override {}
    [[nodiscard]] std::string OwnId() const override;
    // They keep nothing of what the local user draws and writes.
    void SendText(std::string) override {}
    [[nodiscard]] std::shared_ptr<LocalFeed> PublishCamera(const LocalTracks&) override { return nullptr; }
    [[nodiscard]] std::shared_ptr<LocalFeed> PublishStream(StreamType, const std::string&) override {
        return nullptr;
    }
    void Unpublish(StreamType) override {}
    void SetCameraTracks(const LocalTracks&) override {}
    void SetOutboundBitrate(uint32_t) override {}
    void SetCameraAdaptation(const VideoFrameAdaptation&) override {}
    [[nodiscard]] std::vector<OwnStreamFigures> OwnFigures() const override { return {}; }
    void Configure(const std::string&, const TrackSwitches&) override {}
    void RequestRestart(const std::string&, const RestartRequest&) override {}
    void Mute(const std::string&) override {}
    void Remove(const std::string&) override {}

private:
    [[nodiscard]] ParticipantDescription Describe(std::size_t index) const;

    EngineLoop& loop;
    const std::shared_ptr<SoundMixer> mixer;
    const std::vector<Participant> all;
    const std::chrono::steady_clock::time_point epoch;
};

}  // namespace Corvanta::Engine
