#include "ui/Menu.h"

#include <algorithm>
#include <utility>

#include "ui/Arithmetic.h"
#include "ui/Clock.h"
#include "ui/ControlColors.h"
#include "ui/MenuLayout.h"

namespace Corvanta::UI {
namespace {

constexpr int64_t kNsPerMs = 1'000'000;
constexpr float kRegularLabelRatio = 0.34F;
constexpr float kBoldLabelRatio = 0.36F;
constexpr double kDesignItemHeight = 48.0;

[[nodiscard]] SDL_Color ToColor(uint32_t argb) {
    return {static_cast<Uint8>(argb >> 16U), static_cast<Uint8>(argb >> 8U), static_cast<Uint8>(argb),
            static_cast<Uint8>(argb >> 24U)};
}

[[nodiscard]] bool IsDivider(const Button* item) {
    return dynamic_cast<const Divider*>(item) != nullptr;
}

}  // namespace

Menu::Menu(SDL_Renderer* renderer, MenuDirection direction, int baseWidth, uint32_t background)
    : renderer_(renderer),
      baseWidth_(baseWidth),
      background_(ToColor(background)),
      itemWidth_(baseWidth),
      direction_(direction) {
    visible = false;
    width = baseWidth;
    scrollbar_.SetOrientation(true);
}

int Menu::GetPlateHeight() const {
    return MenuPlateHeight(ItemCount(), dividerCount_, itemHeight_, scrollable_);
}

SDL_Point PlaceMenuAbove(const Menu& menu, const SDL_Rect& opener, int bottom) {
    const int rightAligned = opener.x + opener.w - menu.width;
    return {rightAligned >= 0 ? rightAligned : opener.x, bottom - menu.GetPlateHeight()};
}

int Menu::ContentHeight() const {
    return MenuContentHeight(ItemCount(), dividerCount_, itemHeight_);
}

template <typename Item>
Item* Menu::Adopt(std::unique_ptr<Item> item) {
    Item* added = item.get();
    ownItems_.push_back(std::move(item));
    items_.push_back(added);
    SetHeight(ContentHeight());
    return added;
}

Button* Menu::AddButton(const std::string& iconName, const std::string& label,
                        std::function<void()> onClick) {
    Button* item = Adopt(std::make_unique<Button>(renderer_, Button::Options{.width = itemWidth_,
                                                                             .height = itemHeight_,
                                                                             .iconName = iconName,
                                                                             .label = label,
                                                                             .onClick = std::move(onClick),
                                                                             .labelPlace = LabelPlace::Beside,
                                                                             .style = ButtonStyle::Row,
                                                                             .tooltip = {},
                                                                             .hoverIconName = {}}));
    item->SetLabelStyle(regularLabels_ ? kRegularLabelRatio : kBoldLabelRatio, !regularLabels_);
    return item;
}

ToggleButton* Menu::AddToggleButton(ToggleOptions options) {
    ToggleButton* item = Adopt(std::make_unique<ToggleButton>(
        renderer_, ToggleButton::Options{.width = itemWidth_,
                                         .height = itemHeight_,
                                         .offIconName = std::move(options.offIconName),
                                         .onIconName = std::move(options.onIconName),
                                         .offLabel = std::move(options.offLabel),
                                         .onLabel = std::move(options.onLabel),
                                         .onToggledOn = std::move(options.onToggledOn),
                                         .onToggledOff = std::move(options.onToggledOff),
                                         .showLabel = true,
                                         .labelPlace = LabelPlace::Beside,
                                         .flat = false,
                                         .fixedLabelMode = false,
                                         .fixedLabel = {}}));
    item->SetLabelStyle(regularLabels_ ? kRegularLabelRatio : kBoldLabelRatio, !regularLabels_);
    return item;
}

Divider* Menu::AddDivider() {
    ++dividerCount_;
    return Adopt(std::make_unique<Divider>(itemWidth_, 1));
}

void Menu::InsertItem(Button* item, size_t index) {
    if (item == nullptr) return;
    if (std::find(items_.begin(), items_.end(), item) != items_.end()) return;
    items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(std::min(index, items_.size())), item);
    SetHeight(ContentHeight());
}

void Menu::RemoveItem(Button* item) {
    const auto found = std::find(items_.begin(), items_.end(), item);
    if (found == items_.end()) return;
    items_.erase(found);
    SetHeight(ContentHeight());
}

void Menu::SetItemHeight(int value) {
    itemHeight_ = value;
    for (Button* item : items_) {
        if (!IsDivider(item)) item->SetHeight(value);
    }
    SetHeight(ContentHeight());
}

void Menu::SetScale(float scale) {
    SetWidth(Truncate(static_cast<float>(baseWidth_) * scale));
    SetItemHeight(Truncate(scale * kDesignItemHeight));
}

void Menu::SetWidth(int value) {
    width = value;
    SetItemWidth(value);
}

void Menu::SetItemWidth(int value) {
    itemWidth_ = value;
    for (Button* item : items_) item->SetWidth(value);
}

void Menu::SetVisible(bool value) {
    visible = value;
    if (!value) return;
    opening_ = true;
    openStartNs_ = NowNs();
}

void Menu::ReleaseTextures() {
    for (Button* item : items_) item->ReleaseTextures();
    for (const auto& item : ownItems_) item->ReleaseTextures();
    scrollbar_.ResetTextures();
}

void Menu::Render(SDL_Renderer* renderer, SDL_Point topLeft) {
    rect = {topLeft.x, topLeft.y, itemWidth_, GetPlateHeight()};
    if (!visible) return;
    if (opening_) Slide();
    const int offset = scrollable_ ? Scroll(topLeft) : 0;
    FillRect(renderer, rect, background_);
    ClearDrawColor(renderer);
    RenderItems(renderer, topLeft, offset);
    if (scrollable_) scrollbar_.Render(renderer, topLeft);
    rect.x = topLeft.x;
    rect.y = topLeft.y;
}

void Menu::Slide() {
    const int64_t elapsedMs = (NowNs() - openStartNs_) / kNsPerMs;
    if (elapsedMs >= openMs_) {
        opening_ = false;
        return;
    }
    const double distance = MenuSlideDistance(elapsedMs, openMs_, height);
    if (direction_ == MenuDirection::FromAbove) rect.y = Truncate(rect.y - distance);
    if (direction_ == MenuDirection::FromBelow) rect.y = Truncate(rect.y + distance);
}

int Menu::Scroll(SDL_Point topLeft) {
    const bool wasShown = scrollbar_.visible;
    scrollbar_.SetTrackStart(topLeft.y);
    const int content = 2 * MenuPadding(itemHeight_) + ContentHeight();
    const int offset = scrollbar_.UpdateMetrics(rect.h, content, rect.x + rect.w, scrollbar_.GetVertical());
    if (scrollbar_.visible) {
        rect.w += scrollbar_.width;
        if (!wasShown) SetItemWidth(itemWidth_ - scrollbar_.width);
        return offset;
    }
    if (wasShown) SetItemWidth(itemWidth_ + scrollbar_.width);
    return 0;
}

void Menu::RenderItems(SDL_Renderer* renderer, SDL_Point topLeft, int offset) {
    const int top = topLeft.y;
    const int bottom = rect.h + topLeft.y;
    SDL_Point centre{itemWidth_ / 2 + rect.x, rect.y + offset + MenuPadding(itemHeight_)};
    int previousHeight = 0;
    for (Button* item : items_) {
        const int itemHeight = item->height;
        centre.y += (itemHeight + previousHeight) / 2;
        const int itemTop = centre.y - itemHeight / 2;
        const int itemBottom = centre.y + itemHeight / 2;
        if (itemTop < top || itemBottom > bottom) {
            item->SetClipTop(top);
            item->SetClipBottom(bottom);
        }
        if (itemBottom > top && itemTop < bottom) item->Render(renderer, centre);
        previousHeight = itemHeight;
    }
}

void Menu::OnHover(const SDL_Point& mouse) {
    hovered = Hits(mouse);
    for (Button* item : items_) item->OnHover(mouse);
    if (scrollbar_.IsDragging()) {
        scrollbar_.Move(mouse, false);
    } else {
        scrollbar_.OnHover(mouse);
    }
}

bool Menu::OnClick() {
    if (!hovered) return false;
    if (scrollbar_.visible && scrollbar_.hovered) {
        scrollbar_.OnClick();
        return true;
    }
    const auto found =
        std::find_if(items_.begin(), items_.end(), [](const Button* item) { return item->hovered; });
    if (found == items_.end()) return false;
    // Nothing of the menu is touched afterwards: the click may have destroyed it.
    (*found)->OnClick();
    return true;
}

}  // namespace Corvanta::UI
