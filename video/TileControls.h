// What of a tile can be clicked, its panel apart: the column of buttons at the right edge with the menu that
// hangs on it, and the connection button at the bottom left. Render thread only.
#pragma once

#include <SDL.h>

#include <memory>
#include <vector>

#include "ui/Button.h"
#include "ui/Menu.h"
#include "ui/ToggleButton.h"

namespace Corvanta::Video {

class TileControls final {
public:
    TileControls();

    UI::Button* AddHoverButton(UI::Button::Options options);
    UI::Button* AddOtherButton(UI::Button::Options options);
    UI::ToggleButton* AddHoverToggleButton(UI::ToggleButton::Options options);
    void SetConnectionButton(UI::Button::Options options);
    void SetMenuButton(UI::Button* button) { menuButton_ = button; }
    [[nodiscard]] UI::Button* GetMenuButton() const { return menuButton_; }
    [[nodiscard]] UI::Menu& GetMenu() { return menu_; }
    [[nodiscard]] const UI::Menu& GetMenu() const { return menu_; }

    // Returns how much of the bottom edge it takes.
    int RenderConnectionButton(SDL_Renderer* renderer, const SDL_Rect& tile);
    // The menu goes with the column: without a button there is none.
    void RenderColumn(SDL_Renderer* renderer, const SDL_Rect& tile);

    void OnHover(const SDL_Point& point);
    // The pointer is on the open menu, which may stick out of the tile.
    [[nodiscard]] bool IsMenuHovered() const { return menu_.visible && menu_.hovered; }
    // False when the click is for none of them. Nothing is touched after a control's own function, which may
    // have destroyed it.
    bool OnClick();

    // Every raster goes, the pictures are looked up again, on whatever renderer.
    void ReleaseTextures();

private:
    using Buttons = std::vector<std::unique_ptr<UI::Button>>;

    [[nodiscard]] UI::Button* FindHovered() const;
    template <typename Call>
    void ForEach(Call call) const;

    Buttons hoverButtons_;
    Buttons otherButtons_;
    std::unique_ptr<UI::Button> connectionButton_;
    UI::Button* menuButton_ = nullptr;
    UI::Menu menu_;
};

}  // namespace Corvanta::Video
