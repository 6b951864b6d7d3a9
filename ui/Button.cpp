#include "ui/Button.h"

#include <cmath>
#include <utility>

#include "ui/Arithmetic.h"
#include "ui/ControlColors.h"
#include "ui/FontManager.h"
#include "ui/TextureCache.h"
#include "ui/Tooltip.h"

namespace Corvanta::UI {

SDL_Point TextureSize(SDL_Texture* texture) {
    SDL_Point size{0, 0};
    if (texture != nullptr) SDL_QueryTexture(texture, nullptr, nullptr, &size.x, &size.y);
    return size;
}

Button::Button(int buttonWidth, int buttonHeight, LabelPlace labelPlace, ButtonStyle style)
    : labelPlace_(labelPlace), style_(style) {
    width = buttonWidth;
    height = buttonHeight;
}

Button::Button(SDL_Renderer* renderer, Options options)
    : labelPlace_(options.labelPlace),
      style_(options.style),
      iconName_(std::move(options.iconName)),
      label_(std::move(options.label)),
      onClick_(std::move(options.onClick)),
      tooltip_(std::move(options.tooltip)),
      hoverIconName_(std::move(options.hoverIconName)) {
    width = options.width;
    height = options.height;
    loaded_ = Button::Load(renderer);
}

bool Button::Load(SDL_Renderer* renderer) {
    texture_ = LoadCachedTexture(renderer, iconName_);
    if (style_ == ButtonStyle::OtherIcon) hoverTexture_ = LoadCachedTexture(renderer, hoverIconName_);
    return texture_ != nullptr;
}

bool Button::EnsureLoaded(SDL_Renderer* renderer) {
    if (!loaded_) loaded_ = Load(renderer);
    return loaded_;
}

void Button::SetLoaded(bool loaded) {
    loaded_ = loaded;
    if (loaded) return;
    texture_ = nullptr;
    hoverTexture_ = nullptr;
}

void Button::SetLabelStyle(float ratio, bool bold) {
    labelSizeRatio_ = ratio;
    boldLabel_ = bold ? 1.0F : 0.0F;
}

void Button::ReleaseTextures() {
    SetLoaded(false);
    labelTexture_.ReleaseTexture();
    tooltipTexture_.ReleaseTexture();
}

void Button::PlaceAround(SDL_Point centre) {
    rect = CentredRect(centre, width, height);
}

ButtonShape Button::Shape(SDL_Point centre) const {
    return {rect, centre, height, HasLabelBelow()};
}

SDL_Rect Button::VisiblePart() const {
    SDL_Rect clipped = rect;
    const auto source = ComputeVerticalClip(clipped, rect.w, rect.h, clip_);
    if (!source.has_value()) return rect;
    return {rect.x + source->x, rect.y + source->y, source->w, source->h};
}

SDL_Rect Button::CopyClipped(SDL_Renderer* renderer, SDL_Texture* texture, SDL_Rect destination) const {
    const SDL_Point size = TextureSize(texture);
    const auto source = ComputeVerticalClip(destination, size.x, size.y, clip_);
    SDL_RenderCopy(renderer, texture, source.has_value() ? &*source : nullptr, &destination);
    return destination;
}

void Button::Render(SDL_Renderer* renderer, SDL_Point centre) {
    if (!EnsureLoaded(renderer)) return;
    PlaceAround(centre);
    if (highlighted_) {
        FillRect(renderer, rect, kHighlight);
    } else if (hovered) {
        RenderHover(renderer);
        RenderTooltipText(renderer, tooltip_);
    }
    ClearDrawColor(renderer);
    RenderContent(renderer, centre);
    ClearDrawColor(renderer);
}

void Button::RenderHover(SDL_Renderer* renderer) const {
    switch (style_) {
        case ButtonStyle::Plain:
        case ButtonStyle::OtherIcon: return;
        case ButtonStyle::Row: FillRect(renderer, VisiblePart(), kRowHoverFill); return;
        case ButtonStyle::FillAndOutline:
            FillRect(renderer, rect, kHoverFill);
            OutlineRect(renderer, rect, kWhite);
            return;
        case ButtonStyle::Fill: break;
    }
    FillRect(renderer, rect, kHoverFill);
}

void Button::RenderContent(SDL_Renderer* renderer, SDL_Point centre) {
    const bool other = style_ == ButtonStyle::OtherIcon && hovered && hoverTexture_ != nullptr;
    SDL_Texture* texture = other ? hoverTexture_ : texture_;
    CopyClipped(renderer, texture,
                LayoutButtonIcon(Shape(centre), TextureSize(texture), fitHeight_, !label_.empty()));
    if (!label_.empty()) RenderLabel(renderer, labelTexture_, label_, kWhite);
}

void Button::RenderLabel(SDL_Renderer* renderer, TextTexture& texture, const std::string& text,
                         SDL_Color color) {
    texture.SetText(text);
    texture.SetColor(color);
    const bool bold = !HasLabelBelow() && boldLabel_ != 0.0F;
    texture.SetFontName(bold ? FontBolder : FontRegular);
    texture.SetFontSize(LabelFontSize(Shape({0, 0}), labelSizeRatio_));
    SDL_Point size{0, 0};
    if (HasLabelBelow()) {
        size = texture.MeasureText();
        if (size.x > rect.w) {
            // A label widens its button for good.
            SetWidth(Truncate(size.x * 1.1));
            rect.w = width;
        }
    } else {
        texture.SetClipTop(clip_.top);
        texture.SetClipBottom(clip_.bottom);
    }
    SDL_SetRenderDrawColor(renderer, kWhite.r, kWhite.g, kWhite.b, kWhite.a);
    texture.RenderAt(renderer, LayoutLabel(Shape({0, 0}), size));
}

void Button::RenderTooltipText(SDL_Renderer* renderer, const std::string& text) {
    if (text.empty() || !tooltipAllowed_) return;
    tooltipTexture_.SetText(text);
    tooltipTexture_.SetFontName(FontBolder);
    tooltipTexture_.SetFontSize(Truncate(std::round(rect.h * 0.21)));
    RenderTooltip(renderer, tooltipTexture_, LayoutButtonTooltip(rect, tooltipTexture_.MeasureText()),
                  kTooltipPlate);
}

bool Button::OnClick() {
    // A copy, since the function may destroy this button.
    const std::function<void()> call = onClick_;
    call();
    return true;
}

}  // namespace Corvanta::UI
