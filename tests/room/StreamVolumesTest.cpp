// The sound of one stream and of all: volumes, the speaker, and what a new track starts with.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/room/RoomViewTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

constexpr const char* kMixBadge = "icons/audiomixer-white.png";
constexpr const char* kSilentBadge = "icons/noaudio.png";

class StreamVolumesTest : public RoomViewTest {
protected:
    StreamVolumesTest() { Open(); }

    Video::VideoFrame& Add(const std::string& id, StreamType type = StreamType::Camera) {
        SetType(id, type);
        EXPECT_NE(view->AddRemoteVideoSource(id), nullptr);
        return *TileOf(id);
    }
    // The user's own stream that another program publishes.
    Video::VideoFrame& AddOwnExternal(StreamType type) {
        AddCamera(kWhite);
        Fake().Set([](FakeResults& results) { results.ownExternalStreams.insert({"me", "own"}); });
        Video::VideoFrame& tile = Add("own", type);
        Calls().Clear();
        return tile;
    }
    [[nodiscard]] static size_t BadgesOf(Video::VideoFrame& tile) {
        size_t count = 0;
        for (; tile.HasBadge(kMixBadge); ++count) tile.RemoveBadge(kMixBadge);
        for (size_t i = 0; i < count; ++i) tile.AddBadge(kMixBadge);
        return count;
    }
    [[nodiscard]] static std::vector<Call> AudioTracks() {
        return Calls().Of("WebRTC_SetEnabledRemoteAudioTrack");
    }
};

TEST_F(StreamVolumesTest, AnyVolumeButTheFullOneShowsOnceThatTheSoundIsMixed) {
    Video::VideoFrame& tile = Add("one");
    view->SetStreamVolume("one", 1.0, false);
    EXPECT_EQ(BadgesOf(tile), 0U);
    for (const double volume : {0.5, 0.25, 0.0, 0.999, 2.0, -1.0}) {
        view->SetStreamVolume("one", volume, false);
        EXPECT_EQ(BadgesOf(tile), 1U) << volume;
    }
    view->SetStreamVolume("one", 1.0, false);
    EXPECT_EQ(BadgesOf(tile), 0U);
}

TEST_F(StreamVolumesTest, TheVolumeOfOnesOwnStreamShowsToo) {
    NameLocalStream(StreamType::File, "my-file");
    ASSERT_NE(view->AddLocalVideoSource(StreamType::File, "file"), nullptr);
    Calls().Clear();
    view->SetStreamVolume("my-file", 0.5, false);
    EXPECT_EQ(BadgesOf(*TileOf("my-file")), 1U);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetLocalStreamsLocalAudioVolume", {ToText(0.5)}}}));
}

TEST_F(StreamVolumesTest, AStreamWithoutAMixerShowsNothing) {
    Video::VideoFrame& tile = Add("one", StreamType::Screenshare);
    view->SetStreamVolume("one", 0.5, false);
    EXPECT_EQ(BadgesOf(tile), 0U);
    EXPECT_EQ(Calls().Count("WebRTC_SetRemoteAudioTrackVolume"), 1U);
}

TEST_F(StreamVolumesTest, AnUnknownStreamChangesNothing) {
    Video::VideoFrame& tile = Add("one");
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    Calls().Clear();
    for (const char* id : {"nobody", "", "camera"}) {
        view->SetStreamVolume(id, 0.5, false);
        view->SetStreamVolume(id, 0.5, true);
    }
    EXPECT_TRUE(Calls().OfThisThread().empty());
    EXPECT_EQ(BadgesOf(tile), 0U);
}

// The user's own external stream

TEST_F(StreamVolumesTest, OnesOwnExternalScreenStartsSilent) {
    for (const StreamType type : {StreamType::Screenshare, StreamType::ExternalScreen}) {
        Video::VideoFrame& tile = AddOwnExternal(type);
        view->OnRemoteTrackAdded("own");
        EXPECT_FALSE(tile.audioEnabled);
        EXPECT_TRUE(tile.HasBadge(kSilentBadge));
        EXPECT_EQ(AudioTracks(),
                  (std::vector<Call>{{"WebRTC_SetEnabledRemoteAudioTrack", {"own", "false"}}}));
        EXPECT_EQ(Calls().Count("WebRTC_SetRemoteAudioTrackVolume"), 1U);
        view->RemoveRemoteVideoSource("own");
    }
}

TEST_F(StreamVolumesTest, ASecondTrackOfItDoesNotTurnItsSoundOn) {
    Video::VideoFrame& tile = AddOwnExternal(StreamType::Screenshare);
    for (int i = 0; i < 3; ++i) view->OnRemoteTrackAdded("own");
    EXPECT_FALSE(tile.audioEnabled);
    EXPECT_EQ(AudioTracks().size(), 1U);
}

TEST_F(StreamVolumesTest, OnlyItsNewTrackIsSilenced) {
    Video::VideoFrame& tile = AddOwnExternal(StreamType::ExternalScreen);
    view->SetStreamVolume("own", 0.5, false);
    EXPECT_TRUE(tile.audioEnabled);
    EXPECT_EQ(BadgesOf(tile), 1U);
}

TEST_F(StreamVolumesTest, OtherStreamsStartWithTheirSound) {
    Video::VideoFrame& own = AddOwnExternal(StreamType::File);
    Video::VideoFrame& others = Add("others", StreamType::Screenshare);
    view->OnRemoteTrackAdded("own");
    view->OnRemoteTrackAdded("others");
    EXPECT_TRUE(own.audioEnabled);
    EXPECT_TRUE(others.audioEnabled);
    view->RemoveLocalVideoSource("camera");
    Fake().Set([](FakeResults& results) { results.ownExternalStreams.insert({"", "others"}); });
    view->OnRemoteTrackAdded("others");
    EXPECT_TRUE(others.audioEnabled) << "whose it is can be told by the camera alone";
}

// Speaker

TEST_F(StreamVolumesTest, TheSpeakerBringsBackExactlyWhatIsSwitchedOn) {
    Add("loud");
    Add("silenced").soundToggle->OnClick();
    view->SetSpeakerEnabled(false);
    Add("late");
    view->OnRemoteTrackAdded("late");
    EXPECT_EQ(AudioTracks().back(), (Call{"WebRTC_SetEnabledRemoteAudioTrack", {"late", "false"}}));
    Calls().Clear();
    view->SetSpeakerEnabled(true);
    EXPECT_EQ(AudioTracks(),
              (std::vector<Call>{{"WebRTC_SetEnabledRemoteAudioTrack", {"late", "true"}},
                                 {"WebRTC_SetEnabledRemoteAudioTrack", {"loud", "true"}},
                                 {"WebRTC_SetEnabledRemoteAudioTrack", {"silenced", "false"}}}));
}

TEST_F(StreamVolumesTest, WithoutADeviceNothingIsHeardWhateverTheSpeakerSays) {
    Add("one");
    view->SetSpeakerNone(true);
    view->SetSpeakerEnabled(true);
    EXPECT_EQ(AudioTracks().back(), (Call{"WebRTC_SetEnabledRemoteAudioTrack", {"one", "false"}}));
    view->OnRemoteTrackAdded("one");
    EXPECT_EQ(AudioTracks().size(), 3U);
    view->SetSpeakerNone(false);
    EXPECT_EQ(AudioTracks().back(), (Call{"WebRTC_SetEnabledRemoteAudioTrack", {"one", "true"}}));
}

TEST_F(StreamVolumesTest, RoomWideVolumesGoToTheirGroups) {
    view->SetParticipantsVolume(0.25);
    view->SetStreamsVolume(0.75);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetRemoteAudioTrackModifier", {"0", ToText(0.25)}},
                                 {"WebRTC_SetRemoteAudioTrackModifier", {"1", ToText(0.75)}},
                                 {"WebRTC_SetLocalStreamsLocalAudioVolume", {ToText(0.75)}}}));
}

// What the host asks for by the stream's id

TEST_F(StreamVolumesTest, ASoundToggleIsFlippedOnlyIfItStandsAsTheHostSays) {
    Video::VideoFrame& tile = Add("one");
    view->SetStreamSoundToggle("one", true);
    EXPECT_TRUE(tile.audioEnabled);
    view->SetStreamSoundToggle("one", false);
    EXPECT_FALSE(tile.audioEnabled);
    view->SetStreamSoundToggle("one", false);
    EXPECT_FALSE(tile.audioEnabled);
    view->SetStreamSoundToggle("one", true);
    EXPECT_TRUE(tile.audioEnabled);
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    // The camera has none.
    view->SetStreamSoundToggle("me", false);
    view->SetStreamSoundToggle("nobody", false);
    EXPECT_EQ(AudioTracks().size(), 2U);
}

TEST_F(StreamVolumesTest, AStreamsVideoIsSwitchedWithoutItsTrack) {
    Video::VideoFrame& tile = Add("one");
    view->SetStreamVideoEnabled("one", false);
    EXPECT_FALSE(tile.IsVideoEnabled());
    EXPECT_EQ(Calls().Count("WebRTC_SetEnabledRemoteVideoTrack"), 0U);
    view->SetStreamVideoEnabled("one", true);
    EXPECT_TRUE(tile.IsVideoEnabled());
    NameLocalStream(StreamType::File, "my-file");
    ASSERT_NE(view->AddLocalVideoSource(StreamType::File, "file"), nullptr);
    view->SetStreamVideoEnabled("my-file", false);
    EXPECT_FALSE(TileOf("my-file")->IsVideoEnabled());
    view->SetStreamVideoEnabled("nobody", false);
}

TEST_F(StreamVolumesTest, AMissingMicrophoneMutesTheCamerasTile) {
    view->SetMicNone(true);
    AddCamera(kWhite);
    view->SetMicNone(true);
    EXPECT_TRUE(TileOf("me")->muted);
    // Muted for another reason, which only the microphone itself ends.
    view->SetMicNone(false);
    EXPECT_TRUE(TileOf("me")->muted);
}

}  // namespace
}  // namespace Corvanta::Room
