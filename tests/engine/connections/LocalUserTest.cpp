// What the local user sends, and what becomes of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>

#include "engine/Engine.h"
#include "engine/connections/Room.h"
#include "engine/transport/StreamNames.h"
#include "platform/Connections.h"
#include "platform/GraphQLClient.h"
#include "platform/MediaManager.h"
#include "platform/RESTfulAPI.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/FakeTransport.h"
#include "tests/engine/RoomVisitor.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string kOwnCamera = "me-camera";

[[nodiscard]] bool MicrophoneIsOpen() {
    return Room::Current()->Sound().OwnMicrophone().IsOpen();
}

TEST(LocalUser, IsNotHeardBeforeTheMicrophoneIsSwitchedOn) {
    WebRTC_SetEnabledLocalAudioTrack(true, 0);
    WebRTC_SetEnabledLocalVideoTrack(false, 0);
    RoomVisitor visitor;
    ASSERT_NE(visitor.Enter({{"one", "test"}}), -1);
    EXPECT_FALSE(WebRTC_IsLocalAudioTrackEnabled(0));
    EXPECT_TRUE(WebRTC_IsLocalVideoTrackEnabled(0));
    ASSERT_TRUE(visitor.WaitForFrames(0, 1));
    EXPECT_FALSE(MicrophoneIsOpen());
    WebRTC_SetEnabledLocalAudioTrack(true, 0);
    EXPECT_TRUE(Eventually(MicrophoneIsOpen));
}

TEST(LocalUser, IsNeitherHeardNorSeenWhereTheRoomIsEnteredWithoutThem) {
    RoomVisitor visitor;
    visitor.isHeardAndSeen = false;
    ASSERT_NE(visitor.Enter({{"one", "test"}}), -1);
    EXPECT_FALSE(WebRTC_IsLocalVideoTrackEnabled(0));
    WebRTC_SetEnabledLocalAudioTrack(true, 0);
    ASSERT_TRUE(visitor.WaitForFrames(0, 3));
    EXPECT_FALSE(MicrophoneIsOpen());
}

// In a room whose transport does as the test wants.
class LocalUserTest : public testing::Test {
protected:
    LocalUserTest() {
        visitor.makeTransport = fake.Maker();
        visitor.camera = "test";
        WebRTC_SetEnabledLocalAudioTrack(true, 0);
        WebRTC_SetEnabledLocalVideoTrack(true, 0);
        Connections_ConfigureOutboundBitrate(0);
        Connections_SetDefaultOutboundBitrate(0);
    }
    ~LocalUserTest() override {
        Connections_ConfigureOutboundBitrate(0);
        Connections_SetDefaultOutboundBitrate(0);
    }

    void Enter() {
        ASSERT_NE(visitor.Enter({}), -1);
        // After entering, since the library sets its functions up by then.
        MediaManager_SetOnConnectionStatusUpdateSDLCallback([this](const std::string& id, bool lost) {
            const bool isShown = std::ranges::count(visitor.Events(), "track " + id) > 0;
            status.Add(id + (lost ? " lost" : " back") + (isShown || id == kOwnCamera ? "" : " too early"));
        });
    }
    // Until the engine's thread has done what it had to do.
    void Settle() {
        fake.Do([](const auto&) {});
    }

    Record status;
    FakeRoom fake;
    // Leaves before the rest goes.
    RoomVisitor visitor;
};

TEST_F(LocalUserTest, IsToldThatTheOwnConnectionIsLost) {
    Enter();
    fake.Do([](const TransportEvents& room) {
        room.ownConnection(true);
        room.ownConnection(false);
    });
    EXPECT_THAT(status.Lines(), ElementsAre("me-camera lost", "me-camera back"));
}

TEST_F(LocalUserTest, IsConnectedAgainByARenegotiationOfALostConnectionAlone) {
    Enter();
    Connections_RenegotiateOutboundPeerConnection(true, true, kOwnCamera);
    Settle();
    Settle();
    EXPECT_THAT(fake.record.Lines(), Not(Contains("restart me-camera")));
    fake.Do([](const TransportEvents& room) { room.ownConnection(true); });
    Connections_RenegotiateOutboundPeerConnection(true, true, kOwnCamera);
    EXPECT_TRUE(fake.record.Gets("restart me-camera"));
}

TEST_F(LocalUserTest, HasTheTracksOfARestartFromThenOn) {
    Enter();
    Connections_RestartPeerConnection(kOwnCamera, false, true, true);
    EXPECT_TRUE(fake.record.Gets("restart me-camera"));
    EXPECT_TRUE(fake.record.Has("camera sound -"));
    EXPECT_FALSE(WebRTC_IsLocalVideoTrackEnabled(0));
    EXPECT_TRUE(WebRTC_IsLocalAudioTrackEnabled(0));
}

TEST_F(LocalUserTest, IsNotSaidToSendPicturesWithoutACamera) {
    visitor.camera.clear();
    Enter();
    EXPECT_TRUE(fake.record.Has("camera sound -"));
    EXPECT_FALSE(fake.record.Has("camera sound picture"));
}

TEST_F(LocalUserTest, SendsNoTextsWhileTheDataIsSwitchedOff) {
    Enter();
    Connections_ConfigureStream(kOwnCamera, {{ConfigureStreamType::Data, false}});
    EXPECT_FALSE(MediaManager_SendDatachannelMessage("1"));
    Connections_ConfigureStream(kOwnCamera, {{ConfigureStreamType::Data, true}});
    EXPECT_TRUE(MediaManager_SendDatachannelMessage("2"));
    EXPECT_TRUE(fake.record.Gets("send 2"));
    EXPECT_FALSE(fake.record.Has("send 1"));
}

TEST_F(LocalUserTest, SendsAtTheDefaultRateUntilAnotherOneIsAskedFor) {
    Enter();
    Connections_SetDefaultOutboundBitrate(400000);
    EXPECT_TRUE(fake.record.Gets("bitrate 400000"));
    Connections_ConfigureOutboundBitrate(300000);
    EXPECT_TRUE(fake.record.Gets("bitrate 300000"));
    Connections_SetDefaultOutboundBitrate(500000);
    Settle();
    EXPECT_FALSE(fake.record.Has("bitrate 500000"));
}

TEST_F(LocalUserTest, IsToldOfALostConnectionWhenThereIsATileForIt) {
    visitor.refusals = 3;
    Enter();
    const auto media = std::make_shared<FakeMedia>();
    fake.Join("a", media);
    ASSERT_TRUE(media->record.Gets("open"));
    fake.Do([&](const auto&) { media->events.connection(true); });
    EXPECT_TRUE(media->record.Gets("play"));
    EXPECT_THAT(status.Lines(), ElementsAre("a lost"));
    fake.Do([&](const auto&) { media->events.connection(false); });
    EXPECT_THAT(status.Lines(), ElementsAre("a lost", "a back"));
}

TEST_F(LocalUserTest, IsNotToldOfALossThatIsOverByThen) {
    visitor.refusals = 3;
    Enter();
    const auto media = std::make_shared<FakeMedia>();
    fake.Join("a", media);
    ASSERT_TRUE(media->record.Gets("open"));
    fake.Do([&](const auto&) {
        media->events.connection(true);
        media->events.connection(false);
    });
    EXPECT_TRUE(media->record.Gets("play"));
    EXPECT_THAT(status.Lines(), IsEmpty());
}

// Who looks at the panel of a shared stream's tile asks under the stream's own id.
TEST_F(LocalUserTest, HasTheFiguresOfEachSharedStreamReportedUnderItsId) {
    visitor.roomName = "review";
    fake.ownFigures = {{StreamType::Camera, {.sentRate = 8000, .roundTripMs = 10}},
                       {StreamType::Device, {.sentRate = 16000, .roundTripMs = 30}}};
    // The service on this machine is nobody else's.
    const TemporaryFolder folder;
    const char* const set = std::getenv("XDG_RUNTIME_DIR");
    const std::optional<std::string> before = set != nullptr ? std::optional<std::string>(set) : std::nullopt;
    ::setenv("XDG_RUNTIME_DIR", folder.path.c_str(), 1);
    Enter();
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    const auto report = [](const char* streamId) {
        return RESTApi_ReceiveParticipantsConnectivityLog("session", streamId);
    };
    const std::string device = StreamIdOf("me", StreamType::Device);
    ASSERT_TRUE(Eventually(
        [&] { return RESTApi_ResponseGetStatus(report(device.c_str())) == Model::API::kResponseSuccess; }));
    EXPECT_EQ(report(device.c_str())->upload, 2000.0);
    EXPECT_EQ(report(device.c_str())->roundTrip, 30);
    EXPECT_EQ(report("me-camera")->upload, 3000.0);
    EXPECT_EQ(report("me-camera")->roundTrip, 20);
    GraphQLClientString* const profile = GraphQLClient_GetProfileId();
    EXPECT_EQ(report("me-camera")->profileId, profile->c_str());
    GraphQLClient_CStringDealloc(profile);
    RoomVisitor::Leave();
    if (before) {
        ::setenv("XDG_RUNTIME_DIR", before->c_str(), 1);
    } else {
        ::unsetenv("XDG_RUNTIME_DIR");
    }
}

TEST_F(LocalUserTest, TakesNothingSharedForSomebodyWhoSpeaks) {
    Enter();
    const auto screen = std::make_shared<FakeMedia>();
    const auto person = std::make_shared<FakeMedia>();
    fake.Join({.id = "a-screen", .name = "a", .type = StreamType::Screenshare, .media = screen});
    fake.Join("a", person);
    ASSERT_TRUE(person->record.Gets("play"));
    std::string speaker;
    fake.Do([&](const auto&) { screen->events.picture(MakeGreyPicture()); });
    EXPECT_FALSE(WebRTC_GetActiveSpeaker(speaker));
    fake.Do([&](const auto&) { person->events.picture(MakeGreyPicture()); });
    EXPECT_TRUE(WebRTC_GetActiveSpeaker(speaker));
    EXPECT_EQ(speaker, "a");
}

}  // namespace
}  // namespace Corvanta::Engine
