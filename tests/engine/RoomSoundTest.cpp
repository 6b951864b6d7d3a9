// What the user hears of a room, measured behind the mixer, and the user's own microphone.
#include "engine/webrtc/RoomSound.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "engine/connections/Room.h"
#include "engine/webrtc/SoundDevices.h"
#include "platform/Configuration.h"
#include "platform/Connections.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

const std::string kId = "participant-1-one";
// Effective value of the test picture's quiet tone: 0.003 of full scale, in three partials.
const double kFull = 0.003 * std::sqrt((0.6 * 0.6 + 0.28 * 0.28 + 0.12 * 0.12) / 2);

// A room with one participant who plays the test tone; switches are as at the start afterwards.
class RoomSoundTest : public testing::Test {
protected:
    RoomSoundTest() {
        SetModifiers(1, 1);
        EXPECT_NE(visitor.Enter({{"one", "test"}}), -1);
        WebRTC_SetEnabledLocalAudioTrack(true, 0);
        Configuration_SetPropertyString("Device.Microphone", "");
        Configuration_SetPropertyString("Device.Speaker", "");
    }
    ~RoomSoundTest() override { SetModifiers(1, 1); }

    static void SetModifiers(double participants, double streams) {
        WebRTC_SetRemoteAudioTrackModifier(RemoteAudioGroup::Participants, participants);
        WebRTC_SetRemoteAudioTrackModifier(RemoteAudioGroup::Streams, streams);
    }
    [[nodiscard]] static double Heard() {
        const auto room = Room::Current();
        return room ? std::sqrt(room->Sound().Mixer()->Loudness()) : 0;
    }
    // share: of what the tone is at full volume.
    [[nodiscard]] static bool IsHeard(double share) {
        return Eventually([&] { return std::abs(Heard() - share * kFull) < kFull / 20; });
    }
    [[nodiscard]] static bool MicrophoneIsOpen() { return Room::Current()->Sound().OwnMicrophone().IsOpen(); }
    [[nodiscard]] static double MicrophoneLoudness() {
        return Room::Current()->Sound().OwnMicrophone().Loudness();
    }

    RoomVisitor visitor;
};

TEST_F(RoomSoundTest, IsHeardAtTheVolumeOfItsTrack) {
    EXPECT_TRUE(IsHeard(1));
    WebRTC_SetRemoteAudioTrackVolume(kId, 0.5);
    EXPECT_TRUE(IsHeard(0.5));
    WebRTC_SetRemoteAudioTrackVolume(kId, 0);
    EXPECT_TRUE(IsHeard(0));
    WebRTC_SetRemoteAudioTrackVolume(kId, 1);
    EXPECT_TRUE(IsHeard(1));
}

TEST_F(RoomSoundTest, IsHeardOnlyWhileItsTrackIsEnabledAndPublished) {
    EXPECT_TRUE(IsHeard(1));
    WebRTC_SetEnabledRemoteAudioTrack(kId, false);
    EXPECT_TRUE(IsHeard(0));
    WebRTC_SetEnabledRemoteAudioTrack(kId, true);
    EXPECT_TRUE(IsHeard(1));
    Connections_ConfigureStream(kId, {{ConfigureStreamType::Audio, false}});
    EXPECT_TRUE(IsHeard(0));
    Connections_ConfigureStream(kId, {{ConfigureStreamType::Audio, true}});
    EXPECT_TRUE(IsHeard(1));
    Connections_MuteParticipant(kId);
    EXPECT_TRUE(IsHeard(0));
}

TEST_F(RoomSoundTest, IsScaledByTheFactorOfItsGroupAlone) {
    SetModifiers(0.5, 0.25);
    EXPECT_TRUE(IsHeard(0.5));
    WebRTC_SetRemoteAudioTrackIsExternalSource(kId, true);
    EXPECT_TRUE(IsHeard(0.25));
    SetModifiers(0, 1);
    EXPECT_TRUE(IsHeard(1));
    WebRTC_SetRemoteAudioTrackVolume(kId, 0.5);
    SetModifiers(1, 0.5);
    EXPECT_TRUE(IsHeard(0.25));
    WebRTC_SetRemoteAudioTrackIsExternalSource(kId, false);
    EXPECT_TRUE(IsHeard(0.5));
}

TEST_F(RoomSoundTest, GoesOnAtItsVolumeWhenTheDevicesAreOpenedAgain) {
    WebRTC_SetRemoteAudioTrackVolume(kId, 0.5);
    EXPECT_TRUE(IsHeard(0.5));
    for (int round = 0; round < 3; ++round) WebRTC_ADMStart();
    EXPECT_TRUE(IsHeard(0.5));
    Configuration_SetPropertyString("Device.Speaker", "No such speaker");
    WebRTC_ADMStart();
    EXPECT_TRUE(IsHeard(0.5));
    Connections_RestartPeerConnection(kId, true, true, true);
    EXPECT_TRUE(IsHeard(0.5));
}

TEST_F(RoomSoundTest, CapturesTheMicrophoneOnlyWhileItsTrackIsEnabled) {
    EXPECT_TRUE(Eventually([] { return MicrophoneIsOpen(); }));
    WebRTC_SetEnabledLocalAudioTrack(false, 0);
    EXPECT_TRUE(Eventually([] { return !MicrophoneIsOpen(); }));
    EXPECT_EQ(MicrophoneLoudness(), 0);
    WebRTC_SetEnabledLocalAudioTrack(false, 1);
    WebRTC_SetEnabledLocalAudioTrack(true, 0);
    EXPECT_TRUE(Eventually([] { return MicrophoneIsOpen(); }));
}

TEST_F(RoomSoundTest, MeasuresTheTestToneAndNeverPlaysTheMicrophone) {
    Configuration_SetPropertyString("Device.Microphone", kTestTone);
    WebRTC_SetEnabledRemoteAudioTrack(kId, false);
    WebRTC_ADMStart();
    EXPECT_FALSE(WebRTC_MicIsNone());
    EXPECT_TRUE(Eventually([] { return std::abs(MicrophoneLoudness() - 0.005) < 0.0005; }));
    EXPECT_TRUE(IsHeard(0));
}

TEST_F(RoomSoundTest, CapturesNothingWhereTheUserHasChosenNoMicrophone) {
    EXPECT_TRUE(Eventually([] { return MicrophoneIsOpen(); }));
    Configuration_SetPropertyString("Device.Microphone", "None");
    EXPECT_TRUE(WebRTC_MicIsNone());
    WebRTC_ADMStart();
    EXPECT_TRUE(Eventually([] { return !MicrophoneIsOpen(); }));
    EXPECT_TRUE(WebRTC_IsLocalAudioTrackEnabled(0)) << "the switch is the user's";
    Configuration_SetPropertyString("Device.Microphone", "No such microphone");
    EXPECT_FALSE(WebRTC_MicIsNone());
    WebRTC_ADMStart();
    EXPECT_TRUE(Eventually([] { return MicrophoneIsOpen(); }));
}

TEST_F(RoomSoundTest, HasNoSpeakerInASilentRunOrByTheUsersChoice) {
    EXPECT_TRUE(WebRTC_SpeakerIsNone());
    Configuration_SetPropertyString("Device.Speaker", "None");
    EXPECT_TRUE(WebRTC_SpeakerIsNone());
    RoomVisitor::Leave();
    WebRTC_ADMStart();
    EXPECT_TRUE(WebRTC_SpeakerIsNone());
}

}  // namespace
}  // namespace Corvanta::Engine
