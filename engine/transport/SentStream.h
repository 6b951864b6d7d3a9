// One of the local user's streams on its way to the others: takes pictures and sound, encodes them once for
// all, and keeps the bit rate at what the receivers can take. The engine's thread, but for what is pushed.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/peer/EncoderSettings.h"
#include "engine/peer/OutboundFeed.h"
#include "engine/transport/LocalFeed.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

class SentStream final : public LocalFeed {
public:
    // Bits a second of video until another rate is set, and what even a bad network gets.
    static constexpr std::uint32_t kDefaultBitrate = 1'500'000;
    static constexpr std::uint32_t kLowestBitrate = 150'000;

    // Null, and a log line, when an element is missing. `name` is for the log.
    [[nodiscard]] static std::shared_ptr<SentStream> Open(EngineLoop& loop, const std::string& name);
    SentStream(EngineLoop& loop, const std::string& name);

    // On return nothing is encoded and none of its packets is on its way.
    void Close();

    void PushPicture(std::shared_ptr<const MappedPicture> picture) override;
    void PushSound(GstBuffer* samples, GstClockTime due) override;

    // What the user has on, and what has been switched for all; only what is on by both is sent.
    void SetTracks(const LocalTracks& wanted);
    void Switch(const TrackSwitches& wanted);
    // What is sent at all.
    [[nodiscard]] LocalTracks Sent() const;

    void SetTargetBitrate(std::uint32_t bitsPerSecond);
    void SetAdaptation(const VideoFrameAdaptation& adaptation);
    // The share of packets that a receiver has lost lately. The worst one counts.
    void ReportLoss(const std::string& receiver, double share);
    void ForgetReceiver(const std::string& receiver);

    // For the connections that carry it.
    [[nodiscard]] const std::shared_ptr<OutboundFeed>& Feed() const { return feed; }

private:
    void Apply();

    const std::shared_ptr<OutboundFeed> feed;
    LocalTracks tracks;
    LocalTracks switched;
    std::uint32_t target = kDefaultBitrate;
    BitrateRule rule;
    std::map<std::string, double> losses;
};

}  // namespace Corvanta::Engine
