// A text and its look, turned into a texture when something has changed and drawn from it otherwise. The one
// way in which controls draw a text. Render thread only, but for the flag that asks for a rebuild.
#pragma once

#include <SDL.h>
#include <SDL_ttf.h>

#include <atomic>
#include <optional>
#include <string>

#include "ui/VerticalClip.h"

namespace Corvanta::UI {

class TextTexture final {
public:
    TextTexture() = default;
    // ReleaseTexture must have come before the renderer went: a renderer takes its textures along.
    ~TextTexture() { ReleaseTexture(); }
    TextTexture(const TextTexture&) = delete;
    TextTexture& operator=(const TextTexture&) = delete;

    // Setters compare first, so that every frame may call them.
    void SetText(const std::string& text);
    void SetFontName(const std::string& name);
    // Logical points.
    void SetFontSize(int size);
    void SetColor(SDL_Color color);
    // TTF_STYLE_* bits.
    void SetStyle(int style);
    // Logical pixels; below 1 there is no limit. Applies to texts of more than 3 bytes.
    void SetMaxWidth(int width);
    // While hovered the whole text is shown, however long.
    void SetExpandOnHover(bool expand);
    // Lines at which drawing is cut; they need no rebuild.
    void SetClipTop(int line) { clip_.top = line; }
    void SetClipBottom(int line) { clip_.bottom = line; }

    void OnHover(const SDL_Point& mouse);
    [[nodiscard]] bool IsHovered() const { return hovered_; }
    [[nodiscard]] const std::string& GetText() const { return text_; }
    [[nodiscard]] bool IsLongText() const;
    [[nodiscard]] bool IsExpanded() const { return expandOnHover_ && hovered_; }
    [[nodiscard]] bool IsDirty() const { return dirty_.load(); }
    [[nodiscard]] SDL_Texture* GetTexture() const { return texture_; }
    // Of the raster, in logical pixels.
    [[nodiscard]] int GetWidth() const { return width_; }
    [[nodiscard]] int GetHeight() const { return height_; }

    // Size of the whole text in logical pixels, without a raster. (0, 0) where it could not be drawn.
    [[nodiscard]] SDL_Point MeasureText() const;

    // Brings the raster up to date.
    void Rebuild(SDL_Renderer* renderer);
    void RenderAt(SDL_Renderer* renderer, SDL_Point topLeft);
    // Stretched into the area.
    void RenderInto(SDL_Renderer* renderer, const SDL_Rect* area);
    // The next draw makes the raster anew, on whatever renderer.
    void ReleaseTexture();

private:
    [[nodiscard]] SDL_Surface* RenderSurface(TTF_Font* font, float scale) const;

    int width_ = 0;
    int height_ = 0;
    std::atomic<bool> dirty_{true};
    std::string text_;
    int fontSize_ = 0;
    SDL_Texture* texture_ = nullptr;
    std::string fontName_;
    int style_ = 0;
    SDL_Color color_{255, 255, 255, 255};
    bool expandOnHover_ = false;
    bool hovered_ = false;
    SDL_Point lastPosition_{0, 0};
    int maxWidth_ = -1;
    ClipLines clip_;
    // The last measurement, so that frames may ask again at no cost; empty after a change.
    mutable std::optional<SDL_Point> measured_;
};

}  // namespace Corvanta::UI
