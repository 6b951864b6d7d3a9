// The host's commands on the drawing, and the drawings of others as the media layer hands them in.
#include <memory>
#include <utility>

#include "drawing/DrawingCanvasManager.h"
#include "tests/interface/DrawingRoom.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr uint32_t kWhite = 0xFFFFFFFF;

// A record as a host has it, whose text is its own.
struct HostsRecord {
    HostsRecord() = default;
    ~HostsRecord() { delete[] state.fontFamilyName; }
    HostsRecord(const HostsRecord&) = delete;
    HostsRecord& operator=(const HostsRecord&) = delete;

    DrawToolState state{};
};

class DrawingWithoutRoomTest : public StartedTest {};

class DrawingCommandsTest : public DrawingRoom {
protected:
    DrawingCommandsTest() { EnterWithCamera(); }
};

// Settings

TEST_F(DrawingWithoutRoomTest, DoesNothing) {
    const DrawToolState state = ToolState(DrawToolPencil);
    SDLinterface_SetDrawToolState(&state);
    SDLinterface_SetDrawToolState(nullptr);
    SDLinterface_VideoRoomSetDrawToolEnabled(true);
    SDLinterface_UndoCurrentCanvas();
    SDLinterface_RedoCurrentCanvas();
    SDLinterface_ClearCurrentCanvas();
    EXPECT_FALSE(SDLinterface_IsTextOpen());
    EXPECT_THAT(Fake().CallNames(), IsEmpty()) << "nothing is stored either";
}

TEST_F(DrawingWithoutRoomTest, LoadsTheSettingsOfANewUser) {
    HostsRecord record;
    record.state.enabled = true;
    record.state.selectedTool = DrawToolEraser;
    EXPECT_TRUE(SDLinterface_LoadDrawToolState(&record.state));
    EXPECT_TRUE(record.state.enabled) << "that is the caller's";
    EXPECT_EQ(record.state.selectedTool, 0U);
    EXPECT_EQ(record.state.complexSelectedShape, 5);
    EXPECT_EQ(record.state.pencilStrokeWidth, 10.0);
    EXPECT_EQ(record.state.shapeStrokeWidth, 20.0);
    EXPECT_STREQ(record.state.fontFamilyName, "Arial");
    EXPECT_EQ(record.state.fontSize, 32.0);
    EXPECT_FALSE(record.state.useBoldFont);
    EXPECT_FALSE(record.state.useItalicizedFont);
    EXPECT_EQ(record.state.primaryColor, 0xE85C41FFU);
    EXPECT_EQ(record.state.secondaryColor, 0xFFFFFFFFU);
    EXPECT_EQ(record.state.eraserStrokeWidth, 10.0);
}

TEST_F(DrawingWithoutRoomTest, LoadsNothingIntoNothing) {
    EXPECT_TRUE(SDLinterface_LoadDrawToolState(nullptr));
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(DrawingCommandsTest, KeepsTheSettingsForTheNextStart) {
    DrawToolState state = ToolState(DrawToolText);
    state.complexSelectedShape = DrawToolEllipse;
    state.pencilStrokeWidth = 1.5;
    state.shapeStrokeWidth = 2.5;
    std::string family = "Grüße Sans";
    state.fontFamilyName = family.data();
    state.fontSize = 48.5;
    state.useBoldFont = true;
    state.useItalicizedFont = true;
    state.primaryColor = 0x01020304;
    state.secondaryColor = 0xFEDCBA98;
    state.eraserStrokeWidth = 3.5;
    SDLinterface_SetDrawToolState(&state);
    SDLinterface_GlobalQuit();

    HostsRecord record;
    EXPECT_TRUE(SDLinterface_LoadDrawToolState(&record.state));
    EXPECT_FALSE(record.state.enabled);
    EXPECT_EQ(record.state.selectedTool, 0U) << "each start begins with the pencil";
    EXPECT_EQ(record.state.complexSelectedShape, DrawToolEllipse);
    EXPECT_EQ(record.state.pencilStrokeWidth, 1.5);
    EXPECT_EQ(record.state.shapeStrokeWidth, 2.5);
    EXPECT_STREQ(record.state.fontFamilyName, family.c_str());
    EXPECT_EQ(record.state.fontSize, 48.5);
    EXPECT_TRUE(record.state.useBoldFont);
    EXPECT_TRUE(record.state.useItalicizedFont);
    EXPECT_EQ(record.state.primaryColor, 0x01020304U);
    EXPECT_EQ(record.state.secondaryColor, 0xFEDCBA98U);
    EXPECT_EQ(record.state.eraserStrokeWidth, 3.5);
    // A text that it gave out it also takes back.
    EXPECT_TRUE(SDLinterface_LoadDrawToolState(&record.state));
    EXPECT_STREQ(record.state.fontFamilyName, family.c_str());
}

TEST_F(DrawingCommandsTest, SetsNothingFromNoRecord) {
    Choose(DrawToolRectangle);
    Forget();
    SDLinterface_SetDrawToolState(nullptr);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
}

TEST_F(DrawingCommandsTest, ASecondRoomStartsWithoutATool) {
    Choose(DrawToolRectangle);
    SDLinterface_VideoRoomQuit();
    Start();
    EnterWithCamera();
    DrawSomething();
    EXPECT_THAT(Sent(), IsEmpty());
    Choose(DrawToolRectangle);
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
}

TEST_F(DrawingCommandsTest, SwitchesTheControlsWithoutTheTool) {
    Choose(DrawToolRectangle);
    ASSERT_TRUE(View().GetToolbar().GetButtonBar()->IsHidden());
    SDLinterface_VideoRoomSetDrawToolEnabled(false);
    EXPECT_FALSE(View().GetToolbar().GetButtonBar()->IsHidden());
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
    Choose(DrawToolRectangle, false);
    SDLinterface_VideoRoomSetDrawToolEnabled(true);
    EXPECT_TRUE(View().GetToolbar().GetButtonBar()->IsHidden());
    DrawSomething();
    EXPECT_THAT(Sent(), SizeIs(1));
}

// Gestures

TEST_F(DrawingCommandsTest, DrawsWhatTheHostsMouseDraws) {
    Choose(DrawToolRectangle);
    DrawSomething();
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["streamId"], "me");
    EXPECT_EQ(Sent()[0]["message"]["shapes"][0]["className"], "Rectangle");
    EXPECT_THAT(Reports(), ElementsAre("true false"));
    EXPECT_EQ(ColorAt(0.5, 0.5), kWhite);
    EXPECT_EQ(ColorAt(0.1, 0.5), kCameraColor);
}

TEST_F(DrawingCommandsTest, TakesBackBringsBackAndClears) {
    Choose(DrawToolRectangle);
    DrawSomething();
    const std::string id = Sent()[0]["message"]["shapes"][0]["controlId"];
    Forget();
    SDLinterface_UndoCurrentCanvas();
    SDLinterface_RedoCurrentCanvas();
    SDLinterface_ClearCurrentCanvas();
    SDLinterface_UndoCurrentCanvas();
    EXPECT_THAT(Reports(), ElementsAre("false true", "true false", "true false", "true true"));
    const auto sent = Sent();
    ASSERT_THAT(sent, SizeIs(4));
    for (const size_t index : {0U, 1U, 2U, 3U}) {
        EXPECT_EQ(sent[index]["message"]["clearCanvas"], index != 1) << index;
        EXPECT_THAT(sent[index]["message"]["shapes"], SizeIs(index % 2)) << index;
    }
    EXPECT_EQ(sent[1]["message"]["shapes"][0]["controlId"], id);
    EXPECT_EQ(sent[3]["message"]["shapes"][0]["controlId"], id);
    EXPECT_EQ(ColorAt(0.5, 0.5), kWhite);
    Forget();
    SDLinterface_RedoCurrentCanvas();
    SDLinterface_RedoCurrentCanvas();
    EXPECT_THAT(Sent(), SizeIs(1)) << "there was one step to be brought back";
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
}

TEST_F(DrawingCommandsTest, SaysWhetherATextIsOpen) {
    EXPECT_FALSE(SDLinterface_IsTextOpen());
    Choose(DrawToolText);
    EXPECT_FALSE(SDLinterface_IsTextOpen());
    ClickAt(0.3, 0.3);
    EXPECT_TRUE(SDLinterface_IsTextOpen());
    SDLinterface_PushKeyDownEvent(0, "A");
    SDLinterface_PushKeyUpEvent(0, "A");
    Tick(2);
    // Another tool leaves it open, but takes no keys.
    Choose(DrawToolPencil);
    EXPECT_FALSE(SDLinterface_IsTextOpen());
    Choose(DrawToolText);
    EXPECT_TRUE(SDLinterface_IsTextOpen());
    ClickAt(0.9, 0.9);
    EXPECT_FALSE(SDLinterface_IsTextOpen());
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(Sent()[0]["message"]["shapes"][0]["data"]["text"], "a");
    ClickAt(0.3, 0.3);
    ASSERT_TRUE(SDLinterface_IsTextOpen());
    SDLinterface_VideoRoomQuit();
    EXPECT_FALSE(SDLinterface_IsTextOpen());
}

TEST_F(DrawingCommandsTest, TellsTheHostWhatCanBeUndoneOnTheVideoInView) {
    Choose(DrawToolRectangle);
    DrawSomething();
    Fake().OfferRemoteSource("a");
    Forget();
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    Tick();
    EXPECT_THAT(Reports(), ElementsAre("false false"));
    SDLinterface_UndoCurrentCanvas();
    EXPECT_THAT(Reports(), SizeIs(1)) << "there is nothing to be undone on this one";
    SDLinterface_VideoRoomUpdateActiveSpeaker("");
    Tick();
    EXPECT_THAT(Reports(), ElementsAre("false false", "true false"));
}

TEST_F(DrawingCommandsTest, NeedsNoFunctionsOfTheHost) {
    SDLinterface_VideoRoomQuit();
    SDLinterface_SetHostCallbacks(nullptr);
    Start();
    EnterWithCamera();
    Choose(DrawToolRectangle);
    DrawSomething();
    SDLinterface_UndoCurrentCanvas();
    EXPECT_THAT(Sent(), SizeIs(2));
}

// Drawings of others

TEST_F(DrawingCommandsTest, GivesTheDrawingsAMessageBeforeTheRoom) {
    const auto handlers = SDLinterface_VideoRoomGetRemoteDataChannelCallbacks();
    ASSERT_THAT(handlers, SizeIs(2));
    handlers[1]({"Anna", MarkMessage("me", {MarkJson("a", kWholeCanvas, kMarkColor)})});
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
    handlers[0]({"Anna", MarkMessage("me", {MarkJson("a", kWholeCanvas, kMarkColor)})});
    EXPECT_EQ(ColorAt(0.5, 0.5), kMarkColor);
}

TEST_F(DrawingCommandsTest, ShowsTheMarksOfOthersAndLosesThemWithTheirMakers) {
    Fake().OfferRemoteSource("Anna");
    Fake().OfferRemoteSource("Ben");
    EXPECT_THAT(
        Fake().DeliverMessage("Anna", MarkMessage("me", {MarkJson("a", {0, 0, 640, 720}, kMarkColor)})),
        IsEmpty());
    EXPECT_THAT(
        Fake().DeliverMessage("Ben", MarkMessage("me", {MarkJson("b", {640, 0, 640, 720}, kMarkColor)})),
        IsEmpty());
    EXPECT_EQ(ColorAt(0.25, 0.5), kMarkColor);
    EXPECT_EQ(ColorAt(0.75, 0.5), kMarkColor);
    Fake().RemoveRemoteSource("Anna");
    EXPECT_EQ(ColorAt(0.25, 0.5), kCameraColor);
    EXPECT_EQ(ColorAt(0.75, 0.5), kMarkColor);
}

TEST_F(DrawingCommandsTest, LeavesTheMarksOfOthersToThem) {
    Choose(DrawToolRectangle);
    DrawSomething();
    Fake().DeliverMessage("Anna", MarkMessage("me", {MarkJson("a", {0, 0, 128, 720}, kMarkColor)}));
    SDLinterface_ClearCurrentCanvas();
    EXPECT_EQ(ColorAt(0.05, 0.5), kMarkColor);
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
    SDLinterface_UndoCurrentCanvas();
    Fake().DeliverMessage("Anna", MarkMessage("me", {}, true));
    EXPECT_EQ(ColorAt(0.05, 0.5), kCameraColor);
    EXPECT_EQ(ColorAt(0.5, 0.5), kWhite);
}

// One handler's exception is not to keep the others from the message.
TEST_F(DrawingCommandsTest, RaisesOnlyWhereTheDrawingsAreTold) {
    for (const char* text : {"{", "[]", R"({"message":{}})", R"({"type":"draw-canvas-broadcast"})"}) {
        Calls().Clear();
        EXPECT_THAT(Fake().DeliverMessage("Anna", text), SizeIs(1)) << text;
        EXPECT_EQ(Calls().Count("AdaptiveVideoSourceManager_OnDataChannelMessage"), 1U) << text;
    }
    EXPECT_THAT(Fake().DeliverMessage("Anna", R"({"type":"of-another-program"})"), IsEmpty());
    EXPECT_THAT(Fake().DeliverMessage("Anna", R"({"type":7})"), IsEmpty());
}

TEST_F(DrawingCommandsTest, SendsItsOwnMarksToWhoeverJoins) {
    Fake().OfferRemoteSource("Anna");
    Choose(DrawToolRectangle);
    DrawSomething();
    Fake().DeliverMessage("Anna", MarkMessage("me", {MarkJson("a", kWholeCanvas, kMarkColor)}));
    Forget();
    Fake().callbacks.participantJoined();
    const auto sent = Sent();
    ASSERT_THAT(sent, SizeIs(2));
    EXPECT_EQ(sent[0]["streamId"], "Anna");
    EXPECT_THAT(sent[0]["message"]["shapes"], SizeIs(0));
    EXPECT_EQ(sent[1]["streamId"], "me");
    EXPECT_THAT(sent[1]["message"]["shapes"], SizeIs(1));
    EXPECT_EQ(sent[1]["message"]["clearCanvas"], false);
}

TEST_F(DrawingCommandsTest, TakesLateMessagesWithoutHarm) {
    const auto handlers = SDLinterface_VideoRoomGetRemoteDataChannelCallbacks();
    const auto joined = Fake().callbacks.participantJoined.Get();
    SDLinterface_GlobalQuit();
    for (const auto& handler : handlers) {
        handler({"Anna", MarkMessage("me", {MarkJson("a", kWholeCanvas, kMarkColor)})});
    }
    joined();
    EXPECT_THAT(Fake().LogsOf(4), IsEmpty());
}

// A host that calls back

TEST_F(DrawingCommandsTest, MayBeQuitWhereItReportsTheHistory) {
    const std::vector<std::pair<const char*, std::function<void()>>> steps = {
        {"a gesture", [] { DrawSomething(); }},
        {"an undo",
         [] {
             Calls().OnCall("Host_ReportHistoryState", {});
             DrawSomething();
             Calls().OnCall("Host_ReportHistoryState", [](const Call&) { SDLinterface_VideoRoomQuit(); });
             SDLinterface_UndoCurrentCanvas();
         }},
        {"a clear", [] { SDLinterface_ClearCurrentCanvas(); }},
        {"another main video",
         [] {
             Fake().OfferRemoteSource("a");
             SDLinterface_VideoRoomUpdateActiveSpeaker("a");
             Tick();
         }},
    };
    for (const auto& [name, step] : steps) {
        Choose(DrawToolRectangle);
        Calls().OnCall("Host_ReportHistoryState", [](const Call&) { SDLinterface_VideoRoomQuit(); });
        step();
        Calls().OnCall("Host_ReportHistoryState", {});
        EXPECT_FALSE(HasView()) << name;
        EXPECT_EQ(Sdl().LiveTextures(), 0U) << name;
        EXPECT_EQ(Sdl().LiveRenderers(), 0U) << name;
        Start();
        EnterWithCamera();
    }
}

TEST_F(DrawingCommandsTest, TakesACommandWhereItReportsTheHistory) {
    Choose(DrawToolRectangle);
    bool answered = false;
    Calls().OnCall("Host_ReportHistoryState", [&](const Call&) {
        if (std::exchange(answered, true)) return;
        SDLinterface_UndoCurrentCanvas();
        const DrawToolState state = ToolState(DrawToolEllipse);
        SDLinterface_SetDrawToolState(&state);
    });
    DrawSomething();
    Calls().OnCall("Host_ReportHistoryState", {});
    EXPECT_TRUE(answered);
    EXPECT_THAT(Reports(), ElementsAre("true false", "false true"));
    EXPECT_EQ(ColorAt(0.5, 0.5), kCameraColor);
    DrawSomething();
    EXPECT_EQ(Sent().back()["message"]["shapes"][0]["className"], "Ellipse");
}

}  // namespace
}  // namespace Corvanta::Testing
