// The room on a real window of another owner.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "room/VideoRoomView.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/fake_platform/VirtualDisplay.h"
#include "tests/fake_platform/XWindow.h"
#include "tests/video/FlushSink.h"
#include "ui/RoomActive.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

class VideoRoomViewWindowTest : public FakePlatformTest {
protected:
    VideoRoomViewWindowTest() {
        Sdl().Reset();
        EXPECT_TRUE(EnsureDisplay());
        SDL_SetHint(SDL_HINT_VIDEODRIVER, "x11");
        SDL_SetHint(SDL_HINT_RENDER_DRIVER, "software");
        SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
        EXPECT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
        window.emplace(320, 240);
        view = std::make_unique<VideoRoomView>(0, HostCallbacks{});
        // The main video alone.
        view->GetThumbnails().SetShown(false);
    }
    ~VideoRoomViewWindowTest() override {
        view.reset();
        window.reset();
        SDL_Quit();
        roomActive.store(false);
    }

    [[nodiscard]] bool ShowCamera(uint32_t argb, int width, int height) {
        const auto sink = view->AddLocalVideoSource(StreamType::Camera, "camera");
        if (sink == nullptr) return false;
        (*sink)(MakeFrame({.width = width,
                           .height = height,
                           .type = VideoFrameBufferType::RGB,
                           .colorSpace = kSrgb,
                           .argb = argb}));
        return FlushSink(*sink);
    }
    // Ticks until the window shows that pixel: what is presented reaches the display on its own time.
    [[nodiscard]] bool Shows(int x, int y, uint32_t argb) {
        return Eventually([&] {
            view->Tick();
            const auto size = window->GetSize();
            const std::vector<uint32_t> pixels = window->ReadPixels();
            return !pixels.empty() && pixels[static_cast<size_t>(y) * static_cast<size_t>(size.width) +
                                             static_cast<size_t>(x)] == argb;
        });
    }

    std::optional<XWindow> window;
    std::unique_ptr<VideoRoomView> view;
};

TEST_F(VideoRoomViewWindowTest, ShowsTheMainVideoInTheHostsWindow) {
    ASSERT_EQ(view->Init(window->Handle(), 320, 240), 1);
    ASSERT_TRUE(ShowCamera(0xFFFF0000, 32, 12));
    EXPECT_TRUE(Shows(160, 120, 0xFFFF0000));
    EXPECT_TRUE(Shows(160, 10, 0xFF000000));
    EXPECT_TRUE(Shows(160, 230, 0xFF000000));
}

TEST_F(VideoRoomViewWindowTest, FollowsTheHostsResize) {
    ASSERT_EQ(view->Init(window->Handle(), 320, 240), 1);
    ASSERT_TRUE(ShowCamera(0xFFFF0000, 32, 24));
    ASSERT_TRUE(Shows(160, 120, 0xFFFF0000));
    window->Resize(200, 400);
    view->Resize(200, 400);
    EXPECT_TRUE(Shows(100, 200, 0xFFFF0000));
    EXPECT_TRUE(Shows(100, 20, 0xFF000000));
    EXPECT_EQ(window->GetSize(), (XWindow::Size{200, 400}));
}

TEST_F(VideoRoomViewWindowTest, RefusesAHandleThatNamesNoWindow) {
    EXPECT_EQ(view->Init(XWindow::BadHandle(), 320, 240), -1);
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
    EXPECT_EQ(view->Init(window->Handle(), 320, 240), 1);
}

TEST_F(VideoRoomViewWindowTest, LeavesTheHostsWindowInItsPlaceWhenTheRoomEnds) {
    ASSERT_EQ(view->Init(window->Handle(), 320, 240), 1);
    view->Tick();
    view->Shutdown();
    EXPECT_EQ(window->GetSize(), (XWindow::Size{320, 240}));
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
}

TEST_F(VideoRoomViewWindowTest, StopsDrawingWithOpenGlOnceItsWindowIsGone) {
    SDL_SetHint(SDL_HINT_RENDER_DRIVER, "opengl");
    ASSERT_EQ(view->Init(window->Handle(), 320, 240), 1);
    Calls().Clear();
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
    window->Destroy();
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
    view->Shutdown();
}

}  // namespace
}  // namespace Corvanta::Room
