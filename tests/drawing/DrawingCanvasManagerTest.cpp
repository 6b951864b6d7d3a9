#include "drawing/DrawingCanvasManager.h"

#include <gmock/gmock.h>

#include <utility>

#include "drawing/Rectangle.h"
#include "drawing/TextBox.h"
#include "tests/drawing/LocalUser.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::ElementsAre;
using Testing::Fake;
using Testing::FakeResults;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;
using ::testing::StartsWith;
using Testing::TestSurface;

class DrawingCanvasManagerTest : public Testing::LocalUserTest {
protected:
    ~DrawingCanvasManagerTest() override { DrawingCanvasManager::DestroyInstance(); }

    static std::shared_ptr<Shape> Named(const std::string& controlId) {
        auto shape = std::make_shared<Rectangle>();
        shape->controlId = controlId;
        return shape;
    }
    std::shared_ptr<Shape> Add(const std::string& streamId, const std::string& participantId,
                               const std::string& controlId) {
        std::shared_ptr<Shape> shape = Named(controlId);
        manager.GetOrCreateSource(streamId)->Add(participantId, shape);
        return shape;
    }
};

TEST_F(DrawingCanvasManagerTest, IsThereFromTheFirstViewOn) {
    EXPECT_FALSE(DrawingCanvasManager::HasInstance());
    EXPECT_EQ(DrawingCanvasManager::Instance(), nullptr);
    const auto made = DrawingCanvasManager::SetView(&surface);
    EXPECT_TRUE(DrawingCanvasManager::HasInstance());
    EXPECT_EQ(DrawingCanvasManager::Instance(), made);
    EXPECT_EQ(made->CurrentCanvas(), &canvas);
}

TEST_F(DrawingCanvasManagerTest, GivesWayToTheNextViewsWithAllItsSources) {
    const std::weak_ptr<DrawingCanvasManager> first = DrawingCanvasManager::SetView(&surface);
    const std::weak_ptr<DrawingSource> firstSource = first.lock()->GetOrCreateSource("stream");
    TestSurface other;
    DrawingCanvasManager::SetView(&other);
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(firstSource.expired());
    EXPECT_EQ(DrawingCanvasManager::Instance()->CurrentCanvas(), nullptr);
}

TEST_F(DrawingCanvasManagerTest, LivesOnWithWhoeverIsInsideIt) {
    const auto inside = DrawingCanvasManager::SetView(&surface);
    DrawingCanvasManager::DestroyInstance();
    EXPECT_FALSE(DrawingCanvasManager::HasInstance());
    EXPECT_NE(inside->GetOrCreateSource("stream"), nullptr);
}

TEST_F(DrawingCanvasManagerTest, IsDestroyedWhenNobodyIsInsideIt) {
    const std::weak_ptr<DrawingCanvasManager> made = DrawingCanvasManager::SetView(&surface);
    DrawingCanvasManager::DestroyInstance();
    EXPECT_TRUE(made.expired());
    DrawingCanvasManager::DestroyInstance();
}

TEST_F(DrawingCanvasManagerTest, HasNothingToDrawOnOnceItsViewHasGone) {
    manager.LeaveView();
    EXPECT_EQ(manager.CurrentCanvas(), nullptr);
    SDL_Rect area{1, 2, 3, 4};
    manager.VideoArea(&area);
    EXPECT_EQ(area.w, 0);
    EXPECT_EQ(area.h, 0);
    manager.ReportHistoryState(true, true);
    manager.PublishHistoryState();
    EXPECT_THAT(surface.reports, IsEmpty());
    Drag({100, 200}, {300, 400});
    EXPECT_EQ(Current(), nullptr);
}

TEST_F(DrawingCanvasManagerTest, GivesTheViewsVideoArea) {
    SDL_Rect area{0, 0, 0, 0};
    manager.VideoArea(&area);
    EXPECT_EQ(area.x, 100);
    EXPECT_EQ(area.y, 50);
    EXPECT_EQ(area.w, 640);
    EXPECT_EQ(area.h, 360);
}

TEST_F(DrawingCanvasManagerTest, TellsWhetherTheToolIsOn) {
    EXPECT_TRUE(manager.IsToolEnabled());
    DrawToolState state = Testing::ToolState(DrawToolPencil);
    state.enabled = false;
    manager.SetDrawToolState(state);
    EXPECT_FALSE(manager.IsToolEnabled());
}

TEST_F(DrawingCanvasManagerTest, KeepsOneSourceForEachStream) {
    EXPECT_EQ(manager.GetOrCreateSource("stream"), source);
    EXPECT_EQ(source->StreamId(), "stream");
    EXPECT_NE(manager.GetOrCreateSource("other"), source);
}

TEST_F(DrawingCanvasManagerTest, JoinsACanvasToItsStream) {
    DrawingCanvas late;
    manager.AttachCanvas("late", &late);
    EXPECT_EQ(late.Source(), manager.GetOrCreateSource("late"));
}

TEST_F(DrawingCanvasManagerTest, ReportsWhatCanBeUndoneOnTheMainVideo) {
    DrawRectangle();
    DrawRectangle();
    manager.UndoCurrentCanvas();
    DrawingCanvas other;
    manager.AttachCanvas("other", &other);
    Forget();
    manager.PublishHistoryState();
    surface.canvas = &other;
    manager.PublishHistoryState();
    EXPECT_THAT(surface.reports, ElementsAre(Pair(true, true), Pair(false, false)));
}

TEST_F(DrawingCanvasManagerTest, SendsShapesOldestFirst) {
    manager.SendShapes({Named("b"), Named("a")}, "some stream", true);
    const nlohmann::json message = LastSent();
    EXPECT_EQ(message["type"], "draw-canvas-broadcast");
    EXPECT_EQ(message["streamId"], "some stream");
    EXPECT_EQ(message["message"]["clearCanvas"], true);
    EXPECT_THAT(IdsOf(message), ElementsAre("b", "a"));
    manager.SendShape(Named("c"), "some stream", false);
    EXPECT_EQ(LastSent()["message"]["clearCanvas"], false);
    EXPECT_THAT(IdsOf(LastSent()), ElementsAre("c"));
}

TEST_F(DrawingCanvasManagerTest, SendsNothingWhenATextIsNoUtf8) {
    auto text = std::make_shared<TextBox>();
    text->text = "\xFF";
    try {
        manager.SendShape(text, "stream", false);
        FAIL() << "Nothing was thrown";
    } catch (const nlohmann::json::type_error& error) {
        EXPECT_EQ(error.id, 316);
    }
    EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(DrawingCanvasManagerTest, DoesNotMindARefusedMessage) {
    Fake().Set([](FakeResults& results) { results.messagesAccepted = false; });
    DrawRectangle();
    EXPECT_THAT(OwnShapes(), SizeIs(1));
}

TEST_F(DrawingCanvasManagerTest, PublishesTheLocalUsersShapesStreamByStream) {
    Add("z stream", "me", "mine on z");
    Add("z stream", "other", "theirs on z");
    Add("a stream", "other", "theirs on a");
    const auto mine = DrawRectangle();
    Forget();
    manager.PublishLocalDrawings();
    const auto sent = Sent();
    ASSERT_THAT(sent, SizeIs(3));
    EXPECT_EQ(sent[0]["streamId"], "a stream");
    EXPECT_THAT(IdsOf(sent[0]), IsEmpty());
    EXPECT_EQ(sent[1]["streamId"], "stream");
    EXPECT_THAT(IdsOf(sent[1]), ElementsAre(mine->controlId));
    EXPECT_EQ(sent[2]["streamId"], "z stream");
    EXPECT_THAT(IdsOf(sent[2]), ElementsAre("mine on z"));
    for (const nlohmann::json& message : sent) EXPECT_EQ(message["message"]["clearCanvas"], false);
    for (const auto& call : Fake().CallsOf("Connections_GetLocalUserStreamID")) {
        EXPECT_THAT(call.arguments, ElementsAre("0"));
    }
}

TEST_F(DrawingCanvasManagerTest, PublishesNothingTwiceAfterUndoAndRedo) {
    const auto a = DrawRectangle();
    const auto b = DrawRectangle();
    manager.UndoCurrentCanvas();
    manager.RedoCurrentCanvas();
    Forget();
    manager.PublishLocalDrawings();
    EXPECT_THAT(IdsOf(LastSent()), ElementsAre(a->controlId, b->controlId));
}

TEST_F(DrawingCanvasManagerTest, PublishesWhileSourcesComeAndGo) {
    Add("a", "me", "1");
    Add("b", "me", "2");
    Fake().OnCall("MediaManager_SendDatachannelMessage", [&](const auto&) {
        manager.RemoveStream("a");
        manager.RemoveStream("b");
        EXPECT_NE(manager.GetOrCreateSource("c"), nullptr);
    });
    Forget();
    manager.PublishLocalDrawings();
    EXPECT_THAT(Sent(), SizeIs(3));
}

TEST_F(DrawingCanvasManagerTest, BringsNothingBackThatIsTakenBackWhileItPublishes) {
    const auto a = DrawRectangle();
    DrawRectangle();
    Forget();
    bool undone = false;
    Fake().OnCall("MediaManager_SendDatachannelMessage", [&](const auto&) {
        if (!std::exchange(undone, true)) manager.UndoCurrentCanvas();
    });
    manager.PublishLocalDrawings();
    EXPECT_EQ(LastSent()["message"]["clearCanvas"], true);
    EXPECT_EQ(LastSent()["streamId"], "stream");
    EXPECT_THAT(IdsOf(LastSent()), ElementsAre(a->controlId));
    EXPECT_THAT(Sent(), SizeIs(3));
}

TEST_F(DrawingCanvasManagerTest, PublishesEveryStreamThatCanBeNamed) {
    Add("\x80", "me", "1");
    // Behind the other in the order of streams.
    Add("\xC3\xA9", "me", "2");
    Forget();
    manager.PublishLocalDrawings();
    const auto sent = Sent();
    ASSERT_THAT(sent, SizeIs(2));
    EXPECT_EQ(sent[0]["streamId"], "stream");
    EXPECT_EQ(sent[1]["streamId"], "\xC3\xA9");
    EXPECT_THAT(Fake().LogsOf(3), ElementsAre(StartsWith("The drawings on a stream could not be shared")));
}

TEST_F(DrawingCanvasManagerTest, RemovesAStreamWithItsHistoryAndItsParticipantsMarks) {
    const auto mine = DrawRectangle();
    Add("stream", "leaver", "1");
    const auto stays = Add("stream", "other", "2");
    const std::weak_ptr<DrawingSource> left = manager.GetOrCreateSource("leaver");
    Add("leaver", "other", "3");
    left.lock()->History().RecordClear();
    manager.RemoveStream("leaver");
    EXPECT_TRUE(left.expired());
    EXPECT_THAT(source->ShapesOf("leaver"), IsEmpty());
    EXPECT_THAT(source->ShapesOf("other"), ElementsAre(stays));
    EXPECT_THAT(OwnShapes(), ElementsAre(mine));
    const auto again = manager.GetOrCreateSource("leaver");
    EXPECT_THAT(again->ShapesOf("other"), IsEmpty());
    EXPECT_FALSE(again->History().CanUndo());
}

TEST_F(DrawingCanvasManagerTest, RemovesTheMarksOfAParticipantWithoutASourceOfItsOwn) {
    Add("stream", "leaver", "1");
    manager.RemoveStream("leaver");
    EXPECT_THAT(source->ShapesOf("leaver"), IsEmpty());
}

TEST_F(DrawingCanvasManagerTest, ClearsAllShapesButKeepsSourcesAndCanvases) {
    DrawRectangle();
    Add("other", "other", "1");
    const auto other = manager.GetOrCreateSource("other");
    manager.ClearAllSources();
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_THAT(other->ShapesOf("other"), IsEmpty());
    EXPECT_EQ(manager.GetOrCreateSource("other"), other);
    EXPECT_EQ(canvas.Source(), source);
    EXPECT_TRUE(source->History().CanUndo());
}

TEST_F(DrawingCanvasManagerTest, RemovesAllSources) {
    const std::weak_ptr<DrawingSource> first = source;
    source.reset();
    manager.RemoveAllSources();
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(canvas.Source(), nullptr);
    Forget();
    manager.PublishLocalDrawings();
    EXPECT_THAT(Sent(), IsEmpty());
}

}  // namespace
}  // namespace Corvanta::Drawing
