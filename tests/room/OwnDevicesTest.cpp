// The own microphone and camera: what the bar's buttons, the host and other threads make of them, and whether
// buttons and tracks agree.
#include <gtest/gtest.h>

#include <thread>

#include "tests/room/ToolbarTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class OwnDevicesTest : public ToolbarTest {
protected:
    [[nodiscard]] static std::vector<std::string> Reports() {
        std::vector<std::string> codes;
        for (const Call& call : Calls().Of("Diagnostics_Report")) codes.push_back(call.arguments[0]);
        return codes;
    }
    [[nodiscard]] bool IsMicToggled() { return view->GetToolbar().GetMicButton()->IsToggled(); }
    [[nodiscard]] bool IsVideoToggled() { return view->GetToolbar().GetVideoButton()->IsToggled(); }
};

TEST_F(OwnDevicesTest, TheHostSwitchesTheMicrophoneByItsButton) {
    OpenBar();
    view->SetMicEnabled(true);
    EXPECT_FALSE(IsMicToggled());
    EXPECT_TRUE(view->IsMicEnabled());
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_OnMicrophoneChanged", {"true"}}));
    Calls().Clear();
    // It stands so already.
    view->SetMicEnabled(true);
    EXPECT_THAT(HostCalls(), IsEmpty());
    view->SetMicEnabled(false);
    EXPECT_TRUE(IsMicToggled());
    EXPECT_FALSE(view->IsMicEnabled());
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_OnMicrophoneChanged", {"false"}}));
}

TEST_F(OwnDevicesTest, SwitchingAMissingMicrophoneBringsItsButtonBack) {
    OpenBar();
    view->SetMicNone(true);
    ASSERT_TRUE(view->GetToolbar().GetMicButton()->IsInThirdState());
    view->SetMicEnabled(true);
    EXPECT_FALSE(view->GetToolbar().GetMicButton()->IsInThirdState());
    EXPECT_FALSE(IsMicToggled());
}

TEST_F(OwnDevicesTest, TheHostSwitchesTheCameraByItsButton) {
    OpenBar();
    view->SetVideoEnabled(false);
    EXPECT_TRUE(IsVideoToggled());
    EXPECT_FALSE(view->IsVideoEnabled());
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_OnCameraToggled", {"false"}}));
    Calls().Clear();
    view->SetVideoEnabled(false);
    EXPECT_THAT(HostCalls(), IsEmpty());
    view->SetVideoEnabled(true);
    EXPECT_FALSE(IsVideoToggled());
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_OnCameraToggled", {"true"}}));
}

TEST_F(OwnDevicesTest, ACameraThatIsOffShowsNoPictureInItsTile) {
    OpenBar();
    AddCamera(kWhite);
    view->Tick();
    ASSERT_TRUE(TileOf("me")->IsVideoEnabled());
    Press("cam");
    EXPECT_FALSE(TileOf("me")->IsVideoEnabled());
    Press("nocam");
    EXPECT_TRUE(TileOf("me")->IsVideoEnabled());
}

TEST_F(OwnDevicesTest, ACameraThatIsOffIsOffInTheDetachedRoomsMainVideoToo) {
    OpenBar();
    AddCamera(kWhite);
    int wallWindow = 0;
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, 800, 400), 1);
    view->Tick();
    const auto sinks = Fake().RegisteredSinks();
    ASSERT_EQ(sinks.size(), 1U);
    ASSERT_EQ(Fake().Deliver("camera", Plain(kWhite)), 1U);
    ASSERT_TRUE(FlushSink(*sinks[0].second));
    const SDL_Point place{kBarViewWidth / 2, 200};
    EXPECT_TRUE(PixelIs(TickAndRead(), place.x, place.y, kWhite));
    Press("cam");
    EXPECT_FALSE(PixelIs(TickAndRead(), place.x, place.y, kWhite));
}

TEST_F(OwnDevicesTest, AMissingMicrophoneMutesTheCamerasTile) {
    OpenBar();
    AddCamera(kWhite);
    Press("nomic");
    ASSERT_FALSE(TileOf("me")->muted);
    view->SetMicNone(true);
    EXPECT_TRUE(TileOf("me")->muted);
}

TEST_F(OwnDevicesTest, WhoIsMutedByTheRoomSeesItInTheNextTick) {
    OpenBar();
    AddCamera(kWhite);
    Press("nomic");
    ASSERT_TRUE(view->IsMicEnabled());
    Calls().Clear();
    std::thread signalling([] { Fake().FireMutedRemotely(); });
    signalling.join();
    EXPECT_FALSE(view->IsMicEnabled());
    EXPECT_EQ(Calls().Of("WebRTC_SetEnabledLocalAudioTrack"),
              (std::vector<Call>{{"WebRTC_SetEnabledLocalAudioTrack", {"false", "0"}}}));
    view->Tick();
    EXPECT_TRUE(IsMicToggled());
    EXPECT_TRUE(TileOf("me")->muted);
    ASSERT_THAT(HostCalls(), ElementsAre(Call{"Host_OnMicrophoneChanged", {"false"}}));
    EXPECT_EQ(HostCalls()[0].thread, std::this_thread::get_id());
}

// Buttons and tracks

TEST_F(OwnDevicesTest, ReportsExactlyTheButtonThatDisagreesWithItsTrack) {
    OpenBar();
    for (const bool micToggled : {false, true}) {
        for (const bool videoToggled : {false, true}) {
            for (const bool audioOn : {false, true}) {
                for (const bool videoOn : {false, true}) {
                    view->GetToolbar().GetMicButton()->SetToggled(micToggled);
                    view->GetToolbar().GetVideoButton()->SetToggled(videoToggled);
                    Fake().Set([&](FakeResults& results) {
                        results.localAudioEnabled = audioOn;
                        results.localVideoEnabled = videoOn;
                    });
                    Calls().Clear();
                    view->RequestTrackCheck();
                    view->Tick();
                    std::vector<std::string> expected;
                    if (micToggled == audioOn) expected.emplace_back("700");
                    if (videoToggled == videoOn) expected.emplace_back("701");
                    EXPECT_EQ(Reports(), expected) << micToggled << videoToggled << audioOn << videoOn;
                }
            }
        }
    }
}

TEST_F(OwnDevicesTest, ChecksTheTracksOnceForEachRequest) {
    OpenBar();
    Fake().Set([](FakeResults& results) { results.localAudioEnabled = true; });
    view->Tick();
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_EQ(Calls().Count("WebRTC_IsLocalAudioTrackEnabled"), 0U);
    view->RequestTrackCheck();
    view->RequestTrackCheck();
    for (int i = 0; i < 3; ++i) view->Tick();
    EXPECT_THAT(Reports(), ElementsAre("700"));
}

}  // namespace
}  // namespace Corvanta::Room
