// Every control and the wall's tiles in every state, side by side with its name. The sheet owns the controls
// and puts each into its state before it is drawn; under the pointer a control is live. Render thread only.
#pragma once

#include <SDL.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ui/GraphicElementInterface.h"
#include "ui/TextTexture.h"

namespace Corvanta::Gallery {

// One control in one state. Areas in logical pixels of the sheet.
struct Cell {
    std::string name;
    int width = 0;
    int height = 0;
    // Draws into the area, which is where the cell stands.
    std::function<void(SDL_Renderer*, const SDL_Rect& area)> draw;
    // Puts the control into its state; empty for one that keeps it.
    std::function<void()> pose;
    // Takes pointer and click; null for a picture only.
    UI::GraphicElementInterface* element = nullptr;
    // Called instead of the element's hover pass, for a control that draws itself in a viewport of its own:
    // the pointer as that viewport counts.
    std::function<void(SDL_Point pointer)> hover;
    // Called instead of the element's click on press, release and wheel, where the control has such.
    std::function<void()> press;
    std::function<void()> release;
    std::function<void(int steps)> wheel;
    // Whether something of another thread is still to come into the picture; empty where nothing is.
    std::function<bool()> isBusy;
    SDL_Rect area{0, 0, 0, 0};
};

class GallerySheet final {
public:
    // The renderer is borrowed and outlives the sheet.
    explicit GallerySheet(SDL_Renderer* renderer);
    ~GallerySheet();
    GallerySheet(const GallerySheet&) = delete;
    GallerySheet& operator=(const GallerySheet&) = delete;

    [[nodiscard]] SDL_Point GetSize() const { return size_; }
    [[nodiscard]] const std::vector<Cell>& GetCells() const { return cells_; }

    void Render(SDL_Renderer* renderer);
    // Whether what is drawn next may still lack something that another thread prepares.
    [[nodiscard]] bool IsBusy() const;
    void OnHover(SDL_Point pointer);
    void OnPress();
    void OnRelease();
    // False when no control under the pointer turns with the wheel.
    bool OnWheel(int steps);
    // Frees every raster, so that texts are made anew for another scale.
    void ReleaseTextures();

private:
    void AddButtons();
    void AddToggles();
    void AddStateButtons();
    void AddTexts();
    void AddMenus();
    void AddScrollbars();
    void AddBars();
    void AddTiles();
    void LayOut();
    Cell& Add(std::string name, int width, int height);
    template <typename Element, typename... Arguments>
    Element* Make(Arguments&&... arguments);
    [[nodiscard]] bool IsUnderPointer(const Cell& cell) const;
    [[nodiscard]] Cell* CellUnderPointer();

    SDL_Renderer* renderer_;
    std::vector<std::unique_ptr<UI::GraphicElementInterface>> elements_;
    std::vector<std::unique_ptr<UI::TextTexture>> texts_;
    std::vector<std::function<void()>> releasers_;
    std::vector<Cell> cells_;
    std::vector<std::unique_ptr<UI::TextTexture>> captions_;
    SDL_Point size_{0, 0};
    SDL_Point pointer_{-1, -1};
};

template <typename Element, typename... Arguments>
Element* GallerySheet::Make(Arguments&&... arguments) {
    auto element = std::make_unique<Element>(std::forward<Arguments>(arguments)...);
    Element* made = element.get();
    elements_.push_back(std::move(element));
    return made;
}

}  // namespace Corvanta::Gallery
