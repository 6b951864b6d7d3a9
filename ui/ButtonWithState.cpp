#include "ui/ButtonWithState.h"

#include <utility>

#include "ui/Arithmetic.h"
#include "ui/Button.h"
#include "ui/ControlColors.h"
#include "ui/FontManager.h"
#include "ui/TextureCache.h"
#include "ui/Tooltip.h"

namespace Corvanta::UI {

ButtonWithState::ButtonWithState(SDL_Renderer* renderer, Options options) : options_(std::move(options)) {
    width = options_.width;
    height = options_.height;
    loaded_ = Load(renderer);
}

bool ButtonWithState::Load(SDL_Renderer* renderer) {
    offTexture_ = LoadCachedTexture(renderer, options_.offIconName);
    if (!options_.onIconName.empty()) onTexture_ = LoadCachedTexture(renderer, options_.onIconName);
    if (!disabledIconName_.empty()) disabledTexture_ = LoadCachedTexture(renderer, disabledIconName_);
    return offTexture_ != nullptr && (options_.onIconName.empty() || onTexture_ != nullptr);
}

bool ButtonWithState::HasOnState() const {
    return options_.onClickWhileOn != nullptr && onTexture_ != nullptr;
}

void ButtonWithState::SetDisabled(bool disabled) {
    disabled_ = disabled;
    if (disabled) pressState_ = PressState::Idle;
}

void ButtonWithState::SetOnIcon(SDL_Renderer* renderer, const std::string& name) {
    options_.onIconName = name;
    onTexture_ = LoadCachedTexture(renderer, name);
}

void ButtonWithState::SetDisabledIcon(SDL_Renderer* renderer, const std::string& name) {
    disabledIconName_ = name;
    disabledTexture_ = LoadCachedTexture(renderer, name);
}

void ButtonWithState::ReleaseTextures() {
    loaded_ = false;
    offTexture_ = nullptr;
    onTexture_ = nullptr;
    disabledTexture_ = nullptr;
    tooltipTexture_.ReleaseTexture();
}

void ButtonWithState::OnHover(const SDL_Point& mouse) {
    if (disabled_) {
        hovered = false;
        return;
    }
    hovered = Hits(mouse);
    if (!hovered) {
        pressState_ = PressState::Idle;
    } else if (!IsPressed()) {
        pressState_ = PressState::Hovered;
    }
}

void ButtonWithState::OnMouseDown() {
    if (pressState_ == PressState::Hovered) pressState_ = PressState::Pressed;
}

void ButtonWithState::OnMouseUp() {
    const std::weak_ptr<const bool> life = life_;
    if (OnClick() && !life.expired()) pressState_ = PressState::Hovered;
}

bool ButtonWithState::OnClick() {
    if (!IsPressed()) return false;
    const bool wasOn = IsOn();
    if (!options_.latched) {
        if (wasOn) {
            on_ = false;
        } else if (HasOnState()) {
            on_ = true;
        }
    }
    // A copy, since the function may destroy this button.
    const std::function<void()> call = wasOn ? options_.onClickWhileOn : options_.onClickWhileOff;
    call();
    return true;
}

void ButtonWithState::Render(SDL_Renderer* renderer, SDL_Point centre) {
    if (!loaded_) loaded_ = Load(renderer);
    if (!loaded_) return;
    rect = CentredRect(centre, Truncate(static_cast<float>(width) * scale_),
                       Truncate(static_cast<float>(height) * scale_));
    RenderBackground(renderer);
    ClearDrawColor(renderer);
    RenderContent(renderer, centre);
    ClearDrawColor(renderer);
}

void ButtonWithState::RenderBackground(SDL_Renderer* renderer) const {
    const Style style = options_.style;
    const bool outlined = style == Style::FillAndOutline;
    if (!outlined && style != Style::Fill && style != Style::FaintFill) return;
    if (pressState_ == PressState::Hovered) {
        FillRect(renderer, rect, style == Style::FaintFill ? kRowHoverFill : kHoverFill);
        if (outlined) OutlineRect(renderer, rect, kWhite);
    } else if (pressState_ == PressState::Pressed) {
        if (outlined) FillRect(renderer, rect, kHoverFill);
        FillRect(renderer, rect, kPressedFill);
    }
}

SDL_Texture* ButtonWithState::Picture() const {
    if (disabled_ && disabledTexture_ != nullptr) return disabledTexture_;
    const bool swapped = hovered && options_.style == Style::SwapPicture && onTexture_ != nullptr;
    return IsOn() || swapped ? onTexture_ : offTexture_;
}

SDL_Rect ButtonWithState::IconRect(SDL_Texture* picture, SDL_Point centre) const {
    const Style style = options_.style;
    const bool fullHeight = style == Style::FullHeight || style == Style::Grow || style == Style::SwapPicture;
    const bool centred = options_.iconPlace == IconPlace::Centred;
    int base = height;
    if (style == Style::Grow && pressState_ == PressState::Hovered) base = Truncate(base * 1.1);
    int iconHeight = base;
    if (!fullHeight) iconHeight = centred ? Truncate(base / 2.5) : base / 2;
    const SDL_Point size = TextureSize(picture);
    const float aspect = size.y == 0 ? 0.0F : static_cast<float>(size.x) / static_cast<float>(size.y);
    const int iconWidth = Truncate(aspect * static_cast<float>(iconHeight));
    if (centred) return CentredRect(centre, iconWidth, iconHeight);
    return {rect.x + base / 2, centre.y - base / 4, iconWidth, iconHeight};
}

void ButtonWithState::RenderContent(SDL_Renderer* renderer, SDL_Point centre) {
    SDL_Texture* picture = Picture();
    const SDL_Rect icon = IconRect(picture, centre);
    SDL_RenderCopy(renderer, picture, nullptr, &icon);
    if (hovered) RenderTooltipText(renderer);
}

void ButtonWithState::RenderTooltipText(SDL_Renderer* renderer) {
    const std::string& text = IsOn() ? options_.onTooltip : options_.offTooltip;
    if (text.empty()) return;
    tooltipTexture_.SetText(text);
    tooltipTexture_.SetFontName(FontBolder);
    tooltipTexture_.SetFontSize(Truncate(scale_ * 12.0F));
    RenderTooltip(renderer, tooltipTexture_, LayoutScaledTooltip(rect, tooltipTexture_.MeasureText(), scale_),
                  kTooltipPlate);
}

}  // namespace Corvanta::UI
