// A menu of 300 pixels, drawn at (100, 50), and what its tests ask of it.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/ui/ControlSurroundings.h"
#include "ui/Menu.h"

namespace Corvanta::Testing {

inline constexpr int kMenuWidth = 300;
inline constexpr SDL_Point kMenuTopLeft{100, 50};
// The middle of its first row, and the way to the next.
inline constexpr SDL_Point kFirstRow{250, 82};
inline constexpr int kRow = 48;

class MenuTestBase : public ControlTest {
protected:
    [[nodiscard]] std::unique_ptr<UI::Menu> MakeMenu(
        UI::MenuDirection direction = UI::MenuDirection::FromAbove) const {
        return std::make_unique<UI::Menu>(Renderer(), direction, kMenuWidth, 0xFF336699);
    }
    static UI::Button* AddRow(UI::Menu& menu) {
        return menu.AddButton(kSomeIcon, "", [] {});
    }
    static std::vector<UI::Button*> AddRows(UI::Menu& menu, int count) {
        std::vector<UI::Button*> rows;
        for (int i = 0; i < count; ++i) rows.push_back(AddRow(menu));
        return rows;
    }
    static void Open(UI::Menu& menu) {
        menu.SetVisible(true);
        StandingClock::TurnMs(125);
    }
    void Draw(UI::Menu& menu, SDL_Point topLeft = kMenuTopLeft) {
        Wipe();
        menu.Render(Renderer(), topLeft);
    }
    static void Scroll(UI::Menu& menu, int way) { menu.GetScrollbar().Move({way, way}, true); }
};

}  // namespace Corvanta::Testing
