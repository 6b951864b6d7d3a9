// Menus and a bar of 1280 x 100 at the bottom of a view of 700 lines, with a process monitor that a test
// fires. One thread.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/ui/ControlSurroundings.h"
#include "ui/ButtonBar.h"
#include "ui/Menu.h"

namespace Corvanta::Testing {

inline constexpr int kViewHeight = 700;
inline constexpr int kToolbarHeight = 100;
inline constexpr int kToolbarTop = kViewHeight - kToolbarHeight;
inline constexpr int kMenuWidth = 322;

class ToolbarMenuTest : public ControlTest {
protected:
    ToolbarMenuTest() { Fake().Reset(); }
    ~ToolbarMenuTest() override { Fake().Reset(); }

    [[nodiscard]] std::unique_ptr<UI::Menu> MakeMenu(int rows) const {
        auto menu =
            std::make_unique<UI::Menu>(Renderer(), UI::MenuDirection::FromBelow, kMenuWidth, 0xFF424242);
        for (int row = 0; row < rows; ++row) AddRow(*menu);
        return menu;
    }
    static UI::ToggleButton* AddRow(
        UI::Menu& menu, const std::function<void()>& onClick = [] {}) {
        return menu.AddToggleButton({.offIconName = kSomeIcon,
                                     .onIconName = kSomeIcon,
                                     .onToggledOn = onClick,
                                     .onToggledOff = onClick});
    }
    static UI::ToggleButton* AddToBar(UI::ButtonBar& bar, UI::BarGroup group = UI::BarGroup::Right) {
        return bar.AddToggleButton({.offIconName = kSomeIcon,
                                    .onIconName = kSomeIcon,
                                    .offLabel = "Tip",
                                    .onToggledOn = [] {},
                                    .onToggledOff = [] {}},
                                   group);
    }
    // Open, and past its slide.
    static void Open(UI::Menu& menu) {
        menu.SetVisible(true);
        StandingClock::TurnMs(125);
    }

    UI::ButtonBar bar{Renderer(), 1280, kToolbarHeight, "", true};
};

}  // namespace Corvanta::Testing
