// Text over the video. It is rendered at one size and scaled, so that its layout does not depend on the
// resolution of the target. While it is open it stands in a dashed box.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <map>
#include <string>

#include "drawing/Color.h"
#include "drawing/Shape.h"

namespace Corvanta::Drawing {

// Around a text: in pixels of the target for the dashed box, in canvas units for the pointer.
inline constexpr int kTextBoxMargin = 30;

class TextBox final : public Shape {
public:
    enum class State : int { Editing = 0, Moving = 1, Finished = 2 };

    TextBox() = default;
    // From the "data" of its wire form. Throws what the JSON library, or the reading of a number in the font,
    // throws at a bad or missing field.
    explicit TextBox(const nlohmann::json& data);
    ~TextBox() override;

    void Render(SDL_Renderer* renderer) override;
    // Changing text, family, size or style is followed by clearing normalized, for the text to be made anew.
    void Normalize(double canvasWidth, double canvasHeight) override;
    void SetStart(double startX, double startY) override;
    void SetEnd(double endX, double endY) override;
    [[nodiscard]] nlohmann::json ToJson() override;
    void ReleaseTextures(SDL_Renderer* renderer) override;
    void ForgetTextures(SDL_Renderer* renderer) override;

    // Canvas units, the top left corner.
    double x = 0;
    double y = 0;
    // Fractions of the canvas.
    double normalizedX = 0;
    double normalizedY = 0;
    // Height of the font, in canvas units and as a fraction of the canvas height.
    double fontSize = 0;
    double normalizedFontSize = 0;
    std::string fontFamily;
    // UTF-8.
    std::string text;
    Color color;
    // TTF_STYLE_BOLD, TTF_STYLE_ITALIC, TTF_STYLE_UNDERLINE.
    int fontStyle = 0;
    State state = State::Finished;
    // Where the text was last drawn, in pixels of the target.
    SDL_Rect drawnRect{0, 0, 0, 0};
    // The last pointer in canvas units, from which a drag goes on.
    SDL_Point lastPointer{0, 0};
    // Owned.
    std::map<SDL_Renderer*, SDL_Texture*> textures;
    bool normalized = false;
    // What the last hit test found: on the text, within the margin around it.
    bool pointerInside = false;
    bool pointerNearby = false;

private:
    // The text's picture for that renderer, made if there is none. Null when it cannot be had.
    [[nodiscard]] SDL_Texture* FindTexture(SDL_Renderer* renderer, int64_t remaining, int fontHeight);
};

}  // namespace Corvanta::Drawing
