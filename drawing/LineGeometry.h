// Places of what a straight line is made of, as functions of plain numbers in fractions of the canvas. On a
// canvas that is not square dashes and arrow head are stretched with the picture.
#pragma once

#include <SDL.h>

#include <array>

#include "drawing/StrokeGeometry.h"

namespace Corvanta::Drawing {

struct LineSpan {
    Fraction from;
    Fraction to;
};

// Both ends pulled in by that much, for round caps that bring them back.
[[nodiscard]] LineSpan PullIn(const LineSpan& span, const Fraction& direction, double by);

// The triangle of an arrow head at the base: one side, the tip, the other side. It is three stroke widths
// wide and its tip two and a half from the base.
[[nodiscard]] std::array<Fraction, 3> ArrowHead(const Fraction& base, const Fraction& direction,
                                                double strokeWidth);

// A line on its way from one end to the other.
struct LineCourse {
    Fraction start;
    // Of length 1.
    Fraction direction;
    double length = 0;

    [[nodiscard]] Fraction At(double distance) const {
        return {start.first + direction.first * distance, start.second + direction.second * distance};
    }
};

// Where dashes begin: at `first`, then every `step`, below `end`.
struct DashRange {
    double first = 0;
    double end = 0;
    double step = 0;
};

// The dashes of which something can be seen: those that come within `reach` pixels of the viewport, and none
// that begins on the pixel of the one before. A dash is followed by a gap of twice its length.
[[nodiscard]] DashRange VisibleDashes(const LineCourse& line, double dash, double strokeWidth,
                                      const SDL_Rect& viewport, int reach);

}  // namespace Corvanta::Drawing
