// The wall as the host commands it: into a window of its own, and back.
#include <string>
#include <utility>
#include <vector>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr int kWallWidth = 800;
constexpr int kWallHeight = 300;

class WallCommandsWithoutRoom : public StartedTest {};

class WallCommandsTest : public RoomTest {
protected:
    ~WallCommandsTest() override { Host::onMainVideo = {}; }

    static Video::VideoThumbnails& Wall() { return Interface::CurrentView()->GetThumbnails(); }
    static bool IsDetached() { return Interface::CurrentView()->IsDetached(); }
    void Detach() {
        Fake().OfferRemoteSource("a");
        Fake().OfferRemoteSource("b");
        ASSERT_EQ(SDLinterface_CreateDetachedView(&window, kWallWidth, kWallHeight), 1);
        TickBoth();
        Calls().Clear();
    }
    static void TickBoth() {
        SDL_VideoRoomCheckInputAndRender();
        SDLinterface_TickDetachedView();
    }
    // With the pointer over the first tile's middle.
    static void HoverFirstTile() {
        const SDL_Rect place = Wall().GetAllTiles()[0]->displayRect;
        SDLinterface_PushMouseMoveEvent(1, (static_cast<float>(place.x) + 100.0F) / kWallWidth,
                                        (static_cast<float>(place.y) + 80.0F) / kWallHeight);
        TickBoth();
    }
    static void Click() {
        SDLinterface_PushMouseButtonDownEvent(1);
        SDLinterface_PushMouseButtonUpEvent(1);
        TickBoth();
    }

    int window = 0;
};

TEST_F(WallCommandsWithoutRoom, DoesNothing) {
    int window = 0;
    EXPECT_EQ(SDLinterface_CreateDetachedView(&window, 100, 100), -1);
    SDLinterface_TickDetachedView();
    SDLinterface_SetDetachedLayout(1);
    SDLinterface_LeaveDetachedLayout();
    SDLinterface_SlideThumbnails(false, false);
    SDLInterface_SetDetachedBordersVisibility(true);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(WallCommandsTest, PutsTheWallIntoAWindowAndBringsItBack) {
    Detach();
    EXPECT_TRUE(IsDetached());
    EXPECT_EQ(Sdl().LiveWindows(), 2U);
    SDLinterface_SetDetachedLayout(1);
    EXPECT_EQ(Wall().GetMode(), Video::ThumbnailLayoutMode::Column);
    SDLinterface_TickDetachedView();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
    SDLinterface_LeaveDetachedLayout();
    EXPECT_FALSE(IsDetached());
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    EXPECT_EQ(Wall().GetMode(), Video::ThumbnailLayoutMode::Strip);
    EXPECT_THAT(Fake().CallsOf("Configuration_SetPropertyInt").at(0).arguments,
                ElementsAre("detachedLayout", "1"));
    Calls().Clear();
    SDLinterface_TickDetachedView();
    SDLinterface_LeaveDetachedLayout();
    SDLinterface_SetDetachedLayout(2);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(WallCommandsTest, ReportsAWindowThatCannotBeMade) {
    Sdl().FailAlways("SDL_CreateWindowFrom");
    EXPECT_EQ(SDLinterface_CreateDetachedView(&window, kWallWidth, kWallHeight), -1);
    EXPECT_FALSE(IsDetached());
    SDLinterface_TickDetachedView();
}

TEST_F(WallCommandsTest, ScalesTheHostsFractionsByThatWindow) {
    Detach();
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
    SDLinterface_PushMouseMoveEvent(1, 0.5F, 0.25F);
    SDL_Event event;
    ASSERT_EQ(SDL_PeepEvents(&event, 1, SDL_GETEVENT, SDL_MOUSEMOTION, SDL_MOUSEMOTION), 1);
    EXPECT_EQ(event.motion.x, 400);
    EXPECT_EQ(event.motion.y, 75);
    EXPECT_EQ(static_cast<int>(event.motion.windowID), Interface::GetViewWindowId(1));
}

TEST_F(WallCommandsTest, TakesInputInThatWindow) {
    Detach();
    HoverFirstTile();
    EXPECT_TRUE(Wall().GetAllTiles()[0]->hovered);
    Click();
    EXPECT_TRUE(Interface::CurrentView()->IsMainVideo(*Wall().GetAllTiles()[0]));
    ASSERT_THAT(Fake().RegisteredSinks(), SizeIs(1));
    SDLinterface_PushMouseMoveEvent(1, -1.0F, -1.0F);
    TickBoth();
    EXPECT_FALSE(Wall().GetAllTiles()[0]->hovered);
}

TEST_F(WallCommandsTest, ScalesThatWindowsControlsAtIndexOne) {
    Detach();
    SDLinterface_UpdateWindowScale(1, 0.5F);
    TickBoth();
    EXPECT_EQ(Wall().GetAllTiles()[0]->displayRect.h, 80);
    EXPECT_EQ(Interface::CurrentView()->GetScale(), 1.0F);
}

TEST_F(WallCommandsTest, SlidesTheStripInAndOutOfTheRoom) {
    SDLinterface_SlideThumbnails(false, false);
    EXPECT_FALSE(Wall().IsShown());
    SDLinterface_SlideThumbnails(true, false);
    EXPECT_TRUE(Wall().IsShown());
    SDLinterface_SlideThumbnails(false, true);
    EXPECT_TRUE(Wall().IsSlidingOut());
}

// From inside the view's work

TEST_F(WallCommandsTest, LeavesOnlyWhenTheTickIsOver) {
    Detach();
    for (const bool fromWall : {false, true}) {
        SCOPED_TRACE(fromWall);
        ASSERT_EQ(SDLinterface_CreateDetachedView(&window, kWallWidth, kWallHeight), 1);
        TickBoth();
        bool stillDetached = false;
        // The room's tick tells the pointer's shape; the wall's presents.
        Calls().OnCall(fromWall ? "SDL_RenderPresent" : "Host_SetCursor", [&](const Call&) {
            SDLinterface_LeaveDetachedLayout();
            stillDetached = IsDetached();
        });
        fromWall ? SDLinterface_TickDetachedView() : SDL_VideoRoomCheckInputAndRender();
        Calls().OnCall("SDL_RenderPresent", {});
        Calls().OnCall("Host_SetCursor", {});
        EXPECT_TRUE(stillDetached);
        EXPECT_FALSE(IsDetached());
        EXPECT_EQ(Sdl().LiveWindows(), 1U);
    }
}

TEST_F(WallCommandsTest, MakesNoWindowInTheMiddleOfATick) {
    int result = 0;
    Host::onCursor = [&] { result = SDLinterface_CreateDetachedView(&window, kWallWidth, kWallHeight); };
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(result, -1);
    EXPECT_FALSE(IsDetached());
    Detach();
    Calls().OnCall("SDL_RenderPresent", [&](const Call&) {
        result = SDLinterface_CreateDetachedView(&window, kWallWidth, kWallHeight);
    });
    SDLinterface_TickDetachedView();
    Calls().OnCall("SDL_RenderPresent", {});
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(IsDetached()) << "the window that there is stays";
}

TEST_F(WallCommandsTest, TheRoomMayEndFromInsideTheWallsTick) {
    Detach();
    Calls().OnCall("SDL_RenderPresent", [](const Call&) { SDLinterface_VideoRoomQuit(); });
    SDLinterface_TickDetachedView();
    Calls().OnCall("SDL_RenderPresent", {});
    EXPECT_FALSE(HasView());
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    SDLinterface_TickDetachedView();
}

TEST_F(WallCommandsTest, TheRoomMayEndOrBeReplacedWhileTheWallIsDetached) {
    Detach();
    ASSERT_EQ(Enter(), 1);
    EXPECT_FALSE(IsDetached());
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    EXPECT_THAT(Fake().RegisteredSinks(), IsEmpty());
    Detach();
    SDLinterface_VideoRoomQuit();
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
}

TEST_F(WallCommandsTest, SurvivesWildSizesAndLayouts) {
    Fake().OfferRemoteSource("a");
    for (const int size : {0, -1, 1, 7680}) {
        if (SDLinterface_CreateDetachedView(&window, size, size) != 1) continue;
        for (const int mode : {0, 1, 2, 3, -1, 1 << 30}) {
            SDLinterface_SetDetachedLayout(mode);
            TickBoth();
        }
        SDLinterface_LeaveDetachedLayout();
        SDL_VideoRoomCheckInputAndRender();
    }
    EXPECT_FALSE(IsDetached());
}

}  // namespace
}  // namespace Corvanta::Testing
