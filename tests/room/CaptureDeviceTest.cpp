// The own camera's tile follows the capture device.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/room/RoomViewTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

class CaptureDeviceTest : public RoomViewTest {
protected:
    CaptureDeviceTest() { Open(); }

    static void Run(int index, const std::string& source) {
        Fake().Set([&](FakeResults& results) { results.runningLocalSources[index] = source; });
    }
    // "register" or "unregister" and the source, in their order; of the camera's own sink alone.
    [[nodiscard]] std::vector<std::string> Steps() {
        const std::string sink = ToText(static_cast<const void*>(view->GetLocalCameraSink().get()));
        std::vector<std::string> steps;
        for (const Call& call : Calls().OfThisThread()) {
            const bool on = call.name == "MediaManager_RegisterCallback";
            if (!on && call.name != "MediaManager_UnregisterCallback") continue;
            if (call.arguments[1] != sink) continue;
            std::string step = on ? "register " : "unregister ";
            steps.push_back(step += call.arguments[0]);
        }
        return steps;
    }
};

using Strings = std::vector<std::string>;

TEST_F(CaptureDeviceTest, WithoutACameraNothingHappens) {
    Run(2, "second");
    view->OnCaptureChanged(2);
    EXPECT_TRUE(Calls().OfThisThread().empty());
    EXPECT_EQ(view->GetCaptureIndex(), -1);
    EXPECT_EQ(view->GetLocalStreamId(), "");
}

TEST_F(CaptureDeviceTest, TheTileMovesToTheSourceThatRuns) {
    AddCamera(kWhite);
    Run(2, "second");
    view->OnCaptureChanged(2);
    EXPECT_EQ(view->GetCaptureIndex(), 2);
    EXPECT_EQ(view->GetLocalStreamId(), "second");
    EXPECT_EQ(view->ResolveMediaSourceId("me"), "second");
    EXPECT_EQ(Steps(), (Strings{"unregister camera", "register second"}));
    ASSERT_EQ(Fake().Deliver("second", Plain(0xFFFF0000)), 1U);
    ASSERT_TRUE(FlushSink(*view->GetLocalCameraSink()));
    EXPECT_EQ(ShownColor(), 0xFFFF0000);
}

TEST_F(CaptureDeviceTest, TheSameSourceIsOnlyJoinedAgain) {
    AddCamera(kWhite);
    Run(0, "camera");
    view->OnCaptureChanged(0);
    EXPECT_EQ(Steps(), (Strings{"register camera"}));
    EXPECT_EQ(view->GetLocalStreamId(), "camera");
}

TEST_F(CaptureDeviceTest, WithoutASourceTheTileWaits) {
    AddCamera(kWhite);
    view->OnCaptureChanged(-1);
    EXPECT_EQ(view->GetCaptureIndex(), -1);
    EXPECT_EQ(view->GetLocalStreamId(), "");
    EXPECT_EQ(Steps(), (Strings{"unregister camera"}));
    Run(1, "back");
    view->OnCaptureChanged(1);
    EXPECT_EQ(view->GetLocalStreamId(), "back");
    EXPECT_EQ(Steps().back(), "register back");
    EXPECT_NE(TileOf("me"), nullptr);
}

TEST_F(CaptureDeviceTest, TheCamerasButtonSaysThatThereIsNoDevice) {
    view->BuildControls();
    AddCamera(kWhite);
    const UI::ToggleButton& button = *view->GetToolbar().GetVideoButton();
    ASSERT_FALSE(button.IsInThirdState());
    for (int i = 0; i < 2; ++i) {
        view->OnCaptureChanged(-1);
        EXPECT_TRUE(button.IsInThirdState());
        view->OnCaptureChanged(-7);
        EXPECT_TRUE(button.IsInThirdState());
        // A good device, though its source does not run yet.
        view->OnCaptureChanged(0);
        EXPECT_FALSE(button.IsInThirdState());
        EXPECT_FALSE(button.IsToggled()) << "what the user chose stays";
    }
    EXPECT_EQ(Calls().Count("Host_OnCameraToggled"), 0U);
}

TEST_F(CaptureDeviceTest, TheCamerasButtonStaysWithoutACamera) {
    view->BuildControls();
    view->OnCaptureChanged(-1);
    EXPECT_FALSE(view->GetToolbar().GetVideoButton()->IsInThirdState());
}

TEST_F(CaptureDeviceTest, AChosenSecondTileOfTheCameraOutlivesTheDevice) {
    int detachedWindow = 0;
    AddCamera(kWhite);
    AddRemote("one", kWhite);
    ASSERT_EQ(view->CreateDetachedView(&detachedWindow, 400, 200), 1);
    view->OnTileClicked(TileOf("me"), false);
    view->SetActiveSpeaker("one");
    view->Tick();
    const auto before = Fake().RegisteredSinks();
    ASSERT_EQ(before.size(), 1U);
    view->OnCaptureChanged(-1);
    EXPECT_EQ(Fake().Deliver("camera", Plain(kWhite)), 0U);
    for (const auto& [source, sink] : Fake().RegisteredSinks()) EXPECT_NE(sink, before[0].second);
    Calls().Clear();
    view->Tick();
    const auto main = Calls().Of("AdaptiveVideoSourceManager_SetMainStream");
    ASSERT_EQ(main.size(), 1U);
    EXPECT_EQ(main[0].arguments[0], "me") << "it stays the user's choice";
    Run(1, "back");
    view->OnCaptureChanged(1);
    view->Tick();
    ASSERT_EQ(Fake().RegisteredSinks().size(), 2U);
    for (const auto& [source, sink] : Fake().RegisteredSinks()) EXPECT_EQ(source, "back");
    view->LeaveDetachedLayout();
    ASSERT_EQ(Fake().RegisteredSinks().size(), 1U);
    EXPECT_EQ(Fake().RegisteredSinks()[0].second, view->GetLocalCameraSink().get());
}

TEST_F(CaptureDeviceTest, AChosenSecondTileOfTheCameraIsMadeAnew) {
    int detachedWindow = 0;
    AddCamera(kWhite);
    ASSERT_EQ(view->CreateDetachedView(&detachedWindow, 400, 200), 1);
    view->OnTileClicked(TileOf("me"), false);
    view->Tick();
    const auto before = Fake().RegisteredSinks();
    ASSERT_EQ(before.size(), 1U);
    EXPECT_EQ(before[0].first, "camera");
    Run(2, "second");
    view->OnCaptureChanged(2);
    // The camera's own, and the new second tile's.
    const auto after = Fake().RegisteredSinks();
    ASSERT_EQ(after.size(), 2U);
    for (const auto& [source, sink] : after) {
        EXPECT_EQ(source, "second");
        EXPECT_NE(sink, before[0].second);
    }
    view->Tick();
    EXPECT_EQ(Fake().RegisteredSinks(), after) << "it stays the user's choice";
}

TEST_F(CaptureDeviceTest, ASecondTileOfTheCameraThatNobodyChoseComesWithTheNextDrawing) {
    int detachedWindow = 0;
    AddCamera(kWhite);
    ASSERT_EQ(view->CreateDetachedView(&detachedWindow, 400, 200), 1);
    view->Tick();
    ASSERT_EQ(Fake().RegisteredSinks().size(), 1U);
    Run(2, "second");
    view->OnCaptureChanged(2);
    EXPECT_EQ(Fake().RegisteredSinks().size(), 1U);
    view->Tick();
    ASSERT_EQ(Fake().RegisteredSinks().size(), 2U);
    for (const auto& [source, sink] : Fake().RegisteredSinks()) EXPECT_EQ(source, "second");
}

TEST_F(CaptureDeviceTest, AnotherStreamsSecondTileStays) {
    int detachedWindow = 0;
    AddCamera(kWhite);
    AddRemote("one", kWhite);
    ASSERT_EQ(view->CreateDetachedView(&detachedWindow, 400, 200), 1);
    view->OnTileClicked(TileOf("one"), false);
    const auto before = Fake().RegisteredSinks();
    ASSERT_EQ(before.size(), 1U);
    view->OnCaptureChanged(-1);
    EXPECT_EQ(Fake().RegisteredSinks(), before);
}

}  // namespace
}  // namespace Corvanta::Room
