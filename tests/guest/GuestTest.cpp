#include "guest/Guest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engine/connections/ChatMessage.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/FakeTransport.h"

namespace Corvanta::Guest {
namespace {

using Engine::EngineLoop;
using Engine::Eventually;
using Engine::FakeMedia;
using Engine::FakeRoom;
using Engine::MediaTracks;
using nlohmann::json;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

GuestOptions Options() {
    GuestOptions options{.room = "review", .name = "one"};
    options.picture = {.width = 160, .height = 90, .frameRate = 30};
    options.role.drawAfter.reset();
    return options;
}

// A guest on a loop of its own, in a room of the test's.
class Visit final {
public:
    Visit(FakeRoom& testRoom, const GuestOptions& options) : room(testRoom) {
        EXPECT_TRUE(Engine::EnsureGStreamer());
        loop.Start([this, options] {
            Guest guest(loop, options, room.Maker(),
                        {.entered = [this] { entry.set_value(""); },
                         .failed = [this](const std::string& problem) { entry.set_value(problem); }});
            loop.Post([&] { guest.Enter(); });
            loop.Run();
            guest.Leave();
        });
        outcome = entry.get_future().get();
    }
    ~Visit() { End(); }

    void End() {
        loop.Quit();
        loop.Join();
    }

    // What went wrong; empty when it entered.
    std::string outcome;

private:
    FakeRoom& room;
    EngineLoop loop;
    std::promise<std::string> entry;
};

// The messages that were sent, read.
std::vector<json> SentTo(const FakeRoom& room) {
    constexpr std::string_view kSend = "send ";
    std::vector<json> messages;
    for (const std::string& line : room.record.Lines()) {
        if (line.starts_with(kSend)) messages.push_back(json::parse(line.substr(kSend.size())));
    }
    return messages;
}

std::vector<json> DrawnIn(const FakeRoom& room) {
    std::vector<json> drawings = SentTo(room);
    std::erase_if(drawings,
                  [](const json& message) { return message.at("type") != "draw-canvas-broadcast"; });
    return drawings;
}

std::shared_ptr<FakeMedia> Join(FakeRoom& room, const std::string& id) {
    auto media = std::make_shared<FakeMedia>();
    room.Join(id, media);
    EXPECT_TRUE(media->record.Gets("play"));
    return media;
}

void OpenChannel(FakeRoom& room, const std::shared_ptr<FakeMedia>& media) {
    room.Do([&](const Engine::TransportEvents&) { media->events.channel(true); });
}

TEST(Guest, PublishesPicturesOfTheSizeAskedForWithTheirSound) {
    FakeRoom room;
    const Visit visit(room, Options());
    EXPECT_EQ(visit.outcome, "");
    EXPECT_TRUE(room.record.Has("camera sound picture"));
    EXPECT_TRUE(Eventually([&] { return room.cameraFeed->pictures > 3 && room.cameraFeed->peak > 20; }));
    EXPECT_EQ(room.cameraFeed->width, 160);
    EXPECT_TRUE(room.cameraFeed->isTimed);
}

TEST(Guest, ShowsTheTestPictureInThatSizeToo) {
    FakeRoom room;
    GuestOptions options = Options();
    options.source = "test";
    const Visit visit(room, options);
    EXPECT_TRUE(Eventually([&] { return room.cameraFeed->pictures > 3; }));
    EXPECT_EQ(room.cameraFeed->width, 160);
}

TEST(Guest, TakesTheTextsOfTheOthersAlone) {
    FakeRoom room;
    const Visit visit(room, Options());
    const auto media = Join(room, "two-camera");
    EXPECT_EQ(media->Tracks(), (MediaTracks{.audio = false, .video = false, .data = true}));
}

TEST(Guest, LetsGoOfWhoeverLeaves) {
    FakeRoom room;
    const Visit visit(room, Options());
    const auto media = Join(room, "two-camera");
    room.Leave("two-camera");
    EXPECT_TRUE(media->record.Gets("close"));
}

TEST(Guest, DrawsWhenItsScriptSaysSo) {
    FakeRoom room;
    GuestOptions options = Options();
    options.role.drawAfter = std::chrono::milliseconds(0);
    const Visit visit(room, options);
    ASSERT_TRUE(Eventually([&] { return !DrawnIn(room).empty(); }));
    const json mark = DrawnIn(room).front();
    EXPECT_EQ(mark.at("streamId"), "me-camera");
    EXPECT_THAT(mark.at("message").at("shapes"), SizeIs(1));
}

TEST(Guest, TellsItsMarksAgainWheneverAChannelOpens) {
    FakeRoom room;
    GuestOptions options = Options();
    options.role.drawAfter = std::chrono::milliseconds(0);
    const Visit visit(room, options);
    ASSERT_TRUE(Eventually([&] { return DrawnIn(room).size() == 1; }));
    const json first = DrawnIn(room).front();
    const auto media = Join(room, "two-camera");
    OpenChannel(room, media);
    const std::vector<json> drawings = DrawnIn(room);
    ASSERT_THAT(drawings, SizeIs(2));
    EXPECT_EQ(drawings[1].at("streamId"), first.at("streamId"));
    EXPECT_EQ(drawings[1].at("message").at("shapes"), first.at("message").at("shapes"));
}

TEST(Guest, TellsItsMarksNoOftenerThanOnceASecond) {
    FakeRoom room;
    GuestOptions options = Options();
    options.role.drawAfter = std::chrono::milliseconds(0);
    const Visit visit(room, options);
    ASSERT_TRUE(Eventually([&] { return DrawnIn(room).size() == 1; }));
    const auto media = Join(room, "two-camera");
    room.Do([&](const Engine::TransportEvents&) {
        for (int time = 0; time < 500; ++time) media->events.channel(true);
    });
    EXPECT_LE(DrawnIn(room).size(), 10U);
    // Whoever came after the first hears of them all the same.
    EXPECT_TRUE(Eventually([&] { return DrawnIn(room).size() >= 3; }));
}

TEST(Guest, ForgetsTheMarksOnAStreamThatHasGone) {
    FakeRoom room;
    GuestOptions options = Options();
    // Its first mark is on somebody else's stream, once there has been time to join.
    options.role.seed = 0;
    options.role.drawAfter = std::chrono::seconds(3);
    const Visit visit(room, options);
    static_cast<void>(Join(room, "two-camera"));
    static_cast<void>(Join(room, "three-screen"));
    ASSERT_TRUE(Eventually([&] { return DrawnIn(room).size() == 1; }));
    const std::string drawnOn = DrawnIn(room).front().at("streamId");
    EXPECT_NE(drawnOn, "me-camera");
    room.Leave(drawnOn);
    OpenChannel(room, Join(room, "four-camera"));
    EXPECT_THAT(DrawnIn(room), SizeIs(1)) << "there is nothing to tell";
}

TEST(Guest, WritesALineOfTheChat) {
    FakeRoom room;
    const Visit visit(room, Options());
    ASSERT_TRUE(Eventually([&] { return !SentTo(room).empty(); }));
    const auto line = Engine::ReadChat(SentTo(room).front().dump(), std::chrono::system_clock::now());
    ASSERT_TRUE(line);
    EXPECT_FALSE(line->text.empty());
}

TEST(Guest, GoesOnWithoutSoundOnceItIsSwitchedOffForAll) {
    FakeRoom room;
    const Visit visit(room, Options());
    ASSERT_TRUE(Eventually([&] { return room.cameraFeed->samples > 0; }));
    room.Do([](const Engine::TransportEvents& events) { events.muted(); });
    EXPECT_TRUE(room.record.Has("camera - picture"));
    // One piece may have been under way.
    int samples = 0, pictures = 0;
    ASSERT_TRUE(Eventually([&] {
        const int now = room.cameraFeed->samples;
        if (now != std::exchange(samples, now)) pictures = room.cameraFeed->pictures;
        return room.cameraFeed->pictures > pictures + 10;
    }));
}

TEST(Guest, SaysWhyItCannotEnter) {
    FakeRoom room;
    room.refusal = "the room is full";
    const Visit visit(room, Options());
    EXPECT_EQ(visit.outcome, "the room is full");
    EXPECT_THAT(room.record.Lines(), Not(Contains("camera sound picture")));
}

TEST(Guest, SaysGoodbyeAndLetsGoOfAll) {
    FakeRoom room;
    std::shared_ptr<FakeMedia> media;
    {
        Visit visit(room, Options());
        media = Join(room, "two-camera");
    }
    EXPECT_EQ(room.record.Lines().back(), "stop");
    EXPECT_EQ(media->record.Lines().back(), "close");
    const int pictures = room.cameraFeed->pictures;
    EXPECT_EQ(room.cameraFeed.use_count(), 1) << "the feed is let go of";
    EXPECT_EQ(room.cameraFeed->pictures, pictures);
}

}  // namespace
}  // namespace Corvanta::Guest
