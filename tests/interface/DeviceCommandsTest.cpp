// Changes of camera, microphone and speaker.
#include <chrono>
#include <string>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class DeviceCommandsWithoutRoom : public StartedTest {};

class DeviceCommandsTest : public RoomTest {
protected:
    static void OfferCamera() {
        Fake().OfferLocalSource(StreamType::Camera, "camera");
        Calls().Clear();
    }
    static void Choose(int index, const std::string& runningSource) {
        Fake().Set([&](FakeResults& results) {
            results.videoCaptureIndex = index;
            if (!runningSource.empty()) results.runningLocalSources[index] = runningSource;
        });
    }
    static bool Renegotiate() {
        return SDLinterface_VideoRoomTriggerDeviceRenegociation(nullptr, nullptr, nullptr, nullptr);
    }
    static void SetNone(bool mic, bool speaker) {
        Fake().Set([&](FakeResults& results) {
            results.micIsNone = mic;
            results.speakerIsNone = speaker;
        });
    }
    // The camera's is the first tile.
    static const Video::VideoFrame& CameraTile() {
        return *Interface::CurrentView()->GetThumbnails().GetAllTiles().at(0);
    }
};

TEST_F(DeviceCommandsWithoutRoom, AnswersNoAndDoesNothing) {
    EXPECT_FALSE(SDLinterface_VideoRoomAudioDeviceUpdate(false));
    EXPECT_FALSE(SDLinterface_VideoRoomAudioDeviceUpdate(true));
    EXPECT_FALSE(SDLinterface_VideoRoomTriggerDeviceRenegociation(nullptr, nullptr, nullptr, nullptr));
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(DeviceCommandsWithoutRoom, SetsTheCamerasPropertiesAllTheSame) {
    Fake().Set([](FakeResults& results) { results.targetBitrate = 1'234'567; });
    EXPECT_TRUE(SDLinterface_SetLocalCameraProperties(1280, 720, 30, 2'000'000));
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_SetLocalCameraProperties", {"1280", "720", "30", "2000000"}},
                                 {"WebRTC_GetLocalCameraTargetBitrate", {}},
                                 {"Connections_ConfigureOutboundBitrate", {"1234567"}}}));
}

TEST_F(DeviceCommandsTest, StartsTheSoundAgainAndLooksWhatDevicesThereAre) {
    OfferCamera();
    SetNone(true, true);
    Fake().OfferRemoteSource("a");
    SDLinterface_VideoRoomSetMicEnabled(true);
    Calls().Clear();
    EXPECT_TRUE(SDLinterface_VideoRoomAudioDeviceUpdate(false));
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_ADMStart", {}},
                                 {"WebRTC_MicIsNone", {}},
                                 {"WebRTC_SpeakerIsNone", {}},
                                 {"WebRTC_SetEnabledRemoteAudioTrack", {"a", "false"}}}));
    EXPECT_TRUE(CameraTile().muted);
}

TEST_F(DeviceCommandsTest, NegotiatesAnewStepByStep) {
    OfferCamera();
    SDLinterface_VideoRoomSetMicEnabled(true);
    SDLinterface_VideoRoomSetVideoEnabled(false);
    Choose(3, "third");
    Calls().Clear();
    int first = 0;
    int second = 0;
    EXPECT_TRUE(SDLinterface_VideoRoomTriggerDeviceRenegociation(&first, &second, nullptr, &first));
    EXPECT_THAT(
        Fake().CallsOf("WebRTC_GetVideoCaptureIndex").at(0).arguments,
        ElementsAre(ToText(static_cast<const void*>(&first)), ToText(static_cast<const void*>(&second)),
                    "null", ToText(static_cast<const void*>(&first))));
    const Names steps = {"WebRTC_GetVideoCaptureIndex",
                         "MediaManager_StopLocalVideoSource",
                         "MediaManager_IsLocalVideoSourceRunning",
                         "MediaManager_StopLocalVideoSource",
                         "Connections_RenegotiateOutboundPeerConnection",
                         "MediaManager_IsLocalVideoSourceRunning",
                         "MediaManager_UnregisterCallback",
                         "MediaManager_RegisterCallback",
                         "WebRTC_MicIsNone",
                         "WebRTC_SpeakerIsNone"};
    EXPECT_EQ(Calls().NamesAmong(steps), steps);
    const auto stopped = Fake().CallsOf("MediaManager_StopLocalVideoSource");
    EXPECT_EQ(stopped[0].arguments[0], "camera");
    EXPECT_EQ(stopped[1].arguments[0], "third");
    EXPECT_THAT(Fake().CallsOf("Connections_RenegotiateOutboundPeerConnection")[0].arguments,
                ElementsAre("true", "false", "me"));
    EXPECT_EQ(Fake().CallsOf("MediaManager_UnregisterCallback")[0].arguments[0], "camera");
    EXPECT_EQ(Fake().CallsOf("MediaManager_RegisterCallback")[0].arguments[0], "third");
    EXPECT_EQ(Interface::CurrentView()->GetCaptureIndex(), 3);
    EXPECT_EQ(Interface::CurrentView()->GetLocalStreamId(), "third");
    EXPECT_EQ(Calls().Count("WebRTC_SetEnabledLocalVideoTrack"), 0U);
    EXPECT_EQ(Calls().Count("WebRTC_ADMStart"), 0U);
}

TEST_F(DeviceCommandsTest, StopsNothingElseWhereNothingElseRuns) {
    OfferCamera();
    Choose(3, "");
    EXPECT_TRUE(Renegotiate());
    EXPECT_THAT(Fake().CallsOf("MediaManager_StopLocalVideoSource"), SizeIs(1));
    EXPECT_EQ(Interface::CurrentView()->GetLocalStreamId(), "");
}

TEST_F(DeviceCommandsTest, EndsTheTrackFirstWhenTheCameraGoes) {
    OfferCamera();
    Choose(2, "second");
    ASSERT_TRUE(Renegotiate());
    Choose(-1, "");
    Calls().Clear();
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(Renegotiate());
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds{100});
    const Names steps = {"WebRTC_SetEnabledLocalVideoTrack", "MediaManager_StopLocalVideoSource"};
    EXPECT_EQ(Calls().NamesAmong(steps), steps);
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetEnabledLocalVideoTrack")[0].arguments, ElementsAre("false", "0"));
    EXPECT_EQ(Interface::CurrentView()->GetCaptureIndex(), -1);
    Calls().Clear();
    // It is gone already.
    EXPECT_TRUE(Renegotiate());
    EXPECT_EQ(Calls().Count("WebRTC_SetEnabledLocalVideoTrack"), 0U);
}

TEST_F(DeviceCommandsTest, NegotiatesWithoutACameraToo) {
    Choose(1, "first");
    Calls().Clear();
    EXPECT_TRUE(Renegotiate());
    EXPECT_EQ(Calls().Count("Connections_RenegotiateOutboundPeerConnection"), 1U);
    EXPECT_EQ(Calls().Count("MediaManager_RegisterCallback"), 0U);
    EXPECT_EQ(Interface::CurrentView()->GetCaptureIndex(), -1);
}

TEST_F(DeviceCommandsTest, NegotiatesWithSoundDevicesWhenAskedTo) {
    OfferCamera();
    Choose(1, "first");
    EXPECT_TRUE(SDLinterface_VideoRoomAudioDeviceUpdate(true));
    EXPECT_THAT(Fake().CallsOf("WebRTC_GetVideoCaptureIndex").at(0).arguments,
                ElementsAre("null", "null", "null", "null"));
    EXPECT_EQ(Calls().Count("WebRTC_ADMStart"), 0U);
    EXPECT_EQ(Interface::CurrentView()->GetLocalStreamId(), "first");
}

TEST_F(DeviceCommandsTest, LendsTheCamerasSinkBeyondItsTile) {
    OfferCamera();
    Choose(1, "first");
    ASSERT_TRUE(Renegotiate());
    const std::weak_ptr<FrameCallback> sink = Interface::CurrentView()->GetLocalCameraSink();
    Fake().RemoveLocalSource("camera");
    for (int i = 0; i < 3; ++i) SDL_VideoRoomCheckInputAndRender();
    EXPECT_FALSE(sink.expired());
    EXPECT_EQ(Fake().Deliver("first", MakeFrame()), 1U);
}

}  // namespace
}  // namespace Corvanta::Testing
