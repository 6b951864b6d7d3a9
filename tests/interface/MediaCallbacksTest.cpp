// How the media layers reach the room.
#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"
#include "tests/video/Eventually.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class MediaWithoutViewTest : public StartedTest {};
class MediaTest : public RoomTest {
protected:
    static constexpr const char* kCameraSource = "camera-source";

    static FrameCallback* OfferCamera() { return Fake().OfferLocalSource(StreamType::Camera, kCameraSource); }
};

TEST_F(MediaWithoutViewTest, HasNoSinks) {
    EXPECT_EQ(SDLinterface_VideoRoomAddRemoteVideoSource("a"), nullptr);
    EXPECT_EQ(SDLinterface_VideoRoomAddLocalVideoSource(StreamType::Camera, "a"), nullptr);
    EXPECT_EQ(SDLinterface_VideoRoomAddStream(StreamType::Camera, StreamSourceType::Local, "a"), nullptr);
    EXPECT_EQ(SDLinterface_VideoRoomAddStream(StreamType::Camera, StreamSourceType::Remote, "a"), nullptr);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(MediaWithoutViewTest, DoesNothing) {
    Fake().callbacks.videoFrameTracksAdded("a");
    Fake().callbacks.removeRemoteVideoSource("a");
    Fake().callbacks.removeLocalVideoSource("a");
    Fake().callbacks.connectionStatusUpdate("a", true);
    Fake().callbacks.videoFilePlaybackStatusUpdate("a", true);
    Fake().callbacks.windowCapturedClosed();
    EXPECT_THAT(Fake().callbacks.remoteDataChannelCallbackList(), IsEmpty());
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
    EXPECT_THAT(Fake().Logs(), IsEmpty());
}

TEST_F(MediaTest, GivesARemoteStreamASinkOfItsOwn) {
    FrameCallback* const sink = Fake().OfferRemoteSource("a");
    ASSERT_NE(sink, nullptr);
    EXPECT_TRUE(*sink);
    (*sink)(MakeFrame());
    (*sink)(nullptr);
    EXPECT_THAT(Fake().LogsOf(2), ElementsAre("Adding remote video frame: stream ID = a"));
}

TEST_F(MediaTest, GivesANewSinkToAStreamThatItKnows) {
    FrameCallback* const first = Fake().OfferRemoteSource("a");
    FrameCallback* const second = Fake().OfferRemoteSource("a");
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_THAT(Interface::CurrentView()->GetThumbnails().GetAllTiles(), SizeIs(1));
}

TEST_F(MediaTest, KnowsALocalStreamByItsUsersIdAndNotByItsSource) {
    ASSERT_NE(OfferCamera(), nullptr);
    const auto tiles = Interface::CurrentView()->GetThumbnails().GetAllTiles();
    ASSERT_THAT(tiles, SizeIs(1));
    EXPECT_EQ(tiles[0]->GetStreamId(), "me");
    for (const Call& call : Fake().CallsOf("Connections_GetLocalUserStreamID")) {
        EXPECT_THAT(call.arguments, ElementsAre("0"));
    }
    // The adapter's own question is the last.
    EXPECT_EQ(Calls().OfThisThread().back().name, "Connections_GetLocalUserStreamID");
}

TEST_F(MediaTest, AsksForTheUsersIdOfTheStreamsType) {
    Fake().Set([](FakeResults& results) { results.localUserStreamIds[StreamType::File] = "my-file"; });
    ASSERT_NE(Fake().OfferLocalSource(StreamType::File, "file-source"), nullptr);
    EXPECT_THAT(Fake().CallsOf("Connections_GetLocalUserStreamID").back().arguments, ElementsAre("4"));
}

TEST_F(MediaTest, TellsLocalFromRemoteByTheSourceType) {
    Fake().Adopt("camera-source", SDLinterface_VideoRoomAddStream(StreamType::Camera, StreamSourceType::Local,
                                                                  "camera-source"));
    Fake().Adopt("b", SDLinterface_VideoRoomAddStream(StreamType::Camera, StreamSourceType::Remote, "b"));
    Fake().Adopt("c",
                 SDLinterface_VideoRoomAddStream(StreamType::Camera, static_cast<StreamSourceType>(77), "c"));
    const auto tiles = Interface::CurrentView()->GetThumbnails().GetAllTiles();
    ASSERT_THAT(tiles, SizeIs(3));
    EXPECT_EQ(tiles[0]->GetOrigin(), Video::TileOrigin::Local);
    EXPECT_EQ(tiles[1]->GetOrigin(), Video::TileOrigin::Remote);
    EXPECT_EQ(tiles[2]->GetOrigin(), Video::TileOrigin::Remote);
}

TEST_F(MediaTest, ForwardsThatATrackCame) {
    Fake().OfferRemoteSource("a");
    Calls().Clear();
    Fake().callbacks.videoFrameTracksAdded("a");
    // The room starts with its speaker off.
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetEnabledRemoteAudioTrack").at(0).arguments,
                ElementsAre("a", "false"));
}

TEST_F(MediaTest, ForgetsStreamsThatGo) {
    Fake().OfferRemoteSource("a");
    OfferCamera();
    Fake().RemoveRemoteSource("a");
    EXPECT_THAT(Interface::CurrentView()->GetThumbnails().GetAllTiles(), SizeIs(1));
    Fake().RemoveLocalSource(kCameraSource);
    EXPECT_THAT(Interface::CurrentView()->GetThumbnails().GetAllTiles(), IsEmpty());
    Fake().RemoveRemoteSource("a");
    Fake().RemoveLocalSource(kCameraSource);
}

TEST_F(MediaTest, DropsFramesOfAStreamThatHasGone) {
    FrameCallback* const sink = Fake().OfferRemoteSource("a");
    Fake().RemoveRemoteSource("a");
    (*sink)(MakeFrame());
    SDL_VideoRoomCheckInputAndRender();
}

TEST_F(MediaTest, HasNoSinkOnceTheRoomStopped) {
    roomActive.store(false);
    EXPECT_EQ(SDLinterface_VideoRoomAddRemoteVideoSource("a"), nullptr);
    EXPECT_EQ(SDLinterface_VideoRoomAddLocalVideoSource(StreamType::Camera, "a"), nullptr);
}

TEST_F(MediaTest, RestartsALostConnectionOfAParticipantAtOnce) {
    Fake().Set([](FakeResults& results) {
        results.localVideoEnabled = true;
        results.localAudioEnabled = false;
    });
    Fake().OfferRemoteSource("a");
    Fake().callbacks.connectionStatusUpdate("a", true);
    EXPECT_THAT(Fake().CallsOf("Connections_RestartPeerConnection").at(0).arguments,
                ElementsAre("a", "true", "false", "true"));
    EXPECT_THAT(Fake().CallsOf("WebRTC_IsLocalVideoTrackEnabled").at(0).arguments, ElementsAre("0"));
    EXPECT_THAT(Fake().CallsOf("WebRTC_IsLocalAudioTrackEnabled").at(0).arguments, ElementsAre("0"));
    EXPECT_EQ(Calls().Count("Connections_RenegotiateOutboundPeerConnection"), 0U);
}

TEST_F(MediaTest, RestartsAConnectionWithoutATileToo) {
    Fake().callbacks.connectionStatusUpdate("unknown", true);
    EXPECT_EQ(Calls().Count("Connections_RestartPeerConnection"), 1U);
}

TEST_F(MediaTest, OnlyNotesAConnectionThatCameBack) {
    Fake().OfferRemoteSource("a");
    Fake().callbacks.connectionStatusUpdate("a", true);
    Calls().Clear();
    Fake().callbacks.connectionStatusUpdate("a", false);
    Fake().callbacks.connectionStatusUpdate("me", false);
    EXPECT_EQ(Calls().Count("Connections_RestartPeerConnection"), 0U);
    EXPECT_EQ(Calls().Count("Connections_RenegotiateOutboundPeerConnection"), 0U);
    EXPECT_FALSE(Interface::CurrentView()->GetThumbnails().GetAllTiles()[0]->lostConnection);
}

TEST_F(MediaTest, RestartsNothingOnceTheRoomStopped) {
    roomActive.store(false);
    Fake().callbacks.connectionStatusUpdate("a", true);
    Fake().callbacks.connectionStatusUpdate("me", true);
    EXPECT_EQ(Calls().Count("Connections_RestartPeerConnection"), 0U);
    EXPECT_EQ(Calls().Count("Connections_RenegotiateOutboundPeerConnection"), 0U);
}

TEST_F(MediaTest, NegotiatesTheLocalUsersOwnConnectionAnew) {
    OfferCamera();
    SDLinterface_VideoRoomSetMicEnabled(true);
    SDLinterface_VideoRoomSetVideoEnabled(false);
    Calls().Clear();
    Fake().callbacks.connectionStatusUpdate("me", true);
    const Names steps = {"Connections_RenegotiateOutboundPeerConnection", "MediaManager_RegisterCallback"};
    EXPECT_EQ(Calls().NamesAmong(steps), steps);
    EXPECT_THAT(Fake().CallsOf("Connections_RenegotiateOutboundPeerConnection")[0].arguments,
                ElementsAre("true", "false", "me"));
    ASSERT_THAT(Fake().RegisteredSinks(), SizeIs(1));
    EXPECT_EQ(Fake().RegisteredSinks()[0].first, kCameraSource);
    EXPECT_EQ(Calls().Count("Connections_RestartPeerConnection"), 0U);
}

TEST_F(MediaTest, NegotiatesWithoutACameraToo) {
    Fake().callbacks.connectionStatusUpdate("me", true);
    EXPECT_EQ(Calls().Count("Connections_RenegotiateOutboundPeerConnection"), 1U);
    EXPECT_THAT(Fake().RegisteredSinks(), IsEmpty());
}

TEST_F(MediaTest, LetsTheMediaManagerCallALentSinkWhenItsTileHasGone) {
    OfferCamera();
    Fake().callbacks.connectionStatusUpdate("me", true);
    const std::weak_ptr<FrameCallback> sink = Interface::CurrentView()->GetLocalCameraSink();
    Fake().RemoveLocalSource(kCameraSource);
    // One owner is the function that the media manager was offered. The tile goes with the tick that finds
    // its worker at rest.
    EXPECT_TRUE(Eventually([&] {
        SDL_VideoRoomCheckInputAndRender();
        return sink.use_count() == 2;
    }));
    EXPECT_EQ(Fake().Deliver(kCameraSource, MakeFrame()), 1U);
    SDLinterface_GlobalQuit();
    EXPECT_EQ(sink.use_count(), 1);
}

TEST_F(MediaTest, LetsTheMediaManagerCallALentSinkWhenItsRoomWasReplaced) {
    OfferCamera();
    Fake().callbacks.connectionStatusUpdate("me", true);
    const std::weak_ptr<FrameCallback> sink = Interface::CurrentView()->GetLocalCameraSink();
    ASSERT_EQ(Enter(), 1);
    EXPECT_EQ(sink.use_count(), 2);
    EXPECT_GE(Fake().Deliver(kCameraSource, MakeFrame()), 1U);
}

TEST_F(MediaTest, GivesAMessageToTheRoom) {
    Fake().OfferRemoteSource("a");
    EXPECT_THAT(Fake().DeliverMessage("a", R"({"type":"video-metadata-message","message":{"sourceData":)"
                                           R"({"streamId":"a","frameRate":25,"sourceName":"Camera"}}})"),
                IsEmpty());
    const auto data = Interface::CurrentView()->GetThumbnails().GetAllTiles()[0]->GetSourceData();
    ASSERT_TRUE(data.has_value());
    EXPECT_EQ(data->sourceName, "Camera");
}

TEST_F(MediaTest, TakesAnyMessage) {
    for (const char* text :
         {"", "{", "[]", "null", R"({"type":1})", R"({"type":"video-metadata-message"})", "\xff\xfe%s%n"}) {
        EXPECT_LE(Fake().DeliverMessage("a", text).size(), 1U);
    }
}

TEST_F(MediaTest, GivesTheAdaptationEveryMessageAsItCame) {
    ASSERT_NE(OfferCamera(), nullptr);
    const Names texts = {"",
                         "{",
                         R"({"type":"video-metadata-message",)",
                         "[]",
                         "7",
                         "null",
                         R"({"type":"of-another-program","message":{"a":1}})",
                         R"({"type":7})",
                         R"({"message":{}})",
                         (R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":"me",)"
                          R"("frameRate":"30","sourceName":""}}})"),
                         "\xff\xfe%s%n"};
    // What raises is the drawings' handler, at what is no message at all.
    for (const std::string& text : texts) EXPECT_LE(Fake().DeliverMessage("sender", text).size(), 1U);
    Names received;
    for (const Call& call : Fake().CallsOf("AdaptiveVideoSourceManager_OnDataChannelMessage")) {
        EXPECT_EQ(call.arguments.at(0), "sender");
        received.push_back(call.arguments.at(1));
    }
    EXPECT_EQ(received, texts);
    Calls().Clear();
    const auto handlers = SDLinterface_VideoRoomGetRemoteDataChannelCallbacks();
    ASSERT_THAT(handlers, SizeIs(2));
    handlers[1]({"other", "{"});
    ASSERT_EQ(Calls().Count("AdaptiveVideoSourceManager_OnDataChannelMessage"), 1U);
    EXPECT_THAT(Fake().CallsOf("AdaptiveVideoSourceManager_OnDataChannelMessage")[0].arguments,
                ElementsAre("other", "{"));
}

TEST_F(MediaTest, DoesNothingWhenTheSharedWindowCloses) {
    Fake().callbacks.windowCapturedClosed();
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(MediaTest, TellsTheHostWhetherASharedFilePlays) {
    static std::vector<bool> told;
    told.clear();
    SDLinterface_SetNativeStreamPlaybackStatusCallback([](bool playing) { told.push_back(playing); });
    Fake().callbacks.videoFilePlaybackStatusUpdate("any", true);
    Fake().callbacks.videoFilePlaybackStatusUpdate("other", false);
    EXPECT_THAT(told, ElementsAre(true, false));
    SDLinterface_SetNativeStreamPlaybackStatusCallback(nullptr);
    Fake().callbacks.videoFilePlaybackStatusUpdate("any", true);
    EXPECT_THAT(told, SizeIs(2));
}

TEST_F(MediaWithoutViewTest, SubscribesToPartsOfAStream) {
    SDLinterface_ConfigureStream("a", true, false, true);
    SDLinterface_ConfigureStream("b", false, true, false);
    SDLinterface_ConfigureStream("c", false, false, true);
    const auto calls = Fake().CallsOf("Connections_ConfigureStream");
    ASSERT_THAT(calls, SizeIs(3));
    EXPECT_THAT(calls[0].arguments, ElementsAre("a", "0=false 1=true 2=true"));
    EXPECT_THAT(calls[1].arguments, ElementsAre("b", "0=true 1=false 2=false"));
    EXPECT_THAT(calls[2].arguments, ElementsAre("c", "0=false 1=false 2=true"));
}

}  // namespace
}  // namespace Corvanta::Testing
