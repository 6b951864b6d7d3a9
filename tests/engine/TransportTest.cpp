// Participants that come and go while the room is open, and what the room asks of its transport.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/Engine.h"
#include "engine/connections/Room.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/FakeTransport.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class TransportTest : public testing::Test {
protected:
    TransportTest() {
        visitor.makeTransport = fake.Maker();
        visitor.camera = "test";
        MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList([this] {
            ++channels;
            return std::vector<DataChannelCallback>{[this](const DataChannelMessage& message) {
                heard.Add(message.senderId + ' ' + message.text);
            }};
        });
        WebRTC_SetEnabledLocalAudioTrack(true, 0);
        WebRTC_SetEnabledLocalVideoTrack(true, 0);
    }

    [[nodiscard]] bool WaitForEvents(const std::vector<std::string>& events) const {
        return Eventually([&] { return visitor.Events() == events; });
    }
    void ShowPicture(const std::shared_ptr<FakeMedia>& media) {
        fake.Do([&](const auto&) { media->events.picture(MakeGreyPicture()); });
    }

    const std::shared_ptr<FakeMedia> one = std::make_shared<FakeMedia>();
    const std::shared_ptr<FakeMedia> two = std::make_shared<FakeMedia>();
    std::atomic<int> channels = 0;
    Record heard;
    FakeRoom fake;
    // Leaves before the rest goes.
    RoomVisitor visitor;
};

TEST_F(TransportTest, ComeAndGoWhenTheyWant) {
    ASSERT_NE(visitor.Enter({}), -1);
    EXPECT_TRUE(ListParticipants().empty());
    fake.Join("a", one);
    fake.Join("b", two);
    EXPECT_TRUE(WaitForEvents({"add a", "track a", "add b", "track b"}));
    EXPECT_TRUE(two->record.Gets("play"));
    EXPECT_THAT(one->record.Lines(), ElementsAre("open", "play"));
    EXPECT_EQ(GetRoomStatus().participants, 2U);
    EXPECT_EQ(Connections_GetPublisherDisplayName("a"), "name of a");
    ShowPicture(two);
    EXPECT_TRUE(visitor.WaitForFrames(1, 1));

    fake.Leave("a");
    EXPECT_THAT(visitor.Events(), Contains("remove a"));
    EXPECT_THAT(one->record.Lines(), ElementsAre("open", "play", "close"));
    EXPECT_EQ(Connections_GetPublisherDisplayName("a"), "");
    EXPECT_EQ(GetRoomStatus().participants, 1U);
    fake.Leave("a");
    ShowPicture(two);
    EXPECT_TRUE(visitor.WaitForFrames(1, 2));
    const auto rest = ListParticipants();
    ASSERT_EQ(rest.size(), 1U);
    EXPECT_EQ(rest[0].name, "name of b");
}

TEST_F(TransportTest, MayComeAgainUnderTheirIdButNotTwiceAtATime) {
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join("a", one);
    fake.Join("a", two);
    EXPECT_TRUE(visitor.WaitForLog("\"a\" is in the room already"));
    EXPECT_THAT(two->record.Lines(), IsEmpty());
    WebRTC_SetRemoteAudioTrackVolume("a", 0.5);
    fake.Leave("a");
    fake.Join("a", two);
    EXPECT_TRUE(two->record.Gets("play"));
    EXPECT_EQ(WebRTC_GetRemoteAudioTrackVolume("a"), 1.0);
    EXPECT_EQ(GetRoomStatus().participants, 1U);
}

TEST_F(TransportTest, MayGoBeforeTheLibraryHasARoomForThem) {
    visitor.refusals = 1'000'000;
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join("a", one);
    EXPECT_TRUE(Eventually([&] { return visitor.offers > 1; }));
    fake.Leave("a");
    const int offers = visitor.offers;
    fake.Join("b", two);
    EXPECT_TRUE(Eventually([&] { return visitor.offers > offers + 2; }));
    EXPECT_THAT(visitor.Events(), IsEmpty());
    EXPECT_THAT(one->record.Lines(), ElementsAre("open", "close"));
}

TEST_F(TransportTest, AreToldOfWithEachNewChannel) {
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join("a", one);
    ASSERT_TRUE(one->record.Gets("play"));
    EXPECT_EQ(channels, 0);
    const auto tell = [&](bool isOpen) { fake.Do([&](const auto&) { one->events.channel(isOpen); }); };
    tell(true);
    tell(true);
    EXPECT_THAT(visitor.Events(), ElementsAre("add a", "track a", "joined"));
    tell(false);
    tell(true);
    EXPECT_THAT(visitor.Events(), ElementsAre("add a", "track a", "joined", "joined"));
    EXPECT_EQ(channels, 2);
}

TEST_F(TransportTest, AreHeardInOrderAlsoWhereTheySpokeBeforeTheyWereShown) {
    visitor.refusals = 3;
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Do([&](const TransportEvents& room) {
        room.joined({.id = "a", .name = "a", .media = one});
        fake.loop->Post([&] {
            one->events.channel(true);
            one->events.text("1");
            one->events.text("2");
        });
    });
    EXPECT_TRUE(heard.Gets("a 2"));
    fake.Do([&](const auto&) { one->events.text("3"); });
    EXPECT_THAT(heard.Lines(), ElementsAre("a 1", "a 2", "a 3"));
    Connections_ConfigureStream("a", {{ConfigureStreamType::Data, false}});
    fake.Do([&](const auto&) { one->events.text("4"); });
    Connections_ConfigureStream("a", {{ConfigureStreamType::Data, true}});
    fake.Do([&](const auto&) { one->events.text("5"); });
    EXPECT_THAT(heard.Lines(), ElementsAre("a 1", "a 2", "a 3", "a 5"));
}

TEST_F(TransportTest, BringNoTracksThatAreOffOnceTheyHaveShownThemselves) {
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join("a", one);
    const auto wants = [&](const MediaTracks& tracks) {
        return Eventually([&] { return one->Tracks() == tracks; });
    };
    Connections_ConfigureStream("a",
                                {{ConfigureStreamType::Video, false}, {ConfigureStreamType::Data, false}});
    EXPECT_TRUE(wants({.audio = true, .video = true, .data = false}));
    ShowPicture(one);
    EXPECT_TRUE(wants({.audio = true, .video = false, .data = false}));
    EXPECT_EQ(visitor.Frames(0), 0U);
    Connections_ConfigureStream("a", {{ConfigureStreamType::Video, true}});
    EXPECT_TRUE(wants({.audio = true, .video = true, .data = false}));
    WebRTC_SetEnabledRemoteVideoTrack("a", false);
    EXPECT_TRUE(wants({.audio = true, .video = false, .data = false}));
    // Who speaks is told by the sound, whether this listener hears it or not.
    WebRTC_SetEnabledRemoteAudioTrack("a", false);
    EXPECT_TRUE(Eventually([&] { return one->gain == 0.0; }));
    EXPECT_TRUE(one->Tracks().audio);
    Connections_MuteParticipant("a");
    EXPECT_TRUE(wants({.audio = false, .video = false, .data = false}));
    EXPECT_TRUE(fake.record.Gets("mute a"));
}

TEST_F(TransportTest, HaveStreamsOfEveryKind) {
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join({.id = "a-camera", .name = "a", .memberId = "a", .media = one});
    fake.Join({.id = "a-screen",
               .name = "a",
               .memberId = "a",
               .type = StreamType::Screenshare,
               .media = std::make_shared<FakeMedia>()});
    fake.Join({.id = "a-external",
               .name = "a",
               .memberId = "a",
               .type = StreamType::ExternalScreen,
               .isExternalSource = true,
               .media = two});
    fake.Join({.id = "a-file",
               .name = "clip.webm",
               .memberId = "a",
               .type = StreamType::File,
               .media = std::make_shared<FakeMedia>()});
    EXPECT_EQ(Connections_GetPublisherDisplayName("a-camera"), "a");
    EXPECT_EQ(Connections_GetPublisherDisplayName("a-file"), "clip.webm (a)");
    EXPECT_EQ(Connections_GetStreamType("a-screen"), StreamType::Screenshare);
    EXPECT_EQ(Connections_GetStreamType("a-external"), StreamType::ExternalScreen);
    EXPECT_EQ(Connections_GetStreamType("a-camera"), StreamType::Camera);
    EXPECT_FALSE(Connections_IsPublisherFromExternalSource("a-screen"));
    EXPECT_TRUE(Connections_IsPublisherFromExternalSource("a-external"));
    EXPECT_TRUE(Connections_IsOwnExternalSourceStream("a-camera", "a-external"));
    EXPECT_FALSE(Connections_IsOwnExternalSourceStream("a-camera", "a-screen"));
    EXPECT_FALSE(Connections_IsOwnExternalSourceStream("me-camera", "a-external"));
    fake.Join({.id = "me-external",
               .name = "me",
               .memberId = "me",
               .isExternalSource = true,
               .media = std::make_shared<FakeMedia>()});
    EXPECT_TRUE(Connections_IsOwnExternalSourceStream("me-camera", "me-external"));
}

TEST_F(TransportTest, GetWhatTheLibrarySendsInOrder) {
    ASSERT_NE(visitor.Enter({}), -1);
    for (const char* text : {"1", "2", "3"}) EXPECT_TRUE(MediaManager_SendDatachannelMessage(text));
    ASSERT_TRUE(fake.record.Gets("send 3"));
    std::vector<std::string> sent = fake.record.Lines();
    EXPECT_THAT(sent, Contains("camera sound picture"));
    std::erase_if(sent, [](const std::string& line) { return !line.starts_with("send "); });
    EXPECT_THAT(sent, ElementsAre("send 1", "send 2", "send 3"));
}

TEST_F(TransportTest, GiveTheLocalUserTheIdsOfItsStreams) {
    ASSERT_NE(visitor.Enter({}), -1);
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::Camera), "me-camera");
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::File), "");
    EXPECT_EQ(Connections_GetStreamType("me-screen"), StreamType::Screenshare);
}

TEST_F(TransportTest, AreAskedForWhatTheLibraryWants) {
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join("a", one);
    Connections_ConfigureStream("me-camera", {{ConfigureStreamType::Video, false}});
    EXPECT_TRUE(fake.record.Gets("configure me-camera video=0"));
    Connections_RestartPeerConnection("me-camera", true, true, true);
    EXPECT_TRUE(fake.record.Gets("restart me-camera"));
    Connections_RestartPeerConnection("a", true, true, true);
    EXPECT_TRUE(one->record.Gets("restart at once"));
    Connections_ConfigureOutboundBitrate(123456);
    EXPECT_TRUE(fake.record.Gets("bitrate 123456"));
    Connections_RenegotiateOutboundPeerConnection(false, true, "me-camera");
    EXPECT_TRUE(fake.record.Gets("camera - picture"));
    WebRTC_SetEnabledLocalVideoTrack(false, 0);
    EXPECT_TRUE(fake.record.Gets("camera - -"));
    RemoveParticipant("a");
    EXPECT_TRUE(one->record.Gets("close"));
    EXPECT_TRUE(fake.record.Has("remove a"));
}

TEST_F(TransportTest, TellOfLostConnectionsAndOfTheWholeRooms) {
    static std::atomic<int> dropped;
    dropped = 0;
    Connections_SetConnectionDroppedCallback(
        [](bool willRetry, bool endedHere) { dropped = (willRetry ? 10 : 1) + (endedHere ? 100 : 0); });
    Record status;
    ASSERT_NE(visitor.Enter({}), -1);
    MediaManager_SetOnConnectionStatusUpdateSDLCallback(
        [&](const std::string& streamId, bool lost) { status.Add(streamId + (lost ? " lost" : " back")); });
    fake.Join("a", one);
    ASSERT_TRUE(one->record.Gets("open"));
    fake.Do([&](const TransportEvents& room) {
        one->events.connection(true);
        one->events.connection(false);
        room.dropped(true);
    });
    EXPECT_THAT(status.Lines(), ElementsAre("a lost", "a back"));
    EXPECT_EQ(dropped, 10);
    MediaManager_SetOnConnectionStatusUpdateSDLCallback({});
    Connections_SetConnectionDroppedCallback(nullptr);
}

TEST_F(TransportTest, WhoseMediaEndHaveLeft) {
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join("a", one);
    ASSERT_TRUE(one->record.Gets("play"));
    fake.Do([&](const auto&) { one->events.ended(); });
    EXPECT_TRUE(one->record.Gets("close"));
    EXPECT_TRUE(Eventually([] { return GetRoomStatus().participants == 0; }));
}

TEST_F(TransportTest, MayRefuseTheLocalUser) {
    fake.refusal = "The room's folder cannot be written";
    EXPECT_EQ(visitor.Enter({}), -1);
    EXPECT_FALSE(GetRoomStatus().connected);
    EXPECT_TRUE(visitor.WaitForLog("The room cannot be entered: The room's folder cannot be written"));
    EXPECT_THAT(fake.record.Lines(), ElementsAre("start", "stop"));
    fake.refusal.clear();
    EXPECT_NE(visitor.Enter({}), -1);
}

TEST_F(TransportTest, AreStoppedWhenAllTheirMediaAreClosed) {
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join("a", one);
    ASSERT_TRUE(one->record.Gets("play"));
    Connections_CloseConnection();
    EXPECT_EQ(one->record.Lines().back(), "close");
    EXPECT_EQ(fake.record.Lines().back(), "stop");
    EXPECT_FALSE(MediaManager_SendDatachannelMessage("late"));
    EXPECT_THAT(visitor.Events(), ElementsAre("add a", "track a"));
}

TEST_F(TransportTest, MaySayWhatHasAHandlerCloseTheRoom) {
    MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList([this] {
        return std::vector<DataChannelCallback>{[this](const DataChannelMessage& message) {
            Connections_CloseConnection();
            heard.Add(message.text);
        }};
    });
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join("a", one);
    ASSERT_TRUE(one->record.Gets("play"));
    fake.Do([&](const auto&) {
        one->events.channel(true);
        one->events.text("the end");
    });
    EXPECT_THAT(heard.Lines(), ElementsAre("the end"));
    EXPECT_FALSE(GetRoomStatus().connected);
    EXPECT_TRUE(one->record.Gets("close"));
}

TEST_F(TransportTest, GiveTheLocalUsersConnectionItsFigures) {
    one->figures = {.receivedRate = 1e6, .sentRate = 2e5, .jitterMs = 4, .roundTripMs = 10};
    two->figures = {.receivedRate = 5e5, .sentRate = 1e5, .jitterMs = 2, .roundTripMs = 30};
    Record figures;
    WebRTC_SetConnectionStatsCallback(
        [&](int, double up, int, double down, double, double jitter, double roundTrip) {
            figures.Add(std::to_string(std::lround(up)) + ' ' + std::to_string(std::lround(down)) + ' ' +
                        std::to_string(std::lround(jitter)) + ' ' + std::to_string(std::lround(roundTrip)));
        });
    ASSERT_NE(visitor.Enter({}), -1);
    fake.Join({.id = "a", .name = "a", .reportsItself = true, .media = one});
    fake.Join({.id = "b", .name = "b", .reportsItself = true, .media = two});
    EXPECT_TRUE(figures.Gets("300000 1500000 3 20"));
    fake.Leave("a");
    EXPECT_TRUE(figures.Gets("100000 500000 2 30"));
    WebRTC_SetConnectionStatsCallback({});
}

TEST_F(TransportTest, ComeAndGoWhileEverybodyLooks) {
    ASSERT_NE(visitor.Enter({}), -1);
    std::atomic<bool> isOver = false;
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 3; ++reader) {
        readers.emplace_back([&] {
            std::string speaker;
            while (!isOver) {
                static_cast<void>(ListParticipants());
                static_cast<void>(GetRoomStatus());
                WebRTC_GetActiveSpeaker(speaker);
                WebRTC_SetRemoteAudioTrackVolume("a", 0.5);
                static_cast<void>(Connections_GetStreamType("a"));
                std::this_thread::yield();
            }
        });
    }
    for (int round = 0; round < 100; ++round) {
        const auto media = std::make_shared<FakeMedia>();
        fake.Join("a", media);
        fake.Do([&](const auto&) {
            if (media->events.picture) media->events.picture(MakeGreyPicture());
        });
        fake.Leave("a");
        EXPECT_EQ(media->record.Lines().back(), "close");
    }
    isOver = true;
    for (auto& reader : readers) reader.join();
    std::string speaker;
    EXPECT_FALSE(WebRTC_GetActiveSpeaker(speaker));
    EXPECT_EQ(GetRoomStatus().participants, 0U);
}

}  // namespace
}  // namespace Corvanta::Engine
