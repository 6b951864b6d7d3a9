// Messages of other participants, as a canvas shows them.
#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "drawing/BroadcastMessage.h"
#include "drawing/DrawingCanvasManager.h"
#include "drawing/ErasedLinePath.h"
#include "drawing/Rectangle.h"
#include "tests/drawing/CanvasTest.h"
#include "tests/drawing/MarkMessage.h"

namespace Corvanta::Drawing {
namespace {

using Testing::Calls;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::kBlack;
using Testing::kGreen;
using Testing::kRed;
using Testing::kScreen;
using Testing::MarkJson;
using Testing::MarkMessage;
using Testing::Picture;
using ::testing::SizeIs;

constexpr SDL_Rect kWhole{0, 0, 1280, 720};
constexpr SDL_Rect kLeft{0, 0, 640, 720};
constexpr SDL_Rect kRight{640, 0, 640, 720};
constexpr SDL_Rect kLeftOfScreen{0, 0, 319, 360};
constexpr SDL_Rect kRightOfScreen{321, 0, 319, 360};

class ReceivedMarks : public Testing::SizedCanvasTest {
protected:
    ReceivedMarks() { manager.AttachCanvas("stream", canvas.get()); }

    void Receive(const std::string& senderId, const std::string& text) {
        manager.OnDataChannelMessage({senderId, text});
    }
    void Receive(const std::string& senderId, const std::string& id, const SDL_Rect& place, uint32_t argb) {
        Receive(senderId, MarkMessage("stream", {MarkJson(id, place, argb)}));
    }

    DrawingCanvasManager manager{nullptr};
    std::shared_ptr<DrawingSource> source = manager.GetOrCreateSource("stream");
};

TEST_F(ReceivedMarks, ThatComeTwiceAreDrawnAsTheFirstOne) {
    Receive("b", "1", kWhole, kRed);
    Receive("b", "1", kLeft, kGreen);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    Receive("b", "1", kRight, kGreen);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    // Another participant's is another mark.
    Receive("c", "1", kLeft, kGreen);
    EXPECT_TRUE(AreaIs(Frame(), kLeftOfScreen, kGreen));
}

// Everybody sends all of theirs whenever somebody joins.
TEST_F(ReceivedMarks, ThatComeAgainAndAgainAreHeldOnce) {
    for (int time = 0; time < 20; ++time) Receive("b", "1", kWhole, kRed);
    const auto shapes = source->ShapesOf("b");
    ASSERT_THAT(shapes, SizeIs(20));
    EXPECT_THAT(shapes, Each(shapes.front()));
}

TEST_F(ReceivedMarks, OfAnEraserTakeTheSendersMarksAlone) {
    Receive("b", "1", kLeft, kGreen);
    Receive("c", "2", kWhole, kRed);
    Frame();
    LinePath path;
    path.strokeWidth = 100;
    path.points = {{100, 360}, {600, 360}, {1100, 360}};
    const auto eraser = std::make_shared<ErasedLinePath>(path);
    eraser->controlId = "3";
    Receive("c", BroadcastMessage::Write({eraser}, "stream", false));
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, {60, 160, 250, 40}, kGreen));
    EXPECT_TRUE(AreaIs(picture, {330, 160, 200, 40}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 640, 150}, kRed));
}

TEST_F(ReceivedMarks, OfUnknownClassesAloneStillReplaceTheSendersMarks) {
    Receive("b", "1", kLeft, kRed);
    Receive("c", "2", kRight, kGreen);
    Frame();
    const std::string polygon = R"({"className":"Polygon","controlId":"3","data":{}})";
    Receive("b", MarkMessage("stream", {polygon}, false));
    EXPECT_TRUE(AreaIs(Frame(), kLeftOfScreen, kRed));
    Receive("b", MarkMessage("stream", {polygon, polygon}, true));
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kBlack));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
    EXPECT_THAT(source->ShapesOf("b"), IsEmpty());
}

TEST_F(ReceivedMarks, BeforeABadOneAreDrawn) {
    Receive("b", "1", kWhole, kRed);
    Frame();
    const std::string bad = R"({"className":"Rectangle","controlId":"x","data":7})";
    EXPECT_THROW(Receive("b", MarkMessage("stream", {MarkJson("2", kLeft, kGreen), bad}, true)),
                 nlohmann::json::type_error);
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kGreen));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kBlack));
    EXPECT_THROW(Receive("b", MarkMessage("stream", {bad}, true)), nlohmann::json::type_error);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
}

TEST_F(ReceivedMarks, OfOthersStayWhenTheLocalUserTakesOneBack) {
    DrawingCanvasManager far{nullptr};
    Receive("b", "1", kLeft, kGreen);
    far.OnDataChannelMessage({"b", MarkMessage("stream", {MarkJson("1", kLeft, kGreen)})});
    const auto mine = std::make_shared<Rectangle>();
    mine->controlId = "2";
    mine->width = 1280;
    mine->height = 720;
    mine->fillColor = Color(255, 0, 0, 255);
    mine->strokeColor = mine->fillColor;
    source->Add("me", mine);
    source->History().RecordCreate(mine);
    far.OnDataChannelMessage({"me", BroadcastMessage::Write({mine}, "stream", false)});
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    ASSERT_THAT(far.GetOrCreateSource("stream")->ShapesOf("me"), SizeIs(1));

    Calls().Clear();
    manager.LocalDrawings().UndoCanvas(*source);
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kGreen));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kBlack));
    const auto sent = Calls().Of("MediaManager_SendDatachannelMessage");
    ASSERT_THAT(sent, SizeIs(1));
    far.OnDataChannelMessage({"me", sent[0].arguments.at(0)});
    EXPECT_THAT(far.GetOrCreateSource("stream")->ShapesOf("me"), IsEmpty());
    EXPECT_THAT(far.GetOrCreateSource("stream")->ShapesOf("b"), SizeIs(1));
}

// Somebody's undo is the whole list again.
TEST_F(ReceivedMarks, TakeTheSendersPlaceWithoutAFrameInBetween) {
    Testing::Sdl().LimitTextureSides(64);
    canvas->MoveToRenderer(Renderer());
    const auto message = [](uint32_t argb) {
        std::vector<std::shared_ptr<Shape>> shapes;
        for (int number = 0; number < 40; ++number) {
            auto mark = std::make_shared<Rectangle>();
            mark->controlId = std::to_string(number);
            mark->x = number < 20 ? 0 : 640;
            mark->width = 640;
            mark->height = 720;
            mark->fillColor = Color(argb << 8U | 0xFFU);
            mark->strokeColor = mark->fillColor;
            shapes.push_back(std::move(mark));
        }
        return BroadcastMessage::Write(shapes, "stream", true);
    };
    const std::string red = message(kRed);
    const std::string green = message(kGreen);
    Receive("b", red);
    std::atomic<bool> isOver = false;
    std::thread sender([&] {
        for (int number = 0; !isOver; ++number) {
            Receive("b", number % 2 == 0 ? green : red);
            std::this_thread::yield();
        }
    });
    for (int frame = 0; frame < 200; ++frame) {
        for (int look = 0; look < 50; ++look) EXPECT_THAT(source->ShapesOf("b"), SizeIs(40));
        const Picture picture = Frame();
        const uint32_t left = picture.At(100, 180);
        EXPECT_TRUE(left == kRed || left == kGreen) << std::hex << left;
        EXPECT_EQ(picture.At(540, 180), left);
    }
    isOver = true;
    sender.join();
}

}  // namespace
}  // namespace Corvanta::Drawing
