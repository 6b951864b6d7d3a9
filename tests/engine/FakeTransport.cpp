#include "tests/engine/FakeTransport.h"

#include <gst/video/video.h>

#include <algorithm>
#include <cmath>
#include <future>
#include <span>
#include <utility>

#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

void Record::Add(std::string line) {
    const std::lock_guard lock(linesMutex);
    lines.push_back(std::move(line));
}

std::vector<std::string> Record::Lines() const {
    const std::lock_guard lock(linesMutex);
    return lines;
}

bool Record::Has(const std::string& line) const {
    const std::lock_guard lock(linesMutex);
    return std::ranges::find(lines, line) != lines.end();
}

bool Record::Gets(const std::string& line) const {
    return Eventually([&] { return Has(line); });
}

void FakeMedia::Open(ParticipantMediaEvents handlers) {
    events = std::move(handlers);
    record.Add("open");
}

void FakeMedia::SetTracks(const MediaTracks& tracks) {
    const std::lock_guard lock(tracksMutex);
    wanted = tracks;
}

MediaTracks FakeMedia::Tracks() const {
    const std::lock_guard lock(tracksMutex);
    return wanted;
}

void FakeMedia::Close() {
    events = {};
    record.Add("close");
}

void FakeFeed::PushPicture(std::shared_ptr<const MappedPicture> picture) {
    width = picture->Width();
    ++pictures;
}

void FakeFeed::PushSound(GstBuffer* buffer, GstClockTime due) {
    if (!GST_CLOCK_TIME_IS_VALID(due)) isTimed = false;
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_READ) == FALSE) return;
    const std::span all(reinterpret_cast<const float*>(map.data), map.size / sizeof(float));
    for (const float sample : all) {
        peak = std::max(peak.load(), static_cast<int>(std::lround(1000 * std::abs(sample))));
    }
    samples += static_cast<int>(all.size()) / SoundMixer::kChannels;
    gst_buffer_unmap(buffer, &map);
}

namespace {

class FakeTransport final : public Transport {
public:
    explicit FakeTransport(FakeRoom& testSide) : room(testSide) {}

    void Start(TransportEvents handlers) override {
        room.events = std::move(handlers);
        room.record.Add("start");
        if (room.refusal.empty()) {
            room.events.entered();
        } else {
            room.events.failed(room.refusal);
        }
    }
    void Stop() override {
        room.events = {};
        room.record.Add("stop");
    }
    [[nodiscard]] std::string OwnId() const override { return room.ownId; }
    void SendText(std::string text) override { room.record.Add("send " + text); }
    [[nodiscard]] std::shared_ptr<LocalFeed> PublishCamera(const LocalTracks& tracks) override {
        SetCameraTracks(tracks);
        return room.cameraFeed;
    }
    [[nodiscard]] std::shared_ptr<LocalFeed> PublishStream(StreamType type,
                                                           const std::string& displayName) override {
        room.record.Add("publish " + std::to_string(static_cast<int>(type)) + ' ' + displayName);
        return room.streamFeed;
    }
    void Unpublish(StreamType type) override {
        room.record.Add("unpublish " + std::to_string(static_cast<int>(type)));
    }
    void SetCameraTracks(const LocalTracks& tracks) override {
        std::string line = "camera ";
        line += tracks.audio ? "sound " : "- ";
        line += tracks.video ? "picture" : "-";
        room.record.Add(line);
    }
    void SetOutboundBitrate(uint32_t bitsPerSecond) override {
        room.record.Add("bitrate " + std::to_string(bitsPerSecond));
    }
    void SetCameraAdaptation(const VideoFrameAdaptation& adaptation) override {
        room.record.Add("adaptation " + std::to_string(adaptation.bitrate));
    }
    [[nodiscard]] std::vector<OwnStreamFigures> OwnFigures() const override { return room.ownFigures; }
    void Configure(const std::string& streamId, const TrackSwitches& switches) override {
        std::string line = "configure ";
        line += streamId;
        if (switches.audio) line += *switches.audio ? " audio=1" : " audio=0";
        if (switches.video) line += *switches.video ? " video=1" : " video=0";
        room.record.Add(line);
    }
    void RequestRestart(const std::string& streamId, const RestartRequest&) override {
        room.record.Add("restart " + streamId);
    }
    void Mute(const std::string& streamId) override { room.record.Add("mute " + streamId); }
    void Remove(const std::string& streamId) override { room.record.Add("remove " + streamId); }

private:
    FakeRoom& room;
};

}  // namespace

TransportMaker FakeRoom::Maker() {
    return [this](EngineLoop& engineLoop, const std::shared_ptr<SoundMixer>&) {
        loop = &engineLoop;
        return std::make_unique<FakeTransport>(*this);
    };
}

void FakeRoom::Do(const std::function<void(const TransportEvents&)>& task) {
    std::promise<void> done;
    loop->Post([&] {
        task(events);
        done.set_value();
    });
    done.get_future().wait();
}

void FakeRoom::Join(const std::string& id, const std::shared_ptr<FakeMedia>& media) {
    Join({.id = id, .name = "name of " + id, .media = media});
}

void FakeRoom::Join(ParticipantDescription description) {
    Do([&](const TransportEvents& room) { room.joined(std::move(description)); });
}

void FakeRoom::Leave(const std::string& id) {
    Do([&](const TransportEvents& room) { room.left(id, "goes"); });
}

std::shared_ptr<const MappedPicture> MakeGreyPicture() {
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, 64, 32);
    const GstOwned<GstBuffer> buffer(gst_buffer_new_allocate(nullptr, info.size, nullptr));
    gst_buffer_memset(buffer.get(), 0, 128, info.size);
    return MappedPicture::Make(buffer.get(), info, ColorSpace(LegacyColorSpace::BT709));
}

}  // namespace Corvanta::Engine
