// Input as hosts push it: what lies on SDL's queue afterwards, and what becomes of it.
#include <SDL.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "tests/fake_platform/CallLog.h"
#include "tests/interface/RoomTest.h"
#include "tests/ui/WorkingFolder.h"
#include "ui/ButtonBar.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();
constexpr Uint32 kNoWindow = 0xFFFFFFFF;

// What is on the queue, without asking the system for more.
std::vector<SDL_Event> TakeEvents() {
    std::vector<SDL_Event> events;
    SDL_Event event;
    while (SDL_PeepEvents(&event, 1, SDL_GETEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT) > 0)
        events.push_back(event);
    return events;
}

SDL_Event OnlyEvent() {
    const auto events = TakeEvents();
    EXPECT_EQ(events.size(), 1U);
    return events.empty() ? SDL_Event{} : events[0];
}

SDL_Event Cleared(SDL_EventType type) {
    SDL_Event event;
    SDL_zero(event);
    event.type = type;
    return event;
}

// Byte for byte, but for the time that SDL writes into each.
::testing::AssertionResult Same(SDL_Event left, SDL_Event right) {
    left.common.timestamp = right.common.timestamp = 0;
    // Pushed events carry no pointer, and what an event does not use is 0 on both sides.
    if (std::memcmp(left.padding, right.padding, sizeof left.padding) == 0)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "the events differ";
}

// Where the only event says that the pointer is.
SDL_Point Motion() {
    const SDL_Event event = OnlyEvent();
    EXPECT_EQ(event.type, static_cast<Uint32>(SDL_MOUSEMOTION));
    return {event.motion.x, event.motion.y};
}

auto IsPoint(int x, int y) {
    return ::testing::AllOf(::testing::Field("x", &SDL_Point::x, x), ::testing::Field("y", &SDL_Point::y, y));
}

Uint32 RoomWindow() {
    return static_cast<Uint32>(Interface::CurrentView()->GetSdlWindowId());
}

class OtherView final : public UI::AbstractView {
public:
    OtherView() : AbstractView(-1) {}
    void Render() override {}
};

class InputWithoutRoom : public StartedTest {
protected:
    InputWithoutRoom() { TakeEvents(); }
};

class InputTest : public RoomTest {
protected:
    InputTest() {
        SDLinterface_VideoRoomResize(1000, 600);
        TakeEvents();
        Calls().Clear();
    }
    ~InputTest() override { SDLinterface_TextInputEnabled(false); }
};

TEST_F(InputTest, TurnsFractionsOfTheViewIntoPixels) {
    SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.25F);
    SDL_Event expected = Cleared(SDL_MOUSEMOTION);
    expected.motion.windowID = RoomWindow();
    expected.motion.x = 500;
    expected.motion.y = 150;
    EXPECT_TRUE(Same(OnlyEvent(), expected));
}

TEST_F(InputTest, TruncatesFractionsInSinglePrecision) {
    const std::vector<std::pair<std::pair<float, float>, std::pair<int, int>>> cases = {
        {{0.0F, 0.0F}, {0, 0}},
        {{1.0F, 1.0F}, {1000, 600}},
        {{0.0019F, 0.0019F}, {1, 1}},
        {{0.9999F, 0.9999F}, {999, 599}},
        // In double precision it would be 699 and 419.
        {{0.7F, 0.7F}, {700, 420}},
        {{1.5F, -0.5F}, {1500, -300}},
        {{-0.0009F, -0.001F}, {0, 0}},
    };
    for (const auto& [fractions, pixels] : cases) {
        SDLinterface_PushMouseMoveEvent(0, fractions.first, fractions.second);
        EXPECT_THAT(Motion(), IsPoint(pixels.first, pixels.second));
    }
}

TEST_F(InputTest, FollowsTheViewsSize) {
    SDLinterface_VideoRoomResize(640, 360);
    TakeEvents();
    SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.5F);
    EXPECT_THAT(Motion(), IsPoint(320, 180));
}

TEST_F(InputTest, SaysThatThePointerHasLeftWhateverTheWindow) {
    for (const int window : {0, 1, 2, 7, -1}) {
        SDLinterface_PushMouseMoveEvent(window, -1.0F, -1.0F);
        EXPECT_THAT(Motion(), IsPoint(-1, -1));
    }
    SDLinterface_VideoRoomResize(0, 0);
    TakeEvents();
    SDLinterface_PushMouseMoveEvent(0, -1.0F, -1.0F);
    EXPECT_THAT(Motion(), IsPoint(-1, -1));
}

TEST_F(InputTest, ScalesAnyOtherNegativePlace) {
    SDLinterface_PushMouseMoveEvent(0, -1.0F, 0.5F);
    EXPECT_THAT(Motion(), IsPoint(-1000, 300));
    SDLinterface_PushMouseMoveEvent(0, 0.5F, -1.0F);
    EXPECT_THAT(Motion(), IsPoint(500, -600));
    SDLinterface_PushMouseMoveEvent(0, -1.0F, std::nextafterf(-1.0F, -2.0F));
    EXPECT_THAT(Motion(), IsPoint(-1000, -600));
}

TEST_F(InputTest, TakesFractionsThatAreNoNumbersOrTooLarge) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float none = std::numeric_limits<float>::quiet_NaN();
    SDLinterface_PushMouseMoveEvent(0, none, 0.5F);
    EXPECT_THAT(Motion(), IsPoint(0, 300));
    SDLinterface_PushMouseMoveEvent(0, infinity, -infinity);
    EXPECT_THAT(Motion(), IsPoint(kHighest, kLowest));
    SDLinterface_PushMouseMoveEvent(0, 1e30F, -1e30F);
    EXPECT_THAT(Motion(), IsPoint(kHighest, kLowest));
    SDLinterface_PushMouseMoveEvent(0, std::numeric_limits<float>::denorm_min(), 3e6F);
    EXPECT_THAT(Motion(), IsPoint(0, 1'800'000'000));
    // And the room goes on.
    for (const float fraction : {none, infinity, -infinity})
        SDLinterface_PushMouseMoveEvent(0, fraction, fraction);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_TRUE(HasView());
}

TEST_F(InputTest, LeavesThePlaceInAnyOtherWindowUnset) {
    OtherView other;
    ASSERT_EQ(other.Init(this, 200, 100), 1);
    TakeEvents();
    Interface::gExtraViews.push_back(&other);
    const auto otherWindow = static_cast<Uint32>(other.GetSdlWindowId());
    EXPECT_NE(otherWindow, RoomWindow());
    for (const auto& [window, id] :
         {std::pair(1, kNoWindow), std::pair(2, otherWindow), std::pair(7, kNoWindow),
          std::pair(3, kNoWindow), std::pair(kLowest, kNoWindow)}) {
        SDLinterface_PushMouseMoveEvent(window, 0.5F, 0.5F);
        SDL_Event expected = Cleared(SDL_MOUSEMOTION);
        expected.motion.windowID = id;
        EXPECT_TRUE(Same(OnlyEvent(), expected)) << window;
    }
    Interface::gExtraViews.clear();
}

TEST_F(InputTest, HasNoWindowIdOnceTheRoomHasEnded) {
    roomActive.store(false);
    SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.5F);
    const SDL_Event event = OnlyEvent();
    EXPECT_EQ(event.motion.windowID, kNoWindow);
    EXPECT_EQ(event.motion.x, 500);
    roomActive.store(true);
}

TEST_F(InputWithoutRoom, PushesNoMove) {
    SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.5F);
    SDLinterface_PushMouseMoveEvent(0, -1.0F, -1.0F);
    EXPECT_THAT(TakeEvents(), IsEmpty());
}

TEST_F(InputWithoutRoom, PushesButtonsThatBelongToNoWindow) {
    SDLinterface_PushMouseButtonDownEvent(0);
    SDL_Event expected = Cleared(SDL_MOUSEBUTTONDOWN);
    expected.button.windowID = kNoWindow;
    EXPECT_TRUE(Same(OnlyEvent(), expected));
    SDLinterface_PushMouseButtonDownEvent(0);
    EXPECT_EQ(Enter(), 1);
    const auto waiting = [] {
        SDL_Event event;
        return SDL_PeepEvents(&event, 1, SDL_PEEKEVENT, SDL_MOUSEBUTTONDOWN, SDL_MOUSEBUTTONDOWN) == 1 &&
               event.button.windowID == kNoWindow;
    };
    EXPECT_TRUE(waiting()) << "a room that begins leaves it to its first tick";
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_FALSE(waiting());
    EXPECT_THAT(TakeEvents(), IsEmpty());
}

TEST_F(InputTest, PushesButtonsWithTheirWindowAlone) {
    SDLinterface_PushMouseButtonDownEvent(0);
    SDL_Event expected = Cleared(SDL_MOUSEBUTTONDOWN);
    expected.button.windowID = RoomWindow();
    EXPECT_TRUE(Same(OnlyEvent(), expected));
    SDLinterface_PushMouseButtonUpEvent(0);
    expected.type = SDL_MOUSEBUTTONUP;
    EXPECT_TRUE(Same(OnlyEvent(), expected));
    SDLinterface_PushMouseButtonUpEvent(1);
    expected.button.windowID = kNoWindow;
    EXPECT_TRUE(Same(OnlyEvent(), expected));
}

TEST_F(InputTest, InvertsTheWheel) {
    for (const auto& [pushed, wheel] : {std::pair(0, 0), std::pair(3, -3), std::pair(-120, 120),
                                        std::pair(kHighest, -kHighest), std::pair(kLowest, kHighest)}) {
        SDLinterface_PushScrollWheelEvent(0, pushed, 5);
        SDL_Event expected = Cleared(SDL_MOUSEWHEEL);
        expected.wheel.windowID = RoomWindow();
        expected.wheel.x = wheel;
        expected.wheel.y = -5;
        EXPECT_TRUE(Same(OnlyEvent(), expected));
        SDLinterface_PushScrollWheelEvent(0, 5, pushed);
        std::swap(expected.wheel.x, expected.wheel.y);
        EXPECT_TRUE(Same(OnlyEvent(), expected));
    }
}

TEST_F(InputTest, PushesWhereTheWindowWasMoved) {
    for (const auto& [x, y] : {std::pair(12, -34), std::pair(kLowest, kHighest)}) {
        SDLinterface_PushWindowMovedEvent(0, x, y);
        SDL_Event expected = Cleared(SDL_WINDOWEVENT);
        expected.window.windowID = RoomWindow();
        expected.window.event = SDL_WINDOWEVENT_MOVED;
        expected.window.data1 = x;
        expected.window.data2 = y;
        EXPECT_TRUE(Same(OnlyEvent(), expected));
    }
}

TEST_F(InputTest, PushesKeysByTheirNames) {
    for (const auto& [name, code] : {std::pair("Space", 32), std::pair("RightCtrl", 0x400000E0),
                                     std::pair("A", 97), std::pair("\xE9", 0xE9)}) {
        SDLinterface_PushKeyDownEvent(0, name);
        SDL_Event expected = Cleared(SDL_KEYDOWN);
        expected.key.windowID = RoomWindow();
        expected.key.keysym.sym = code;
        EXPECT_TRUE(Same(OnlyEvent(), expected)) << code;
        SDLinterface_PushKeyUpEvent(0, name);
        expected.type = SDL_KEYUP;
        EXPECT_TRUE(Same(OnlyEvent(), expected)) << code;
    }
}

TEST_F(InputTest, DropsKeysThatItDoesNotKnow) {
    const std::string endless(2000, 'a');
    for (const char* name : {static_cast<const char*>(nullptr), "", "F5", "RightAlt", endless.c_str()}) {
        SDLinterface_PushKeyDownEvent(0, name);
        SDLinterface_PushKeyUpEvent(0, name);
        EXPECT_THAT(TakeEvents(), IsEmpty());
    }
}

TEST_F(InputTest, SwitchesTheKeysAndTextsThatSdlTakes) {
    SDLinterface_TextInputEnabled(true);
    Calls().Clear();
    EXPECT_EQ(SDLinterface_TextInputEnabled(false), SDL_ENABLE);
    const auto switched = [](SDL_EventType type, int state) {
        return Call{"SDL_EventState", {ToText(static_cast<Uint32>(type)), ToText(state)}};
    };
    EXPECT_THAT(Calls().All(), ElementsAre(switched(SDL_KEYDOWN, 0), switched(SDL_KEYUP, 0),
                                           switched(SDL_TEXTINPUT, 0), switched(SDL_TEXTEDITING, 0)));
    EXPECT_EQ(SDLinterface_TextInputEnabled(false), SDL_DISABLE);
    EXPECT_EQ(SDL_EventState(SDL_KEYDOWN, SDL_QUERY), SDL_DISABLE);
    Calls().Clear();
    EXPECT_EQ(SDLinterface_TextInputEnabled(true), SDL_DISABLE);
    EXPECT_THAT(Calls().All(), ElementsAre(switched(SDL_KEYDOWN, 1), switched(SDL_KEYUP, 1),
                                           switched(SDL_TEXTINPUT, 1), switched(SDL_TEXTEDITING, 1)));
    // The result is that of text editing, whatever the others had.
    SDL_EventState(SDL_TEXTEDITING, SDL_DISABLE);
    EXPECT_EQ(SDLinterface_TextInputEnabled(true), SDL_DISABLE);
    EXPECT_EQ(SDLinterface_TextInputEnabled(true), SDL_ENABLE);
    for (const SDL_EventType type : {SDL_KEYDOWN, SDL_KEYUP, SDL_TEXTINPUT, SDL_TEXTEDITING}) {
        EXPECT_EQ(SDL_EventState(type, SDL_QUERY), SDL_ENABLE);
    }
}

TEST_F(InputTest, PushesKeysAlsoWhileTextInputIsOff) {
    SDLinterface_TextInputEnabled(false);
    SDLinterface_PushKeyDownEvent(0, "a");
    EXPECT_EQ(OnlyEvent().type, static_cast<Uint32>(SDL_KEYDOWN));
}

TEST_F(InputTest, DiscardsTheKeysThatWaitWhenTextInputIsSwitchedOff) {
    SDLinterface_TextInputEnabled(true);
    SDLinterface_PushKeyDownEvent(0, "a");
    SDLinterface_PushKeyUpEvent(0, "a");
    SDLinterface_PushMouseButtonDownEvent(0);
    SDLinterface_TextInputEnabled(true);
    SDLinterface_TextInputEnabled(false);
    EXPECT_EQ(OnlyEvent().type, static_cast<Uint32>(SDL_MOUSEBUTTONDOWN));
    // It is the switch that discards, not the state.
    SDLinterface_PushKeyUpEvent(0, "a");
    SDLinterface_TextInputEnabled(false);
    EXPECT_EQ(OnlyEvent().type, static_cast<Uint32>(SDL_KEYUP));
}

void PushResize(Uint32 window, int width, int height) {
    SDL_Event event = Cleared(SDL_WINDOWEVENT);
    event.window.windowID = window;
    event.window.event = SDL_WINDOWEVENT_RESIZED;
    event.window.data1 = width;
    event.window.data2 = height;
    SDL_PushEvent(&event);
}

TEST_F(InputTest, LetsWindowEventsPassUntilTheyAreDisabled) {
    EXPECT_FALSE(SDL_GetEventFilter(nullptr, nullptr));
    SDLinterface_PushWindowMovedEvent(0, 1, 2);
    EXPECT_EQ(TakeEvents().size(), 1U);
}

TEST_F(InputTest, DropsAllWindowEventsWhileTheyAreDisabled) {
    SDLinterface_DisableWindowResizingEvents(true);
    EXPECT_THAT(Calls().Of("SDL_SetEventFilter"), ElementsAre(Call{"SDL_SetEventFilter", {"set", "null"}}));
    SDLinterface_PushWindowMovedEvent(0, 1, 2);
    PushResize(RoomWindow(), 320, 200);
    PushResize(RoomWindow() + 1, 320, 200);
    EXPECT_THAT(TakeEvents(), IsEmpty());
    // Not even the view hears of it.
    EXPECT_EQ(Interface::CurrentView()->GetWidth(), 1000);
    // What belongs to no window passes, and what is no window event.
    SDLinterface_PushWindowMovedEvent(7, 1, 2);
    SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.5F);
    SDLinterface_PushKeyDownEvent(0, "a");
    EXPECT_EQ(TakeEvents().size(), 3U);
    SDLinterface_VideoRoomResize(320, 200);
    EXPECT_EQ(Interface::CurrentView()->GetWidth(), 320);
}

TEST_F(InputTest, LetsWindowEventsPassWhenTheyAreEnabledAgain) {
    SDLinterface_DisableWindowResizingEvents(true);
    SDLinterface_DisableWindowResizingEvents(false);
    // The filter is installed by each call, and stays.
    EXPECT_EQ(Calls().Count("SDL_SetEventFilter"), 2U);
    EXPECT_TRUE(SDL_GetEventFilter(nullptr, nullptr));
    SDLinterface_PushWindowMovedEvent(0, 1, 2);
    PushResize(RoomWindow(), 320, 200);
    EXPECT_EQ(Interface::CurrentView()->GetWidth(), 320);
    EXPECT_GE(TakeEvents().size(), 2U);
}

TEST_F(InputTest, IsDiscardedWhenWindowEventsAreSwitched) {
    for (const bool disabled : {true, true, false, false}) {
        SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.5F);
        SDLinterface_PushKeyDownEvent(0, "a");
        SDLinterface_DisableWindowResizingEvents(disabled);
        EXPECT_THAT(TakeEvents(), IsEmpty());
    }
}

TEST_F(InputTest, IsLookedAtByTheNextTickAlone) {
    for (const int window : {0, 1, 7}) {
        SDLinterface_PushMouseMoveEvent(window, 0.5F, 0.5F);
        SDLinterface_PushMouseButtonDownEvent(window);
        SDLinterface_PushMouseButtonUpEvent(window);
        SDLinterface_PushScrollWheelEvent(window, kLowest, kHighest);
        SDLinterface_PushWindowMovedEvent(window, 1, 2);
        SDLinterface_PushKeyDownEvent(window, "Space");
    }
    EXPECT_THAT(Calls().Of("Host_SetCursor"), IsEmpty());
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("Host_SetCursor"), 1U);
    EXPECT_THAT(TakeEvents(), IsEmpty());
}

TEST_F(InputTest, KeepsItsOrder) {
    SDLinterface_PushMouseMoveEvent(0, 0.1F, 0.1F);
    SDLinterface_PushMouseButtonDownEvent(0);
    SDLinterface_PushMouseMoveEvent(0, 0.2F, 0.2F);
    SDLinterface_PushMouseButtonUpEvent(0);
    std::vector<int> types;
    for (const SDL_Event& event : TakeEvents()) types.push_back(static_cast<int>(event.type));
    EXPECT_THAT(types, ElementsAre(SDL_MOUSEMOTION, SDL_MOUSEBUTTONDOWN, SDL_MOUSEMOTION, SDL_MOUSEBUTTONUP));
}

TEST_F(InputTest, SurvivesAQueueThatNobodyDrains) {
    for (int i = 0; i < 70'000; ++i) SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.5F);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_THAT(TakeEvents(), IsEmpty());
}

// A bar driven by the queue as a view drives it: events first, then the hover pass, then a drawing.
class ClickTest : public InputTest {
protected:
    static constexpr int kBarTop = 500;

    ClickTest() : bar_(Renderer(), 1000, 100, "", true) {
        constexpr const char* kIcon = "icons/some.png";
        folder_.AddPicture(kIcon, 8, 8, 0xFFFFFFFF);
        for (const auto& [group, number] :
             {std::pair(UI::BarGroup::Left, 1), std::pair(UI::BarGroup::Centre, 2)}) {
            bar_.AddButton(
                kIcon, "", [this, number = number] { clicks_.push_back(number); }, group,
                UI::ButtonStyle::Fill, "");
        }
        Tick();
    }

    static SDL_Renderer* Renderer() { return Interface::CurrentView()->GetRenderer(); }
    void Tick() {
        SDL_Event event;
        while (SDL_PollEvent(&event) != 0) {
            if (event.window.windowID != RoomWindow()) continue;
            if (event.type == SDL_MOUSEMOTION) pointer_ = {event.motion.x, event.motion.y};
            if (event.type == SDL_MOUSEBUTTONDOWN) bar_.OnClick();
        }
        bar_.OnHover(pointer_);
        bar_.Render(Renderer(), {0, kBarTop});
    }
    static void MoveTo(SDL_Point point) {
        SDLinterface_PushMouseMoveEvent(0, (static_cast<float>(point.x) + 0.5F) / 1000.0F,
                                        (static_cast<float>(point.y) + 0.5F) / 600.0F);
    }

    static constexpr SDL_Point kLeft{54, 550};
    static constexpr SDL_Point kCentre{500, 550};
    const WorkingFolder folder_;
    UI::ButtonBar bar_;
    SDL_Point pointer_{0, 0};
    std::vector<int> clicks_;
};

TEST_F(ClickTest, HitsWhatWasUnderThePointerInTheTickBefore) {
    MoveTo(kLeft);
    Tick();
    MoveTo(kCentre);
    SDLinterface_PushMouseButtonDownEvent(0);
    Tick();
    EXPECT_THAT(clicks_, ElementsAre(1));
    SDLinterface_PushMouseButtonDownEvent(0);
    Tick();
    EXPECT_THAT(clicks_, ElementsAre(1, 2));
}

TEST_F(ClickTest, HitsNothingInTheTickInWhichThePointerComes) {
    MoveTo(kLeft);
    SDLinterface_PushMouseButtonDownEvent(0);
    Tick();
    EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(ClickTest, OfAnotherWindowHitsNothing) {
    MoveTo(kLeft);
    Tick();
    SDLinterface_PushMouseButtonDownEvent(1);
    Tick();
    EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(ClickTest, MayEndTheRoom) {
    bar_.AddButton(
        "icons/some.png", "Leave", [] { SDLinterface_GlobalQuit(); }, UI::BarGroup::Centre,
        UI::ButtonStyle::Fill, "");
    bar_.ClickCentreButton("Leave");
    EXPECT_FALSE(HasView());
    SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.5F);
    bar_.OnHover(kLeft);
}

TEST_F(ClickTest, LeavingTheWindowStartsTheBarsHiding) {
    MoveTo(kLeft);
    Tick();
    clock_.AdvanceMs(10'000);
    Tick();
    EXPECT_FALSE(bar_.IsHiding());
    SDLinterface_PushMouseMoveEvent(0, -1.0F, -1.0F);
    Tick();
    EXPECT_TRUE(bar_.IsHiding());
    EXPECT_TRUE(bar_.visible);
    clock_.AdvanceMs(4250);
    Tick();
    EXPECT_FALSE(bar_.visible);
    MoveTo(kLeft);
    Tick();
    EXPECT_TRUE(bar_.visible);
}

}  // namespace
}  // namespace Corvanta::Testing
