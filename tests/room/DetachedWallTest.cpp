// The wall in a window of its own: how it comes there, its layouts, and how it goes.
#include "tests/room/DetachedWallTest.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace Corvanta::Room {
namespace {

// Coming and going of the window

TEST_F(DetachedWallTest, TheWallGetsAWindowOfItsOwn) {
    EXPECT_EQ(view->GetDetachedView(), nullptr);
    EXPECT_FALSE(view->IsDetached());
    FillRoom();
    EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), 1);
    ASSERT_NE(view->GetDetachedView(), nullptr);
    EXPECT_TRUE(view->IsDetached());
    EXPECT_EQ(view->GetDetachedView()->GetWidth(), kWallWidth);
    EXPECT_EQ(view->GetDetachedView()->GetHeight(), kWallHeight);
    EXPECT_EQ(Sdl().LiveWindows(), 2U);
    // The room's window has the main video to itself.
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, 0);
    EXPECT_EQ(view->GetMainVideoRect().h, kViewHeight);
}

TEST_F(DetachedWallTest, TilesMoveWithTheWindowsFirstDrawing) {
    FillRoom();
    ASSERT_TRUE(TileOf("one")->HasTexture());
    Detach();
    EXPECT_TRUE(TileOf("one")->HasTexture());
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U);
    const std::string wall = NameOf(view->GetDetachedView()->GetRenderer());
    Calls().Clear();
    view->TickDetachedView();
    EXPECT_GE(Calls().Count("SDL_DestroyTexture"), 3U);
    EXPECT_GE(Calls().Count("SDL_CreateTexture"), 3U);
    for (const Call& call : Calls().Of("SDL_CreateTexture")) EXPECT_EQ(call.arguments[0], wall);
    EXPECT_EQ(Calls().Of("SDL_RenderPresent").size(), 1U);
    EXPECT_EQ(Calls().Of("SDL_RenderPresent")[0].arguments[0], wall);
    Calls().Clear();
    view->TickDetachedView();
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U);
}

TEST_F(DetachedWallTest, TheRoomDrawsNoTileOfTheWall) {
    FillAndDetach();
    const std::string room = NameOf(view->GetRenderer());
    view->Tick();
    // The second tile has no picture yet.
    for (const Call& call : Calls().Of("SDL_RenderCopy")) EXPECT_NE(call.arguments[0], room);
    EXPECT_EQ(ShownColor(), kBlack);
}

TEST_F(DetachedWallTest, AHiddenStripShowsInItsOwnWindow) {
    FillRoom();
    view->SlideThumbnails(false, false);
    Detach();
    EXPECT_TRUE(view->GetThumbnails().IsShown());
    view->SlideThumbnails(false, false);
    EXPECT_TRUE(view->GetThumbnails().IsShown()) << "only the room's strip slides";
}

TEST_F(DetachedWallTest, AWindowThatCannotBeMadeLeavesTheWallInTheRoom) {
    FillRoom();
    for (const char* step : {"SDL_CreateWindowFrom", "SDL_CreateRenderer"}) {
        SCOPED_TRACE(step);
        Sdl().FailAlways(step);
        EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), -1);
        Sdl().Fail(step, 0);
        EXPECT_FALSE(view->IsDetached());
        EXPECT_EQ(view->GetDetachedView(), nullptr);
        EXPECT_EQ(Sdl().LiveWindows(), 1U);
        view->TickDetachedView();
        view->Tick();
        EXPECT_EQ(view->GetMainVideoRect().y, 160);
        EXPECT_EQ(ShownColor(), kOneColor) << "as it was";
    }
    EXPECT_TRUE(Steps().empty());
}

TEST_F(DetachedWallTest, AnotherWindowTakesThePlaceOfTheFirst) {
    FillAndDetach();
    int otherWindow = 0;
    EXPECT_EQ(view->CreateDetachedView(&otherWindow, 300, 200), 1);
    EXPECT_EQ(Sdl().LiveWindows(), 2U);
    EXPECT_EQ(view->GetDetachedView()->GetWidth(), 300);
    EXPECT_EQ(ClonedSource(), "one") << "the main video stays";
    TickBoth();
    EXPECT_TRUE(TileOf("one")->HasTexture());
    EXPECT_TRUE(Steps().empty());
}

TEST_F(DetachedWallTest, AWindowThatCannotBeReplacedBringsTheWallBack) {
    FillAndDetach();
    view->OnTileClicked(TileOf("two"), false);
    Sdl().FailAlways("SDL_CreateWindowFrom");
    EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), -1);
    Sdl().Fail("SDL_CreateWindowFrom", 0);
    EXPECT_FALSE(view->IsDetached());
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, 160);
    EXPECT_TRUE(TileOf("two")->HasTexture());
}

// Layouts

TEST_F(DetachedWallTest, LayoutsGoByTheirNumberAndByHowManyTilesThereAre) {
    struct Case {
        int mode;
        int tiles;
        int minimumWidth;
        int minimumHeight;
    };
    // Of tiles that are 213 by 160: a strip, a column, and pages of so many columns and rows.
    const Case cases[] = {
        {0, 1, 213, 160},      {0, 7, 7 * 213, 160}, {1, 1, 213, 160}, {1, 7, 213, 7 * 160},
        {2, 1, 213, 160},      {2, 2, 426, 160},     {2, 3, 426, 320}, {2, 6, 426, 480},
        {2, 7, 639, 480},      {2, 10, 639, 480},    {2, 0, 213, 0},   {7, 2, 426, 160},
        {-1, 2, 2 * 213, 160},
    };
    int count = 0;
    Detach();
    for (const Case& expected : cases) {
        SCOPED_TRACE(std::to_string(expected.mode) + " with " + std::to_string(expected.tiles));
        while (count < expected.tiles) view->AddRemoteVideoSource(std::to_string(count++));
        while (count > expected.tiles) view->RemoveRemoteVideoSource(std::to_string(--count));
        TickBoth();
        view->SetDetachedLayout(expected.mode);
        EXPECT_EQ(static_cast<int>(Mode()), expected.mode);
        EXPECT_EQ(view->GetThumbnails().GetMinimumWidth(), expected.minimumWidth);
        EXPECT_EQ(view->GetThumbnails().GetMinimumHeight(), expected.minimumHeight);
        TickBoth();
    }
}

TEST_F(DetachedWallTest, TheRoomsOwnStripHasNoOtherLayout) {
    FillRoom();
    view->SetDetachedLayout(2);
    EXPECT_EQ(Mode(), Video::ThumbnailLayoutMode::Strip);
}

TEST_F(DetachedWallTest, TheScaleOfTheWallIsThatOfItsWindow) {
    FillAndDetach();
    view->GetDetachedView()->SetWindowScale(0.5F);
    view->SetWindowScale(2.0F);
    TickBoth();
    EXPECT_EQ(TileOf("one")->displayRect.h, 80);
    AddRemote("three", kOneColor);
    TickBoth();
    EXPECT_EQ(TileOf("three")->displayRect.h, 80);
    EXPECT_EQ(TileOf("three")->GetMenu().GetItemHeight(), 13);
    view->LeaveDetachedLayout();
    view->Tick();
    EXPECT_EQ(TileOf("one")->displayRect.h, 320);
}

TEST_F(DetachedWallTest, AMenuOfAGridKeepsItsSizeWhenAnotherTileComes) {
    FillAndDetach();
    view->SetDetachedLayout(2);
    AddRemote("three", kOneColor);
    TickBoth();
    const int itemHeight = TileOf("one")->GetMenu().GetItemHeight();
    ASSERT_GT(itemHeight, 25);
    // Its place was empty before.
    for (const char* id : {"four", "five"}) AddRemote(id, kOneColor);
    TickBoth();
    AddRemote("six", kOneColor);
    view->RemoveRemoteVideoSource("six");
    TickBoth();
    const int height = TileOf("one")->displayRect.h;
    EXPECT_EQ(TileOf("one")->GetMenu().GetItemHeight(), (height * 25 + 80) / 160);
}

// Leaving

TEST_F(DetachedWallTest, LeavingKeepsTheLayoutAndBringsTheStripBack) {
    FillAndDetach();
    view->SetDetachedLayout(2);
    TickBoth();
    Calls().Clear();
    view->LeaveDetachedLayout();
    EXPECT_FALSE(view->IsDetached());
    EXPECT_EQ(view->GetDetachedView(), nullptr);
    EXPECT_EQ(Mode(), Video::ThumbnailLayoutMode::Strip);
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    EXPECT_EQ(Steps(), (Strings{"unregister one"}));
    EXPECT_EQ(Calls().Of("Configuration_SetPropertyInt"),
              (std::vector<Call>{{"Configuration_SetPropertyInt", {"detachedLayout", "2"}}}));
    for (Video::VideoFrame* tile : view->GetThumbnails().GetAllTiles()) EXPECT_FALSE(tile->onMainVideo);
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, 160);
    EXPECT_EQ(TileOf("one")->displayRect.h, 160);
    EXPECT_EQ(ShownColor(), kOneColor) << "the wall's own tile is the main video again";
    view->LeaveDetachedLayout();
    EXPECT_EQ(Calls().Count("Configuration_SetPropertyInt"), 1U);
}

TEST_F(DetachedWallTest, LeavingForgetsTheChoice) {
    FillAndDetach();
    view->OnTileClicked(TileOf("two"), false);
    TickBoth();
    view->LeaveDetachedLayout();
    view->Tick();
    EXPECT_EQ(ShownColor(), kOneColor);
    EXPECT_FALSE(view->IsMainVideo(*TileOf("two")));
}

TEST_F(DetachedWallTest, LeavingBeforeTheFirstDrawingLeavesTheTilesWhereTheyAre) {
    FillRoom();
    Detach();
    view->LeaveDetachedLayout();
    view->Tick();
    EXPECT_EQ(ShownColor(), kOneColor);
}

TEST_F(DetachedWallTest, TheWallMayComeAndGoOften) {
    FillRoom();
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), 1);
        view->SetDetachedLayout(i % 3);
        if (i % 4 != 0) TickBoth();
        view->LeaveDetachedLayout();
        if (i % 5 != 0) view->Tick();
    }
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
}

TEST_F(DetachedWallTest, AListenerOfTheConfigurationMayAskTheRoom) {
    FillAndDetach();
    bool asked = false;
    Calls().OnCall("Configuration_SetPropertyInt", [&](const Call&) {
        std::thread other([&] { asked = view->AddRemoteVideoSource("late") != nullptr; });
        other.join();
    });
    view->LeaveDetachedLayout();
    EXPECT_TRUE(asked);
}

// The end of the room

TEST_F(DetachedWallTest, TheRoomMayEndWhileTheWallIsDetached) {
    FillAndDetach();
    Feed("one", kOneColor);
    TickBoth();
    view->RemoveRemoteVideoSource("two");
    Calls().Clear();
    size_t mostAtAnEnd = 0;
    Calls().OnCall("SDL_DestroyRenderer", [&](const Call& call) {
        if (call.arguments[0] == NameOf(view->GetRenderer())) mostAtAnEnd = Sdl().LiveTextures();
    });
    view->Shutdown();
    EXPECT_EQ(mostAtAnEnd, 0U);
    EXPECT_EQ(Steps(), (Strings{"unregister one"}));
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_FALSE(view->IsDetached());
    EXPECT_TRUE(view->GetThumbnails().GetAllTiles().empty());
    EXPECT_EQ(Calls().Count("Configuration_SetPropertyInt"), 0U);
    TickBoth();
    view->LeaveDetachedLayout();
    view->SetDetachedLayout(2);
    EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), -1);
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
}

TEST_F(DetachedWallTest, ADroppedViewTakesItsWallsWindowAlong) {
    FillAndDetach();
    view.reset();
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
}

TEST_F(DetachedWallTest, NoRoomMeansNoWindow) {
    roomActive.store(false);
    EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), -1);
    roomActive.store(true);
    Detach();
    roomActive.store(false);
    view->TickDetachedView();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
}

}  // namespace
}  // namespace Corvanta::Room
