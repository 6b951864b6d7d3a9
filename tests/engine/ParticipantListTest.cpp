// The participants' list and the settings, as the host reads and changes them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/Engine.h"
#include "platform/Configuration.h"
#include "platform/Connections.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/SharingVisitor.h"

namespace Corvanta::Engine {
namespace {

TEST(ParticipantList, NamesWhoIsThereWithVolumeAndLoudness) {
    SharingVisitor visitor;
    visitor.Enter("test", {{"one", "test"}, {"two", "clip"}});
    ASSERT_TRUE(Eventually([] { return ListParticipants().size() == 2; }));
    WebRTC_SetRemoteAudioTrackVolume("participant-2-two", 0.25);
    const auto list = ListParticipants();
    EXPECT_EQ(list[0].streamId, "participant-1-one");
    EXPECT_EQ(list[0].name, "one");
    EXPECT_EQ(list[0].volume, 1.0);
    EXPECT_EQ(list[1].streamId, "participant-2-two");
    EXPECT_EQ(list[1].volume, 0.25);
    EXPECT_TRUE(Eventually([] {
        const auto now = ListParticipants();
        return now[0].loudness > 0.0 && now[0].loudness <= 1.0;
    })) << "the test picture has a quiet tone";
    std::string speaker;
    ASSERT_TRUE(Eventually([&] { return WebRTC_GetActiveSpeaker(speaker); }));
    EXPECT_TRUE(Eventually([] {
        const auto now = ListParticipants();
        return now[0].isSpeaking != now[1].isSpeaking;
    }));
    Connections_MuteParticipant("participant-1-one");
    EXPECT_EQ(ListParticipants()[0].loudness, 0.0);
}

TEST(ParticipantList, LosesWhoIsRemovedForGood) {
    SharingVisitor visitor;
    visitor.Enter("", {{"one", "test"}, {"two", "test"}});
    ASSERT_TRUE(Eventually([] { return ListParticipants().size() == 2; }));
    RemoveParticipant("nobody");
    RemoveParticipant("participant-1-one");
    EXPECT_TRUE(visitor.WaitForEvent("leave participant-1-one"));
    RemoveParticipant("participant-1-one");
    const auto list = ListParticipants();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].name, "two");
    EXPECT_EQ(GetRoomStatus().participants, 1U);
    Connections_RestartPeerConnection("participant-1-one", true, true, true);
    EXPECT_EQ(Connections_GetPublisherDisplayName("participant-1-one"), "");
    Connections_CloseConnection();
    EXPECT_TRUE(ListParticipants().empty());
    RemoveParticipant("participant-2-two");
}

TEST(Settings, AreTheConfigurationsValues) {
    SharingVisitor visitor;
    visitor.Configure("");
    EXPECT_EQ(ReadSetting("Device.Speaker"), "");
    WriteSetting("Device.Speaker", "Größe");
    EXPECT_EQ(ReadSetting("Device.Speaker"), "Größe");
    std::string text(64, '\0');
    ASSERT_TRUE(Configuration_GetPropertyString("Device.Speaker", text.data(), 64));
    EXPECT_STREQ(text.c_str(), "Größe");
    ASSERT_TRUE(Configuration_SetPropertyInt("A.Number", 12));
    EXPECT_EQ(ReadSetting("A.Number"), "12");
    // It survives a new start.
    Shutdown();
    visitor.Configure("");
    EXPECT_EQ(ReadSetting("Device.Speaker"), "Größe");
}

}  // namespace
}  // namespace Corvanta::Engine
