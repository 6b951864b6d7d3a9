// What the local user's pointer draws.
#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

#include "drawing/Line.h"
#include "drawing/LinePath.h"
#include "drawing/Rectangle.h"
#include "tests/drawing/LocalUser.h"
#include "tests/fake_platform/PixelReader.h"

namespace Corvanta::Drawing {
namespace {

using Testing::ButtonDown;
using Testing::ButtonUp;
using ::testing::ElementsAre;
using Testing::Fake;
using ::testing::IsEmpty;
using Testing::Motion;
using ::testing::Pair;
using Testing::PixelReader;
using ::testing::SizeIs;

const Color kPrimary(0xE8, 0x5C, 0x41, 0xFF);

class LocalGestures : public Testing::LocalUserTest {
protected:
    // Whether anything is drawn over a black picture, and whether all of it is drawn over.
    bool ShowsAnything() {
        const Testing::Picture picture = Rendered();
        return std::any_of(picture.pixels.begin(), picture.pixels.end(), IsDrawn);
    }
    bool CoversEverything() {
        // What is erased while it is drawn is seen a frame later.
        static_cast<void>(Rendered());
        const Testing::Picture picture = Rendered();
        return std::all_of(picture.pixels.begin(), picture.pixels.end(), IsDrawn);
    }
    ~LocalGestures() override { canvas.ReleaseResources(reader_.Renderer()); }
    [[nodiscard]] SDL_Renderer* Renderer() const { return reader_.Renderer(); }

private:
    static bool IsDrawn(uint32_t pixel) { return pixel != 0xFF000000; }
    Testing::Picture Rendered() {
        reader_.Fill(0xFF000000);
        canvas.Render(reader_.Renderer(), {0, 0, 0, 0}, {0, 0, 128, 72});
        return reader_.Read();
    }

    PixelReader reader_{128, 72};
};

TEST_F(LocalGestures, GoFromThePressToTheLastMotion) {
    Choose(DrawToolLine);
    PressAt({100, 200});
    MoveTo({500, 300});
    MoveTo({600, 400});
    const auto& line = CurrentAs<Line>();
    EXPECT_EQ(line.x1, 100);
    EXPECT_EQ(line.y1, 200);
    EXPECT_EQ(line.x2, 600);
    EXPECT_EQ(line.y2, 400);
}

TEST_F(LocalGestures, AddEachMotionToAStroke) {
    PressAt({100, 200});
    MoveTo({110, 210});
    MoveTo({130, 220});
    EXPECT_THAT(CurrentAs<LinePath>().points, ElementsAre(Pair(100, 200), Pair(110, 210), Pair(130, 220)));
}

TEST_F(LocalGestures, AreSeenByTheLocalUserAloneWhileTheyLast) {
    PressAt({100, 200});
    MoveTo({500, 300});
    EXPECT_TRUE(ShowsAnything());
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_THAT(surface.reports, IsEmpty());
}

TEST_F(LocalGestures, SendTheShapeOnceAtTheirEnd) {
    Choose(DrawToolRectangle);
    PressAt({100, 200});
    MoveTo({500, 300});
    const std::shared_ptr<Shape> shape = Current();
    Release();
    EXPECT_EQ(Current(), nullptr);
    EXPECT_THAT(shape->controlId, SizeIs(15));
    ASSERT_THAT(Sent(), SizeIs(1));
    const nlohmann::json expected{
        {"type", "draw-canvas-broadcast"},
        {"streamId", "stream"},
        {"message", {{"clearCanvas", false}, {"shapes", nlohmann::json::array({shape->ToJson()})}}}};
    EXPECT_EQ(SentTexts().front(), expected.dump());
}

TEST_F(LocalGestures, FileTheShapeUnderTheLocalUser) {
    PressAt({100, 200});
    MoveTo({500, 300});
    const std::shared_ptr<Shape> shape = Current();
    Release();
    EXPECT_THAT(OwnShapes(), ElementsAre(shape));
    EXPECT_THAT(source->History().VisibleShapes(), ElementsAre(shape));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, false)));
}

TEST_F(LocalGestures, SendTheShapeBeforeItsOwnLayerHasIt) {
    size_t shapesAtSending = 99;
    Fake().OnCall("MediaManager_SendDatachannelMessage",
                  [&](const auto&) { shapesAtSending = OwnShapes().size(); });
    Drag({100, 200}, {500, 300});
    EXPECT_EQ(shapesAtSending, 0U);
}

TEST_F(LocalGestures, AskForTheLocalUsersCameraStream) {
    Drag({100, 200}, {500, 300});
    const auto calls = Fake().CallsOf("Connections_GetLocalUserStreamID");
    ASSERT_THAT(calls, SizeIs(1));
    EXPECT_THAT(calls.front().arguments, ElementsAre("0"));
}

TEST_F(LocalGestures, EndTheirPreview) {
    Drag({100, 200}, {500, 300});
    EXPECT_TRUE(ShowsAnything());
    source->RemoveParticipant("me");
    EXPECT_FALSE(ShowsAnything());
}

TEST_F(LocalGestures, GiveEachShapeItsOwnId) {
    Drag({100, 200}, {500, 300});
    Drag({100, 200}, {500, 300});
    ASSERT_THAT(OwnShapes(), SizeIs(2));
    EXPECT_NE(OwnShapes()[0]->controlId, OwnShapes()[1]->controlId);
}

TEST_F(LocalGestures, MakeNoShapeWhileTheToolIsOff) {
    DrawToolState state = Testing::ToolState(DrawToolPencil);
    state.enabled = false;
    manager.SetDrawToolState(state);
    Drag({100, 200}, {500, 300});
    EXPECT_EQ(Current(), nullptr);
    EXPECT_THAT(OwnShapes(), IsEmpty());
}

TEST_F(LocalGestures, MakeNoShapeBeforeTheHostHasSetATool) {
    DrawingCanvasManager fresh(&surface);
    fresh.Input().Dispatch(Motion({300, 200}));
    fresh.Input().Dispatch(ButtonDown());
    EXPECT_EQ(fresh.LocalDrawings().CurrentShape(), nullptr);
    EXPECT_FALSE(fresh.IsToolEnabled());
    EXPECT_EQ(fresh.LocalDrawings().ToolState().selectedTool, 0U);
}

TEST_F(LocalGestures, MakeNoShapeWithAToolAboveSeven) {
    Choose(8);
    Drag({100, 200}, {500, 300});
    EXPECT_EQ(Current(), nullptr);
    EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(LocalGestures, KeepTheShapeInProgressWithAToolAboveSeven) {
    PressAt({100, 200});
    const std::shared_ptr<Shape> stroke = Current();
    Choose(8);
    PressAt({500, 300});
    EXPECT_EQ(Current(), stroke);
    EXPECT_THAT(CurrentAs<LinePath>().points, SizeIs(2));
}

TEST_F(LocalGestures, GoOnAfterTheToolWasSwitchedOff) {
    PressAt({100, 200});
    DrawToolState state = Testing::ToolState(DrawToolPencil);
    state.enabled = false;
    manager.SetDrawToolState(state);
    MoveTo({500, 300});
    Release();
    EXPECT_THAT(OwnShapes(), SizeIs(1));
}

TEST_F(LocalGestures, NeedACanvas) {
    surface.canvas = nullptr;
    Drag({100, 200}, {500, 300});
    EXPECT_EQ(Current(), nullptr);
}

TEST_F(LocalGestures, WaitForTheCanvasThatWentMeanwhile) {
    PressAt({100, 200});
    surface.canvas = nullptr;
    MoveTo({500, 300});
    Release();
    EXPECT_THAT(CurrentAs<LinePath>().points, SizeIs(1));
    surface.canvas = &canvas;
    Release();
    EXPECT_THAT(OwnShapes(), SizeIs(1));
}

TEST_F(LocalGestures, BeginAtTheNearEdgesButNotAtTheFarOnes) {
    PressAt({1280, 100});
    EXPECT_EQ(Current(), nullptr);
    PressAt({100, 720});
    EXPECT_EQ(Current(), nullptr);
    PressAt({-2, 100});
    EXPECT_EQ(Current(), nullptr);
    PressAt({100, -2});
    EXPECT_EQ(Current(), nullptr);
    PressAt({0, 0});
    EXPECT_NE(Current(), nullptr);
    Release();
    PressAt({1278, 718});
    EXPECT_NE(Current(), nullptr);
}

TEST_F(LocalGestures, DoNotBeginOnAVideoWithoutSize) {
    surface.area = {100, 50, 0, 0};
    PressAt({0, 0});
    EXPECT_EQ(Current(), nullptr);
}

TEST_F(LocalGestures, StandStillOnAVideoWithoutSize) {
    PressAt({100, 200});
    surface.area = {100, 50, 0, 360};
    MoveTo({500, 300});
    EXPECT_THAT(CurrentAs<LinePath>().points, SizeIs(1));
}

TEST_F(LocalGestures, DoNotBeginOnACanvasWithoutSize) {
    DrawingCanvas unsized;
    manager.AttachCanvas("stream", &unsized);
    surface.canvas = &unsized;
    PressAt({0, 0});
    EXPECT_EQ(Current(), nullptr);
}

TEST_F(LocalGestures, EndARectangleOnTheEdgeThatTheyLeaveBy) {
    Choose(DrawToolRectangle);
    PressAt({100, 200});
    MoveTo({2000, 300});
    EXPECT_EQ(CurrentAs<Rectangle>().width, 1180);
    EXPECT_EQ(CurrentAs<Rectangle>().height, 100);
    MoveTo({-400, 2000});
    EXPECT_EQ(CurrentAs<Rectangle>().width, -100);
    EXPECT_EQ(CurrentAs<Rectangle>().height, 520);
}

TEST_F(LocalGestures, RunAPencilStrokeAlongTheEdge) {
    PressAt({100, 200});
    MoveTo({-50, 300});
    MoveTo({-90, 400});
    MoveTo({20, -10});
    EXPECT_THAT(CurrentAs<LinePath>().points,
                ElementsAre(Pair(100, 200), Pair(0, 300), Pair(0, 400), Pair(20, 0)));
}

TEST_F(LocalGestures, FinishAStrokeThatIsReleasedOutsideTheVideo) {
    PressAt({100, 200});
    MoveTo({5000, 5000});
    Release();
    EXPECT_THAT(OwnShapes(), SizeIs(1));
}

TEST_F(LocalGestures, DoNotRunToTheCornerWhenThePointerLeaves) {
    PressAt({100, 200});
    Testing::HandClock::Turn(30);
    Dispatch(Motion({-1, -1}));
    Release();
    EXPECT_THAT(std::dynamic_pointer_cast<LinePath>(OwnShapes().at(0))->points, SizeIs(1));
}

TEST_F(LocalGestures, TakeTheRightButtonAsTheLeft) {
    MoveTo({100, 200});
    Dispatch(ButtonDown(SDL_BUTTON_RIGHT));
    MoveTo({300, 200});
    Dispatch(ButtonUp(SDL_BUTTON_RIGHT));
    EXPECT_THAT(OwnShapes(), SizeIs(1));
}

TEST_F(LocalGestures, LetGoOfTheShapeInProgressAtASecondPress) {
    PressAt({100, 200});
    const std::weak_ptr<Shape> first = Current();
    PressAt({300, 200});
    MoveTo({400, 300});
    Release();
    EXPECT_TRUE(first.expired());
    EXPECT_THAT(Sent(), SizeIs(1));
    EXPECT_THAT(OwnShapes(), SizeIs(1));
}

TEST_F(LocalGestures, EndOnceForTwoReleases) {
    Drag({100, 200}, {500, 300});
    Release();
    EXPECT_THAT(Sent(), SizeIs(1));
}

TEST_F(LocalGestures, KeepTheColourOfAStrokeThatIsInProgress) {
    PressAt({100, 200});
    DrawToolState state = Testing::ToolState(DrawToolPencil);
    state.primaryColor = 0x01020304;
    state.pencilStrokeWidth = 40;
    manager.SetDrawToolState(state);
    EXPECT_EQ(CurrentAs<LinePath>().color, kPrimary);
    EXPECT_EQ(Current()->strokeWidth, 10U);
    Release();
    PressAt({100, 200});
    EXPECT_EQ(CurrentAs<LinePath>().color, Color(1, 2, 3, 4));
    EXPECT_EQ(Current()->strokeWidth, 40U);
}

TEST_F(LocalGestures, GoOnThroughAChangeOfTool) {
    PressAt({100, 200});
    Choose(DrawToolEllipse);
    MoveTo({500, 300});
    Release();
    EXPECT_NE(std::dynamic_pointer_cast<LinePath>(OwnShapes().at(0)), nullptr);
}

TEST_F(LocalGestures, StayOpenWhenTheTextToolComesMeanwhile) {
    PressAt({100, 200});
    Choose(DrawToolText);
    Release();
    EXPECT_NE(Current(), nullptr);
    EXPECT_THAT(Sent(), IsEmpty());
    // The button is up, so the stroke goes no further, and a click is for texts alone.
    MoveTo({500, 300});
    PressAt({600, 300});
    EXPECT_THAT(CurrentAs<LinePath>().points, SizeIs(1));
}

TEST_F(LocalGestures, DropTheShapeOfACanvasWithoutSource) {
    PressAt({100, 200});
    manager.RemoveAllSources();
    source.reset();
    Release();
    EXPECT_EQ(Current(), nullptr);
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(surface.reports, IsEmpty());
}

TEST_F(LocalGestures, DropTheirPreviewWithTheShape) {
    PressAt({100, 200});
    MoveTo({500, 300});
    EXPECT_TRUE(ShowsAnything());
    manager.RemoveAllSources();
    source.reset();
    Release();
    EXPECT_FALSE(ShowsAnything());
}

TEST_F(LocalGestures, DropTheShapeOfASourceWithoutStream) {
    manager.AttachCanvas("", &canvas);
    Drag({100, 200}, {500, 300});
    EXPECT_EQ(Current(), nullptr);
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(manager.GetOrCreateSource("")->ShapesOf("me"), IsEmpty());
}

TEST_F(LocalGestures, DrawOnTheStreamThatTheMainVideoShowsAtTheirEnd) {
    DrawingCanvas other;
    other.SetFrameSize(1280, 720);
    manager.AttachCanvas("other", &other);
    PressAt({100, 200});
    surface.canvas = &other;
    Release();
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_THAT(manager.GetOrCreateSource("other")->ShapesOf("me"), SizeIs(1));
    EXPECT_EQ(LastSent()["streamId"], "other");
}

TEST_F(LocalGestures, EndTheirPreviewOnTheVideoWhereTheyBegan) {
    DrawingCanvas other;
    other.SetFrameSize(1280, 720);
    manager.AttachCanvas("other", &other);
    PressAt({100, 200});
    MoveTo({500, 300});
    EXPECT_TRUE(ShowsAnything());
    surface.canvas = &other;
    Release();
    EXPECT_FALSE(ShowsAnything());
}

TEST_F(LocalGestures, EraseNothingMoreOnTheVideoWhereTheyBegan) {
    DrawingCanvas other;
    other.SetFrameSize(1280, 720);
    manager.AttachCanvas("other", &other);
    const auto whole = std::make_shared<Rectangle>();
    whole->fillColor = kPrimary;
    whole->x = -20;
    whole->y = -20;
    whole->width = 1320;
    whole->height = 760;
    source->Add("me", whole);
    Choose(DrawToolEraser);
    PressAt({100, 200});
    MoveTo({500, 300});
    EXPECT_FALSE(CoversEverything());
    surface.canvas = &other;
    Release();
    source->RemoveParticipant("me");
    source->Add("me", whole);
    EXPECT_TRUE(CoversEverything());
}

TEST_F(LocalGestures, EndThePreviewOfAShapeThatIsLetGoOf) {
    DrawingCanvas other;
    other.SetFrameSize(1280, 720);
    manager.AttachCanvas("other", &other);
    PressAt({100, 200});
    MoveTo({500, 300});
    surface.canvas = &other;
    PressAt({100, 200});
    EXPECT_NE(Current(), nullptr);
    EXPECT_FALSE(ShowsAnything());
}

TEST_F(LocalGestures, LeaveNothingOfAShapeThatCannotBeSent) {
    manager.AttachCanvas("\xFF", &canvas);
    PressAt({100, 200});
    MoveTo({500, 300});
    const std::shared_ptr<Shape> shape = Current();
    EXPECT_THROW(Release(), nlohmann::json::type_error);
    EXPECT_EQ(Current(), nullptr);
    EXPECT_FALSE(ShowsAnything());
    EXPECT_THAT(shape->controlId, IsEmpty());
    EXPECT_THAT(canvas.Source()->ShapesOf("me"), IsEmpty());
    EXPECT_FALSE(canvas.Source()->History().CanUndo());
    EXPECT_THAT(surface.reports, IsEmpty());
}

TEST_F(LocalGestures, ReportTheHistoryWhenAllElseIsDone) {
    size_t reports = 0;
    surface.onReport = [&] {
        ++reports;
        EXPECT_THAT(Sent(), SizeIs(reports));
        EXPECT_EQ(Current(), nullptr);
        EXPECT_THAT(OwnShapes(), SizeIs(reports % 2));
    };
    Drag({100, 200}, {500, 300});
    manager.UndoCurrentCanvas();
    manager.RedoCurrentCanvas();
    manager.ClearCurrentCanvas();
    EXPECT_EQ(reports, 4U);
}

TEST_F(LocalGestures, DrawNothingByThemselves) {
    PressAt({100, 200});
    Forget();
    MoveTo({500, 300});
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(LocalGestures, GoOnWhenTheTileMovesToAnotherRenderer) {
    PressAt({100, 200});
    MoveTo({500, 300});
    EXPECT_TRUE(ShowsAnything());
    canvas.MoveToRenderer(Renderer());
    EXPECT_FALSE(ShowsAnything());
    MoveTo({600, 400});
    Release();
    EXPECT_THAT(OwnShapes(), SizeIs(1));
    EXPECT_TRUE(ShowsAnything());
}

TEST_F(LocalGestures, SurviveTheLossOfTheirRenderer) {
    for (const uint32_t tool : {DrawToolPencil, DrawToolEraser, DrawToolText}) {
        Choose(tool);
        PressAt({100, 200});
        MoveTo({500, 300});
        auto lost = std::make_unique<PixelReader>(64, 36);
        canvas.Render(lost->Renderer(), {0, 0, 0, 0}, {0, 0, 64, 36});
        canvas.ReleaseResources(lost->Renderer());
        lost.reset();
        MoveTo({600, 400});
        Release();
        PressAt({-20, -20});
        EXPECT_EQ(Current(), nullptr);
        EXPECT_TRUE(ShowsAnything() || tool != DrawToolPencil);
    }
    EXPECT_THAT(OwnShapes(), SizeIs(2));
}

TEST_F(LocalGestures, EndWithTheManagerInTheMiddleOfAStroke) {
    auto own = std::make_unique<DrawingCanvasManager>(&surface);
    own->AttachCanvas("stream", &canvas);
    own->SetDrawToolState(Testing::ToolState(DrawToolRectangle));
    own->Input().Dispatch(Motion({200, 150}));
    own->Input().Dispatch(ButtonDown());
    own->Input().Dispatch(Motion({500, 350}));
    EXPECT_TRUE(ShowsAnything());
    own.reset();
    EXPECT_EQ(canvas.Source(), nullptr);
    EXPECT_TRUE(ShowsAnything());
}

}  // namespace
}  // namespace Corvanta::Drawing
