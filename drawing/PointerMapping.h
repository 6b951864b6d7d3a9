// From the pointer to canvas units, and whether it is on a text, as functions of plain numbers.
#pragma once

#include <SDL.h>

#include <optional>

namespace Corvanta::Drawing {

// A size in canvas units as the pointer is measured with it: whole units. Sizes beyond an integer are cut.
[[nodiscard]] SDL_Point WholeUnits(double canvasWidth, double canvasHeight);

// Where the pointer is on a canvas of that size that lies over the video area, both in the pointer's
// coordinates. Right of and below the area it is on the edge; left of and above it is negative. Nothing for
// an area without size.
[[nodiscard]] std::optional<SDL_Point> MapToCanvas(const SDL_Point& position, const SDL_Rect& videoArea,
                                                   const SDL_Point& canvasSize);

// The edges at the right and at the bottom are no part of it.
[[nodiscard]] bool IsOnCanvas(const SDL_Point& point, const SDL_Point& canvasSize);

struct TextHit {
    // On the text; on it or within the margin around it.
    bool inside = false;
    bool nearby = false;
};

// drawnRect: where the text stands in a layer of that size in pixels; point and canvasSize: canvas units.
[[nodiscard]] TextHit HitTestText(const SDL_Point& point, const SDL_Rect& drawnRect,
                                  const SDL_Point& textureSize, const SDL_Point& canvasSize);

}  // namespace Corvanta::Drawing
