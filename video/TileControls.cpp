#include "video/TileControls.h"

#include <utility>

#include "video/MenuMetrics.h"
#include "video/TileMetrics.h"

namespace Corvanta::Video {
namespace {

// A tile's menu stands beside its button at once; only those of bars slide.
constexpr auto kNoSlide = static_cast<UI::MenuDirection>(-1);
constexpr uint32_t kMenuColor = 0xFF424242;
// The size comes with each drawing.
constexpr int kNoSizeYet = -1;

[[nodiscard]] std::unique_ptr<UI::Button> MakeButton(UI::Button::Options options) {
    options.width = kNoSizeYet;
    options.height = kNoSizeYet;
    if (!options.hoverIconName.empty()) options.style = UI::ButtonStyle::OtherIcon;
    auto button = std::make_unique<UI::Button>(nullptr, std::move(options));
    // The pictures are whole signs, not small ones beside a label.
    button->SetFitHeight(true);
    button->SetVisible(true);
    return button;
}

void RenderAt(SDL_Renderer* renderer, UI::Button& button, const SquarePlace& place) {
    button.SetWidth(place.size);
    button.SetHeight(place.size);
    button.Render(renderer, place.centre);
}

[[nodiscard]] UI::Button* FindHoveredIn(const std::vector<std::unique_ptr<UI::Button>>& buttons) {
    for (const auto& button : buttons) {
        if (button->hovered) return button.get();
    }
    return nullptr;
}

}  // namespace

TileControls::TileControls() : menu_(nullptr, kNoSlide, CurrentMenuWidth(), kMenuColor) {
    menu_.SetItemHeight(kMenuItemHeight);
    menu_.SetScrollable(true);
}

UI::Button* TileControls::AddHoverButton(UI::Button::Options options) {
    return hoverButtons_.emplace_back(MakeButton(std::move(options))).get();
}

UI::Button* TileControls::AddOtherButton(UI::Button::Options options) {
    return otherButtons_.emplace_back(MakeButton(std::move(options))).get();
}

UI::ToggleButton* TileControls::AddHoverToggleButton(UI::ToggleButton::Options options) {
    options.width = kNoSizeYet;
    options.height = kNoSizeYet;
    auto button = std::make_unique<UI::ToggleButton>(nullptr, std::move(options));
    UI::ToggleButton* added = button.get();
    added->SetVisible(true);
    hoverButtons_.push_back(std::move(button));
    return added;
}

void TileControls::SetConnectionButton(UI::Button::Options options) {
    connectionButton_ = MakeButton(std::move(options));
}

template <typename Call>
void TileControls::ForEach(Call call) const {
    for (const auto& button : hoverButtons_) call(*button);
    for (const auto& button : otherButtons_) call(*button);
    if (connectionButton_ != nullptr) call(*connectionButton_);
}

int TileControls::RenderConnectionButton(SDL_Renderer* renderer, const SDL_Rect& tile) {
    if (connectionButton_ == nullptr) return 0;
    RenderAt(renderer, *connectionButton_, ConnectionButtonPlace(tile));
    return ConnectionButtonWidth(tile);
}

void TileControls::RenderColumn(SDL_Renderer* renderer, const SDL_Rect& tile) {
    if (hoverButtons_.empty()) return;
    ButtonColumn column(tile);
    for (const auto& button : hoverButtons_) RenderAt(renderer, *button, column.Next());
    if (menu_.visible) menu_.Render(renderer, column.MenuPlace(menu_.width));
}

void TileControls::OnHover(const SDL_Point& point) {
    ForEach([&](UI::Button& button) { button.OnHover(point); });
    menu_.OnHover(point);
}

UI::Button* TileControls::FindHovered() const {
    UI::Button* found = FindHoveredIn(hoverButtons_);
    if (found == nullptr) found = FindHoveredIn(otherButtons_);
    if (found == nullptr && connectionButton_ != nullptr && connectionButton_->hovered) {
        found = connectionButton_.get();
    }
    return found;
}

bool TileControls::OnClick() {
    if (UI::Button* button = FindHovered()) {
        button->OnClick();
        return true;
    }
    if (!menu_.visible) return false;
    UI::VideoScrollbar& scrollbar = menu_.GetScrollbar();
    const bool onMenuButton = menuButton_ != nullptr && menuButton_->hovered;
    if (!onMenuButton && !scrollbar.hovered) {
        menu_.SetVisible(false);
        scrollbar.EndDrag();
    }
    menu_.OnClick();
    return true;
}

void TileControls::ReleaseTextures() {
    ForEach([](UI::Button& button) { button.ReleaseTextures(); });
    menu_.ReleaseTextures();
}

}  // namespace Corvanta::Video
