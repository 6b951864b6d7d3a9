// What the local user sends, and what becomes of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

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
