// Messages of other participants.
#include <gmock/gmock.h>

#include <functional>

#include "tests/drawing/LocalUser.h"
#include "tests/fake_platform/PixelReader.h"

namespace Corvanta::Drawing {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using Testing::Fake;
using ::testing::IsEmpty;
using Testing::PixelReader;
using ::testing::SizeIs;
using ::testing::StartsWith;

json RectangleOf(const std::string& controlId) {
    return {{"className", "Rectangle"},
            {"controlId", controlId},
            {"id", controlId},
            {"data",
             {{"x", 0.0},
              {"y", 0.0},
              {"width", 1280.0},
              {"height", 720.0},
              {"fillColor", "rgba(0, 255, 0, 1.000000)"},
              {"strokeColor", "rgba(0, 255, 0, 1.000000)"},
              {"strokeWidth", 1}}}};
}

json Message(const std::vector<json>& shapes, bool clearCanvas = false,
             const std::string& streamId = "stream") {
    return {{"type", "draw-canvas-broadcast"},
            {"streamId", streamId},
            {"message", {{"clearCanvas", clearCanvas}, {"shapes", json(shapes)}}}};
}

class IncomingDrawings : public Testing::LocalUserTest {
protected:
    void Receive(const std::string& senderId, const json& message) {
        manager.OnDataChannelMessage({senderId, message.dump()});
    }
    // Id of the exception of the JSON library, 0 when there was none.
    int ErrorOf(const std::string& text, const std::string& senderId = "sender") {
        try {
            manager.OnDataChannelMessage({senderId, text});
        } catch (const json::exception& error) {
            what_ = error.what();
            return error.id;
        }
        return 0;
    }
    int ErrorOf(const json& message) { return ErrorOf(message.dump()); }
    [[nodiscard]] const std::string& What() const { return what_; }
    [[nodiscard]] std::vector<std::string> ShapesOf(const std::string& senderId) const {
        return IdsOf(source->ShapesOf(senderId));
    }
    // How many sources there are, seen by what is published.
    size_t SourceCount() {
        Forget();
        manager.PublishLocalDrawings();
        return Sent().size();
    }

private:
    std::string what_;
};

TEST_F(IncomingDrawings, AreFiledUnderTheirSender) {
    Receive("b", Message({RectangleOf("1"), RectangleOf("2")}));
    Receive("c", Message({RectangleOf("3")}));
    EXPECT_THAT(ShapesOf("b"), ElementsAre("1", "2"));
    EXPECT_THAT(ShapesOf("c"), ElementsAre("3"));
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_FALSE(source->History().CanUndo());
}

TEST_F(IncomingDrawings, AreNeitherAnsweredNorReported) {
    Forget();
    Receive("b", Message({RectangleOf("1")}));
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
    EXPECT_THAT(surface.reports, IsEmpty());
}

TEST_F(IncomingDrawings, WaitForTheTileOfTheirStream) {
    Receive("b", Message({RectangleOf("1")}, false, "new stream"));
    DrawingCanvas late;
    late.SetFrameSize(1280, 720);
    manager.AttachCanvas("new stream", &late);
    PixelReader reader(64, 36);
    late.Render(reader.Renderer(), {0, 0, 0, 0}, {0, 0, 64, 36});
    EXPECT_TRUE(Testing::PixelIs(reader.Read(), 32, 18, 0xFF00FF00));
    late.ReleaseResources(reader.Renderer());
}

TEST_F(IncomingDrawings, AreAddedOrTakeTheSendersPlace) {
    Receive("b", Message({RectangleOf("1")}));
    Receive("b", Message({RectangleOf("2")}));
    EXPECT_THAT(ShapesOf("b"), ElementsAre("1", "2"));
    Receive("b", Message({RectangleOf("2"), RectangleOf("3")}, true));
    EXPECT_THAT(ShapesOf("b"), ElementsAre("2", "3"));
}

TEST_F(IncomingDrawings, LeaveTheShapesOfOthersWhenTheyTakeTheirSendersPlace) {
    const auto mine = DrawRectangle();
    Receive("b", Message({RectangleOf("1")}));
    Receive("c", Message({RectangleOf("2")}, true));
    Receive("b", Message({RectangleOf("3")}, true));
    EXPECT_THAT(ShapesOf("b"), ElementsAre("3"));
    EXPECT_THAT(ShapesOf("c"), ElementsAre("2"));
    EXPECT_THAT(OwnShapes(), ElementsAre(mine));
}

TEST_F(IncomingDrawings, ClearTheSendersShapesWithAnEmptyList) {
    Receive("b", Message({RectangleOf("1")}));
    Receive("c", Message({RectangleOf("2")}));
    Receive("b", Message({}, false));
    EXPECT_THAT(ShapesOf("b"), IsEmpty());
    Receive("c", Message({}, true));
    EXPECT_THAT(ShapesOf("c"), IsEmpty());
}

TEST_F(IncomingDrawings, OfOneStreamLeaveTheOtherAlone) {
    Receive("b", Message({RectangleOf("1")}));
    Receive("b", Message({RectangleOf("2")}, true, "other"));
    EXPECT_THAT(ShapesOf("b"), ElementsAre("1"));
}

TEST_F(IncomingDrawings, AreAddedWithoutAWishToClear) {
    Receive("b", Message({RectangleOf("1")}));
    json message = Message({RectangleOf("2")});
    message["message"].erase("clearCanvas");
    Receive("b", message);
    EXPECT_THAT(ShapesOf("b"), ElementsAre("1", "2"));
}

TEST_F(IncomingDrawings, OfOtherKindsChangeNothing) {
    Receive("b", {{"type", "shared-file-playback"}, {"streamId", "new"}});
    Receive("b", {{"type", 5}, {"streamId", "new"}});
    Receive("b", {{"type", nullptr}});
    Receive("b", {{"type", "Draw-canvas-broadcast"}, {"streamId", "new"}});
    EXPECT_EQ(SourceCount(), 1U);
}

TEST_F(IncomingDrawings, ThrowWhenTheyAreNoMessage) {
    EXPECT_EQ(ErrorOf(std::string()), 101);
    EXPECT_EQ(ErrorOf(std::string("{\"type\":")), 101);
    EXPECT_EQ(ErrorOf(std::string("[]")), 304);
    EXPECT_EQ(ErrorOf(json::object()), 403);
    EXPECT_THAT(What(), ::testing::HasSubstr("key 'type' not found"));
    EXPECT_EQ(SourceCount(), 1U);
}

TEST_F(IncomingDrawings, ThrowAndMakeNoSourceWithoutAStream) {
    json message = Message({RectangleOf("1")});
    message["streamId"] = 7;
    EXPECT_EQ(ErrorOf(message), 302);
    message.erase("streamId");
    EXPECT_EQ(ErrorOf(message), 403);
    EXPECT_EQ(SourceCount(), 1U);
}

TEST_F(IncomingDrawings, LeaveOnlyASourceWithABadList) {
    Receive("sender", Message({RectangleOf("1")}));
    json message = Message({}, true, "first");
    message["message"].erase("shapes");
    EXPECT_EQ(ErrorOf(message), 403);
    message = Message({}, true, "second");
    message["message"]["shapes"] = "none";
    EXPECT_EQ(ErrorOf(message), 302);
    EXPECT_THAT(What(), ::testing::HasSubstr("type must be array, but is string"));
    message.erase("message");
    message["streamId"] = "third";
    EXPECT_EQ(ErrorOf(message), 403);
    message = Message({}, true);
    message["message"] = 7;
    EXPECT_EQ(ErrorOf(message), 304);
    EXPECT_EQ(SourceCount(), 4U);
    EXPECT_THAT(ShapesOf("sender"), ElementsAre("1"));
}

TEST_F(IncomingDrawings, ChangeNothingWithABadWishToClear) {
    Receive("sender", Message({RectangleOf("1")}));
    json message = Message({RectangleOf("2")});
    message["message"]["clearCanvas"] = 1;
    EXPECT_EQ(ErrorOf(message), 302);
    EXPECT_THAT(What(), ::testing::HasSubstr("type must be boolean, but is number"));
    EXPECT_THAT(ShapesOf("sender"), ElementsAre("1"));
}

TEST_F(IncomingDrawings, ApplyWhatStandsBeforeABadShape) {
    Receive("sender", Message({RectangleOf("1")}));
    const json bad{{"className", "Rectangle"}, {"data", 7}, {"controlId", "x"}};
    EXPECT_EQ(ErrorOf(Message({RectangleOf("2"), bad, RectangleOf("3")})), 304);
    EXPECT_THAT(ShapesOf("sender"), ElementsAre("1", "2"));
    EXPECT_EQ(ErrorOf(Message({RectangleOf("4"), bad, RectangleOf("5")}, true)), 304);
    EXPECT_THAT(ShapesOf("sender"), ElementsAre("4"));
}

TEST_F(IncomingDrawings, PassOverAShapeOfAnUnknownClass) {
    json polygon = RectangleOf("2");
    polygon["className"] = "Polygon";
    Receive("sender", Message({RectangleOf("1"), polygon, RectangleOf("3")}));
    EXPECT_THAT(ShapesOf("sender"), ElementsAre("1", "3"));
    EXPECT_THAT(Fake().LogsOf(3), ElementsAre("Attempting to draw unsupported type Polygon"));
}

TEST_F(IncomingDrawings, MayHaveAnyIdAtAll) {
    const std::string longId(1000000, 'x');
    Receive("", Message({RectangleOf(""), RectangleOf(longId), RectangleOf(longId)}, false, longId));
    const auto made = manager.GetOrCreateSource(longId);
    EXPECT_THAT(made->ShapesOf(""), SizeIs(3));
    Receive("", Message({RectangleOf("1")}, false, ""));
    EXPECT_THAT(manager.GetOrCreateSource("")->ShapesOf(""), SizeIs(1));
}

TEST_F(IncomingDrawings, ComeByTheThousandWhileTheLocalUserDraws) {
    PixelReader reader(64, 36);
    for (int i = 0; i < 10000; ++i) {
        Receive(i % 2 == 0 ? "b" : "c", Message({RectangleOf(std::to_string(i))}, i % 64 < 2));
        if (i % 1000 == 0) {
            DrawRectangle();
            canvas.Render(reader.Renderer(), {0, 0, 0, 0}, {0, 0, 64, 36});
        }
    }
    EXPECT_THAT(ShapesOf("b"), SizeIs(8));
    EXPECT_THAT(OwnShapes(), SizeIs(10));
    canvas.ReleaseResources(reader.Renderer());
}

}  // namespace
}  // namespace Corvanta::Drawing
