// The hand in the room: gestures, texts, undo, and what the room does around the tool.
#include "tests/room/DrawingRoomTest.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace Corvanta::Room {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

// Gestures

TEST_F(DrawingRoomTest, AGestureDrawsOnTheMainVideoAndSendsOneMessage) {
    OpenToDraw();
    DrawSomething();
    const auto sent = Sent();
    ASSERT_THAT(sent, SizeIs(1));
    EXPECT_EQ(sent[0]["type"], "draw-canvas-broadcast");
    EXPECT_EQ(sent[0]["streamId"], "me");
    EXPECT_EQ(sent[0]["message"]["clearCanvas"], false);
    const nlohmann::json& shapes = sent[0]["message"]["shapes"];
    ASSERT_THAT(shapes, SizeIs(1));
    EXPECT_EQ(shapes[0]["className"], "Rectangle");
    // A point of the window is more than a unit of the canvas.
    const nlohmann::json& data = shapes[0]["data"];
    EXPECT_NEAR(data["x"].get<double>(), 320, 4);
    EXPECT_NEAR(data["y"].get<double>(), 240, 4);
    EXPECT_NEAR(data["width"].get<double>(), 640, 6);
    EXPECT_NEAR(data["height"].get<double>(), 480, 6);
    EXPECT_EQ(ColorAt(0.5, 0.5), kWhite);
    EXPECT_EQ(ColorAt(0.1, 0.5), kCameraColor);
    EXPECT_EQ(Reports(), (std::vector<std::string>{"true false"}));
}

TEST_F(DrawingRoomTest, AShapeIsSeenWhileItGrowsAndSentWhenItIsFinished) {
    OpenToDraw();
    PushMotion(At(0.25, 0.25));
    PushDown();
    PushMotion(At(0.5, 0.5));
    EXPECT_EQ(ColorAt(0.4, 0.4), kWhite);
    EXPECT_EQ(ColorAt(0.6, 0.6), kCameraColor);
    PushMotion(At(0.75, 0.75));
    EXPECT_EQ(ColorAt(0.6, 0.6), kWhite);
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(MarksOn("me"), IsEmpty());
    PushUp();
    EXPECT_EQ(ColorAt(0.6, 0.6), kWhite);
    EXPECT_THAT(Sent(), SizeIs(1));
    EXPECT_THAT(MarksOn("me"), SizeIs(1));
}

TEST_F(DrawingRoomTest, TheHandDrawsOnTheStreamThatIsTheMainVideo) {
    Open();
    AddCamera(kCameraColor);
    AddRemote("one", kOneColor);
    view->SetActiveSpeaker("one");
    Choose(DrawToolRectangle);
    view->Tick();
    Calls().Clear();
    DrawSomething();
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["streamId"], "one");
    EXPECT_THAT(MarksOn("one"), SizeIs(1));
    EXPECT_THAT(MarksOn("me"), IsEmpty());
}

TEST_F(DrawingRoomTest, NothingIsDrawnWhileTheToolIsDisabled) {
    OpenWithCamera();
    DrawSomething();
    Choose(DrawToolRectangle);
    Choose(DrawToolRectangle, false);
    DrawSomething();
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
}

TEST_F(DrawingRoomTest, NothingIsDrawnWhileAMenuIsOpen) {
    OpenBar();
    AddCamera(kCameraColor);
    Choose(DrawToolRectangle);
    // The bar stays, and with it the menu's button.
    view->SetDrawTool(false);
    view->Tick();
    TurnMs(300);
    view->Tick();
    OpenMenu("layout");
    ASSERT_TRUE(LayoutMenu().visible);
    Calls().Clear();
    PushMotion(At(0.25, 0.25));
    view->Tick();
    // The press closes the menu, and is for that alone.
    PushDown();
    PushMotion(At(0.75, 0.75));
    PushUp();
    view->Tick();
    ASSERT_FALSE(LayoutMenu().visible);
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
}

TEST_F(DrawingRoomTest, AStrokeEndsThoughAMenuHasOpened) {
    OpenBar();
    AddCamera(kCameraColor);
    Choose(DrawToolRectangle);
    view->Tick();
    Calls().Clear();
    PushMotion(At(0.25, 0.25));
    PushDown();
    PushMotion(At(0.75, 0.75));
    view->Tick();
    LayoutMenu().GetAnchorElement()->OnClick();
    ASSERT_TRUE(LayoutMenu().visible);
    PushUp();
    view->Tick();
    EXPECT_THAT(Sent(), SizeIs(1));
}

TEST_F(DrawingRoomTest, NothingIsTypedWhileAMenuIsOpen) {
    OpenBar();
    AddCamera(kCameraColor);
    view->Tick();
    Choose(DrawToolText);
    view->Tick();
    Drag(At(0.3, 0.3), At(0.3, 0.3));
    Type(SDLK_a);
    LayoutMenu().GetAnchorElement()->OnClick();
    ASSERT_TRUE(LayoutMenu().visible);
    Type(SDLK_b);
    LayoutMenu().GetAnchorElement()->OnClick();
    ASSERT_FALSE(LayoutMenu().visible);
    Type(SDLK_c);
    Calls().Clear();
    // A click beside the text finishes it.
    Drag(At(0.9, 0.9), At(0.9, 0.9));
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["message"]["shapes"][0]["data"]["text"], "ac");
}

TEST_F(DrawingRoomTest, AStrokeDoesNotRunToTheCornerWhenThePointerLeaves) {
    OpenToDraw();
    PushMotion(At(0.25, 0.25));
    PushDown();
    PushMotion(At(0.5, 0.5));
    PushMotion({-1, -1});
    PushUp();
    view->Tick();
    ASSERT_THAT(Sent(), SizeIs(1));
    const nlohmann::json data = Sent()[0]["message"]["shapes"][0]["data"];
    EXPECT_NEAR(data["width"].get<double>(), 320, 6);
    EXPECT_NEAR(data["height"].get<double>(), 240, 6);
}

TEST_F(DrawingRoomTest, APressBesideTheVideoDrawsNothing) {
    OpenToDraw();
    const SDL_Rect video = view->GetMainVideoRect();
    ASSERT_GT(video.x, 10);
    Drag({video.x - 5, 200}, At(0.5, 0.5));
    Drag({video.x + video.w, 200}, At(0.5, 0.5));
    Drag({200, video.y + video.h}, At(0.5, 0.5));
    EXPECT_THAT(Sent(), IsEmpty());
    // From the video it may go beyond, and ends at the edge.
    Drag(At(0.5, 0.5), {kViewWidth - 1, kViewHeight - 1});
    ASSERT_THAT(Sent(), SizeIs(1));
    const nlohmann::json data = Sent()[0]["message"]["shapes"][0]["data"];
    EXPECT_EQ(data["x"].get<double>() + data["width"].get<double>(), 1280);
    EXPECT_EQ(data["y"].get<double>() + data["height"].get<double>(), 960);
}

TEST_F(DrawingRoomTest, APressOnAThumbnailDrawsNothing) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    const SDL_Rect& tile = TileOf("two")->rect;
    Drag({tile.x + 10, tile.y + 10}, {tile.x + 30, tile.y + 30});
    EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(DrawingRoomTest, AnotherWindowsGestureDrawsNothing) {
    OpenToDraw();
    for (const Uint32 type : {SDL_MOUSEMOTION, SDL_MOUSEBUTTONDOWN, SDL_MOUSEMOTION, SDL_MOUSEBUTTONUP}) {
        SDL_Event event = EventOf(type);
        event.window.windowID += 100;
        if (type == SDL_MOUSEMOTION) {
            event.motion.x = At(0.5, 0.5).x;
            event.motion.y = At(0.5, 0.5).y;
        }
        Push(event);
    }
    view->Tick();
    EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(DrawingRoomTest, NothingIsDrawnWithoutAMainVideo) {
    Open();
    Choose(DrawToolRectangle);
    view->Tick();
    Drag({100, 100}, {200, 200});
    view->GetDrawings().UndoCurrentCanvas();
    view->GetDrawings().ClearCurrentCanvas();
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(Reports(), IsEmpty());
}

// A family that is no UTF-8 cannot be sent.
TEST_F(DrawingRoomTest, AMarkThatCannotBeSharedLeavesTheRoomGoingOn) {
    OpenToDraw(DrawToolText);
    DrawToolState state = ToolState(DrawToolText);
    std::string family = "\xff\xfe";
    state.fontFamilyName = family.data();
    view->SetDrawToolState(state);
    Drag(At(0.3, 0.3), At(0.3, 0.3));
    Drag(At(0.9, 0.9), At(0.9, 0.9));
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(Fake().LogsOf(3), Contains(StartsWith("A mark could not be shared")));
    Choose(DrawToolRectangle);
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
}

// The room around the tool

TEST_F(DrawingRoomTest, TheToolTakesTheBarsHeightFromTheVideo) {
    OpenBar();
    AddCamera(kCameraColor);
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().h, kBarViewHeight);
    Choose(DrawToolPencil);
    EXPECT_EQ(view->GetMainVideoRect().h, kBarViewHeight - kBarHeight);
    EXPECT_TRUE(Bar().IsHidden());
    Choose(DrawToolPencil, false);
    EXPECT_EQ(view->GetMainVideoRect().h, kBarViewHeight);
    EXPECT_FALSE(Bar().IsHidden());
}

// The host has put its own controls away, not the tool.
TEST_F(DrawingRoomTest, ThePointerGoesOnDrawingWithoutTheControls) {
    OpenBar();
    AddCamera(kCameraColor);
    Choose(DrawToolRectangle);
    view->Tick();
    view->SetDrawTool(false);
    EXPECT_FALSE(Bar().IsHidden());
    EXPECT_TRUE(view->GetDrawings().IsToolEnabled());
    EXPECT_EQ(view->GetMainVideoRect().h, kBarViewHeight - kBarHeight);
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
    // And the other way round.
    Choose(DrawToolRectangle, false);
    view->SetDrawTool(true);
    EXPECT_TRUE(Bar().IsHidden());
    EXPECT_EQ(view->GetMainVideoRect().h, kBarViewHeight);
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
}

// Text

TEST_F(DrawingRoomTest, ThePointerShowsWhereATextIs) {
    OpenToDraw(DrawToolText);
    EXPECT_EQ((view->Tick(), LastCursor()), "0");
    const SDL_Point start = At(0.3, 0.3);
    Drag(start, start);
    for (int letter = 0; letter < 4; ++letter) Type(SDLK_m);
    view->Tick();
    MoveTo({start.x + 5, start.y + 5});
    EXPECT_EQ(LastCursor(), "2");
    EXPECT_EQ(view->GetCursor(), 2);
    MoveTo({start.x - 5, start.y - 5});
    EXPECT_EQ(LastCursor(), "3");
    MoveTo(At(0.9, 0.9));
    EXPECT_EQ(LastCursor(), "0");
    MoveTo({start.x + 5, start.y + 5});
    MoveTo(At(0.9, 0.9));
    Drag(At(0.9, 0.9), At(0.9, 0.9));
    MoveTo({start.x + 5, start.y + 5});
    EXPECT_EQ(LastCursor(), "0") << "a finished text is a mark as any other";
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["message"]["shapes"][0]["data"]["text"], "mmmm");
}

TEST_F(DrawingRoomTest, WhatIsTypedIntoATextIsNoKeyToTalkWith) {
    Fake().Set(
        [](FakeResults& results) { results.configuration["Device.PushToTalkKey"] = std::string("Space"); });
    OpenBar();
    AddCamera(kCameraColor);
    Choose(DrawToolText);
    view->Tick();
    PushKey(SDL_KEYDOWN, SDLK_SPACE);
    view->Tick();
    EXPECT_TRUE(view->IsMicEnabled()) << "no text is open";
    PushKey(SDL_KEYUP, SDLK_SPACE);
    view->Tick();
    ASSERT_FALSE(view->IsMicEnabled());

    Drag(At(0.3, 0.3), At(0.3, 0.3));
    ASSERT_TRUE(IsTextOpen());
    PushKey(SDL_KEYDOWN, SDLK_SPACE);
    view->Tick();
    EXPECT_FALSE(view->IsMicEnabled());
    PushKey(SDL_KEYUP, SDLK_SPACE);
    view->Tick();
    Type(SDLK_a);
    // Beside the video: the text is thrown away.
    Drag({5, 5}, {5, 5});
    ASSERT_FALSE(IsTextOpen());
    EXPECT_THAT(Sent(), IsEmpty());
    PushKey(SDL_KEYDOWN, SDLK_SPACE);
    view->Tick();
    EXPECT_TRUE(view->IsMicEnabled());
}

// A key that was held already when the text was opened ends the talk all the same.
TEST_F(DrawingRoomTest, AKeyToTalkWithThatIsLetGoOverATextShutsTheMicrophone) {
    Fake().Set(
        [](FakeResults& results) { results.configuration["Device.PushToTalkKey"] = std::string("Space"); });
    OpenBar();
    AddCamera(kCameraColor);
    Choose(DrawToolText);
    view->Tick();
    PushKey(SDL_KEYDOWN, SDLK_SPACE);
    view->Tick();
    Drag(At(0.3, 0.3), At(0.3, 0.3));
    ASSERT_TRUE(IsTextOpen());
    ASSERT_TRUE(view->IsMicEnabled());
    PushKey(SDL_KEYUP, SDLK_SPACE);
    view->Tick();
    EXPECT_FALSE(view->IsMicEnabled());
}

// Undo

TEST_F(DrawingRoomTest, TakesBackAndBringsBackWhatIsOnTheMainVideo) {
    OpenToDraw();
    Drawing::DrawingCanvasManager& drawings = view->GetDrawings();
    DrawSomething();
    ASSERT_EQ(ColorAt(0.5, 0.5), kWhite);
    Calls().Clear();
    drawings.UndoCurrentCanvas();
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
    drawings.RedoCurrentCanvas();
    EXPECT_EQ(ColorAt(0.5, 0.5), kWhite);
    drawings.ClearCurrentCanvas();
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
    drawings.UndoCurrentCanvas();
    EXPECT_EQ(ColorAt(0.5, 0.5), kWhite);
    EXPECT_EQ(Reports(), (std::vector<std::string>{"false true", "true false", "true false", "true true"}));
    EXPECT_THAT(Sent(), SizeIs(4));
}

TEST_F(DrawingRoomTest, AnotherMainVideoReportsWhatCanBeUndoneThere) {
    Open();
    AddCamera(kCameraColor);
    AddRemote("one", kOneColor);
    Choose(DrawToolRectangle);
    view->Tick();
    DrawSomething();
    Calls().Clear();
    view->SetActiveSpeaker("one");
    view->Tick();
    EXPECT_EQ(Reports(), (std::vector<std::string>{"false false"}));
    EXPECT_EQ(Calls().NamesAmong({"Host_OnMainVideoChanged", "Host_ReportHistoryState"}),
              (std::vector<std::string>{"Host_OnMainVideoChanged", "Host_ReportHistoryState"}));
    Calls().Clear();
    view->Tick();
    EXPECT_THAT(Reports(), IsEmpty());
    view->SetActiveSpeaker("nobody");
    view->Tick();
    EXPECT_EQ(Reports(), (std::vector<std::string>{"true false"}));
    view->GetDrawings().UndoCurrentCanvas();
    EXPECT_EQ(Reports().back(), "false true");
}

}  // namespace
}  // namespace Corvanta::Room
