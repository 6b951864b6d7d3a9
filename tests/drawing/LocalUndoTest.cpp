// What the local user takes back, and what others are told of it.
#include <gmock/gmock.h>

#include "drawing/Rectangle.h"
#include "tests/drawing/LocalUser.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::ElementsAre;
using Testing::Fake;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

class LocalUndo : public Testing::LocalUserTest {
protected:
    // The one message since Forget: its shapes' ids and whether they replace what was there.
    ::testing::AssertionResult SentOnly(const std::vector<std::shared_ptr<Shape>>& shapes, bool clearCanvas) {
        const auto sent = Sent();
        if (sent.size() != 1) return ::testing::AssertionFailure() << sent.size() << " messages";
        const nlohmann::json& message = sent.front();
        if (message["type"] != "draw-canvas-broadcast" || message["streamId"] != "stream" ||
            message["message"]["clearCanvas"] != clearCanvas || IdsOf(message) != IdsOf(shapes)) {
            return ::testing::AssertionFailure() << message.dump();
        }
        return ::testing::AssertionSuccess();
    }
    // Nothing was sent, reported or asked since Forget.
    ::testing::AssertionResult NothingDone() {
        if (!surface.reports.empty()) return ::testing::AssertionFailure() << "reported";
        if (!Fake().CallNames().empty()) return ::testing::AssertionFailure() << Fake().CallNames().front();
        return ::testing::AssertionSuccess();
    }
    void AddOthersShape() {
        auto shape = std::make_shared<Rectangle>();
        shape->controlId = "other";
        source->Add("other", shape);
    }
};

TEST_F(LocalUndo, DoesNothingWithNothingToTakeBack) {
    Forget();
    manager.UndoCurrentCanvas();
    manager.RedoCurrentCanvas();
    EXPECT_TRUE(NothingDone());
}

TEST_F(LocalUndo, TakesBackTheLastShape) {
    const auto a = DrawRectangle();
    const auto b = DrawRectangle();
    Forget();
    manager.UndoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(a));
    EXPECT_TRUE(SentOnly({a}, true));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, true)));
}

TEST_F(LocalUndo, SendsAnEmptyListWhenAllIsTakenBack) {
    DrawRectangle();
    Forget();
    manager.UndoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_TRUE(SentOnly({}, true));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(false, true)));
}

TEST_F(LocalUndo, ShowsTheOutcomeBeforeItIsSent) {
    DrawRectangle();
    DrawRectangle();
    Forget();
    size_t shapesAtSending = 99;
    Fake().OnCall("MediaManager_SendDatachannelMessage",
                  [&](const auto&) { shapesAtSending = OwnShapes().size(); });
    manager.UndoCurrentCanvas();
    EXPECT_EQ(shapesAtSending, 1U);
}

TEST_F(LocalUndo, BringsBackAShapeByItself) {
    const auto a = DrawRectangle();
    const auto b = DrawRectangle();
    const auto c = DrawRectangle();
    manager.UndoCurrentCanvas();
    manager.UndoCurrentCanvas();
    Forget();
    manager.RedoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(a, b));
    EXPECT_TRUE(SentOnly({b}, false));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, true)));
    manager.RedoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(a, b, c));
    EXPECT_THAT(surface.reports.back(), Pair(true, false));
}

TEST_F(LocalUndo, EndsWithANewShapeWhatCouldBeBroughtBack) {
    const auto a = DrawRectangle();
    DrawRectangle();
    manager.UndoCurrentCanvas();
    const auto c = DrawRectangle();
    EXPECT_THAT(surface.reports.back(), Pair(true, false));
    Forget();
    manager.RedoCurrentCanvas();
    EXPECT_TRUE(NothingDone());
    EXPECT_THAT(OwnShapes(), ElementsAre(a, c));
}

TEST_F(LocalUndo, ClearsWithAnEmptyList) {
    DrawRectangle();
    Forget();
    manager.ClearCurrentCanvas();
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_TRUE(SentOnly({}, true));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, false)));
}

TEST_F(LocalUndo, BringsBackWhatWasCleared) {
    const auto a = DrawRectangle();
    manager.ClearCurrentCanvas();
    Forget();
    manager.UndoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(a));
    EXPECT_TRUE(SentOnly({a}, true));
}

TEST_F(LocalUndo, ClearsAgainWithARedo) {
    DrawRectangle();
    manager.ClearCurrentCanvas();
    manager.UndoCurrentCanvas();
    Forget();
    manager.RedoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_TRUE(SentOnly({}, true));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, false)));
}

TEST_F(LocalUndo, ClearsOnceForTwoClears) {
    const auto a = DrawRectangle();
    manager.ClearCurrentCanvas();
    Forget();
    manager.ClearCurrentCanvas();
    EXPECT_TRUE(NothingDone());
    manager.UndoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(a));
}

TEST_F(LocalUndo, ClearsAnEmptyCanvas) {
    Forget();
    manager.ClearCurrentCanvas();
    EXPECT_TRUE(SentOnly({}, true));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, false)));
}

TEST_F(LocalUndo, GoesBackBeyondAClear) {
    const auto a = DrawRectangle();
    manager.ClearCurrentCanvas();
    DrawRectangle();
    manager.UndoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), IsEmpty());
    manager.UndoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(a));
}

TEST_F(LocalUndo, LeavesTheShapesOfOthers) {
    AddOthersShape();
    DrawRectangle();
    manager.UndoCurrentCanvas();
    manager.ClearCurrentCanvas();
    manager.UndoCurrentCanvas();
    manager.RedoCurrentCanvas();
    EXPECT_THAT(source->ShapesOf("other"), SizeIs(1));
    for (const nlohmann::json& message : Sent()) {
        EXPECT_THAT(IdsOf(message), ::testing::Not(::testing::Contains("other")));
    }
}

TEST_F(LocalUndo, DeletesOneShape) {
    const auto a = DrawRectangle();
    const auto b = DrawRectangle();
    Forget();
    manager.LocalDrawings().DeleteShape(a->controlId, *source);
    EXPECT_THAT(OwnShapes(), ElementsAre(b));
    EXPECT_TRUE(SentOnly({b}, true));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, false)));
    Forget();
    manager.LocalDrawings().DeleteShape(a->controlId, *source);
    EXPECT_TRUE(NothingDone());
    manager.UndoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(a, b));
    Forget();
    manager.RedoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(b));
    EXPECT_TRUE(SentOnly({b}, true));
}

TEST_F(LocalUndo, RefillsWhenARedoneShapeIsNotToBeSeen) {
    auto shape = std::make_shared<Rectangle>();
    shape->controlId = "a";
    source->History().actions = {std::make_shared<DrawingAction::DeleteShape>("a"),
                                 std::make_shared<DrawingAction::CreateShape>(shape)};
    source->History().cursor = 1;
    manager.RedoCurrentCanvas();
    EXPECT_TRUE(SentOnly({}, true));
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, false)));
}

TEST_F(LocalUndo, BringsBackWhatThePlaybackHasCleared) {
    const auto a = DrawRectangle();
    DrawRectangle();
    manager.ClearAllSources();
    EXPECT_THAT(OwnShapes(), IsEmpty());
    manager.UndoCurrentCanvas();
    EXPECT_THAT(OwnShapes(), ElementsAre(a));
}

TEST_F(LocalUndo, ActsOnTheStreamOfTheMainVideo) {
    const auto a = DrawRectangle();
    DrawingCanvas other;
    other.SetFrameSize(1280, 720);
    manager.AttachCanvas("other", &other);
    surface.canvas = &other;
    Forget();
    manager.UndoCurrentCanvas();
    EXPECT_TRUE(NothingDone());
    EXPECT_THAT(OwnShapes(), ElementsAre(a));
}

TEST_F(LocalUndo, DoesNothingWithoutACanvasOrASource) {
    DrawRectangle();
    Forget();
    surface.canvas = nullptr;
    manager.UndoCurrentCanvas();
    manager.RedoCurrentCanvas();
    manager.ClearCurrentCanvas();
    manager.PublishHistoryState();
    DrawingCanvas detached;
    surface.canvas = &detached;
    manager.UndoCurrentCanvas();
    manager.RedoCurrentCanvas();
    manager.ClearCurrentCanvas();
    manager.PublishHistoryState();
    EXPECT_TRUE(NothingDone());
}

TEST_F(LocalUndo, BringsBackThousandsOfShapesAtOnce) {
    constexpr size_t kShapes = 10000;
    std::vector<std::shared_ptr<Shape>> shapes;
    for (size_t i = 0; i < kShapes; ++i) {
        auto shape = std::make_shared<Rectangle>();
        shape->controlId = std::to_string(i);
        source->History().actions.push_back(std::make_shared<DrawingAction::CreateShape>(shape));
        shapes.push_back(std::move(shape));
    }
    source->History().cursor = kShapes;
    manager.ClearCurrentCanvas();
    manager.UndoCurrentCanvas();
    EXPECT_EQ(OwnShapes(), shapes);
    EXPECT_THAT(IdsOf(LastSent()), SizeIs(kShapes));
}

}  // namespace
}  // namespace Corvanta::Drawing
