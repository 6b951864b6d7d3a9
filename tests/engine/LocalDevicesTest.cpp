// What a room without camera and speaker answers, and the host's way to silence a participant.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

TEST(LocalDevices, AreNoneButTheTestTone) {
    RoomVisitor visitor;
    ASSERT_NE(visitor.Enter({{"one", "test"}}), -1);
    WebRTC_ADMStart();
    EXPECT_FALSE(WebRTC_MicIsNone()) << "the test tone stands for it";
    EXPECT_TRUE(WebRTC_SpeakerIsNone()) << "the visitor wants no sound";
    EXPECT_LT(WebRTC_GetVideoCaptureIndex(nullptr, nullptr, nullptr, nullptr), 0);
    WebRTC_SetLocalCameraProperties(640, 360, 30, 1'000'000);
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), "");
    MediaManager_StopLocalVideoSource("nobody");
}

TEST(MutedParticipant, SpeaksNoMore) {
    RoomVisitor visitor;
    ASSERT_NE(visitor.Enter({{"one", "clip"}, {"two", "clip"}}), -1);
    const auto speaks = [](const std::string& id) {
        return Eventually([&] {
            std::string speaker;
            return WebRTC_GetActiveSpeaker(speaker) && speaker == id;
        });
    };
    ASSERT_TRUE(speaks("participant-1-one"));
    Connections_MuteParticipant("nobody");
    Connections_MuteParticipant("participant-1-one");
    // Its subscription does not switch its microphone on again.
    Connections_ConfigureStream("participant-1-one", {{ConfigureStreamType::Audio, true}});
    ASSERT_TRUE(speaks("participant-2-two"));
}

}  // namespace
}  // namespace Corvanta::Engine
