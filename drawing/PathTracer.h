// A freehand path as primitives of a brush, at one size of the target. The curve runs through the midpoints
// of the points and is bent by the points; a straight tail goes on from its end to the newest point. Made for
// one drawing. Render thread.
#pragma once

#include <SDL.h>

#include <cstddef>
#include <vector>

#include "drawing/Brush.h"
#include "drawing/StrokeGeometry.h"

namespace Corvanta::Drawing {

class PathTracer final {
public:
    // The points are borrowed; they and the width are fractions of the canvas.
    PathTracer(const std::vector<Fraction>& points, double strokeWidth, const SDL_Rect& viewport);

    // In pixels, as the primitives take it.
    [[nodiscard]] int Thickness() const { return thickness_; }

    // What can be painted of the viewport by the whole path, or from that point on with the pen there.
    [[nodiscard]] SDL_Rect BoxOfAll() const;
    [[nodiscard]] SDL_Rect BoxFrom(size_t index, const Fraction& pen) const;

    // The pieces from that point on; 0 begins the curve, whatever the pen. Returns where the pen is then.
    Fraction TraceCurve(Brush& brush, size_t index, Fraction pen) const;
    // To the last point.
    void TraceTail(Brush& brush, const Fraction& pen) const;
    // The curve and its tail.
    void TraceAll(Brush& brush) const { TraceTail(brush, TraceCurve(brush, 0, {})); }
    // Straight from point to point, without those that lie within half a stroke of the one before.
    void TraceStraight(Brush& brush) const;

private:
    void TracePiece(Brush& brush, const Fraction& from, const Fraction& to) const;
    [[nodiscard]] SDL_Point ToPixels(const Fraction& place) const {
        return Drawing::ToPixels(place, viewport_);
    }

    const std::vector<Fraction>& points_;
    // The origin is the viewport's own.
    SDL_Rect viewport_;
    // As a fraction, and the same for a dot in pixels.
    double half_;
    int radius_;
    int thickness_;
};

}  // namespace Corvanta::Drawing
