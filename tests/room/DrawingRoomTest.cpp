// Drawing in the room: a hand at the mouse and the keys, the marks of others, and a room that changes under
// them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "drawing/DrawingCanvas.h"
#include "tests/drawing/LocalUser.h"
#include "tests/drawing/MarkMessage.h"
#include "tests/drawing/TestFont.h"
#include "tests/fake_platform/AllocationCounter.h"
#include "tests/room/ToolbarTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr uint32_t kCameraColor = 0xFF204060;
constexpr uint32_t kOneColor = 0xFF406020;
constexpr uint32_t kTwoColor = 0xFF602040;
constexpr uint32_t kRed = 0xFFFF0000;
constexpr uint32_t kGreen = 0xFF00FF00;
// The pictures of the room are four by three, which makes a canvas of 1280 by 960 units.
constexpr SDL_Rect kWholeCanvas{0, 0, 1280, 960};
constexpr SDL_Rect kLeftHalf{0, 0, 640, 960};
constexpr SDL_Rect kRightHalf{640, 0, 640, 960};
constexpr int kWallWindowWidth = 800;
constexpr int kWallWindowHeight = 400;

class DrawingRoomTest : public ToolbarTest {
protected:
    DrawingRoomTest() {
        static const bool hasFont = (UseTestFont(), true);
        EXPECT_TRUE(hasFont);
        // Small layers, since nobody looks at them closely.
        Sdl().LimitTextureSides(640);
    }

    void Choose(uint32_t tool, bool enabled = true) {
        DrawToolState state = ToolState(tool);
        state.enabled = enabled;
        view->SetDrawToolState(state);
    }
    // A room of the own camera alone, which is the main video, in a window without bar and wall.
    void OpenWithCamera() {
        Open();
        AddCamera(kCameraColor);
        view->Tick();
        Calls().Clear();
    }
    // The same with a tool in hand; rectangles by default, which are white within an edge.
    void OpenToDraw(uint32_t tool = DrawToolRectangle) {
        OpenWithCamera();
        Choose(tool);
        view->Tick();
        Calls().Clear();
    }
    // A place in the main video, by fractions of its sides.
    [[nodiscard]] SDL_Point At(double x, double y) const {
        const SDL_Rect video = view->GetMainVideoRect();
        return {video.x + static_cast<int>(video.w * x), video.y + static_cast<int>(video.h * y)};
    }
    [[nodiscard]] uint32_t ColorAt(double x, double y) {
        const Picture picture = TickAndRead();
        const SDL_Point place = At(x, y);
        return picture.width == 0 ? 0 : picture.At(place.x, place.y);
    }
    void PushDown() { Push(EventOf(SDL_MOUSEBUTTONDOWN)); }
    void PushUp() { Push(EventOf(SDL_MOUSEBUTTONUP)); }
    void Drag(SDL_Point from, SDL_Point to) {
        PushMotion(from);
        PushDown();
        TurnMs(30);
        PushMotion(to);
        TurnMs(30);
        PushUp();
        view->Tick();
    }
    // A stroke over the middle of the main video.
    void DrawSomething() { Drag(At(0.25, 0.25), At(0.75, 0.75)); }
    void Type(int keycode) {
        PushKey(SDL_KEYDOWN, keycode);
        PushKey(SDL_KEYUP, keycode);
        view->Tick();
    }
    void Receive(const std::string& sender, const std::string& streamId, const std::string& id,
                 const SDL_Rect& place, uint32_t argb) {
        view->GetDrawings().OnDataChannelMessage(
            {sender, MarkMessage(streamId, {MarkJson(id, place, argb)})});
    }
    [[nodiscard]] static std::vector<nlohmann::json> Sent() {
        std::vector<nlohmann::json> messages;
        for (const Call& call : Calls().Of("MediaManager_SendDatachannelMessage")) {
            messages.push_back(nlohmann::json::parse(call.arguments.at(0)));
        }
        return messages;
    }
    // What the host heard of undo and redo, as "undo redo".
    [[nodiscard]] static std::vector<std::string> Reports() {
        std::vector<std::string> reports;
        for (const Call& call : Calls().Of("Host_ReportHistoryState")) {
            reports.push_back(call.arguments[0] + ' ' + call.arguments[1]);
        }
        return reports;
    }
    [[nodiscard]] static std::string LastCursor() { return Calls().Of("Host_SetCursor").back().arguments[0]; }
    [[nodiscard]] bool IsTextOpen() { return view->GetDrawings().IsTextOpen(); }
    [[nodiscard]] std::vector<std::shared_ptr<Drawing::Shape>> MarksOn(const std::string& streamId,
                                                                       const std::string& sender = "me") {
        return view->GetDrawings().GetOrCreateSource(streamId)->ShapesOf(sender);
    }
    // The own camera and two participants, of whom one speaks; the wall is in the room's window.
    void OpenFullRoom() {
        OpenWithWall();
        AddCamera(kCameraColor);
        AddRemote("one", kOneColor);
        AddRemote("two", kTwoColor);
        view->SetActiveSpeaker("one");
        view->Tick();
        Calls().Clear();
    }
};

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

// Marks of others

TEST_F(DrawingRoomTest, AMarkIsAtOneFractionOfTheMainVideoAndOfItsThumbnail) {
    OpenFullRoom();
    // The lower right quarter, so that the thumbnail's name plate does not matter to the rest.
    Receive("two", "one", "a", {640, 240, 320, 240}, kRed);
    const Picture picture = TickAndRead();
    const SDL_Rect& thumbnail = TileOf("one")->displayRect;
    const SDL_Rect video = view->GetMainVideoRect();
    // A thumbnail shows the middle of a picture that is not as wide as itself.
    const SDL_Rect shown = TileOf("one")->sourceRect;
    const auto inThumbnail = [&](double x, double y) {
        return picture.At(thumbnail.x + static_cast<int>((x * 64 - shown.x) / shown.w * thumbnail.w),
                          thumbnail.y + static_cast<int>((y * 48 - shown.y) / shown.h * thumbnail.h));
    };
    const auto inVideo = [&](double x, double y) {
        return picture.At(video.x + static_cast<int>(video.w * x), video.y + static_cast<int>(video.h * y));
    };
    for (const auto& [x, y] : {std::pair{0.53, 0.29}, {0.72, 0.29}, {0.53, 0.46}, {0.72, 0.46}}) {
        EXPECT_EQ(inVideo(x, y), kRed) << x << ' ' << y;
        EXPECT_EQ(inThumbnail(x, y), kRed) << x << ' ' << y;
    }
    for (const auto& [x, y] : {std::pair{0.47, 0.35}, {0.78, 0.35}, {0.6, 0.53}}) {
        EXPECT_EQ(inVideo(x, y), kOneColor) << x << ' ' << y;
        EXPECT_NE(inThumbnail(x, y), kRed) << x << ' ' << y;
    }
}

TEST_F(DrawingRoomTest, MarksLieOverEachOtherByTheirMakersNames) {
    OpenWithCamera();
    Receive("two", "me", "b", kWholeCanvas, kGreen);
    Receive("one", "me", "a", kLeftHalf, kRed);
    EXPECT_EQ(ColorAt(0.25, 0.5), kGreen);
    view->GetDrawings().OnDataChannelMessage({"two", MarkMessage("me", {})});
    EXPECT_EQ(ColorAt(0.25, 0.5), kRed);
    EXPECT_EQ(ColorAt(0.75, 0.5), kCameraColor);
}

TEST_F(DrawingRoomTest, TheMarksOfAStreamThatGoesGoFromAllOthers) {
    OpenFullRoom();
    Receive("two", "one", "a", kLeftHalf, kRed);
    Receive("two", "me", "b", kLeftHalf, kRed);
    Receive("one", "one", "c", kRightHalf, kGreen);
    ASSERT_EQ(ColorAt(0.25, 0.5), kRed);
    view->RemoveRemoteVideoSource("two");
    EXPECT_EQ(ColorAt(0.25, 0.5), kOneColor);
    EXPECT_EQ(ColorAt(0.75, 0.5), kGreen);
    EXPECT_THAT(MarksOn("me", "two"), IsEmpty());
    view->SetActiveSpeaker("nobody");
    EXPECT_EQ(ColorAt(0.25, 0.5), kCameraColor);
}

TEST_F(DrawingRoomTest, TheOwnMarksGoWithTheOwnCamera) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    DrawSomething();
    ASSERT_EQ(ColorAt(0.5, 0.5), kWhite);
    view->RemoveLocalVideoSource("camera");
    EXPECT_EQ(ColorAt(0.5, 0.5), kOneColor);
}

TEST_F(DrawingRoomTest, AMarkWaitsForItsTile) {
    Open();
    Receive("one", "later", "a", kLeftHalf, kRed);
    view->Tick();
    AddRemote("later", kOneColor);
    view->SetActiveSpeaker("later");
    EXPECT_EQ(ColorAt(0.25, 0.5), kRed);
    EXPECT_EQ(ColorAt(0.75, 0.5), kOneColor);
}

TEST_F(DrawingRoomTest, AMarkOnAStreamThatHasGoneWaitsForItsReturn) {
    Open();
    AddRemote("one", kOneColor);
    view->SetActiveSpeaker("one");
    view->Tick();
    Receive("two", "one", "before", kLeftHalf, kRed);
    view->Tick();
    view->RemoveRemoteVideoSource("one");
    // The tile is on its way out, and may not have been drawn since.
    Receive("two", "one", "after", kRightHalf, kGreen);
    view->Tick();
    Receive("two", "one", "later", {640, 0, 640, 480}, kRed);
    view->Tick();
    AddRemote("one", kOneColor);
    EXPECT_EQ(ColorAt(0.25, 0.5), kOneColor);
    EXPECT_EQ(ColorAt(0.75, 0.25), kRed);
    EXPECT_EQ(ColorAt(0.75, 0.75), kGreen);
}

TEST_F(DrawingRoomTest, AGestureThatLosesItsStreamEndsWithoutHarm) {
    Open();
    AddRemote("one", kOneColor);
    view->SetActiveSpeaker("one");
    Choose(DrawToolRectangle);
    view->Tick();
    Calls().Clear();
    PushMotion(At(0.25, 0.25));
    PushDown();
    PushMotion(At(0.75, 0.75));
    view->Tick();
    view->RemoveRemoteVideoSource("one");
    view->Tick();
    PushMotion({300, 200});
    PushUp();
    view->Tick();
    EXPECT_THAT(Sent(), IsEmpty());
    AddRemote("one", kOneColor);
    EXPECT_EQ(ColorAt(0.5, 0.5), kOneColor);
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
}

TEST_F(DrawingRoomTest, TenThousandMessagesComeWhileItTicks) {
    constexpr int kMessages = 10'000;
    Open();
    AddRemote("one", kOneColor);
    view->SetActiveSpeaker("one");
    view->Tick();
    Calls().SetRecording(false);
    std::atomic<bool> done = false;
    std::thread channel([&] {
        for (int message = 0; message < kMessages; ++message) {
            const std::string id = "mark " + std::to_string(message);
            const SDL_Rect place{message % 128 * 10, message / 128 * 10, 10, 10};
            Receive("two", "one", id, place, kRed);
        }
        done.store(true);
    });
    while (!done.load()) view->Tick();
    channel.join();
    EXPECT_THAT(MarksOn("one", "two"), SizeIs(kMessages));
    EXPECT_EQ(ColorAt(0.2, 0.4), kRed);
    EXPECT_EQ(ColorAt(0.7, 0.75), kRed);
    EXPECT_EQ(ColorAt(0.7, 0.9), kOneColor);
    Calls().SetRecording(true);
}

// What the room does to its windows

TEST_F(DrawingRoomTest, MarksStayThroughResizesOfTheWindow) {
    OpenToDraw();
    DrawSomething();
    Receive("one", "me", "a", {0, 0, 160, 160}, kRed);
    for (const SDL_Point size : {SDL_Point{1000, 300}, {200, 700}, {80, 200}, {640, 480}}) {
        view->Resize(size.x, size.y);
        EXPECT_EQ(ColorAt(0.5, 0.5), kWhite) << size.x;
        EXPECT_EQ(ColorAt(0.9, 0.5), kCameraColor) << size.x;
        EXPECT_EQ(ColorAt(0.06, 0.08), kRed) << size.x;
    }
}

TEST_F(DrawingRoomTest, TheHandFollowsTheVideoThroughAResize) {
    OpenToDraw();
    view->Resize(1000, 400);
    view->Tick();
    Calls().Clear();
    DrawSomething();
    ASSERT_THAT(Sent(), SizeIs(1));
    const nlohmann::json data = Sent()[0]["message"]["shapes"][0]["data"];
    EXPECT_NEAR(data["x"].get<double>(), 320, 5);
    EXPECT_NEAR(data["width"].get<double>(), 640, 8);
    EXPECT_EQ(ColorAt(0.5, 0.5), kWhite);
}

TEST_F(DrawingRoomTest, MarksAreOnTheMainVideoAndOnTheWallThatWasDetached) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    Receive("two", "one", "a", kLeftHalf, kRed);
    ASSERT_EQ(ColorAt(0.25, 0.9), kRed);
    int wallWindow = 0;
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, kWallWindowWidth, kWallWindowHeight), 1);
    view->Tick();
    view->TickDetachedView();
    // The main video is a second tile of the stream, which has no picture of its own yet.
    ASSERT_NE(TileOf("one")->GetCanvas(), nullptr);
    EXPECT_EQ(ColorAt(0.25, 0.5), kRed);
    EXPECT_NE(ColorAt(0.75, 0.5), kRed);
    Calls().Clear();
    DrawSomething();
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["streamId"], "one");
    EXPECT_EQ(ColorAt(0.6, 0.6), kWhite);

    Picture wall;
    Calls().OnCall("SDL_RenderPresent",
                   [&](const Call&) { wall = ReadPicture(view->GetDetachedView()->GetRenderer()); });
    view->TickDetachedView();
    Calls().OnCall("SDL_RenderPresent", {});
    const SDL_Rect& tile = TileOf("one")->displayRect;
    EXPECT_EQ(wall.At(tile.x + tile.w / 8, tile.y + tile.h / 2), kRed);
    EXPECT_EQ(wall.At(tile.x + tile.w * 5 / 8, tile.y + tile.h * 5 / 8), kWhite);

    view->LeaveDetachedLayout();
    EXPECT_EQ(ColorAt(0.25, 0.9), kRed);
    EXPECT_EQ(ColorAt(0.6, 0.6), kWhite);
    view->GetDrawings().UndoCurrentCanvas();
    EXPECT_NE(ColorAt(0.6, 0.6), kWhite);
    EXPECT_TRUE(Fake().LogsOf(4).empty());
}

TEST_F(DrawingRoomTest, AGestureGoesOnWhileTheWallIsDetached) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    Calls().Clear();
    PushMotion(At(0.25, 0.25));
    PushDown();
    view->Tick();
    int wallWindow = 0;
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, kWallWindowWidth, kWallWindowHeight), 1);
    view->Tick();
    view->TickDetachedView();
    PushMotion(At(0.75, 0.75));
    view->Tick();
    PushUp();
    view->Tick();
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["streamId"], "one");
    EXPECT_EQ(ColorAt(0.6, 0.6), kWhite);
}

TEST_F(DrawingRoomTest, NoTextureIsLeftWhenTheRoomEnds) {
    OpenFullRoom();
    Choose(DrawToolRectangle);
    view->Tick();
    DrawSomething();
    PushMotion(At(0.1, 0.1));
    PushDown();
    PushMotion(At(0.2, 0.2));
    view->Tick();
    view->Shutdown();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
    EXPECT_THAT(Fake().LogsOf(4), IsEmpty());
    // The hand and the network may be late.
    Receive("one", "one", "late", kWholeCanvas, kRed);
    view->GetDrawings().UndoCurrentCanvas();
    view->GetDrawings().PublishHistoryState();
    view->GetDrawings().PublishLocalDrawings();
}

TEST_F(DrawingRoomTest, ALaterRoomKnowsNothingOfTheDrawingsOfThisOne) {
    OpenWithCamera();
    Receive("one", "me", "a", kWholeCanvas, kRed);
    ASSERT_EQ(ColorAt(0.5, 0.5), kRed);
    view->Shutdown();
    view = std::make_shared<VideoRoomView>(0, RecordingHost());
    OpenWithCamera();
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
}

// Cost

class DrawingCostTest : public DrawingRoomTest {
protected:
    struct Cost {
        std::vector<Call> calls;
        size_t textures = 0;
        size_t allocations = 0;
    };

    // Of a tick with 25 participants on the wall, when everything has been made.
    [[nodiscard]] Cost CostOfATick() {
        view->ReadRenderScalingSetting();
        AddCamera(kCameraColor);
        for (int participant = 0; participant < 25; ++participant) {
            AddRemote("participant " + std::to_string(participant), kOneColor);
        }
        view->SetActiveSpeaker("participant 3");
        for (int tick = 0; tick < 5; ++tick) view->Tick();
        return MeasureATick();
    }
    [[nodiscard]] Cost MeasureATick() {
        Cost cost;
        Calls().Clear();
        view->Tick();
        for (Call& call : Calls().OfThisThread()) {
            if (!call.name.starts_with("SDL_")) continue;
            // Where things lie in memory changes.
            std::erase_if(call.arguments, [](const std::string& text) { return text.starts_with("0x"); });
            cost.calls.push_back(call);
        }
        cost.textures = Sdl().LiveTextures();
        Calls().SetRecording(false);
        AllocationCounter::Start();
        for (int tick = 0; tick < 10; ++tick) view->Tick();
        cost.allocations = AllocationCounter::Stop();
        Calls().SetRecording(true);
        return cost;
    }
};

TEST_F(DrawingCostTest, ATickCostsNothingMoreWhereNobodyDraws) {
    OpenWithWall(1600, 900);
    const Cost withCanvases = CostOfATick();
    view.reset();
    view = std::make_shared<VideoRoomView>(0, RecordingHost());
    Drawing::DrawingCanvasManager::DestroyInstance();
    OpenWithWall(1600, 900);
    const Cost without = CostOfATick();
    ASSERT_EQ(TileOf("participant 3")->GetCanvas(), nullptr);
    EXPECT_GT(without.calls.size(), 25U);
    EXPECT_EQ(withCanvases.calls, without.calls);
    EXPECT_EQ(withCanvases.textures, without.textures);
    EXPECT_EQ(withCanvases.allocations, without.allocations);
}

// By the message that everybody sends when somebody joins.
TEST_F(DrawingCostTest, ParticipantsWithoutAMarkCostNothing) {
    OpenWithWall(1600, 900);
    const Cost before = CostOfATick();
    for (int stream = 0; stream < 25; ++stream) {
        for (int sender = 0; sender < 25; ++sender) {
            view->GetDrawings().OnDataChannelMessage(
                {"participant " + std::to_string(sender),
                 MarkMessage("participant " + std::to_string(stream), {})});
        }
    }
    view->Tick();
    const Cost after = MeasureATick();
    EXPECT_EQ(after.calls, before.calls);
    EXPECT_EQ(after.textures, before.textures);
    EXPECT_EQ(after.allocations, before.allocations);
}

TEST_F(DrawingCostTest, SteadyMarksAreCopiedAndNothingElse) {
    OpenFullRoom();
    view->Tick();
    const Cost without = MeasureATick();
    for (int mark = 0; mark < 50; ++mark) {
        Receive("two", "one", std::to_string(mark), {mark * 10, mark * 10, 50, 50}, kRed);
    }
    view->Tick();
    const Cost with = MeasureATick();
    // On the main video and on its thumbnail.
    EXPECT_EQ(with.calls.size(), without.calls.size() + 2);
    EXPECT_EQ(with.textures, without.textures + 1);
    EXPECT_EQ(with.allocations, without.allocations);
}

// A camera that is off: the main video and the thumbnail are of two shapes, and one canvas serves both.
TEST_F(DrawingCostTest, MarksOverAStreamWithoutAPictureAreDrawnOnce) {
    OpenWithWall();
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    view->SetActiveSpeaker("one");
    view->Tick();
    Receive("two", "one", "a", kLeftHalf, kRed);
    EXPECT_EQ(ColorAt(0.2, 0.5), kRed);
    Calls().Clear();
    for (int tick = 0; tick < 5; ++tick) view->Tick();
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
    EXPECT_EQ(ColorAt(0.2, 0.5), kRed);
    EXPECT_NE(ColorAt(0.8, 0.5), kRed);
}

}  // namespace
}  // namespace Corvanta::Room
