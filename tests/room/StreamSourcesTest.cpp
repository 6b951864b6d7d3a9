// How streams come into the room and go.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/room/RoomViewTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

class StreamSourcesTest : public RoomViewTest {
protected:
    StreamSourcesTest() { Open(); }

    [[nodiscard]] static std::string Metadata(const std::string& id, const std::string& frameRate) {
        return R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":")" + id +
               R"(","frameRate":)" + frameRate + R"(,"sourceName":"A clip"}}})";
    }
    [[nodiscard]] static std::vector<Call> AudioTracks() {
        return Calls().Of("WebRTC_SetEnabledRemoteAudioTrack");
    }
    [[nodiscard]] static Call AudioTrack(const std::string& id, bool enabled) {
        return {"WebRTC_SetEnabledRemoteAudioTrack", {id, enabled ? "true" : "false"}};
    }
};

// Remote streams

TEST_F(StreamSourcesTest, ARemoteStreamGetsADraggableTileOnTheWall) {
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    Video::VideoFrame* const tile = TileOf("one");
    ASSERT_NE(tile, nullptr);
    EXPECT_EQ(tile->GetOrigin(), Video::TileOrigin::Remote);
    EXPECT_TRUE(tile->draggable);
    EXPECT_FALSE(tile->isExternalSource);
    EXPECT_EQ(tile->owner, view.get());
    EXPECT_EQ(Fake().LogsOf(2).back(), "Adding remote video frame: stream ID = one");
}

TEST_F(StreamSourcesTest, TilesKnowTheRoomAndTheLocalUser) {
    view->Configure({.roomName = "room", .sessionName = "session", .profileId = "profile"});
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    for (const char* const id : {"one", "me"}) {
        EXPECT_EQ(TileOf(id)->GetSessionName(), "session");
        EXPECT_EQ(TileOf(id)->GetProfileId(), "profile");
    }
    EXPECT_EQ(view->GetIdentity().roomName, "room");
}

TEST_F(StreamSourcesTest, ASecondAddOfAStreamReturnsTheFirstTilesSink) {
    const auto first = view->AddRemoteVideoSource("one");
    EXPECT_EQ(view->AddRemoteVideoSource("one"), first);
    EXPECT_EQ(view->GetThumbnails().GetAllTiles().size(), 1U);
    EXPECT_EQ(Fake().LogsOf(2),
              (std::vector<std::string>{"Selected renderer for this window is: software",
                                        "Adding remote video frame: stream ID = one",
                                        "Adding remote video frame: stream ID = one",
                                        "Remote video frame already exists: stream ID = one"}));
}

TEST_F(StreamSourcesTest, ARemovedStreamLeavesTheWallAndMayComeAgain) {
    const auto first = view->AddRemoteVideoSource("one");
    view->RemoveRemoteVideoSource("one");
    EXPECT_EQ(Fake().LogsOf(2).back(), "Removing remote video source with id: one");
    EXPECT_TRUE(view->GetThumbnails().GetAllTiles().empty());
    const auto second = view->AddRemoteVideoSource("one");
    EXPECT_NE(second, nullptr);
    EXPECT_NE(second, first);
    ASSERT_TRUE(Show(second, Plain(0xFF00FF00)));
    view->SetActiveSpeaker("one");
    EXPECT_EQ(ShownColor(), 0xFF00FF00);
}

TEST_F(StreamSourcesTest, FramesOfARemovedStreamAreDropped) {
    const auto sink = view->AddRemoteVideoSource("one");
    view->RemoveRemoteVideoSource("one");
    const auto frame = Plain(kWhite);
    (*sink)(frame);
    EXPECT_EQ(frame.use_count(), 1);
    (void)TickAndRead();
    (*sink)(frame);
    EXPECT_EQ(frame.use_count(), 1);
}

TEST_F(StreamSourcesTest, ARemovedTilesTextureDiesInTheNextDrawingAndNotOnTheMediaThread) {
    AddRemote("one", kWhite);
    view->SetActiveSpeaker("one");
    ASSERT_EQ(ShownColor(), kWhite);
    ASSERT_EQ(Sdl().LiveTextures(), 1U);
    std::thread media([&] { view->RemoveRemoteVideoSource("one"); });
    media.join();
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
    Calls().Clear();
    view->Tick();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    const auto destroyed = Calls().Of("SDL_DestroyTexture");
    ASSERT_EQ(destroyed.size(), 1U);
    EXPECT_EQ(destroyed[0].thread, std::this_thread::get_id());
}

TEST_F(StreamSourcesTest, RemovingAnUnknownStreamOnlyTellsTheAdaptation) {
    AddCamera(kWhite);
    Calls().Clear();
    view->RemoveRemoteVideoSource("nobody");
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"AdaptiveVideoSourceManager_OnRemoteStreamRemoved", {"nobody"}}}));
    EXPECT_EQ(Fake().LogsOf(2).back(), "Removing remote video source with id: nobody");
}

TEST_F(StreamSourcesTest, RemovingAStreamTellsTheAdaptation) {
    AddCamera(kWhite);
    AddRemote("one", kWhite);
    view->RemoveRemoteVideoSource("one");
    EXPECT_EQ(Fake().CallsOf("AdaptiveVideoSourceManager_OnRemoteStreamRemoved"),
              (std::vector<Call>{{"AdaptiveVideoSourceManager_OnRemoteStreamRemoved", {"one"}}}));
}

TEST_F(StreamSourcesTest, AnExternalSourceTakesTheMainVideoUntilItGoes) {
    const auto speaker = AddRemote("speaker", 0xFF0000FF);
    view->SetActiveSpeaker("speaker");
    MakeExternal("external");
    AddRemote("external", 0xFFFF0000);
    EXPECT_TRUE(TileOf("external")->isExternalSource);
    EXPECT_EQ(ShownColor(), 0xFFFF0000);
    view->RemoveRemoteVideoSource("external");
    // The speaker's stream was switched off meanwhile.
    view->Tick();
    ASSERT_TRUE(Show(speaker, Plain(0xFF0000FF)));
    EXPECT_EQ(ShownColor(), 0xFF0000FF);
}

// Local streams

TEST_F(StreamSourcesTest, ALocalStreamTakesTheMainVideoUnderItsOwnName) {
    NameLocalStream(StreamType::Screenshare, "my-screen");
    AddRemote("speaker", 0xFF0000FF);
    view->SetActiveSpeaker("speaker");
    const auto sink = view->AddLocalVideoSource(StreamType::Screenshare, "screen");
    ASSERT_TRUE(Show(sink, Plain(0xFF00FF00)));
    Video::VideoFrame* const tile = TileOf("my-screen");
    ASSERT_NE(tile, nullptr);
    EXPECT_EQ(tile->GetOrigin(), Video::TileOrigin::Local);
    EXPECT_EQ(tile->owner, view.get());
    EXPECT_FALSE(tile->draggable);
    EXPECT_EQ(tile->GetDisplayName(), "My my-screen");
    EXPECT_EQ(ShownColor(), 0xFF00FF00);
}

TEST_F(StreamSourcesTest, TheCameraLeavesTheMainVideoToWhoSpeaks) {
    AddRemote("speaker", 0xFF0000FF);
    view->SetActiveSpeaker("speaker");
    AddCamera(0xFF00FF00);
    EXPECT_EQ(ShownColor(), 0xFF0000FF);
}

TEST_F(StreamSourcesTest, TheCameraEndsAnEarlierChoiceOfTheMainVideo) {
    AddRemote("speaker", 0xFF0000FF);
    AddRemote("chosen", 0xFFFF0000);
    view->SetActiveSpeaker("speaker");
    view->OnTileClicked(TileOf("chosen"), false);
    AddCamera(0xFF00FF00);
    EXPECT_EQ(ShownColor(), 0xFF0000FF);
}

TEST_F(StreamSourcesTest, TheCameraIsKnownByItsSourceAndItsSink) {
    EXPECT_EQ(view->GetLocalStreamId(), "");
    EXPECT_EQ(view->GetLocalCameraSink(), nullptr);
    const auto sink = view->AddLocalVideoSource(StreamType::Camera, "camera");
    EXPECT_EQ(view->GetLocalStreamId(), "camera");
    EXPECT_EQ(view->GetLocalCameraSink(), sink);
    view->RemoveLocalVideoSource("camera");
    EXPECT_EQ(view->GetLocalStreamId(), "");
    EXPECT_EQ(view->GetLocalCameraSink(), nullptr);
}

TEST_F(StreamSourcesTest, OnlyTheCameraStartsTheAdaptation) {
    NameLocalStream(StreamType::Screenshare, "my-screen");
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Screenshare, "screen"), nullptr);
    EXPECT_EQ(Calls().Count("AdaptiveVideoSourceManager_Create"), 0U);
    EXPECT_EQ(view->GetLocalStreamId(), "");
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    EXPECT_EQ(Calls().Count("AdaptiveVideoSourceManager_Create"), 1U);
}

TEST_F(StreamSourcesTest, OnlyFilesAndUrlsAreHeardByWhoSharesThem) {
    struct Case {
        StreamType type;
        std::vector<std::string> volumes;
        bool audioEnabled;
    };
    const Case cases[] = {
        {StreamType::Camera, {}, true},
        {StreamType::Screenshare, {}, true},
        {StreamType::ExternalScreen, {}, true},
        {StreamType::Device, {ToText(0.0)}, false},
        {StreamType::File, {ToText(1.0)}, true},
        {StreamType::NDI, {ToText(0.0)}, false},
        {StreamType::DeckLink, {ToText(0.0)}, false},
        {StreamType::URL, {ToText(1.0)}, true},
        {StreamType::Elgato, {ToText(0.0)}, false},
    };
    for (const Case& expected : cases) {
        const std::string id = "my-" + std::to_string(static_cast<int>(expected.type));
        SCOPED_TRACE(id);
        NameLocalStream(expected.type, id);
        Calls().Clear();
        ASSERT_NE(view->AddLocalVideoSource(expected.type, "source of " + id), nullptr);
        std::vector<std::string> volumes;
        for (const Call& call : Calls().Of("WebRTC_SetLocalStreamsLocalAudioVolume")) {
            volumes.push_back(call.arguments[0]);
        }
        EXPECT_EQ(volumes, expected.volumes);
        EXPECT_EQ(TileOf(id)->audioEnabled, expected.audioEnabled);
        EXPECT_EQ(TileOf(id)->HasBadge("icons/noaudio.png"), !expected.audioEnabled);
    }
}

TEST_F(StreamSourcesTest, ASecondAddOfALocalSourceReturnsTheFirstTilesSink) {
    const auto first = view->AddLocalVideoSource(StreamType::Camera, "camera");
    EXPECT_EQ(view->AddLocalVideoSource(StreamType::Camera, "camera"), first);
    EXPECT_EQ(view->GetThumbnails().GetAllTiles().size(), 1U);
}

TEST_F(StreamSourcesTest, ARemovedLocalStreamLeavesTheMainVideoAndTheWall) {
    const auto sink = AddCamera(kWhite);
    ASSERT_EQ(ShownColor(), kWhite);
    view->RemoveLocalVideoSource("camera");
    EXPECT_TRUE(view->GetThumbnails().GetAllTiles().empty());
    EXPECT_EQ(ShownColor(), kBlack);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    view->RemoveLocalVideoSource("camera");
    const auto frame = Plain(kWhite);
    (*sink)(frame);
    EXPECT_EQ(frame.use_count(), 1);
}

// Names

TEST_F(StreamSourcesTest, ResolvesAUsersStreamsToTheSourcesUnderWhichTheyRun) {
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    EXPECT_EQ(view->ResolveMediaSourceId("me"), "camera");
    for (const int number : {3, 8, 4, 7, 5, 6}) {
        const auto type = static_cast<StreamType>(number);
        const std::string id = "my-" + std::to_string(number);
        NameLocalStream(type, id);
        EXPECT_EQ(view->ResolveMediaSourceId(id), id) << "it does not run yet";
        ASSERT_NE(view->AddLocalVideoSource(type, "source-" + std::to_string(number)), nullptr);
        EXPECT_EQ(view->ResolveMediaSourceId(id), "source-" + std::to_string(number));
    }
}

TEST_F(StreamSourcesTest, LeavesOtherStreamsTheirId) {
    NameLocalStream(StreamType::Screenshare, "my-screen");
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Screenshare, "screen"), nullptr);
    EXPECT_EQ(view->ResolveMediaSourceId("my-screen"), "my-screen");
    EXPECT_EQ(view->ResolveMediaSourceId("one"), "one");
}

// Sound and connection

TEST_F(StreamSourcesTest, ANewTrackPlaysAtFullVolumeWhileTheSpeakerIsOn) {
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    Calls().Clear();
    view->OnRemoteTrackAdded("one");
    EXPECT_TRUE(AudioTracks().empty());
    EXPECT_EQ(Calls().Count("WebRTC_SetRemoteAudioTrackIsExternalSource"), 0U);
    EXPECT_EQ(Calls().Of("WebRTC_SetRemoteAudioTrackVolume"),
              (std::vector<Call>{{"WebRTC_SetRemoteAudioTrackVolume", {"one", ToText(1.0)}}}));
}

TEST_F(StreamSourcesTest, ANewTrackStaysSilentWhileTheSpeakerIsOff) {
    view->SetSpeakerEnabled(false);
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    view->OnRemoteTrackAdded("one");
    EXPECT_EQ(AudioTracks(), std::vector<Call>{AudioTrack("one", false)});
}

TEST_F(StreamSourcesTest, AnExternalTrackIsCountedAmongTheStreams) {
    MakeExternal("external");
    view->OnRemoteTrackAdded("external");
    EXPECT_EQ(Calls().Of("WebRTC_SetRemoteAudioTrackIsExternalSource"),
              (std::vector<Call>{{"WebRTC_SetRemoteAudioTrackIsExternalSource", {"external", "true"}}}));
}

TEST_F(StreamSourcesTest, TheSpeakerSwitchesExactlyTheTilesWhoseOwnSoundIsOn) {
    ASSERT_NE(view->AddRemoteVideoSource("loud"), nullptr);
    ASSERT_NE(view->AddRemoteVideoSource("silenced"), nullptr);
    TileOf("silenced")->audioEnabled = false;
    view->SetSpeakerEnabled(false);
    EXPECT_EQ(AudioTracks(), (std::vector<Call>{AudioTrack("loud", false), AudioTrack("silenced", false)}));
    Calls().Clear();
    view->SetSpeakerEnabled(true);
    EXPECT_EQ(AudioTracks(), (std::vector<Call>{AudioTrack("loud", true), AudioTrack("silenced", false)}));
}

TEST_F(StreamSourcesTest, AVolumeReachesTheStreamItIsFor) {
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    AddCamera(kWhite);
    Calls().Clear();
    view->SetStreamVolume("one", 0.25, false);
    view->SetStreamVolume("me", 0.5, false);
    view->SetStreamVolume("nobody", 0.75, false);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetRemoteAudioTrackVolume", {"one", ToText(0.25)}},
                                 {"WebRTC_SetLocalStreamsLocalAudioVolume", {ToText(0.5)}}}));
}

TEST_F(StreamSourcesTest, ALostRemoteConnectionMarksThatTileOnly) {
    AddCamera(kWhite);
    AddRemote("one", kWhite);
    AddRemote("two", kWhite);
    EXPECT_TRUE(view->UpdateConnectionStatus("one", true));
    EXPECT_TRUE(TileOf("one")->lostConnection);
    EXPECT_FALSE(TileOf("two")->lostConnection);
    EXPECT_FALSE(TileOf("me")->lostConnection);
    EXPECT_TRUE(view->UpdateConnectionStatus("one", false));
    EXPECT_FALSE(TileOf("one")->lostConnection);
    EXPECT_TRUE(view->UpdateConnectionStatus("nobody", true));
}

TEST_F(StreamSourcesTest, ALostConnectionOfTheUsersOwnMarksAllLocalTiles) {
    NameLocalStream(StreamType::File, "my-file");
    AddCamera(kWhite);
    ASSERT_NE(view->AddLocalVideoSource(StreamType::File, "file"), nullptr);
    AddRemote("one", kWhite);
    EXPECT_TRUE(view->UpdateConnectionStatus("me", true));
    EXPECT_TRUE(TileOf("me")->lostConnection);
    EXPECT_TRUE(TileOf("my-file")->lostConnection);
    EXPECT_FALSE(TileOf("one")->lostConnection);
}

// Descriptions

TEST_F(StreamSourcesTest, ADescriptionReachesARemoteTile) {
    AddRemote("one", kWhite);
    view->OnDataChannelMessage({"one", Metadata("one", "29.97")});
    EXPECT_EQ(TileOf("one")->GetSourceData(), (VideoSourceData{"one", 29.97F, "A clip"}));
    EXPECT_EQ(Fake().LogsOf(1).back(), "Received data channel message: " + Metadata("one", "29.97"));
}

TEST_F(StreamSourcesTest, ADescriptionReachesALocalTileByTheUsersStreamId) {
    AddCamera(kWhite);
    view->OnDataChannelMessage({"one", Metadata("me", "30")});
    EXPECT_EQ(TileOf("me")->GetSourceData(), (VideoSourceData{"me", 30.0F, "A clip"}));
}

TEST_F(StreamSourcesTest, ABrokenDescriptionChangesNothing) {
    AddRemote("one", kWhite);
    view->OnDataChannelMessage({"one", Metadata("one", "\"30\"")});
    view->OnDataChannelMessage({"one", "no JSON"});
    view->OnDataChannelMessage({"one", Metadata("nobody", "30")});
    EXPECT_FALSE(TileOf("one")->GetSourceData().has_value());
}

TEST_F(StreamSourcesTest, TheAdaptationSeesEveryMessageWhateverItSays) {
    AddCamera(kWhite);
    Calls().Clear();
    const std::vector<std::string> texts{Metadata("me", "30"), R"({"type":"other"})", "no JSON", ""};
    for (const std::string& text : texts) view->OnDataChannelMessage({"one", text});
    std::vector<Call> expected;
    expected.reserve(texts.size());
    for (const std::string& text : texts) {
        expected.push_back({"AdaptiveVideoSourceManager_OnDataChannelMessage", {"one", text}});
    }
    EXPECT_EQ(Calls().Of("AdaptiveVideoSourceManager_OnDataChannelMessage"), expected);
}

// Stills and observers

TEST_F(StreamSourcesTest, AStillOfARemoteStreamIsWrittenByItsNextFrame) {
    const auto sink = AddRemote("one", kWhite);
    EXPECT_TRUE(view->ExportRemoteFrame("one"));
    EXPECT_TRUE(Fake().StillExports().empty());
    (*sink)(Plain(kWhite));
    ASSERT_EQ(Fake().StillExports().size(), 1U);
    EXPECT_EQ(Fake().StillExports()[0].path, "configuration-folder/exportedRemoteFrame");
}

TEST_F(StreamSourcesTest, AStillOfALocalStreamIsFoundByTheUsersStreamId) {
    const auto sink = AddCamera(kWhite);
    EXPECT_TRUE(view->ExportRemoteFrame("me"));
    (*sink)(Plain(kWhite));
    EXPECT_EQ(Fake().StillExports().size(), 1U);
}

TEST_F(StreamSourcesTest, AStillOfAnUnknownStreamIsRefused) {
    AddRemote("one", kWhite);
    EXPECT_FALSE(view->ExportRemoteFrame("nobody"));
    EXPECT_FALSE(view->ExportRemoteFrame(""));
}

TEST_F(StreamSourcesTest, AnObserverIsReachedByItsTilesStreamId) {
    class CountingObserver final : public Video::FrameObserver {
    public:
        void OnFrame(const std::shared_ptr<VideoFrameBuffer>&, int, Uint32, const SDL_Rect&, int,
                     const VideoSourceData& data) override {
            Calls().Record("observed", data.sourceName);
        }
    };
    const auto remote = AddRemote("one", kWhite);
    const auto camera = AddCamera(kWhite);
    view->OnDataChannelMessage({"one", Metadata("one", "30")});
    EXPECT_TRUE(view->SetFrameObserver("one", std::make_unique<CountingObserver>()));
    EXPECT_TRUE(view->SetFrameObserver("me", std::make_unique<CountingObserver>()));
    EXPECT_FALSE(view->SetFrameObserver("nobody", std::make_unique<CountingObserver>()));
    ASSERT_TRUE(Show(remote, Plain(kWhite)));
    ASSERT_TRUE(Show(camera, Plain(kWhite)));
    EXPECT_EQ(Calls().Of("observed"), (std::vector<Call>{{"observed", {"A clip"}}, {"observed", {""}}}));
    EXPECT_TRUE(view->SetFrameObserver("one", nullptr));
    ASSERT_TRUE(Show(remote, Plain(kWhite)));
    EXPECT_EQ(Calls().Count("observed"), 2U);
}

// Without a room

TEST_F(StreamSourcesTest, NothingComesInWhileNoRoomIsActive) {
    AddRemote("known", kWhite);
    roomActive.store(false);
    Calls().Clear();
    EXPECT_EQ(view->AddRemoteVideoSource("one"), nullptr);
    EXPECT_EQ(view->AddRemoteVideoSource("known"), nullptr);
    EXPECT_EQ(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    EXPECT_FALSE(view->UpdateConnectionStatus("known", true));
    view->OnRemoteTrackAdded("known");
    view->SetStreamVolume("known", 0.5, false);
    view->RemoveRemoteVideoSource("known");
    EXPECT_EQ(view->GetThumbnails().GetAllTiles().size(), 1U);
    EXPECT_EQ(Calls().NamesAmong({"WebRTC_SetRemoteAudioTrackVolume", "WebRTC_SetEnabledRemoteAudioTrack",
                                  "WebRTC_GetFrameTransformerInstance"}),
              std::vector<std::string>{});
}

}  // namespace
}  // namespace Corvanta::Room
