#include "drawing/TextBox.h"

#include <SDL_ttf.h>

#include <algorithm>
#include <utility>

#include "drawing/DashedBox.h"
#include "drawing/TextRaster.h"
#include "platform/Logger.h"
#include "ui/Arithmetic.h"
#include "ui/SystemFontProvider.h"

namespace Corvanta::Drawing {
namespace {

constexpr char kDefaultFamily[] = "Arial";
// At which system fonts are held open.
constexpr float kRasterFontSize = 120.0F;
constexpr int kWidestRaster = 4096;

[[nodiscard]] TTF_Font* FindFont(const std::string& family) {
    const UI::SystemFontProvider& fonts = UI::SystemFontProvider::Instance();
    TTF_Font* font = fonts.GetFont(family);
    if (font == nullptr) font = fonts.GetFont(kDefaultFamily);
    if (font == nullptr) {
        LOG(4, "Couldn't find requested font '%s' and default font '%s'. Skip rendering text.",
            family.c_str(), kDefaultFamily);
    }
    return font;
}

}  // namespace

TextBox::~TextBox() {
    for (const auto& [renderer, texture] : textures) {
        LOG(4, "Destroying TextBox texture when it should have been previously disposed of.");
        SDL_DestroyTexture(texture);
    }
}

void TextBox::Render(SDL_Renderer* renderer) {
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    const int fontHeight = UI::Truncate(viewport.h * normalizedFontSize);
    const SDL_Point corner{UI::Truncate(viewport.w * normalizedX), UI::Truncate(viewport.h * normalizedY)};
    if (text.empty()) {
        if (state == State::Editing)
            DrawDashedBox(renderer, {corner.x, corner.y, fontHeight, fontHeight}, kTextBoxMargin);
        return;
    }
    if (fontHeight < 1) return;
    SDL_Texture* const texture = FindTexture(renderer, viewport.w - int64_t{corner.x}, fontHeight);
    if (texture == nullptr) return;
    SDL_Point size{0, 0};
    SDL_QueryTexture(texture, nullptr, nullptr, &size.x, &size.y);
    if (size.x < 1 || size.y < 1) return;
    const float scale = static_cast<float>(fontHeight) / kRasterFontSize;
    drawnRect = {corner.x, corner.y, UI::Truncate(static_cast<float>(size.x) * scale),
                 UI::Truncate(static_cast<float>(size.y) * scale)};
    SDL_RenderCopy(renderer, texture, nullptr, &drawnRect);
    if (state != State::Finished) DrawDashedBox(renderer, drawnRect, kTextBoxMargin);
}

SDL_Texture* TextBox::FindTexture(SDL_Renderer* renderer, int64_t remaining, int fontHeight) {
    const auto found = textures.find(renderer);
    if (found != textures.end()) return found->second;
    TTF_Font* const font = FindFont(fontFamily);
    if (font == nullptr || remaining < 0) return nullptr;
    const float wrap = kRasterFontSize / static_cast<float>(fontHeight) * static_cast<float>(remaining);
    TTF_SetFontStyle(font, fontStyle);
    SDL_Surface* const surface =
        RasteriseText(renderer, font, text, color.ToSdl(), std::min(UI::Truncate(wrap), kWidestRaster));
    SDL_Texture* const texture =
        surface == nullptr ? nullptr : SDL_CreateTextureFromSurface(renderer, surface);
    SDL_FreeSurface(surface);
    if (texture != nullptr) textures.emplace(renderer, texture);
    return texture;
}

void TextBox::Normalize(double canvasWidth, double canvasHeight) {
    if (normalized) return;
    normalizedX = x / canvasWidth;
    normalizedY = y / canvasHeight;
    normalizedFontSize = fontSize / canvasHeight;
    normalized = true;
    for (const auto& [renderer, texture] : textures) SDL_DestroyTexture(texture);
    textures.clear();
}

void TextBox::SetStart(double startX, double startY) {
    x = std::max(0.0, startX);
    y = std::max(0.0, startY);
    normalized = false;
}

void TextBox::SetEnd(double /*endX*/, double /*endY*/) {}

void TextBox::ReleaseTextures(SDL_Renderer* renderer) {
    const auto found = textures.find(renderer);
    if (found == textures.end()) return;
    SDL_DestroyTexture(found->second);
    textures.erase(found);
}

void TextBox::ForgetTextures(SDL_Renderer* renderer) {
    textures.erase(renderer);
}

}  // namespace Corvanta::Drawing
