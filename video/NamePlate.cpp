#include "video/NamePlate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "ui/Arithmetic.h"
#include "ui/ControlColors.h"
#include "ui/FontManager.h"
#include "video/BoxBlur.h"
#include "video/NameCut.h"

namespace Corvanta::Video {
namespace {

constexpr int kShadowRadius = 4;
constexpr char kDots[] = "...";
constexpr SDL_Color kShadow{0, 0, 0, 128};
// Of the letters' height, on both sides of the whole name.
constexpr double kTooltipPadding = 0.2;
// A raster of 256 MiB, and letters that no window could hold: a wild size must cost a name, not the process's
// memory.
constexpr size_t kMostShownBytes = 256;
constexpr int kMostFontSize = 1 << 13;
constexpr int64_t kMostRasterPixels = int64_t{64} << 20U;

[[nodiscard]] int ToLogical(int pixels, float scale) {
    return UI::Truncate(std::round(static_cast<float>(pixels) / scale));
}

[[nodiscard]] int WidthOf(TTF_Font* font, const std::string& text) {
    int width = 0;
    return TTF_SizeUTF8(font, text.c_str(), &width, nullptr) == 0 ? width : 0;
}

[[nodiscard]] bool CanRasterise(TTF_Font* font, const std::string& text) {
    return int64_t{WidthOf(font, text)} * TTF_FontHeight(font) <= kMostRasterPixels;
}

// The widest text that counts as no wider than available, in output pixels; 0, which wraps nothing, where no
// text fits.
[[nodiscard]] Uint32 WrapWidth(int available, float scale) {
    if (available <= 0) return 0;
    return static_cast<Uint32>(std::max(UI::Truncate(std::ceil((available + 0.5) * scale)) - 1, 0));
}

void Draw(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect& destination) {
    if (texture != nullptr) SDL_RenderCopy(renderer, texture, nullptr, &destination);
}

}  // namespace

NamePlate::NamePlate() {
    tooltip_.SetFontName(UI::FontMono);
}

void NamePlate::SetName(const std::string& name) {
    if (fullName_ != name) fullName_ = name;
}

void NamePlate::SetMetrics(int capWidth, int height) {
    for (UI::Icon* icon : {&leftIcon_, &middleIcon_, &rightIcon_}) icon->SetHeight(height);
    leftIcon_.SetWidth(capWidth);
    rightIcon_.SetWidth(capWidth);
    middleIcon_.SetWidth(textWidth_);
}

void NamePlate::Render(SDL_Renderer* renderer, const Place& place) {
    const SDL_Point plate{place.tile.x + place.margin, place.tile.y + place.margin};
    const int middleX = plate.x + leftIcon_.width;
    leftIcon_.Render(renderer, plate);
    middleIcon_.Render(renderer, {middleX, plate.y});
    rightIcon_.Render(renderer, {middleX + middleIcon_.width, plate.y});

    const int indent = middleX - place.tile.x;
    BuildText(renderer, place.maxWidth - leftIcon_.width - indent, place.fontSize);
    textRect_ = {place.tile.x + indent, place.tile.y + place.textOffset, textWidth_, textHeight_};
    Draw(renderer, shadowTexture_, textRect_);
    Draw(renderer, textTexture_, textRect_);
    if (hovered_ && textTexture_ != nullptr && shownName_ != fullName_) {
        RenderTooltip(renderer, place.fontSize, {middleX, plate.y + leftIcon_.height});
    }
}

void NamePlate::RenderTooltip(SDL_Renderer* renderer, int fontSize, SDL_Point belowPlate) {
    tooltip_.SetText(fullName_);
    tooltip_.SetFontSize(fontSize);
    const SDL_Point size = tooltip_.MeasureText();
    const SDL_Rect box{UI::Truncate(belowPlate.x - textHeight_ * kTooltipPadding), belowPlate.y,
                       UI::Truncate(2 * textHeight_ * kTooltipPadding + size.x), textHeight_};
    UI::FillRect(renderer, box, UI::kTooltipPlate);
    tooltip_.RenderAt(renderer, {belowPlate.x, box.y - size.y + textHeight_});
    UI::ClearDrawColor(renderer);
}

void NamePlate::BuildText(SDL_Renderer* renderer, int available, int fontSize) {
    float scale = 1.0F;
    SDL_RenderGetScale(renderer, &scale, nullptr);
    const int scaled = UI::Truncate(std::round(static_cast<float>(fontSize) * scale));
    if (textTexture_ != nullptr) {
        if (renderer_ == renderer && scaledFontSize_ == scaled) return;
        ReleaseTextures();
    }
    scaledFontSize_ = scaled;
    renderer_ = renderer;
    textWidth_ = 0;
    textHeight_ = 0;
    if (fullName_.empty() || scaled < 1 || scaled > kMostFontSize || !(scale > 0.0F)) return;
    TTF_Font* font = UI::FontManager::Instance().GetFont(UI::FontMono, scaled);
    if (font == nullptr) return;
    // Another text may have left its style on the font.
    TTF_SetFontStyle(font, TTF_STYLE_NORMAL);
    shownName_ = CutName(fullName_, available,
                         [&](const std::string& text) { return ToLogical(WidthOf(font, text), scale); });
    if (shownName_.size() > kMostShownBytes) {
        // Nobody reads on beyond the tile, and renderers refuse textures of that width.
        shownName_.resize(kMostShownBytes);
        shownName_ += kDots;
    }
    if (!CanRasterise(font, shownName_)) return;
    if (SDL_Surface* letters = TTF_RenderUTF8_Blended(font, shownName_.c_str(), UI::kWhite)) {
        textTexture_ = SDL_CreateTextureFromSurface(renderer, letters);
        SDL_FreeSurface(letters);
    }
    if (textTexture_ == nullptr) return;
    SDL_QueryTexture(textTexture_, nullptr, nullptr, &textWidth_, &textHeight_);
    textWidth_ = ToLogical(textWidth_, scale);
    textHeight_ = ToLogical(textHeight_, scale);
    shadowTexture_ = MakeShadow(renderer, font, scale, available);
}

SDL_Texture* NamePlate::MakeShadow(SDL_Renderer* renderer, TTF_Font* font, float scale, int available) const {
    SDL_Surface* letters =
        TTF_RenderUTF8_Blended_Wrapped(font, shownName_.c_str(), kShadow, WrapWidth(available, scale));
    if (letters == nullptr) return nullptr;
    BoxBlur(*letters, kShadowRadius);
    SDL_Texture* shadow = SDL_CreateTextureFromSurface(renderer, letters);
    SDL_FreeSurface(letters);
    return shadow;
}

void NamePlate::UpdateHover(SDL_Point point) {
    hovered_ = SDL_PointInRect(&point, &textRect_) == SDL_TRUE;
}

void NamePlate::ReleaseTextures() {
    for (SDL_Texture** texture : {&textTexture_, &shadowTexture_}) {
        if (*texture != nullptr) SDL_DestroyTexture(*texture);
        *texture = nullptr;
    }
    for (UI::Icon* icon : {&leftIcon_, &middleIcon_, &rightIcon_}) icon->SetTexture(nullptr);
    tooltip_.ReleaseTexture();
}

}  // namespace Corvanta::Video
