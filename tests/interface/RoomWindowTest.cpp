// A room on a host's real window, from its start to its end.
#include <memory>

#include "tests/fake_platform/TestFrames.h"
#include "tests/fake_platform/VirtualDisplay.h"
#include "tests/fake_platform/XWindow.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::IsEmpty;

constexpr int kWidth = 128;
constexpr int kHeight = 72;
constexpr uint32_t kTeal = 0xFF008080;
constexpr uint32_t kBlack = 0xFF000000;
constexpr int kMostTicks = 2000;

class RoomWindowTest : public LibraryTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(EnsureDisplay());
        Sdl().ReplaceForeignWindows(false);
        SDL_setenv("SDL_VIDEODRIVER", "x11", 1);
        SDL_setenv("SDL_FRAMEBUFFER_ACCELERATION", "0", 1);
        host_ = std::make_unique<XWindow>(kWidth, kHeight);
        SDLinterface_SetRoomWindow(host_->Handle(), kWidth, kHeight);
        Start();
    }
    void TearDown() override {
        Calls().Reset();
        SDLinterface_GlobalQuit();
    }

    [[nodiscard]] uint32_t CentreOfWindow() const {
        return host_->ReadPixels()[size_t{kHeight / 2} * kWidth + kWidth / 2];
    }
    // Ticks until the window's centre is the colour; frames are prepared on a thread of their own.
    [[nodiscard]] bool TickUntilCentreIs(uint32_t argb) const {
        for (int tick = 0; tick < kMostTicks; ++tick) {
            SDL_VideoRoomCheckInputAndRender();
            SDL_Delay(1);
            if (CentreOfWindow() == argb) return true;
        }
        return false;
    }
    // Strip and bar are higher than this window.
    static void LeaveMainVideoAlone() {
        SDLinterface_SlideThumbnails(false, false);
        SDLinterface_VideoRoomSetDrawToolEnabled(true);
    }
    static void ShowTeal() {
        LeaveMainVideoAlone();
        Fake().OfferRemoteSource("a");
        SDLinterface_VideoRoomUpdateActiveSpeaker("a");
        Fake().Deliver(
            "a", MakeFrame({.width = 64, .height = 36, .type = VideoFrameBufferType::RGB, .argb = kTeal}));
    }

    std::unique_ptr<XWindow> host_;
};

TEST_F(RoomWindowTest, ShowsAParticipantsPicture) {
    ASSERT_EQ(Enter(), 1);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(CentreOfWindow(), kBlack);
    ShowTeal();
    EXPECT_TRUE(TickUntilCentreIs(kTeal));
}

TEST_F(RoomWindowTest, ShowsTheNextRoomOnTheSameWindow) {
    ASSERT_EQ(Enter(), 1);
    ShowTeal();
    ASSERT_TRUE(TickUntilCentreIs(kTeal));
    ASSERT_EQ(Enter(), 1);
    EXPECT_TRUE(TickUntilCentreIs(kBlack));
    ShowTeal();
    EXPECT_TRUE(TickUntilCentreIs(kTeal));
    SDLinterface_GlobalQuit();
    Start();
    ASSERT_EQ(Enter(), 1);
    ShowTeal();
    EXPECT_TRUE(TickUntilCentreIs(kTeal));
}

TEST_F(RoomWindowTest, ClosesTheConnectionAgainWhenTheHandleNamesNoWindow) {
    SDLinterface_SetRoomWindow(XWindow::BadHandle(), kWidth, kHeight);
    EXPECT_EQ(Enter(), -1);
    EXPECT_EQ(Calls().Count("Connections_CloseConnection"), 1U);
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), -1);
    EXPECT_FALSE(HasView());
    SDLinterface_SetRoomWindow(host_->Handle(), kWidth, kHeight);
    EXPECT_EQ(Enter(), 1);
}

TEST_F(RoomWindowTest, GoesOnAndEndsWhenTheHostDestroysItsWindowFirst) {
    ASSERT_EQ(Enter(), 1);
    ShowTeal();
    ASSERT_TRUE(TickUntilCentreIs(kTeal));
    host_->Destroy();
    for (int tick = 0; tick < 5; ++tick) {
        SDL_VideoRoomCheckInputAndRender();
        SDLinterface_VideoRoomResize(kWidth + tick, kHeight);
    }
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(HasView());
    EXPECT_EQ(Calls().Count("SDL_Quit"), 1U);
}

TEST_F(RoomWindowTest, LeavesTheHostsWindowWhenItEnds) {
    ASSERT_EQ(Enter(), 1);
    SDL_VideoRoomCheckInputAndRender();
    SDLinterface_GlobalQuit();
    EXPECT_EQ(host_->GetSize(), (XWindow::Size{kWidth, kHeight}));
    EXPECT_THAT(Fake().LogsOf(4), IsEmpty());
}

TEST_F(RoomWindowTest, PlaysARecordingOnTheHostsWindow) {
    ASSERT_EQ(SDLinterface_RecordingViewInit(host_->Handle(), kWidth, kHeight, nullptr), 1);
    ASSERT_EQ(SDLinterface_ConnectToRecording(nullptr, nullptr, "title", 1000.0, nullptr), 2);
    LeaveMainVideoAlone();
    Fake().OfferRemoteSource("a");
    Fake().RecordingCallbacks().activeStreams({"a"});
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    Fake().Deliver("a",
                   MakeFrame({.width = 64, .height = 36, .type = VideoFrameBufferType::RGB, .argb = kTeal}));
    EXPECT_TRUE(TickUntilCentreIs(kTeal));
}

}  // namespace
}  // namespace Corvanta::Testing
