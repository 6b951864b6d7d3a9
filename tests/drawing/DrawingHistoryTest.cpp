#include "drawing/DrawingHistory.h"

#include <gmock/gmock.h>

#include <ctime>

#include "drawing/Rectangle.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::shared_ptr<Shape> Named(const std::string& controlId) {
    auto shape = std::make_shared<Rectangle>();
    shape->controlId = controlId;
    return shape;
}

std::vector<std::string> Visible(const DrawingHistory& history) {
    std::vector<std::string> ids;
    for (const auto& shape : history.VisibleShapes()) ids.push_back(shape->controlId);
    return ids;
}

DrawingHistory WithShapes(const std::vector<std::string>& ids) {
    DrawingHistory history;
    for (const std::string& id : ids) EXPECT_TRUE(history.RecordCreate(Named(id)));
    return history;
}

// The type of what was done again, or -1.
int RedoneType(DrawingHistory& history) {
    int type = -1;
    return history.Redo(type) ? type : -1;
}

TEST(DrawingHistory, BeginsWithNothingToUndoOrRedo) {
    DrawingHistory history;
    EXPECT_FALSE(history.CanUndo());
    EXPECT_FALSE(history.CanRedo());
    EXPECT_FALSE(history.Undo());
    EXPECT_EQ(RedoneType(history), -1);
    EXPECT_THAT(Visible(history), IsEmpty());
    EXPECT_EQ(history.cursor, 0U);
}

TEST(DrawingHistory, ShowsWhatWasCreatedInItsOrder) {
    const DrawingHistory history = WithShapes({"c", "a", "b"});
    EXPECT_THAT(Visible(history), ElementsAre("c", "a", "b"));
    EXPECT_TRUE(history.CanUndo());
    EXPECT_FALSE(history.CanRedo());
}

TEST(DrawingHistory, GivesBackTheSameObjects) {
    DrawingHistory history;
    const std::shared_ptr<Shape> shape = Named("a");
    history.RecordCreate(shape);
    history.Undo();
    EXPECT_EQ(RedoneType(history), 1);
    EXPECT_THAT(history.VisibleShapes(), ElementsAre(shape));
}

TEST(DrawingHistory, RecordsNoShapeThatIsNoneOrVisible) {
    DrawingHistory history = WithShapes({"a"});
    EXPECT_FALSE(history.RecordCreate(nullptr));
    EXPECT_FALSE(history.RecordCreate(Named("a")));
    EXPECT_EQ(history.actions.size(), 1U);
}

TEST(DrawingHistory, RecordsAShapeAgainThatWasUndoneOrCleared) {
    DrawingHistory history = WithShapes({"a"});
    history.Undo();
    EXPECT_TRUE(history.RecordCreate(Named("a")));
    history.RecordClear();
    EXPECT_TRUE(history.RecordCreate(Named("a")));
    EXPECT_THAT(Visible(history), ElementsAre("a"));
}

TEST(DrawingHistory, LosesWhatWasUndoneWithANewShape) {
    DrawingHistory history = WithShapes({"a", "b"});
    history.Undo();
    EXPECT_TRUE(history.CanRedo());
    history.RecordCreate(Named("c"));
    EXPECT_FALSE(history.CanRedo());
    EXPECT_THAT(Visible(history), ElementsAre("a", "c"));
}

TEST(DrawingHistory, LosesWhatWasUndoneWithAClear) {
    DrawingHistory history = WithShapes({"a", "b"});
    history.Undo();
    EXPECT_TRUE(history.RecordClear());
    EXPECT_FALSE(history.CanRedo());
    EXPECT_EQ(history.actions.size(), 2U);
    EXPECT_EQ(history.firstVisible, 2U);
}

TEST(DrawingHistory, KeepsWhatWasUndoneWhenNothingIsRecorded) {
    DrawingHistory history = WithShapes({"a", "b"});
    history.Undo();
    EXPECT_FALSE(history.RecordCreate(Named("a")));
    EXPECT_FALSE(history.RecordDelete("b"));
    EXPECT_TRUE(history.CanRedo());
}

TEST(DrawingHistory, RestoresClearedShapesWithOneUndo) {
    DrawingHistory history = WithShapes({"a"});
    EXPECT_TRUE(history.RecordClear());
    EXPECT_THAT(Visible(history), IsEmpty());
    EXPECT_TRUE(history.Undo());
    EXPECT_THAT(Visible(history), ElementsAre("a"));
}

TEST(DrawingHistory, StandsAtTheClearThatIsRedone) {
    DrawingHistory history = WithShapes({"a"});
    history.RecordClear();
    history.Undo();
    EXPECT_EQ(RedoneType(history), 0);
    EXPECT_THAT(Visible(history), IsEmpty());
    EXPECT_EQ(history.firstVisible, 1U);
    EXPECT_EQ(history.cursor, 2U);
}

TEST(DrawingHistory, RecordsNoClearRightAfterAClear) {
    DrawingHistory history = WithShapes({"a"});
    EXPECT_TRUE(history.RecordClear());
    EXPECT_FALSE(history.RecordClear());
    EXPECT_EQ(history.actions.size(), 2U);
    history.Undo();
    EXPECT_THAT(Visible(history), ElementsAre("a"));
}

TEST(DrawingHistory, RecordsTheClearOfAnEmptyCanvas) {
    DrawingHistory history;
    EXPECT_TRUE(history.RecordClear());
    EXPECT_TRUE(history.CanUndo());
    EXPECT_EQ(history.firstVisible, 1U);
}

TEST(DrawingHistory, UndoesAClearThatCameFirst) {
    DrawingHistory history;
    history.RecordClear();
    EXPECT_TRUE(history.Undo());
    EXPECT_EQ(history.firstVisible, 0U);
    EXPECT_EQ(history.cursor, 0U);
    EXPECT_EQ(RedoneType(history), 0);
    EXPECT_EQ(history.firstVisible, 0U);
}

TEST(DrawingHistory, GoesBackThroughAClearStepByStep) {
    DrawingHistory history = WithShapes({"a"});
    history.RecordClear();
    history.RecordCreate(Named("b"));
    history.Undo();
    EXPECT_THAT(Visible(history), IsEmpty());
    history.Undo();
    EXPECT_THAT(Visible(history), ElementsAre("a"));
}

TEST(DrawingHistory, GoesBackToTheClearBeforeTheClear) {
    DrawingHistory history = WithShapes({"a"});
    history.RecordClear();
    history.RecordCreate(Named("b"));
    history.RecordClear();
    history.RecordCreate(Named("c"));
    history.Undo();
    history.Undo();
    EXPECT_THAT(Visible(history), ElementsAre("b"));
    EXPECT_EQ(history.firstVisible, 1U);
    history.Undo();
    history.Undo();
    EXPECT_THAT(Visible(history), ElementsAre("a"));
}

TEST(DrawingHistory, LeavesOutWhatWasDeleted) {
    DrawingHistory history = WithShapes({"a", "b", "c"});
    EXPECT_TRUE(history.RecordDelete("b"));
    EXPECT_THAT(Visible(history), ElementsAre("a", "c"));
    history.Undo();
    EXPECT_THAT(Visible(history), ElementsAre("a", "b", "c"));
    EXPECT_EQ(RedoneType(history), 2);
    EXPECT_THAT(Visible(history), ElementsAre("a", "c"));
}

TEST(DrawingHistory, DeletesOnlyWhatIsVisible) {
    DrawingHistory history = WithShapes({"a", "b"});
    EXPECT_FALSE(history.RecordDelete("x"));
    EXPECT_TRUE(history.RecordDelete("a"));
    EXPECT_FALSE(history.RecordDelete("a"));
    history.RecordClear();
    EXPECT_FALSE(history.RecordDelete("b"));
    EXPECT_EQ(history.actions.size(), 4U);
}

TEST(DrawingHistory, TakesADeletedShapeForVisibleWhenItComesAgain) {
    DrawingHistory history = WithShapes({"a"});
    history.RecordDelete("a");
    EXPECT_FALSE(history.RecordCreate(Named("a")));
    EXPECT_THAT(Visible(history), IsEmpty());
}

TEST(DrawingHistory, ReadsManyDeletionsWithoutComparingEachWithEach) {
    constexpr size_t kShapes = 20000;
    DrawingHistory history;
    for (size_t i = 0; i < kShapes; ++i) {
        std::string id = "shape number ";
        id += std::to_string(i);
        history.actions.push_back(std::make_shared<DrawingAction::CreateShape>(Named(id)));
        history.actions.push_back(std::make_shared<DrawingAction::DeleteShape>(id));
    }
    history.cursor = history.actions.size();
    const std::clock_t start = std::clock();
    EXPECT_THAT(history.VisibleShapes(), IsEmpty());
    // 400 million comparisons of texts cost several times that.
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC / 2);
}

}  // namespace
}  // namespace Corvanta::Drawing
