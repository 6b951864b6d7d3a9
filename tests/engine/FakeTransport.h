// A transport as a test wants them, and media that do nothing by themselves. Both remember what the
// room asks of them; what they report is reported on the engine's thread.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

// Lines that threads write and tests read.
class Record final {
public:
    void Add(std::string line);
    [[nodiscard]] std::vector<std::string> Lines() const;
    [[nodiscard]] bool Has(const std::string& line) const;
    // Waits for the line.
    [[nodiscard]] bool Gets(const std::string& line) const;

private:
    mutable std::mutex linesMutex;  // guards: lines
    std::vector<std::string> lines;
};

class FakeMedia final : public ParticipantMedia {
public:
    void Open(ParticipantMediaEvents handlers) override;
    void Play() override { record.Add("play"); }
    void SetGain(double linear) override { gain = linear; }
    void SetTracks(const MediaTracks& tracks) override;
    void Restart(bool immediately) override { record.Add(immediately ? "restart at once" : "restart"); }
    void Close() override;
    [[nodiscard]] ParticipantFigures Figures() override { return figures; }

    [[nodiscard]] MediaTracks Tracks() const;

    // "open", "play", "restart", "close".
    Record record;
    std::atomic<double> gain = -1;
    // To be set before the participant joins.
    ParticipantFigures figures;
    // The engine's thread alone; empty while it is closed.
    ParticipantMediaEvents events;

private:
    mutable std::mutex tracksMutex;  // guards: wanted
    MediaTracks wanted;
};

class FakeFeed final : public LocalFeed {
public:
    void PushPicture(std::shared_ptr<const MappedPicture> picture) override;
    void PushSound(GstBuffer* samples, GstClockTime due) override;

    std::atomic<int> pictures = 0, width = 0;
    // Samples of one channel, the loudest of them in thousandths, and whether all had a time.
    std::atomic<int> samples = 0, peak = 0;
    std::atomic<bool> isTimed = true;
};

// What outlives the transport, which the room owns: the test's side of them.
struct FakeRoom {
    // How the entry ends; otherwise it succeeds at once.
    std::string refusal;
    std::string ownId = "me";
    // To be set before the room is entered.
    std::vector<OwnStreamFigures> ownFigures;
    // "start", "stop", "send TEXT", "camera sound picture" (or "-" for each), "publish 4 NAME", "unpublish
    // 4", "bitrate N", "adaptation BITRATE", "configure ID video=0", "restart ID", "mute ID", "remove ID".
    Record record;
    const std::shared_ptr<FakeFeed> cameraFeed = std::make_shared<FakeFeed>();
    const std::shared_ptr<FakeFeed> streamFeed = std::make_shared<FakeFeed>();

    [[nodiscard]] TransportMaker Maker();
    // Runs the task on the engine's thread with the room's events, and waits for it. The room is open.
    void Do(const std::function<void(const TransportEvents&)>& task);
    // Somebody joins who has these media.
    void Join(const std::string& id, const std::shared_ptr<FakeMedia>& media);
    void Join(ParticipantDescription description);
    void Leave(const std::string& id);

    EngineLoop* loop = nullptr;
    TransportEvents events;
};

// A grey one of 64 to 32 pixels.
[[nodiscard]] std::shared_ptr<const MappedPicture> MakeGreyPicture();

}  // namespace Corvanta::Engine
