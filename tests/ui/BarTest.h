// A bar of 1280 x 85, drawn at (0, 600), and what its tests ask of it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/ui/ControlSurroundings.h"
#include "ui/ButtonBar.h"

namespace Corvanta::Testing {

inline constexpr int kBarHeight = 85;
inline constexpr int kBarWidth = 1280;
inline constexpr SDL_Point kBarTopLeft{0, 600};
inline constexpr int kBarMiddleY = 642;

class BarTest : public ControlTest {
protected:
    [[nodiscard]] std::unique_ptr<UI::ButtonBar> MakeBar(const std::string& title = "", int width = kBarWidth,
                                                         bool titleCentred = true) const {
        return std::make_unique<UI::ButtonBar>(Renderer(), width, kBarHeight, title, titleCentred);
    }
    // Without a label, so that it keeps its width of a third of the bar's height.
    static UI::ToggleButton* AddToggle(
        UI::ButtonBar& bar, UI::BarGroup group, const std::function<void()>& onClick = [] {}) {
        return bar.AddToggleButton({.offIconName = kSomeIcon,
                                    .onIconName = kSomeIcon,
                                    .onToggledOn = onClick,
                                    .onToggledOff = onClick},
                                   group);
    }
    static std::vector<UI::ToggleButton*> AddToggles(UI::ButtonBar& bar, UI::BarGroup group, int count) {
        std::vector<UI::ToggleButton*> added;
        added.reserve(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i) added.push_back(AddToggle(bar, group));
        return added;
    }
    void Draw(UI::ButtonBar& bar, SDL_Point topLeft = kBarTopLeft) {
        Wipe();
        bar.Render(Renderer(), topLeft);
    }
    // Where the buttons' middles are.
    template <typename Element>
    static std::vector<SDL_Point> Middles(const std::vector<Element*>& buttons) {
        std::vector<SDL_Point> points;
        points.reserve(buttons.size());
        for (const Element* button : buttons) points.push_back(CentreOf(*button));
        return points;
    }
};

}  // namespace Corvanta::Testing
