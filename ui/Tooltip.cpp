#include "ui/Tooltip.h"

#include "ui/Arithmetic.h"

namespace Corvanta::UI {

TooltipLayout LayoutButtonTooltip(const SDL_Rect& control, SDL_Point textSize) {
    const int plateHeight = Truncate(control.h * 0.4);
    const double margin = plateHeight * 0.2;
    const SDL_Point text{control.x - (textSize.x - control.w) / 2, Truncate(control.y - control.h / 1.8)};
    return {{Truncate(text.x - margin), Truncate(text.y - (plateHeight - textSize.y) * 0.5),
             Truncate(2 * margin + textSize.x), plateHeight},
            text};
}

TooltipLayout LayoutScaledTooltip(const SDL_Rect& control, SDL_Point textSize, float scale) {
    const int marginY = Truncate(scale);
    const int marginX = Truncate(scale * 4.0F);
    const int plateHeight = textSize.y + 2 * marginY;
    const SDL_Point text{control.x - (textSize.x - control.w) / 2, control.y - Truncate(plateHeight * 1.5)};
    return {{text.x - marginX, text.y - marginY, textSize.x + 2 * marginX, plateHeight}, text};
}

void RenderTooltip(SDL_Renderer* renderer, TextTexture& text, const TooltipLayout& layout,
                   SDL_Color plateColor) {
    SDL_SetRenderDrawColor(renderer, plateColor.r, plateColor.g, plateColor.b, plateColor.a);
    SDL_RenderFillRect(renderer, &layout.plate);
    SDL_SetRenderDrawColor(renderer, 255, 255, 255, 255);
    text.RenderAt(renderer, layout.text);
}

}  // namespace Corvanta::UI
