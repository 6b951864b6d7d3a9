// The name at the top left of a tile: white letters over their soft shadow on a plate, cut with dots where
// they do not fit, and the whole name below the plate while the pointer is on a cut one. Letters are rastered
// for the output's own pixels, so they are sharp at every scale. Render thread only.
#pragma once

#include <SDL.h>
#include <SDL_ttf.h>

#include <string>

#include "ui/Icon.h"
#include "ui/TextTexture.h"

namespace Corvanta::Video {

class NamePlate final {
public:
    // All lengths in logical pixels.
    struct Place {
        SDL_Rect tile{0, 0, 0, 0};
        int fontSize = 0;
        // From the tile's corner to the plate, and down to the letters.
        int margin = 0;
        int textOffset = 0;
        // From the tile's left edge to where plate and name must end.
        int maxWidth = 0;
    };

    NamePlate();
    // ReleaseTextures must have come before the renderer went: a renderer takes its textures along.
    ~NamePlate() = default;
    NamePlate(const NamePlate&) = delete;
    NamePlate& operator=(const NamePlate&) = delete;

    // UTF-8. Counts for letters that are not drawn yet: see HasText.
    void SetName(const std::string& name);
    // Whether the letters are there; until then the owner may set the name anew.
    [[nodiscard]] bool HasText() const { return textTexture_ != nullptr; }

    // Width of the round ends, and height of the plate, whose middle is as wide as the letters drawn last.
    void SetMetrics(int capWidth, int height);
    void Render(SDL_Renderer* renderer, const Place& place);
    // By where the letters were drawn last.
    void UpdateHover(SDL_Point point);
    // Text, shadow and pictures come back with the next Render, on whatever renderer.
    void ReleaseTextures();

    [[nodiscard]] const std::string& GetName() const { return fullName_; }
    // The name as it fits.
    [[nodiscard]] const std::string& GetShownName() const { return shownName_; }
    [[nodiscard]] const SDL_Rect& GetTextRect() const { return textRect_; }

private:
    void BuildText(SDL_Renderer* renderer, int available, int fontSize);
    [[nodiscard]] SDL_Texture* MakeShadow(SDL_Renderer* renderer, TTF_Font* font, float scale,
                                          int available) const;
    void RenderTooltip(SDL_Renderer* renderer, int fontSize, SDL_Point belowPlate);

    SDL_Texture* textTexture_ = nullptr;
    SDL_Texture* shadowTexture_ = nullptr;
    std::string fullName_;
    std::string shownName_;
    int textWidth_ = 0;
    int textHeight_ = 0;
    // In output pixels, at the last build.
    int scaledFontSize_ = 0;
    SDL_Rect textRect_{0, 0, 0, 0};
    bool hovered_ = false;
    UI::Icon leftIcon_{"icons/nameBackgroundLeft.png"};
    UI::Icon middleIcon_{"icons/nameBackgroundMiddle.png"};
    UI::Icon rightIcon_{"icons/nameBackgroundRight.png"};
    UI::TextTexture tooltip_;
    // Owns the textures.
    SDL_Renderer* renderer_ = nullptr;
};

}  // namespace Corvanta::Video
