#include "tools/gallery/GallerySheet.h"

#include <algorithm>
#include <utility>

#include "ui/ControlColors.h"
#include "ui/FontManager.h"

namespace Corvanta::Gallery {
namespace {

constexpr int kSheetWidth = 1280;
constexpr int kMargin = 16;
constexpr int kCaptionHeight = 16;
constexpr int kCaptionSize = 11;
constexpr SDL_Color kGround{27, 27, 27, 255};
constexpr SDL_Color kCellGround{38, 38, 38, 255};
constexpr SDL_Color kCaptionColor{160, 160, 160, 255};

}  // namespace

GallerySheet::GallerySheet(SDL_Renderer* renderer) : renderer_(renderer) {
    AddButtons();
    AddToggles();
    AddStateButtons();
    AddTexts();
    AddMenus();
    AddScrollbars();
    AddBars();
    AddTiles();
    LayOut();
}

GallerySheet::~GallerySheet() = default;

Cell& GallerySheet::Add(std::string name, int width, int height) {
    Cell cell;
    cell.name = std::move(name);
    cell.width = width;
    cell.height = height;
    cells_.push_back(std::move(cell));
    return cells_.back();
}

void GallerySheet::LayOut() {
    SDL_Point place{kMargin, kMargin};
    int rowHeight = 0;
    for (Cell& cell : cells_) {
        if (place.x > kMargin && place.x + cell.width + kMargin > kSheetWidth) {
            place = {kMargin, place.y + rowHeight + kMargin};
            rowHeight = 0;
        }
        cell.area = {place.x, place.y + kCaptionHeight, cell.width, cell.height};
        place.x += cell.width + kMargin;
        rowHeight = std::max(rowHeight, cell.height + kCaptionHeight);
        auto caption = std::make_unique<UI::TextTexture>();
        caption->SetText(cell.name);
        caption->SetFontName(UI::FontMono);
        caption->SetFontSize(kCaptionSize);
        caption->SetColor(kCaptionColor);
        captions_.push_back(std::move(caption));
    }
    size_ = {kSheetWidth, place.y + rowHeight + kMargin};
}

bool GallerySheet::IsUnderPointer(const Cell& cell) const {
    return SDL_PointInRect(&pointer_, &cell.area) != SDL_FALSE;
}

Cell* GallerySheet::CellUnderPointer() {
    const auto found =
        std::find_if(cells_.begin(), cells_.end(), [this](const Cell& c) { return IsUnderPointer(c); });
    return found == cells_.end() ? nullptr : &*found;
}

void GallerySheet::Render(SDL_Renderer* renderer) {
    SDL_SetRenderDrawColor(renderer, kGround.r, kGround.g, kGround.b, kGround.a);
    SDL_RenderClear(renderer);
    for (const Cell& cell : cells_) UI::FillRect(renderer, cell.area, kCellGround);
    for (size_t index = 0; index < cells_.size(); ++index) {
        Cell& cell = cells_[index];
        captions_[index]->RenderAt(renderer, {cell.area.x, cell.area.y - kCaptionHeight});
        if (cell.pose && !IsUnderPointer(cell)) cell.pose();
        cell.draw(renderer, cell.area);
    }
    UI::ClearDrawColor(renderer);
}

bool GallerySheet::IsBusy() const {
    return std::any_of(cells_.begin(), cells_.end(), [](const Cell& c) { return c.isBusy && c.isBusy(); });
}

void GallerySheet::OnHover(SDL_Point pointer) {
    pointer_ = pointer;
    for (const Cell& cell : cells_) {
        if (cell.hover) {
            cell.hover({pointer.x - cell.area.x, pointer.y - cell.area.y});
        } else if (cell.element != nullptr) {
            cell.element->OnHover(pointer);
        }
    }
}

void GallerySheet::OnPress() {
    Cell* cell = CellUnderPointer();
    if (cell == nullptr) return;
    if (cell->press) {
        cell->press();
    } else if (cell->element != nullptr && cell->element->hovered) {
        cell->element->OnClick();
    }
}

void GallerySheet::OnRelease() {
    for (const Cell& cell : cells_) {
        if (cell.release) cell.release();
    }
}

bool GallerySheet::OnWheel(int steps) {
    const Cell* cell = CellUnderPointer();
    if (cell == nullptr || !cell->wheel) return false;
    cell->wheel(steps);
    return true;
}

void GallerySheet::ReleaseTextures() {
    for (const auto& release : releasers_) release();
    for (const auto& text : texts_) text->ReleaseTexture();
    for (const auto& caption : captions_) caption->ReleaseTexture();
}

}  // namespace Corvanta::Gallery
