#include "ui/TextTexture.h"

#include <cmath>
#include <cstdint>

#include "platform/Logger.h"
#include "ui/Arithmetic.h"
#include "ui/FontManager.h"
#include "ui/TextEllipsis.h"

namespace Corvanta::UI {
namespace {

constexpr size_t kShortTextBytes = 3;
// A raster of 256 MiB, far beyond any window. A wild size must cost a text, not the process's memory.
constexpr int64_t kMostRasterPixels = int64_t{64} << 20U;

[[nodiscard]] bool SameColor(SDL_Color a, SDL_Color b) {
    return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a;
}

// Physical to logical pixels.
[[nodiscard]] int ToLogical(int pixels, float scale) {
    return Truncate(std::roundf(static_cast<float>(pixels) / scale));
}

// Whether the raster would be of a sane size. Texts of usual sizes are not measured for it: no letter is
// twice as wide as its font is high.
[[nodiscard]] bool CanRasterise(TTF_Font* font, const std::string& text) {
    const int64_t lineHeight = TTF_FontHeight(font);
    if (static_cast<int64_t>(text.size()) * 2 * lineHeight * lineHeight <= kMostRasterPixels) return true;
    int pixelsWide = 0;
    int pixelsHigh = 0;
    return TTF_SizeUTF8(font, text.c_str(), &pixelsWide, &pixelsHigh) == 0 &&
           int64_t{pixelsWide} * pixelsHigh <= kMostRasterPixels;
}

// Stores and tells whether it differs.
template <typename Value>
[[nodiscard]] bool Assign(Value& field, const Value& value) {
    if (field == value) return false;
    field = value;
    return true;
}

}  // namespace

void TextTexture::SetText(const std::string& text) {
    if (!Assign(text_, text)) return;
    measured_.reset();
    dirty_.store(true);
}

void TextTexture::SetFontName(const std::string& name) {
    if (!Assign(fontName_, name)) return;
    measured_.reset();
    dirty_.store(true);
}

void TextTexture::SetFontSize(int size) {
    if (!Assign(fontSize_, size)) return;
    measured_.reset();
    dirty_.store(true);
}

void TextTexture::SetColor(SDL_Color color) {
    if (SameColor(color_, color)) return;
    color_ = color;
    dirty_.store(true);
}

void TextTexture::SetStyle(int style) {
    if (!Assign(style_, style)) return;
    measured_.reset();
    dirty_.store(true);
}

void TextTexture::SetMaxWidth(int width) {
    if (Assign(maxWidth_, width)) dirty_.store(true);
}

void TextTexture::SetExpandOnHover(bool expand) {
    if (Assign(expandOnHover_, expand)) dirty_.store(true);
}

void TextTexture::OnHover(const SDL_Point& mouse) {
    const bool hits = mouse.x >= lastPosition_.x && mouse.x < lastPosition_.x + width_ &&
                      mouse.y >= lastPosition_.y && mouse.y < lastPosition_.y + height_;
    if (Assign(hovered_, hits)) dirty_.store(true);
}

bool TextTexture::IsLongText() const {
    return text_.size() > kShortTextBytes;
}

SDL_Point TextTexture::MeasureText() const {
    SDL_Point size{0, 0};
    if (measured_.has_value()) return *measured_;
    if (text_.empty() || fontName_.empty() || fontSize_ < 1) return size;
    TTF_Font* font = FontManager::Instance().GetFont(fontName_, fontSize_);
    if (font == nullptr) return size;
    // Another text may have left its style on the font, and an underline makes it higher.
    TTF_SetFontStyle(font, style_);
    if (TTF_SizeUTF8(font, text_.c_str(), &size.x, &size.y) != 0) return {0, 0};
    measured_ = size;
    return size;
}

void TextTexture::Rebuild(SDL_Renderer* renderer) {
    if (renderer == nullptr || !dirty_.load()) return;
    dirty_.store(false);
    if (text_.empty() || fontName_.empty() || fontSize_ < 1) return;
    float scale = 1.0F;
    SDL_RenderGetScale(renderer, &scale, nullptr);
    TTF_Font* font = FontManager::Instance().GetFont(
        fontName_, Truncate(std::roundf(static_cast<float>(fontSize_) * scale)));
    if (font == nullptr) {
        LOG(4, "Couldn't find requested font '%s'.", fontName_.c_str());
        return;
    }
    TTF_SetFontStyle(font, style_);
    ReleaseTexture();
    if (SDL_Surface* surface = RenderSurface(font, scale)) {
        texture_ = SDL_CreateTextureFromSurface(renderer, surface);
        SDL_FreeSurface(surface);
    }
    int pixelsWide = 0;
    int pixelsHigh = 0;
    if (texture_ != nullptr) SDL_QueryTexture(texture_, nullptr, nullptr, &pixelsWide, &pixelsHigh);
    width_ = ToLogical(pixelsWide, scale);
    height_ = ToLogical(pixelsHigh, scale);
    dirty_.store(false);
}

SDL_Surface* TextTexture::RenderSurface(TTF_Font* font, float scale) const {
    // Some versions of the font library take an alpha of 0 literally, others for opaque; texts are never
    // invisible.
    SDL_Color color = color_;
    if (color.a == 0) color.a = SDL_ALPHA_OPAQUE;
    std::optional<std::string> shortened;
    if (IsLongText() && maxWidth_ >= 1 && !IsExpanded()) {
        int pixelsWide = 0;
        TTF_SizeUTF8(font, text_.c_str(), &pixelsWide, nullptr);
        shortened = ShortenText(text_, ToLogical(pixelsWide, scale), maxWidth_);
    }
    const std::string& shown = shortened.has_value() ? *shortened : text_;
    return CanRasterise(font, shown) ? TTF_RenderUTF8_Blended(font, shown.c_str(), color) : nullptr;
}

void TextTexture::RenderAt(SDL_Renderer* renderer, SDL_Point topLeft) {
    if (dirty_.load()) Rebuild(renderer);
    if (texture_ == nullptr) return;
    lastPosition_ = topLeft;
    SDL_Rect destination{topLeft.x, topLeft.y, width_, height_};
    int pixelsWide = 0;
    int pixelsHigh = 0;
    SDL_QueryTexture(texture_, nullptr, nullptr, &pixelsWide, &pixelsHigh);
    const auto source = ComputeVerticalClip(destination, pixelsWide, pixelsHigh, clip_);
    SDL_RenderCopy(renderer, texture_, source.has_value() ? &*source : nullptr, &destination);
}

void TextTexture::RenderInto(SDL_Renderer* renderer, const SDL_Rect* area) {
    if (dirty_.load()) Rebuild(renderer);
    if (texture_ != nullptr) SDL_RenderCopy(renderer, texture_, nullptr, area);
}

void TextTexture::ReleaseTexture() {
    if (texture_ == nullptr) return;
    SDL_DestroyTexture(texture_);
    texture_ = nullptr;
    width_ = 0;
    height_ = 0;
    dirty_.store(true);
}

}  // namespace Corvanta::UI
