// A room in a window wide enough for the whole bar, with all pictures, and a hand at the mouse: buttons are
// found where the bar's layout puts them. Time goes on by 20 ms with each tick.
#pragma once

#include <SDL.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/interface/RoomTest.h"
#include "tests/ui/WorkingFolder.h"
#include "ui/ButtonBarLayout.h"
#include "ui/Menu.h"

namespace Corvanta::Testing {

inline constexpr SDL_Point kWindowSize{2400, 1000};

// Buttons of the bar in the order in which each group shows them.
enum class LeftButton : int { Layout, DrawTool, kCount };
enum class CentreButton : int { Microphone, Camera, Speaker, AudioMixer, kCount };
// The programs that can be streamed have no button while they do not run.
enum class RightButton : int {
    Options,
    Fullscreen,
    Screen,
    Device,
    File,
    Url,
    Ndi,
    DeckLink,
    MediaSilo,
    Elgato,
    kCount
};

class RoomWithBar : public LibraryTest {
protected:
    RoomWithBar() {
        std::ifstream names(CORVANTA_TEST_ICON_NAMES);
        std::string line;
        while (std::getline(names, line)) {
            if (line.empty() || line[0] == '#') continue;
            std::string name = "icons/";
            name += line.substr(0, line.find(' '));
            folder_.AddPicture(name + ".png", 8, 8, 0xFFFFFFFF);
        }
        // Texts can be clicked where they are drawn.
        for (const char* font : {"FKGrotesk-Regular", "FKGrotesk-Bolder", "FKGroteskMono-Regular"}) {
            folder_.AddFile(std::string("fonts/") + font + ".ttf", CORVANTA_TEST_FONT);
        }
        Start();
    }

    // The list of calls is empty afterwards.
    static void EnterWithBar() {
        SDLinterface_SetRoomWindow(&windowOfTheHost, kWindowSize.x, kWindowSize.y);
        ASSERT_EQ(Enter(), 1);
        Tick(2);
        Calls().Clear();
        Fake().ClearLogs();
    }

    [[nodiscard]] static Room::VideoRoomView& View() { return *Interface::CurrentView(); }
    [[nodiscard]] static UI::ButtonBar& Bar() { return *View().GetToolbar().GetButtonBar(); }

    static void Tick(int count = 1) {
        for (int tick = 0; tick < count; ++tick) {
            TurnedClock::AdvanceMs(20);
            SDL_WPFVideoRoomCheckInputAndRender();
        }
    }
    static void MoveTo(SDL_Point point) {
        const auto fraction = [](int value, int size) {
            return (static_cast<float>(value) + 0.5F) / static_cast<float>(size);
        };
        SDLinterface_PushMouseMoveEvent(0, fraction(point.x, View().GetWidth()),
                                        fraction(point.y, View().GetHeight()));
        Tick(2);
    }
    static void Press() {
        SDLinterface_PushMouseButtonDownEvent(0);
        Tick();
        SDLinterface_PushMouseButtonUpEvent(0);
        Tick();
    }
    static void ClickAt(SDL_Point point) {
        MoveTo(point);
        Press();
    }
    static void Click(LeftButton button) {
        ClickBar({UI::FirstLeftX(Metrics()) + static_cast<int>(button) * UI::LeftStep(Metrics()), MiddleY()});
    }
    static void Click(CentreButton button) {
        ClickBar({Metrics().centreX + static_cast<int>(button) * UI::CentreStep(Metrics()), MiddleY()});
    }
    static void Click(RightButton button) { ClickBar(PlaceOf(static_cast<int>(button))); }
    // The bar may have to come first.
    static void ClickBar(SDL_Point point) {
        MoveTo(point);
        for (int tick = 0; tick < 20 && Bar().IsSliding(); ++tick) Tick();
        ClickAt(point);
    }
    // Of a button in the right group, also one that is there for a while, behind the others.
    [[nodiscard]] static SDL_Point PlaceOf(int index) {
        const UI::BarMetrics metrics = Metrics();
        const int width = View().GetWidth();
        if (index == 0) return {UI::FirstRightX(metrics, width), MiddleY()};
        // All are as wide as the microphone's.
        const int step = View().GetToolbar().GetMicButton()->width / 2 * 2 + metrics.rightGap;
        return {UI::SecondRightX(metrics, width, false, 0) - (index - 1) * step, MiddleY()};
    }
    // Opens the menu by its button and lets it slide into place.
    static void Open(const UI::Menu& menu) {
        const SDL_Rect& button = menu.GetAnchorElement()->rect;
        ClickBar({button.x + button.w / 2, button.y + button.h / 2});
        Tick(10);
        EXPECT_TRUE(menu.visible);
    }
    static void ClickItem(const UI::Menu& menu, const std::string& label) {
        for (const UI::Button* item : menu.GetItems()) {
            if (!item->MatchesLabel(label)) continue;
            ClickAt({item->rect.x + item->rect.w / 2, item->rect.y + item->rect.h / 2});
            return;
        }
        ADD_FAILURE() << "The menu has no entry " << label;
    }

    [[nodiscard]] static std::vector<std::string> HostCalls() {
        auto names = Fake().CallNames();
        std::erase_if(names, [](const std::string& name) {
            return name.rfind("Host_", 0) != 0 || name == "Host_SetCursor";
        });
        return names;
    }
    // Arguments of the calls of that name, one after the other.
    [[nodiscard]] static std::vector<std::string> ArgumentsOf(const std::string& name) {
        std::vector<std::string> all;
        for (const Call& call : Fake().CallsOf(name)) {
            all.insert(all.end(), call.arguments.begin(), call.arguments.end());
        }
        return all;
    }

private:
    [[nodiscard]] static UI::BarMetrics Metrics() {
        const SDL_Rect& rect = Bar().rect;
        return UI::ComputeBarMetrics(rect, rect.w, rect.h,
                                     {.left = static_cast<int>(LeftButton::kCount),
                                      .centre = static_cast<int>(CentreButton::kCount),
                                      .right = static_cast<int>(RightButton::kCount)});
    }
    [[nodiscard]] static int MiddleY() { return Metrics().middleY; }

    const WorkingFolder folder_;
};

}  // namespace Corvanta::Testing
