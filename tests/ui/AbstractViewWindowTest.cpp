// Views on real windows of a real display, as a host makes them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/fake_platform/VirtualDisplay.h"
#include "tests/fake_platform/XWindow.h"
#include "tests/ui/TestView.h"

namespace Corvanta::UI {
namespace {

using Testing::Fake;
using Testing::Sdl;
using Testing::TestView;
using Testing::XWindow;

constexpr uint32_t kTeal = 0xFF008080;

class AbstractViewWindowTest : public Testing::FakePlatformTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(Testing::EnsureDisplay());
        Sdl().Reset();
        SDL_setenv("SDL_VIDEODRIVER", "x11", 1);
        SDL_setenv("SDL_RENDER_DRIVER", "software", 1);
        SDL_setenv("SDL_FRAMEBUFFER_ACCELERATION", "0", 1);
        ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
        Fake().ClearCalls();
    }
    void TearDown() override { SDL_Quit(); }

    // Some displays start anew when their last client goes, and do not answer meanwhile.
    static void SetUpTestSuite() { staying_ = std::make_unique<XWindow>(1, 1); }
    static void TearDownTestSuite() { staying_.reset(); }

    static void Draw(const TestView& view) {
        SDL_SetRenderDrawColor(view.GetRenderer(), 0, 0x80, 0x80, 0xFF);
        SDL_RenderClear(view.GetRenderer());
        SDL_RenderPresent(view.GetRenderer());
        // An answer from the display means that it has carried out what came before.
        SDL_GetWindowBordersSize(view.GetWindow(), nullptr, nullptr, nullptr, nullptr);
        SDL_PumpEvents();
    }

private:
    static inline std::unique_ptr<XWindow> staying_;
};

TEST_F(AbstractViewWindowTest, DrawsOnTheHostsWindow) {
    const XWindow host(64, 48);
    TestView view;
    ASSERT_EQ(view.Init(host.Handle(), 64, 48), 1);
    Draw(view);
    const auto pixels = host.ReadPixels();
    ASSERT_EQ(pixels.size(), size_t{64} * 48);
    EXPECT_EQ(pixels.front(), kTeal);
    EXPECT_EQ(pixels.back(), kTeal);
}

TEST_F(AbstractViewWindowTest, RefusesAHandleThatNamesNoWindow) {
    TestView view;
    EXPECT_EQ(view.Init(XWindow::BadHandle(), 64, 48), -1);
    EXPECT_EQ(view.GetWidth(), 64);
    EXPECT_EQ(view.GetWindow(), nullptr);
    EXPECT_EQ(Testing::Calls().Count("SDL_CreateWindowFrom"), 0U);
    EXPECT_EQ(Fake().LogsOf(4).size(), 1U);
    EXPECT_EQ(view.Init(reinterpret_cast<void*>(1), 64, 48), -1);
}

TEST_F(AbstractViewWindowTest, StartsOnAGoodWindowAfterABadOne) {
    const XWindow host(64, 48);
    TestView view;
    ASSERT_EQ(view.Init(XWindow::BadHandle(), 64, 48), -1);
    EXPECT_EQ(view.Init(host.Handle(), 64, 48), 1);
}

TEST_F(AbstractViewWindowTest, RefusesAWindowThatTheHostHasDestroyed) {
    XWindow host(64, 48);
    host.Destroy();
    TestView view;
    EXPECT_EQ(view.Init(host.Handle(), 64, 48), -1);
}

TEST_F(AbstractViewWindowTest, ResizesTheHostsWindow) {
    const XWindow host(64, 48);
    TestView view;
    ASSERT_EQ(view.Init(host.Handle(), 64, 48), 1);
    view.Resize(100, 80);
    EXPECT_EQ(view.sizes.back(), std::pair(100, 80));
    Draw(view);
    EXPECT_EQ(host.GetSize(), (XWindow::Size{100, 80}));
    view.SetViewport(100, 80);
    Draw(view);
    const auto pixels = host.ReadPixels();
    ASSERT_EQ(pixels.size(), size_t{100} * 80);
    EXPECT_EQ(pixels.back(), kTeal);
}

TEST_F(AbstractViewWindowTest, EndsUpWithTheHostsSizeHoweverOftenSdlTellsIt) {
    XWindow host(64, 48);
    TestView view;
    ASSERT_EQ(view.Init(host.Handle(), 64, 48), 1);
    SDL_PumpEvents();
    host.Resize(100, 80);
    view.Resize(100, 80);
    SDL_PumpEvents();
    EXPECT_THAT(view.sizes, ::testing::Each(std::pair(100, 80)));
    EXPECT_THAT(view.sizes.size(), ::testing::AllOf(::testing::Ge(1U), ::testing::Le(2U)));
    EXPECT_EQ(host.GetSize(), (XWindow::Size{100, 80}));
}

TEST_F(AbstractViewWindowTest, LeavesTheHostsWindowThereWhenItEnds) {
    const XWindow host(64, 48);
    TestView view;
    ASSERT_EQ(view.Init(host.Handle(), 64, 48), 1);
    view.CleanupWindow();
    EXPECT_EQ(host.GetSize(), (XWindow::Size{64, 48}));
    EXPECT_EQ(view.Init(host.Handle(), 64, 48), 1);
    Draw(view);
    EXPECT_EQ(host.ReadPixels().front(), kTeal);
}

TEST_F(AbstractViewWindowTest, GoesOnWhenTheHostDestroysItsWindowFirst) {
    XWindow host(64, 48);
    TestView view;
    ASSERT_EQ(view.Init(host.Handle(), 64, 48), 1);
    Draw(view);
    host.Destroy();
    Fake().ClearLogs();
    Draw(view);
    // It is said once, not with every drawing.
    EXPECT_THAT(Fake().LogsOf(3), ::testing::SizeIs(1));
    for (int i = 0; i < 3; ++i) Draw(view);
    EXPECT_THAT(Fake().LogsOf(3), ::testing::SizeIs(1));
    view.Resize(30, 20);
    Draw(view);
    view.CleanupWindow();
    SDL_PumpEvents();
    EXPECT_FALSE(view.IsInitialised());
}

TEST_F(AbstractViewWindowTest, LeavesAnOpenGlWindowAloneWhenTheHostDestroysItsWindowFirst) {
    SDL_setenv("SDL_RENDER_DRIVER", "opengl", 1);
    XWindow host(64, 48);
    TestView view;
    ASSERT_EQ(view.Init(host.Handle(), 64, 48), 1);
    Draw(view);
    EXPECT_TRUE(view.CanDraw());
    host.Destroy();
    EXPECT_FALSE(view.CanDraw());
    view.CleanupWindow();
    EXPECT_FALSE(view.IsInitialised());
    EXPECT_FALSE(view.CanDraw());
}

TEST_F(AbstractViewWindowTest, LeavesTheFocusWithTheHostWhenItDrawsWithOpenGl) {
    SDL_setenv("SDL_RENDER_DRIVER", "opengl", 1);
    const XWindow host(64, 48);
    TestView view;
    ASSERT_EQ(view.Init(host.Handle(), 64, 48), 1);
    SDL_Window* const window = view.GetWindow();
    EXPECT_NE(SDL_GetWindowFlags(window) & SDL_WINDOW_FOREIGN, 0U);
    EXPECT_NE(SDL_GetWindowFlags(window) & SDL_WINDOW_OPENGL, 0U);
    Draw(view);
    EXPECT_EQ(host.ReadPixels().front(), kTeal);
}

TEST_F(AbstractViewWindowTest, OpensTwoViewsOnTwoWindows) {
    const XWindow one(64, 48);
    const XWindow two(64, 48);
    TestView first;
    TestView second(-1);
    ASSERT_EQ(first.Init(one.Handle(), 64, 48), 1);
    ASSERT_EQ(second.Init(two.Handle(), 64, 48), 1);
    EXPECT_NE(first.GetSdlWindowId(), second.GetSdlWindowId());
    // The second window lies over the first.
    Draw(first);
    EXPECT_NE(two.ReadPixels().front(), kTeal);
    Draw(second);
    EXPECT_EQ(two.ReadPixels().front(), kTeal);
}

}  // namespace
}  // namespace Corvanta::UI
