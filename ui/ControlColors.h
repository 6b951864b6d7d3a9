// Colours that the controls share.
#pragma once

#include <SDL.h>

namespace Corvanta::UI {

inline constexpr SDL_Color kWhite{255, 255, 255, 255};
inline constexpr SDL_Color kDimmedWhite{255, 255, 255, 150};
inline constexpr SDL_Color kHighlight{252, 44, 3, 255};
inline constexpr SDL_Color kTooltipPlate{107, 107, 107, 255};
inline constexpr SDL_Color kHoverFill{255, 255, 255, 30};
inline constexpr SDL_Color kRowHoverFill{255, 255, 255, 20};
inline constexpr SDL_Color kPressedFill{128, 128, 128, 20};

inline void FillRect(SDL_Renderer* renderer, const SDL_Rect& rect, SDL_Color color) {
    SDL_SetRenderDrawColor(renderer, color.r, color.g, color.b, color.a);
    SDL_RenderFillRect(renderer, &rect);
}

inline void OutlineRect(SDL_Renderer* renderer, const SDL_Rect& rect, SDL_Color color) {
    SDL_SetRenderDrawColor(renderer, color.r, color.g, color.b, color.a);
    SDL_RenderDrawRect(renderer, &rect);
}

inline void ClearDrawColor(SDL_Renderer* renderer) {
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, 0);
}

// The rectangle of that size around its centre, with truncating halves.
[[nodiscard]] inline SDL_Rect CentredRect(SDL_Point centre, int width, int height) {
    return {centre.x - width / 2, centre.y - height / 2, width, height};
}

}  // namespace Corvanta::UI
