#include "drawing/Rectangle.h"

#include <algorithm>
#include <cstdint>

#include "ui/Arithmetic.h"

namespace Corvanta::Drawing {
namespace {

[[nodiscard]] SDL_Rect ToPixels(double x, double y, double width, double height, const SDL_Rect& viewport) {
    return {UI::Truncate(viewport.w * x), UI::Truncate(viewport.h * y), UI::Truncate(viewport.w * width),
            UI::Truncate(viewport.h * height)};
}

// SDL's own arithmetic has no room for rectangles as large as an int.
void Fill(SDL_Renderer* renderer, const SDL_Rect& rect, const SDL_Rect& viewport, const Color& color) {
    const int left = std::max(rect.x, 0);
    const int top = std::max(rect.y, 0);
    const int64_t right = std::min<int64_t>(int64_t{rect.x} + rect.w, viewport.w);
    const int64_t bottom = std::min<int64_t>(int64_t{rect.y} + rect.h, viewport.h);
    if (left >= right || top >= bottom) return;
    const SDL_Rect visible{left, top, static_cast<int>(right - left), static_cast<int>(bottom - top)};
    SDL_SetRenderDrawColor(renderer, color.r, color.g, color.b, color.a);
    SDL_RenderFillRect(renderer, &visible);
}

}  // namespace

void Rectangle::Render(SDL_Renderer* renderer) {
    if (!(outerWidth > 0 && outerHeight > 0)) return;
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    Fill(renderer, ToPixels(outerX, outerY, outerWidth, outerHeight, viewport), viewport, strokeColor);
    Fill(renderer, ToPixels(innerX, innerY, innerWidth, innerHeight, viewport), viewport, fillColor);
}

void Rectangle::Normalize(double canvasWidth, double canvasHeight) {
    if (normalized) return;
    outerX = x / canvasWidth;
    outerY = y / canvasHeight;
    outerWidth = width / canvasWidth;
    outerHeight = height / canvasHeight;
    if (outerWidth < 0) {
        outerWidth = -outerWidth;
        outerX -= outerWidth;
    }
    if (outerHeight < 0) {
        outerHeight = -outerHeight;
        outerY -= outerHeight;
    }
    const double strokeX = strokeWidth / canvasWidth;
    const double strokeY = strokeWidth / canvasHeight;
    innerX = outerX + strokeX;
    innerY = outerY + strokeY;
    innerWidth = std::max(0.0, outerWidth - 2 * strokeX);
    innerHeight = std::max(0.0, outerHeight - 2 * strokeY);
    normalized = true;
}

void Rectangle::SetStart(double startX, double startY) {
    x = startX;
    y = startY;
    width = 0;
    height = 0;
    normalized = false;
}

void Rectangle::SetEnd(double endX, double endY) {
    width = endX - x;
    height = endY - y;
    normalized = false;
}

}  // namespace Corvanta::Drawing
