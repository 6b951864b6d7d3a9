// Commands about one stream, or about the sound of all.
#include <string>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class StreamCommandsWithoutRoom : public StartedTest {};

class StreamCommandsTest : public RoomTest {
protected:
    static Video::VideoFrame* TileOf(const std::string& id) {
        for (Video::VideoFrame* tile : Interface::CurrentView()->GetThumbnails().GetAllTiles()) {
            if (tile->GetStreamId() == id) return tile;
        }
        return nullptr;
    }
    static Video::VideoFrame* Add(const std::string& id) {
        Fake().OfferRemoteSource(id);
        Calls().Clear();
        return TileOf(id);
    }
    static Video::VideoFrame* AddFile() {
        Fake().Set([](FakeResults& results) {
            results.localUserStreamIds[StreamType::File] = "my-file";
            results.streamTypes["my-file"] = StreamType::File;
        });
        Fake().OfferLocalSource(StreamType::File, "file-source");
        Calls().Clear();
        return TileOf("my-file");
    }
};

TEST_F(StreamCommandsWithoutRoom, DoesNothing) {
    FrameCallback sink = [](const std::shared_ptr<VideoFrameBuffer>&) {};
    for (const char* id : {"a", "", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(SDLinterface_ExportRemoteFrame(id));
        SDLinterface_SetStreamVideoEnabled(id, false);
        SDLinterface_SetStreamSoundToggle(id, false);
        SDLinterface_SetStreamSpotlight(id, true);
        SDLInterface_VideoRoomSetParticipantVolume(id, 0.5F);
    }
    SDLInterface_VideoRoomSetParticipantsVolume(0.5F);
    SDLInterface_VideoRoomSetStreamsVolume(0.5F);
    SDLinterface_RegisterLocalStreamCallback("a", &sink);
    SDLinterface_UnregisterLocalStreamCallback("a", &sink);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(StreamCommandsTest, IgnoresStreamsWithoutANameAndUnknownOnes) {
    const Video::VideoFrame* const tile = Add("a");
    for (const std::string& id : {std::string("nobody"), std::string(), std::string(10'000, 'x')}) {
        SDLinterface_SetStreamVideoEnabled(id.c_str(), false);
        SDLinterface_SetStreamSoundToggle(id.c_str(), false);
        SDLinterface_SetStreamSpotlight(id.c_str(), false);
        SDLinterface_SetStreamSpotlight(id.c_str(), true);
        SDLInterface_VideoRoomSetParticipantVolume(id.c_str(), 0.5F);
    }
    SDLinterface_SetStreamVideoEnabled(nullptr, false);
    SDLinterface_SetStreamSoundToggle(nullptr, false);
    SDLinterface_SetStreamSpotlight(nullptr, false);
    SDLInterface_VideoRoomSetParticipantVolume(nullptr, 0.5F);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
    EXPECT_FALSE(SDLinterface_ExportRemoteFrame("nobody"));
    EXPECT_TRUE(tile->IsVideoEnabled());
    EXPECT_TRUE(tile->audioEnabled);
    EXPECT_FALSE(Interface::CurrentView()->IsMainVideo(*tile));
}

TEST_F(StreamCommandsTest, SwitchesAPicture) {
    const Video::VideoFrame* const tile = Add("a");
    SDLinterface_SetStreamVideoEnabled("a", false);
    EXPECT_FALSE(tile->IsVideoEnabled());
    SDLinterface_SetStreamVideoEnabled("a", true);
    EXPECT_TRUE(tile->IsVideoEnabled());
}

TEST_F(StreamCommandsTest, FlipsASoundThatStandsAsTheHostSays) {
    const Video::VideoFrame* const tile = Add("a");
    SDLinterface_SetStreamSoundToggle("a", true);
    EXPECT_TRUE(tile->audioEnabled);
    SDLinterface_SetStreamSoundToggle("a", false);
    EXPECT_FALSE(tile->audioEnabled);
}

TEST_F(StreamCommandsTest, ChoosesTheMainVideoAndLetsGoOfIt) {
    const Video::VideoFrame* const one = Add("a");
    const Video::VideoFrame* const two = Add("b");
    const auto view = Interface::CurrentView();
    SDLinterface_SetStreamSpotlight("a", true);
    EXPECT_TRUE(view->IsMainVideo(*one));
    SDLinterface_SetStreamSpotlight("b", true);
    EXPECT_TRUE(view->IsMainVideo(*two));
    SDLinterface_SetStreamSpotlight("b", true);
    EXPECT_FALSE(view->IsMainVideo(*two));
    // As a click does, whatever the second argument is.
    SDLinterface_SetStreamSpotlight("a", false);
    EXPECT_TRUE(view->IsMainVideo(*one));
    SDLinterface_SetStreamSpotlight("a", false);
    EXPECT_FALSE(view->IsMainVideo(*one));
}

TEST_F(StreamCommandsTest, SetsTheVolumeOfOneStream) {
    Video::VideoFrame* const tile = Add("a");
    SDLInterface_VideoRoomSetParticipantVolume("a", 0.25F);
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetRemoteAudioTrackVolume"), SizeIs(1));
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetRemoteAudioTrackVolume")[0].arguments,
                ElementsAre("a", ToText(0.25)));
    EXPECT_TRUE(tile->HasBadge("icons/audiomixer-white.png"));
    AddFile();
    SDLInterface_VideoRoomSetParticipantVolume("my-file", 0.5F);
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetLocalStreamsLocalAudioVolume")[0].arguments,
                ElementsAre(ToText(0.5)));
}

TEST_F(StreamCommandsTest, SetsTheVolumeOfAllParticipantsAndOfAllStreams) {
    SDLInterface_VideoRoomSetParticipantsVolume(0.5F);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetRemoteAudioTrackModifier", {"0", ToText(0.5)}}}));
    Calls().Clear();
    SDLInterface_VideoRoomSetStreamsVolume(0.25F);
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetRemoteAudioTrackModifier", {"1", ToText(0.25)}},
                                 {"WebRTC_SetLocalStreamsLocalAudioVolume", {ToText(0.25)}}}));
}

TEST_F(StreamCommandsTest, FeedsAFurtherSinkByTheNameUnderWhichOthersKnowTheStream) {
    FrameCallback sink = [](const std::shared_ptr<VideoFrameBuffer>&) {};
    AddFile();
    Fake().OfferLocalSource(StreamType::Camera, "camera-source");
    const std::string address = ToText(static_cast<const void*>(&sink));
    const std::pair<const char*, const char*> cases[] = {
        {"my-file", "file-source"}, {"me", "camera-source"}, {"b", "b"}, {"", ""}};
    for (const auto& [name, source] : cases) {
        Calls().Clear();
        SDLinterface_RegisterLocalStreamCallback(name, &sink);
        EXPECT_THAT(Fake().CallsOf("MediaManager_RegisterCallback").at(0).arguments,
                    ElementsAre(source, address));
        EXPECT_THAT(Fake().RegisteredSinks(), SizeIs(1));
        SDLinterface_UnregisterLocalStreamCallback(name, &sink);
        EXPECT_THAT(Fake().CallsOf("MediaManager_UnregisterCallback").at(0).arguments,
                    ElementsAre(source, address));
        EXPECT_THAT(Fake().RegisteredSinks(), IsEmpty());
    }
}

TEST_F(StreamCommandsWithoutRoom, TheHostMayListenToTheConnectionsFigures) {
    static int heard;
    heard = 0;
    SDLinterface_SetConnectionStatsCallback([](int, double, int, double, double, double, double roundTripMs) {
        heard += static_cast<int>(roundTripMs);
    });
    Fake().callbacks.connectionStats(1, 2.0, 3, 4.0, 5.0, 6.0, 7.0);
    EXPECT_EQ(heard, 7);
    SDLinterface_SetConnectionStatsCallback(nullptr);
    EXPECT_FALSE(Fake().callbacks.connectionStats.IsSet());
    EXPECT_EQ(Fake().CallsOf("WebRTC_SetConnectionStatsCallback")[1].arguments[0], "empty");
}

TEST_F(StreamCommandsTest, TheOwnCamerasTileTakesTheHostsPlaceAsListener) {
    static bool heard;
    heard = false;
    SDLinterface_SetConnectionStatsCallback(
        [](int, double, int, double, double, double, double) { heard = true; });
    Fake().OfferLocalSource(StreamType::Camera, "camera-source");
    Fake().callbacks.connectionStats(1, 2.0, 3, 4.0, 5.0, 6.0, 7.0);
    EXPECT_FALSE(heard);
    SDLinterface_SetConnectionStatsCallback(
        [](int, double, int, double, double, double, double) { heard = true; });
    Fake().callbacks.connectionStats(1, 2.0, 3, 4.0, 5.0, 6.0, 7.0);
    EXPECT_TRUE(heard);
}

}  // namespace
}  // namespace Corvanta::Testing
