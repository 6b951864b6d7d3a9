#include "ui/ToggleButton.h"

#include <utility>

#include "ui/ControlColors.h"
#include "ui/TextureCache.h"

namespace Corvanta::UI {

ToggleButton::ToggleButton(SDL_Renderer* renderer, Options options)
    : Button(options.width, options.height, options.labelPlace, ButtonStyle::FillAndOutline),
      options_(std::move(options)) {
    Button::SetLoaded(ToggleButton::Load(renderer));
}

bool ToggleButton::Load(SDL_Renderer* renderer) {
    offTexture_ = LoadCachedTexture(renderer, options_.offIconName);
    onTexture_ = LoadCachedTexture(renderer, options_.onIconName);
    if (!thirdIconName_.empty()) thirdTexture_ = LoadCachedTexture(renderer, thirdIconName_);
    if (!badgeIconName_.empty()) badgeTexture_ = LoadCachedTexture(renderer, badgeIconName_);
    return offTexture_ != nullptr && onTexture_ != nullptr;
}

void ToggleButton::SetLoaded(bool loaded) {
    Button::SetLoaded(loaded);
    if (loaded) return;
    offTexture_ = nullptr;
    onTexture_ = nullptr;
    thirdTexture_ = nullptr;
    badgeTexture_ = nullptr;
}

void ToggleButton::ReleaseTextures() {
    Button::ReleaseTextures();
    ReleaseTextTextures();
}

void ToggleButton::ReleaseTextTextures() {
    for (TextTexture& label : stateLabels_) label.ReleaseTexture();
    fixedLabelTexture_.ReleaseTexture();
}

void ToggleButton::ConfigureThirdState(SDL_Renderer* renderer, const std::string& iconName,
                                       const std::string& label, std::function<void()> onEnter,
                                       std::function<void()> onClick) {
    if (!iconName.empty()) {
        thirdIconName_ = iconName;
        thirdTexture_ = LoadCachedTexture(renderer, iconName);
    }
    thirdLabel_ = label;
    onEnterThirdState_ = std::move(onEnter);
    onClickInThirdState_ = std::move(onClick);
}

void ToggleButton::SetBadge(SDL_Renderer* renderer, const std::string& iconName) {
    if (iconName.empty()) return;
    badgeIconName_ = iconName;
    badgeTexture_ = LoadCachedTexture(renderer, iconName);
}

void ToggleButton::SetThirdState(bool on) {
    thirdState_ = on;
    if (!on) return;
    const std::function<void()> call = onEnterThirdState_;
    call();
}

ToggleButton::State ToggleButton::CurrentState() const {
    if (thirdState_) return State::Third;
    return toggled_ ? State::On : State::Off;
}

const std::string& ToggleButton::TextOf(State state) const {
    if (state == State::Third) return thirdLabel_;
    return state == State::On ? options_.onLabel : options_.offLabel;
}

SDL_Texture* ToggleButton::Picture() const {
    if (thirdState_ && thirdTexture_ != nullptr) return thirdTexture_;
    return toggled_ ? onTexture_ : offTexture_;
}

void ToggleButton::Render(SDL_Renderer* renderer, SDL_Point centre) {
    if (!EnsureLoaded(renderer)) return;
    PlaceAround(centre);
    if (!options_.flat) RenderBackground(renderer);
    if (options_.showLabel) RenderLabels(renderer);
    if (hovered && showTooltip_) RenderTooltipText(renderer, TextOf(CurrentState()));
    RenderContent(renderer, centre);
    ClearDrawColor(renderer);
}

void ToggleButton::RenderBackground(SDL_Renderer* renderer) const {
    if (CurrentState() == State::On && HasLabelBelow() && fillWhenToggled_) {
        FillRect(renderer, rect, kHighlight);
    } else if (hovered) {
        FillRect(renderer, VisiblePart(), kHoverFill);
        if (HasLabelBelow()) OutlineRect(renderer, rect, kWhite);
    }
}

void ToggleButton::RenderLabels(SDL_Renderer* renderer) {
    if (options_.fixedLabelMode) {
        if (options_.fixedLabel.empty()) return;
        RenderLabel(renderer, fixedLabelTexture_, options_.fixedLabel, thirdState_ ? kDimmedWhite : kWhite);
        return;
    }
    const State state = CurrentState();
    const std::string& text = TextOf(state);
    if (!text.empty()) RenderLabel(renderer, stateLabels_[static_cast<size_t>(state)], text, kWhite);
}

void ToggleButton::RenderContent(SDL_Renderer* renderer, SDL_Point centre) {
    SDL_Texture* picture = Picture();
    const SDL_Rect icon =
        CopyClipped(renderer, picture,
                    LayoutToggleIcon(Shape(centre), TextureSize(picture), options_.flat, options_.showLabel));
    if (!showBadge_ || badgeTexture_ == nullptr) return;
    const SDL_Rect badge = LayoutBadge(icon, TextureSize(badgeTexture_), height);
    SDL_RenderCopy(renderer, badgeTexture_, nullptr, &badge);
}

bool ToggleButton::OnClick() {
    // Copies, since the functions may destroy this button.
    if (thirdState_) {
        const std::function<void()> call = onClickInThirdState_;
        call();
        return true;
    }
    toggled_ = !toggled_;
    const std::function<void()> call = toggled_ ? options_.onToggledOn : options_.onToggledOff;
    call();
    return true;
}

}  // namespace Corvanta::UI
