// The plate with a text that stands above a hovered control. Plain arithmetic, and its drawing on the render
// thread.
#pragma once

#include <SDL.h>

#include "ui/TextTexture.h"

namespace Corvanta::UI {

struct TooltipLayout {
    SDL_Rect plate{0, 0, 0, 0};
    SDL_Point text{0, 0};
};

// Above a control whose tooltip has that size: the text centred over it and free to stick out on both sides.
[[nodiscard]] TooltipLayout LayoutButtonTooltip(const SDL_Rect& control, SDL_Point textSize);
// The same for controls that keep the distance by their scale.
[[nodiscard]] TooltipLayout LayoutScaledTooltip(const SDL_Rect& control, SDL_Point textSize, float scale);

void RenderTooltip(SDL_Renderer* renderer, TextTexture& text, const TooltipLayout& layout,
                   SDL_Color plateColor);

}  // namespace Corvanta::UI
