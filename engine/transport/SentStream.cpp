#include "engine/transport/SentStream.h"

#include <algorithm>
#include <utility>

namespace Corvanta::Engine {

std::shared_ptr<SentStream> SentStream::Open(EngineLoop& loop, const std::string& name) {
    auto stream = std::make_shared<SentStream>(loop, name);
    return stream->feed->Open() ? stream : nullptr;
}

SentStream::SentStream(EngineLoop& loop, const std::string& name)
    : feed(std::make_shared<OutboundFeed>(
          loop, OutboundFeed::Settings{.name = name, .targetBitrate = kDefaultBitrate, .frameRate = 30})),
      rule(kLowestBitrate, kDefaultBitrate) {}

void SentStream::Close() {
    feed->Close();
}

void SentStream::PushPicture(std::shared_ptr<const MappedPicture> picture) {
    feed->PushPicture(std::move(picture));
}

void SentStream::PushSound(GstBuffer* samples, GstClockTime due) {
    feed->PushSound(samples, due);
}

void SentStream::SetTracks(const LocalTracks& wanted) {
    tracks = wanted;
    Apply();
}

void SentStream::Switch(const TrackSwitches& wanted) {
    switched.audio = wanted.audio.value_or(switched.audio);
    switched.video = wanted.video.value_or(switched.video);
    Apply();
}

LocalTracks SentStream::Sent() const {
    return {.audio = tracks.audio && switched.audio, .video = tracks.video && switched.video};
}

void SentStream::Apply() {
    const LocalTracks sent = Sent();
    feed->SetAudioEnabled(sent.audio);
    feed->SetVideoEnabled(sent.video);
}

void SentStream::SetTargetBitrate(std::uint32_t bitsPerSecond) {
    target = std::max(bitsPerSecond, kLowestBitrate);
    rule.SetBounds(kLowestBitrate, target);
    feed->SetTargetBitrate(target);
    feed->LimitBitrate(rule.Bitrate());
}

void SentStream::SetAdaptation(const VideoFrameAdaptation& adaptation) {
    feed->SetAdaptation(adaptation);
}

void SentStream::ReportLoss(const std::string& receiver, double share) {
    losses[receiver] = share;
    const auto worst = std::ranges::max_element(losses, {}, [](const auto& loss) { return loss.second; });
    feed->LimitBitrate(rule.Report(worst->second, BitrateRule::Clock::now()));
}

void SentStream::ForgetReceiver(const std::string& receiver) {
    losses.erase(receiver);
}

}  // namespace Corvanta::Engine
