#include "drawing/Ellipse.h"

#include <SDL2_gfxPrimitives.h>

#include <algorithm>

#include "drawing/Brush.h"
#include "drawing/EllipseRows.h"
#include "drawing/StrokeGeometry.h"

namespace Corvanta::Drawing {

void Ellipse::Render(SDL_Renderer* renderer) {
    if (!(radiusX > 0 && radiusY > 0)) return;
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    const SDL_Point center = ToPixels({centerX, centerY}, viewport);
    const auto fill = [&](double acrossX, double acrossY, const Color& color) {
        const SDL_Point radius = ToPixels({acrossX, acrossY}, viewport);
        if (radius.x < 0 || radius.y < 0) return;
        if (IsWithinLibrary(radius.x, radius.y)) {
            filledEllipseRGBA(renderer, static_cast<Sint16>(center.x), static_cast<Sint16>(center.y),
                              static_cast<Sint16>(radius.x), static_cast<Sint16>(radius.y), color.r, color.g,
                              color.b, color.a);
            return;
        }
        SDL_SetRenderDrawBlendMode(renderer,
                                   color.a == SDL_ALPHA_OPAQUE ? SDL_BLENDMODE_NONE : SDL_BLENDMODE_BLEND);
        Brush brush(SDL_Rect{0, 0, viewport.w, viewport.h});
        brush.FilledEllipse(center, radius.x, radius.y);
        brush.Draw(renderer, color.ToSdl());
    };
    fill(radiusX, radiusY, strokeColor);
    fill(innerRadiusX, innerRadiusY, fillColor);
}

void Ellipse::Normalize(double canvasWidth, double canvasHeight) {
    if (normalized) return;
    double left = x / canvasWidth;
    double top = y / canvasHeight;
    double across = width / canvasWidth;
    double down = height / canvasHeight;
    if (across < 0) {
        across = -across;
        left -= across;
    }
    if (down < 0) {
        down = -down;
        top -= down;
    }
    radiusX = across / 2;
    radiusY = down / 2;
    centerX = left + radiusX;
    centerY = top + radiusY;
    innerRadiusX = std::max(0.0, radiusX - strokeWidth / canvasWidth);
    innerRadiusY = std::max(0.0, radiusY - strokeWidth / canvasHeight);
    normalized = true;
}

void Ellipse::SetStart(double startX, double startY) {
    x = startX;
    y = startY;
    width = 0;
    height = 0;
    normalized = false;
}

void Ellipse::SetEnd(double endX, double endY) {
    width = endX - x;
    height = endY - y;
    normalized = false;
}

}  // namespace Corvanta::Drawing
