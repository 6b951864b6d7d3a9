// Gathers the pixels of several primitives and draws them at once, in one colour and under the blend mode in
// force. The primitives have the pixels of SDL2_gfx's, but set no blend mode: a colour of alpha 0 without
// blending erases. Nothing is painted twice, however often primitives overlap. Drawing is for the render
// thread.
#pragma once

#include <SDL.h>

#include <span>
#include <utility>
#include <vector>

#include "drawing/CoverageMask.h"
#include "drawing/StepStamps.h"

namespace Corvanta::Drawing {

class Brush final {
public:
    // Where it may paint, in pixels of the target; the rest is cut.
    explicit Brush(const SDL_Rect& bounds) : mask_(bounds) {}
    // With what other curves of one width have left there; borrowed.
    Brush(const SDL_Rect& bounds, StepStamps& stamps) : mask_(bounds), stamps_(&stamps) {}

    // Of all primitives: coordinates and radii are of 16 bits, widths of 8.
    // A radius below 0 is nothing, 0 a pixel.
    void FilledCircle(SDL_Point center, int radius);
    void FilledEllipse(SDL_Point center, int radiusX, int radiusY);
    // Fewer than three corners are nothing.
    void FilledPolygon(std::span<const SDL_Point> corners) { mask_.AddPolygon(corners); }
    // A width of 0 is nothing, of 1 SDL's own line; between equal ends it is a box.
    void ThickLine(SDL_Point from, SDL_Point to, int width);
    // The curve of at least three control points in steps of at least 2 for each of them. With a width of 1
    // only its first piece is drawn.
    void ThickBezier(std::span<const SDL_Point> control, int steps, int width);

    // Paints nothing where the other mask covers, which then covers the paint too. See
    // CoverageMask::TakeFrom.
    void PaintBeside(CoverageMask& covered) { mask_.TakeFrom(covered); }

    // Moved by the offset.
    void Draw(SDL_Renderer* renderer, const SDL_Color& color, SDL_Point offset = {0, 0}) const;

private:
    void AddStep(SDL_Point before, SDL_Point from, SDL_Point to, int width);

    CoverageMask mask_;
    StepStamps* stamps_ = nullptr;
    std::vector<std::pair<SDL_Point, SDL_Point>> thinLines_;
    // The last circle: a stroke has hundreds of one radius.
    std::vector<RowRun> disc_;
    int discRadius_ = -1;
};

// What the renderer can show of that rectangle, its viewport being at (0, 0).
[[nodiscard]] SDL_Rect Visible(SDL_Renderer* renderer, const SDL_Rect& rect);

}  // namespace Corvanta::Drawing
