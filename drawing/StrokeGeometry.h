// Places of what strokes are made of, as functions of plain numbers. Fractions are of the canvas, pixels of
// the target; from the one to the other it goes toward zero, and pixels are kept in 16 bits as SDL2_gfx does.
#pragma once

#include <SDL.h>

#include <array>
#include <cstdint>
#include <span>
#include <utility>

namespace Corvanta::Drawing {

using Fraction = std::pair<double, double>;
using Corners = std::array<SDL_Point, 4>;

// Toward zero, held to 32 bits, and of those the low 16 with their sign. No number is 0.
[[nodiscard]] int ToPixel(double value);
// The same for a thickness: the low 8 bits.
[[nodiscard]] int ToThickness(double value);
[[nodiscard]] SDL_Point ToPixels(const Fraction& place, const SDL_Rect& viewport);

// Whether what lies between these pixels, or reaches that far beyond them, leaves the 16 bits: its parts come
// in again from the other side.
[[nodiscard]] bool Wraps(int least, int most, int reach);

// Half way from one point to the next, found by angle.
[[nodiscard]] Fraction MidpointOf(const Fraction& from, const Fraction& to);

// From the middle of a thick line's end to its first corner, of a line that leads so far from there.
[[nodiscard]] std::pair<double, double> ThickLineOffset(SDL_Point step, int width);

// The thick line between two different pixels, as SDL2_gfx widens it: the first two corners are at `from`.
[[nodiscard]] Corners ThickLineCorners(SDL_Point from, SDL_Point to, int width);

// The Bezier curve through at least two control points at index / (points * steps), the last point from
// there on. Exact, then toward zero.
[[nodiscard]] SDL_Point BezierSample(std::span<const SDL_Point> control, int steps, int index);

}  // namespace Corvanta::Drawing
