#include "tests/ui/ToolkitTest.h"

#include <SDL_image.h>

#include <stdexcept>

#include "ui/TextureCache.h"

namespace Corvanta::Testing {
namespace {

constexpr uint32_t kBlack = 0xFF000000;

TTF_Font* OpenFont(const std::string& name, int size) {
    TTF_Font* const font = TTF_OpenFont(("fonts/" + name + ".ttf").c_str(), size);
    if (font == nullptr) throw std::runtime_error(TTF_GetError());
    return font;
}

}  // namespace

ToolkitTest::ToolkitTest() {
    Sdl().Reset();
    UI::FontManager::Clear();
    UI::FontManager::Instance().Init();
    SDL_SetRenderDrawBlendMode(drawn_.Renderer(), SDL_BLENDMODE_BLEND);
    SDL_SetRenderDrawBlendMode(expected_.Renderer(), SDL_BLENDMODE_BLEND);
    Calls().Reset();
}

ToolkitTest::~ToolkitTest() {
    Calls().Reset();
    Sdl().Reset();
    UI::ReleaseRendererTextures(drawn_.Renderer());
    UI::FontManager::Clear();
    TTF_Quit();
}

void ToolkitTest::SetContentScale(float scale) {
    SDL_RenderSetScale(drawn_.Renderer(), scale, scale);
}

void ToolkitTest::Clear() {
    drawn_.Fill(kBlack);
    expected_.Fill(kBlack);
}

void ToolkitTest::ExpectFill(const SDL_Rect& rect, SDL_Color color) {
    SDL_SetRenderDrawColor(expected_.Renderer(), color.r, color.g, color.b, color.a);
    SDL_RenderFillRect(expected_.Renderer(), &rect);
}

void ToolkitTest::ExpectOutline(const SDL_Rect& rect, SDL_Color color) {
    SDL_SetRenderDrawColor(expected_.Renderer(), color.r, color.g, color.b, color.a);
    SDL_RenderDrawRect(expected_.Renderer(), &rect);
}

void ToolkitTest::ExpectIcon(const std::string& name, const SDL_Rect& destination) {
    ExpectIconPart(name, {0, 0, 0, 0}, destination);
}

void ToolkitTest::ExpectIconPart(const std::string& name, const SDL_Rect& source,
                                 const SDL_Rect& destination) {
    SDL_Texture* const texture = IMG_LoadTexture(expected_.Renderer(), name.c_str());
    if (texture == nullptr) throw std::runtime_error(SDL_GetError());
    SDL_RenderCopy(expected_.Renderer(), texture, source.w == 0 ? nullptr : &source, &destination);
    SDL_DestroyTexture(texture);
}

void ToolkitTest::ExpectText(const std::string& font, int size, const std::string& text, SDL_Point topLeft,
                             SDL_Color color, int style) {
    TTF_Font* const opened = OpenFont(font, size);
    TTF_SetFontStyle(opened, style);
    SDL_Surface* const surface = TTF_RenderUTF8_Blended(opened, text.c_str(), color);
    TTF_CloseFont(opened);
    if (surface == nullptr) throw std::runtime_error(TTF_GetError());
    SDL_Texture* const texture = SDL_CreateTextureFromSurface(expected_.Renderer(), surface);
    const SDL_Rect destination{topLeft.x, topLeft.y, surface->w, surface->h};
    SDL_RenderCopy(expected_.Renderer(), texture, nullptr, &destination);
    SDL_DestroyTexture(texture);
    SDL_FreeSurface(surface);
}

::testing::AssertionResult ToolkitTest::DrawnAsExpected() {
    return SamePicture(drawn_.Read(), expected_.Read());
}

::testing::AssertionResult ToolkitTest::NothingDrawn() {
    return AreaIs(drawn_.Read(), {0, 0, kCanvasWidth, kCanvasHeight}, kBlack);
}

bool ToolkitTest::DrawColourIsZero() const {
    Uint8 red = 1;
    Uint8 green = 1;
    Uint8 blue = 1;
    Uint8 alpha = 1;
    SDL_GetRenderDrawColor(Renderer(), &red, &green, &blue, &alpha);
    return red == 0 && green == 0 && blue == 0 && alpha == 0;
}

SDL_Point ToolkitTest::SizeOf(const std::string& font, int size, const std::string& text) {
    TTF_Font* const opened = OpenFont(font, size);
    SDL_Point pixels{0, 0};
    TTF_SizeUTF8(opened, text.c_str(), &pixels.x, &pixels.y);
    TTF_CloseFont(opened);
    return pixels;
}

}  // namespace Corvanta::Testing
