// Texts that the local user types over the video.
#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <string>

#include "drawing/LinePath.h"
#include "tests/drawing/LocalUser.h"
#include "tests/fake_platform/PixelReader.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::ElementsAre;
using Testing::Fake;
using ::testing::IsEmpty;
using Testing::KeyDown;
using Testing::KeyUp;
using Testing::Motion;
using ::testing::SizeIs;
using ::testing::StartsWith;
using State = TextBox::State;

constexpr SDL_Point kInside{220, 220};
constexpr SDL_Point kMargin{180, 220};
constexpr SDL_Point kAway{600, 600};
constexpr SDL_Point kOutside{-20, 100};
constexpr uint32_t kBlack = 0xFF000000;

class LocalText : public Testing::LocalUserTest {
protected:
    // An open text in that state with these findings, the button up.
    TextBox& TextIn(State state, bool inside, bool nearby) {
        TextBox& text = OpenText();
        text.state = state;
        // Where a hit test finds nothing, the flags can be set by hand.
        MoveTo(kAway);
        text.pointerInside = inside;
        text.pointerNearby = nearby;
        return text;
    }
    void Press() { Dispatch(Testing::ButtonDown()); }
    // The text tool with that font.
    void ChooseFont(std::string family, double size) {
        DrawToolState state = Testing::ToolState(DrawToolText);
        state.fontFamilyName = family.data();
        state.fontSize = size;
        manager.SetDrawToolState(state);
    }
    // Whether a gesture is under way, seen by what a release changes.
    bool IsDrawing() {
        Text().state = State::Moving;
        Release();
        return Text().state == State::Editing;
    }
};

TEST_F(LocalText, OpensWithAClickAndStaysOpen) {
    Choose(DrawToolText);
    PressAt({200, 300});
    EXPECT_EQ(Text().x, 200);
    EXPECT_EQ(Text().y, 300);
    EXPECT_EQ(Text().state, State::Editing);
    Release();
    EXPECT_EQ(Text().state, State::Editing);
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_TRUE(manager.IsTextOpen());
}

struct Click {
    State state;
    bool inside;
    bool nearby;
    State stateAfterwards;
    bool begins;
};

class LocalTextClicks : public LocalText, public ::testing::WithParamInterface<Click> {};

TEST_P(LocalTextClicks, ChangeTheTextByItsStateAndThePointersPlace) {
    const Click& click = GetParam();
    const TextBox& text = TextIn(click.state, click.inside, click.nearby);
    Press();
    EXPECT_EQ(text.state, click.stateAfterwards);
    EXPECT_EQ(IsDrawing(), click.begins);
    EXPECT_THAT(Sent(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(AllPlaces, LocalTextClicks,
                         ::testing::Values(Click{State::Editing, false, false, State::Finished, true},
                                           Click{State::Editing, false, true, State::Moving, true},
                                           Click{State::Editing, true, false, State::Editing, false},
                                           Click{State::Editing, true, true, State::Editing, false},
                                           Click{State::Finished, false, false, State::Finished, false},
                                           Click{State::Finished, true, false, State::Finished, false},
                                           Click{State::Finished, false, true, State::Moving, true},
                                           Click{State::Finished, true, true, State::Finished, false},
                                           Click{State::Moving, false, false, State::Moving, false},
                                           Click{State::Moving, true, false, State::Moving, false},
                                           Click{State::Moving, false, true, State::Moving, true},
                                           Click{State::Moving, true, true, State::Moving, false}));

TEST_F(LocalText, FindsThePointerOnItAndAroundIt) {
    const TextBox& text = OpenText();
    MoveTo(kInside);
    EXPECT_TRUE(text.pointerInside);
    EXPECT_TRUE(text.pointerNearby);
    EXPECT_EQ(manager.CursorHint(), 2);
    MoveTo(kMargin);
    EXPECT_FALSE(text.pointerInside);
    EXPECT_TRUE(text.pointerNearby);
    EXPECT_EQ(manager.CursorHint(), 3);
    MoveTo(kAway);
    EXPECT_FALSE(text.pointerInside);
    EXPECT_FALSE(text.pointerNearby);
    EXPECT_EQ(manager.CursorHint(), 0);
}

TEST_F(LocalText, RemembersThePointersLastPlaceOnIt) {
    const TextBox& text = OpenText();
    MoveTo(kMargin);
    EXPECT_EQ(text.lastPointer.x, kMargin.x);
    EXPECT_EQ(text.lastPointer.y, kMargin.y);
    MoveTo(kAway);
    EXPECT_EQ(text.lastPointer.x, kMargin.x);
}

TEST_F(LocalText, GivesNoHintForOtherShapes) {
    EXPECT_EQ(manager.CursorHint(), 0);
    EXPECT_FALSE(manager.IsTextOpen());
    PressAt(kInside);
    EXPECT_EQ(manager.CursorHint(), 0);
    EXPECT_FALSE(manager.IsTextOpen());
}

TEST_F(LocalText, MovesWithADragInItsMargin) {
    const TextBox& text = OpenText();
    MoveTo(kMargin);
    Press();
    EXPECT_EQ(text.state, State::Moving);
    MoveTo({280, 260});
    EXPECT_EQ(text.x, 300);
    EXPECT_EQ(text.y, 240);
    EXPECT_EQ(text.lastPointer.x, 280);
    MoveTo({270, 270});
    EXPECT_EQ(text.x, 290);
    EXPECT_EQ(text.y, 250);
    Release();
    EXPECT_EQ(text.state, State::Editing);
    EXPECT_EQ(text.text, "");
    EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(LocalText, StopsAtTheCanvassNearEdgesWhenItIsMoved) {
    const TextBox& text = OpenText();
    MoveTo(kMargin);
    Press();
    MoveTo({-400, -300});
    EXPECT_EQ(text.x, 20);
    EXPECT_EQ(text.y, 0);
    // The pointer was held at the edge.
    EXPECT_EQ(text.lastPointer.x, 0);
    EXPECT_EQ(text.lastPointer.y, 0);
}

TEST_F(LocalText, IsLaidOutAnewWhereItIsMoved) {
    TextBox& text = OpenText();
    MoveTo(kMargin);
    Press();
    text.normalized = true;
    MoveTo({280, 260});
    EXPECT_FALSE(text.normalized);
}

TEST_F(LocalText, IsSentByAClickAwayFromIt) {
    OpenText();
    Type('h');
    Type('i');
    const std::shared_ptr<Shape> shape = Current();
    PressAt(kAway);
    EXPECT_EQ(Text().state, State::Finished);
    EXPECT_THAT(Sent(), IsEmpty());
    Release();
    EXPECT_EQ(Current(), nullptr);
    EXPECT_THAT(OwnShapes(), ElementsAre(shape));
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(LastSent()["message"]["shapes"][0]["data"]["text"], "hi");
    EXPECT_FALSE(manager.IsTextOpen());
}

TEST_F(LocalText, ForgetsThePointerWhenItIsSent) {
    const TextBox& text = OpenText();
    MoveTo(kMargin);
    const std::shared_ptr<Shape> shape = Current();
    PressAt(kAway);
    Release();
    EXPECT_EQ(text.lastPointer.x, 0);
    EXPECT_EQ(text.lastPointer.y, 0);
}

TEST_F(LocalText, IsSentEmptyWhenNothingWasTyped) {
    OpenText();
    PressAt(kAway);
    Release();
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(LastSent()["message"]["shapes"][0]["className"], "Text");
    EXPECT_EQ(LastSent()["message"]["shapes"][0]["data"]["text"], "");
}

TEST_F(LocalText, StaysWithoutFrameWhenThePointerCameBackToIt) {
    const TextBox& text = OpenText();
    PressAt(kAway);
    MoveTo(kInside);
    Release();
    EXPECT_EQ(text.state, State::Finished);
    EXPECT_THAT(Sent(), IsEmpty());
    PressAt(kMargin);
    EXPECT_EQ(text.state, State::Moving);
    Release();
    EXPECT_EQ(text.state, State::Editing);
}

TEST_F(LocalText, IsThrownAwayByAClickOutsideTheVideo) {
    OpenText();
    Type('h');
    PressAt(kOutside);
    Release();
    EXPECT_EQ(Current(), nullptr);
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(OwnShapes(), IsEmpty());
}

TEST_F(LocalText, IsThrownAwayByAClickOnAVideoWithoutSize) {
    OpenText();
    surface.area = {100, 50, 640, 0};
    Press();
    EXPECT_EQ(Current(), nullptr);
}

TEST_F(LocalText, IsNotFoundOnAVideoWithoutSize) {
    const TextBox& text = OpenText();
    MoveTo(kInside);
    surface.area = {100, 50, 0, 0};
    MoveTo(kAway);
    EXPECT_TRUE(text.pointerInside);
}

TEST_F(LocalText, LeavesAStrokeInProgressAtAClickOutside) {
    PressAt({100, 200});
    PressAt(kOutside);
    EXPECT_NE(Current(), nullptr);
}

TEST_F(LocalText, StaysOpenThroughAChangeOfToolUntilTheNextClick) {
    OpenText();
    Type('h');
    Choose(DrawToolPencil);
    EXPECT_EQ(Text().text, "h");
    EXPECT_FALSE(manager.IsTextOpen());
    Drag({500, 500}, {600, 600});
    ASSERT_THAT(OwnShapes(), SizeIs(1));
    EXPECT_NE(std::dynamic_pointer_cast<LinePath>(OwnShapes()[0]), nullptr);
    EXPECT_THAT(Sent(), SizeIs(1));
}

TEST_F(LocalText, TakesItsFontAndColourAtOnce) {
    TextBox& text = OpenText();
    text.normalized = true;
    text.fontStyle = 1 | 4;
    DrawToolState state = Testing::ToolState(DrawToolText);
    std::string family = "Verdana";
    state.fontFamilyName = family.data();
    state.fontSize = 55;
    state.useItalicizedFont = true;
    state.primaryColor = 0x0A0B0C0D;
    manager.SetDrawToolState(state);
    EXPECT_EQ(text.fontFamily, "Verdana");
    EXPECT_EQ(text.fontSize, 55);
    EXPECT_EQ(text.fontStyle, 2 | 4);
    EXPECT_EQ(text.color, Color(10, 11, 12, 13));
    EXPECT_FALSE(text.normalized);
}

TEST_F(LocalText, KeepsNoTextOfTheHosts) {
    std::string family = "Verdana";
    DrawToolState state = Testing::ToolState(DrawToolText);
    state.fontFamilyName = family.data();
    manager.SetDrawToolState(state);
    family = "Georgia";
    EXPECT_EQ(manager.LocalDrawings().FontFamily(), "Verdana");
    EXPECT_EQ(manager.LocalDrawings().ToolState().fontFamilyName, nullptr);
    state.fontFamilyName = nullptr;
    manager.SetDrawToolState(state);
    EXPECT_EQ(manager.LocalDrawings().FontFamily(), "");
}

TEST_F(LocalText, GetsItsCharactersWhenTheKeysAreReleased) {
    TextBox& text = OpenText();
    Dispatch(KeyDown('a'));
    Dispatch(KeyDown('a'));
    EXPECT_EQ(text.text, "");
    text.normalized = true;
    Dispatch(KeyUp('a'));
    EXPECT_EQ(text.text, "a");
    EXPECT_FALSE(text.normalized);
}

TEST_F(LocalText, GetsCapitalsWhileTheLeftShiftKeyIsDown) {
    const TextBox& text = OpenText();
    Dispatch(KeyDown(SDLK_LSHIFT));
    Type('a');
    Type('1');
    Dispatch(KeyUp(SDLK_LSHIFT));
    Type('a');
    Type('1');
    EXPECT_EQ(text.text, "A!a1");
}

TEST_F(LocalText, GetsCapitalsWhileCapsLockIsOn) {
    const TextBox& text = OpenText();
    Dispatch(KeyDown(SDLK_CAPSLOCK));
    Dispatch(KeyUp(SDLK_CAPSLOCK));
    Type('a');
    Type('1');
    Dispatch(KeyDown(SDLK_LSHIFT));
    Type('b');
    Dispatch(KeyUp(SDLK_LSHIFT));
    // A repeated event turns it back and on again.
    Dispatch(KeyDown(SDLK_CAPSLOCK));
    Type('c');
    Dispatch(KeyDown(SDLK_CAPSLOCK));
    Type('d');
    EXPECT_EQ(text.text, "A1BcD");
}

TEST_F(LocalText, DoesNotLookAtTheRightShiftKey) {
    const TextBox& text = OpenText();
    Dispatch(KeyDown(SDLK_RSHIFT));
    Type('a');
    Dispatch(KeyDown(SDLK_LSHIFT));
    Dispatch(KeyUp(SDLK_RSHIFT));
    Type('b');
    EXPECT_EQ(text.text, "aB");
}

TEST_F(LocalText, KnowsTheShiftKeyThatWentDownBeforeItOpened) {
    Dispatch(KeyDown(SDLK_LSHIFT));
    const TextBox& text = OpenText();
    Type('a');
    EXPECT_EQ(text.text, "A");
}

TEST_F(LocalText, GetsALineFeedFromEnter) {
    const TextBox& text = OpenText();
    Type('a');
    Type(SDLK_RETURN);
    EXPECT_EQ(text.text, "a\n");
}

TEST_F(LocalText, LosesItsLastCharacterToBackspace) {
    TextBox& text = OpenText();
    Type('a');
    Type('b');
    text.normalized = true;
    Type(SDLK_BACKSPACE);
    EXPECT_EQ(text.text, "a");
    EXPECT_FALSE(text.normalized);
}

TEST_F(LocalText, IsNotTouchedByBackspaceWhenItIsEmptyOrByAFunctionKey) {
    TextBox& text = OpenText();
    text.normalized = true;
    Type(SDLK_BACKSPACE);
    Type(SDLK_F1);
    Type(SDLK_ESCAPE);
    Type(SDLK_TAB);
    EXPECT_EQ(text.text, "");
    EXPECT_TRUE(text.normalized);
}

TEST_F(LocalText, TakesKeysInEveryState) {
    TextBox& text = OpenText();
    for (const State state : {State::Editing, State::Moving, State::Finished}) {
        text.state = state;
        Type('a');
    }
    EXPECT_EQ(text.text, "aaa");
}

TEST_F(LocalText, TakesKeysWhileTheToolIsOff) {
    const TextBox& text = OpenText();
    DrawToolState state = Testing::ToolState(DrawToolText);
    state.enabled = false;
    manager.SetDrawToolState(state);
    PressAt(kAway);
    Type('a');
    EXPECT_EQ(text.text, "a");
    EXPECT_EQ(text.state, State::Editing);
    EXPECT_TRUE(manager.IsTextOpen());
}

TEST_F(LocalText, TakesNoKeysWhileAnotherToolIsChosen) {
    const TextBox& text = OpenText();
    Choose(DrawToolPencil);
    Type('a');
    EXPECT_EQ(text.text, "");
}

TEST_F(LocalText, IsNeverSentByAKey) {
    OpenText();
    for (const int key : {SDLK_RETURN, SDLK_ESCAPE, SDLK_TAB}) Type(key);
    EXPECT_NE(Current(), nullptr);
    EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(LocalText, KeysWithoutATextTypeNothing) {
    Choose(DrawToolText);
    Type('a');
    EXPECT_EQ(Current(), nullptr);
    EXPECT_EQ(OpenText().text, "");
}

TEST_F(LocalText, TypesALongText) {
    const TextBox& text = OpenText();
    for (int i = 0; i < 10000; ++i) Type('x');
    EXPECT_THAT(text.text, SizeIs(10000));
    PressAt(kAway);
    Release();
    EXPECT_THAT(LastSent()["message"]["shapes"][0]["data"]["text"].get<std::string>(), SizeIs(10000));
}

TEST_F(LocalText, IsSentThoughTheToolChangesBeforeTheButtonIsUp) {
    OpenText();
    Type('h');
    PressAt(kAway);
    Choose(DrawToolPencil);
    Release();
    EXPECT_EQ(Current(), nullptr);
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(LastSent()["message"]["shapes"][0]["className"], "Text");
    EXPECT_EQ(LastSent()["message"]["shapes"][0]["data"]["text"], "h");
    EXPECT_THAT(OwnShapes(), SizeIs(1));
}

TEST_F(LocalText, GoesFromTheVideoWithAClickOutside) {
    Testing::PixelReader reader(640, 360);
    const auto showsAnything = [&] {
        reader.Fill(kBlack);
        canvas.Render(reader.Renderer(), {0, 0, 0, 0}, {0, 0, 640, 360});
        const Testing::Picture picture = reader.Read();
        return std::any_of(picture.pixels.begin(), picture.pixels.end(),
                           [](uint32_t pixel) { return pixel != kBlack; });
    };
    OpenText();
    EXPECT_TRUE(showsAnything());
    PressAt(kOutside);
    EXPECT_FALSE(showsAnything());
    canvas.ReleaseResources(reader.Renderer());
}

TEST_F(LocalText, IsGivenBackWhenItCannotBeSent) {
    TextBox& text = OpenText();
    Type('h');
    ChooseFont("\xFF", 32);
    PressAt(kAway);
    EXPECT_THROW(Release(), nlohmann::json::type_error);
    ASSERT_EQ(Current().get(), &text);
    EXPECT_EQ(text.state, State::Editing);
    EXPECT_THAT(text.controlId, IsEmpty());
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_FALSE(source->History().CanUndo());
    ChooseFont("Arial", 32);
    Type('i');
    PressAt(kAway);
    Release();
    ASSERT_THAT(Sent(), SizeIs(1));
    EXPECT_EQ(LastSent()["message"]["shapes"][0]["data"]["text"], "hi");
    EXPECT_THAT(text.controlId, ::testing::Not(IsEmpty()));
    EXPECT_THAT(OwnShapes(), SizeIs(1));
}

TEST_F(LocalText, HasASizeThatOthersCanRead) {
    for (const double size : {0.0, 0.4, -5.0, std::numeric_limits<double>::quiet_NaN()}) {
        const TextBox& text = OpenText();
        ChooseFont("Arial", size);
        EXPECT_EQ(text.fontSize, 1) << size;
        PressAt(kAway);
        Release();
        EXPECT_EQ(LastSent()["message"]["shapes"][0]["data"]["font"], "1px Arial") << size;
    }
}

// The size's unit in the family's name has readers look for a number before it.
TEST_F(LocalText, IsDroppedWhenNobodyCouldReadItsFont) {
    OpenText();
    ChooseFont("Some px", 32);
    PressAt(kAway);
    Release();
    EXPECT_EQ(Current(), nullptr);
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_THAT(OwnShapes(), IsEmpty());
    EXPECT_FALSE(source->History().CanUndo());
    EXPECT_THAT(surface.reports, IsEmpty());
    EXPECT_THAT(Fake().LogsOf(3), ElementsAre(StartsWith("A text is dropped")));
}

TEST_F(LocalText, TakesNoKeyThatWasDownBeforeItOpened) {
    for (const int key : {static_cast<int>(SDLK_a), static_cast<int>(SDLK_RETURN)}) Dispatch(KeyDown(key));
    const TextBox& text = OpenText();
    for (const int key : {static_cast<int>(SDLK_a), static_cast<int>(SDLK_RETURN)}) Dispatch(KeyUp(key));
    EXPECT_EQ(text.text, "");
    Type('a');
    EXPECT_EQ(text.text, "a");
    Dispatch(KeyDown(SDLK_BACKSPACE));
    PressAt(kOutside);
    const TextBox& next = OpenText();
    Type('b');
    Dispatch(KeyUp(SDLK_BACKSPACE));
    EXPECT_EQ(next.text, "b");
}

}  // namespace
}  // namespace Corvanta::Drawing
