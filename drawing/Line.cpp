#include "drawing/Line.h"

#include <SDL2_gfxPrimitives.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "drawing/Brush.h"
#include "drawing/EllipseRows.h"
#include "drawing/LineGeometry.h"

namespace Corvanta::Drawing {
namespace {

constexpr int kMostDashes = 65536;
// In viewports. Dashes that paint one another over this often cannot be told apart any more, and a stroke as
// wide as the picture must not cost minutes: those beyond are drawn all at once.
constexpr int64_t kMostPainted = 64;

[[nodiscard]] int64_t AreaOf(const SDL_Rect& rect) {
    return int64_t{rect.w} * rect.h;
}

// One drawing of a line: its sizes in pixels of the viewport.
struct Pen {
    SDL_Renderer* renderer = nullptr;
    SDL_Rect viewport{};
    SDL_Color color{};
    double strokeWidth = 0;
    int thickness = 0;
    int capRadius = 0;

    [[nodiscard]] int Reach() const { return std::max(thickness, capRadius) + 1; }
    [[nodiscard]] SDL_Rect Whole() const { return {0, 0, viewport.w, viewport.h}; }
    // What a piece between these can paint of the viewport.
    [[nodiscard]] SDL_Rect BoxOf(SDL_Point from, SDL_Point to) const {
        const auto [left, right] = std::minmax(from.x, to.x);
        const auto [top, bottom] = std::minmax(from.y, to.y);
        const int reach = Reach();
        if (Wraps(left, right, reach) || Wraps(top, bottom, reach)) return Whole();
        return Visible(renderer, {left - reach, top - reach, right - left + 2 * reach + 1,
                                  bottom - top + 2 * reach + 1});
    }
    // As the library's caps leave it, for those that are drawn and for those that nobody could see: all
    // bodies but the first are drawn in it.
    void SetBlendModeOfCaps() const {
        if (capRadius < 0) return;
        SDL_SetRenderDrawBlendMode(renderer,
                                   color.a == SDL_ALPHA_OPAQUE ? SDL_BLENDMODE_NONE : SDL_BLENDMODE_BLEND);
    }
    void DrawCap(SDL_Point center, const SDL_Rect& box) const {
        if (IsWithinLibrary(capRadius, capRadius)) {
            filledCircleRGBA(renderer, static_cast<Sint16>(center.x), static_cast<Sint16>(center.y),
                             static_cast<Sint16>(capRadius), color.r, color.g, color.b, color.a);
            return;
        }
        SetBlendModeOfCaps();
        Brush brush(box);
        brush.FilledCircle(center, capRadius);
        brush.Draw(renderer, color);
    }
    // Returns how many pixels it can have painted.
    int64_t DrawPiece(const LineSpan& piece) const {
        const SDL_Point from = ToPixels(piece.from, viewport);
        const SDL_Point to = ToPixels(piece.to, viewport);
        const SDL_Rect box = BoxOf(from, to);
        if (SDL_RectEmpty(&box) == SDL_TRUE) {
            SetBlendModeOfCaps();
            return 0;
        }
        Brush brush(box);
        brush.ThickLine(from, to, thickness);
        brush.Draw(renderer, color);
        DrawCap(from, box);
        DrawCap(to, box);
        return AreaOf(box);
    }
    void AddPiece(Brush& brush, const LineSpan& piece) const {
        const SDL_Point from = ToPixels(piece.from, viewport);
        const SDL_Point to = ToPixels(piece.to, viewport);
        const SDL_Rect box = BoxOf(from, to);
        if (SDL_RectEmpty(&box) == SDL_TRUE) return;
        brush.ThickLine(from, to, thickness);
        brush.FilledCircle(from, capRadius);
        brush.FilledCircle(to, capRadius);
    }
};

void DrawSolid(const Pen& pen, const LineCourse& line, const Fraction& end) {
    pen.DrawPiece(PullIn({line.start, end}, line.direction, pen.strokeWidth / 2));
}

void DrawDashes(const Pen& pen, const LineCourse& line, const Fraction& end, double dash) {
    const DashRange range = VisibleDashes(line, dash, pen.strokeWidth, pen.viewport, pen.Reach());
    if (range.first > 0) pen.SetBlendModeOfCaps();
    const int64_t most = kMostPainted * AreaOf(pen.viewport);
    int64_t painted = 0;
    std::optional<Brush> rest;
    double t = range.first;
    for (int count = 0; t < range.end && count < kMostDashes; ++count) {
        const LineSpan whole{line.At(t), t + dash < line.length ? line.At(t + dash) : end};
        const LineSpan piece = PullIn(whole, line.direction, pen.strokeWidth / 2);
        if (painted > most) {
            if (!rest) rest.emplace(pen.Whole());
            pen.AddPiece(*rest, piece);
        } else {
            painted += pen.DrawPiece(piece);
        }
        const double next = t + range.step;
        if (!(next > t)) break;
        t = next;
    }
    if (rest) rest->Draw(pen.renderer, pen.color);
}

void DrawArrowHead(const Pen& pen, const Fraction& base, const Fraction& direction) {
    const auto [side, tip, otherSide] = ArrowHead(base, direction, pen.strokeWidth);
    const SDL_Point a = ToPixels(side, pen.viewport);
    const SDL_Point b = ToPixels(tip, pen.viewport);
    const SDL_Point c = ToPixels(otherSide, pen.viewport);
    filledTrigonRGBA(pen.renderer, static_cast<Sint16>(a.x), static_cast<Sint16>(a.y),
                     static_cast<Sint16>(b.x), static_cast<Sint16>(b.y), static_cast<Sint16>(c.x),
                     static_cast<Sint16>(c.y), pen.color.r, pen.color.g, pen.color.b, pen.color.a);
}

}  // namespace

void Line::Render(SDL_Renderer* renderer) {
    if (startX == endX && startY == endY) return;
    const double dx = endX - startX;
    const double dy = endY - startY;
    const double length = std::sqrt(dx * dx + dy * dy);
    if (!std::isfinite(length)) return;
    Pen pen{renderer, {}, color.ToSdl(), normalizedStrokeWidth, 0, 0};
    SDL_RenderGetViewport(renderer, &pen.viewport);
    pen.thickness = ToThickness(pen.viewport.w * normalizedStrokeWidth);
    pen.capRadius = ToPixel(pen.viewport.w * normalizedStrokeWidth / 2);

    SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_NONE);
    constexpr double kNothing = std::numeric_limits<double>::epsilon();
    if (std::abs(dx) < kNothing && std::abs(dy) < kNothing) return;
    const Fraction start{startX, startY};
    const Fraction end{endX, endY};
    const LineCourse line{start, {dx / length, dy / length}, length};
    if (dash == 0) {
        DrawSolid(pen, line, end);
    } else {
        DrawDashes(pen, line, end, normalizedDash);
    }
    if (arrow) {
        const double by = normalizedStrokeWidth / 2;
        const auto [nearEnd, farEnd] = PullIn({start, end}, line.direction, by);
        if (reversed) {
            DrawArrowHead(pen, nearEnd, {-line.direction.first, -line.direction.second});
        } else {
            DrawArrowHead(pen, farEnd, line.direction);
        }
    }
    SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_BLEND);
}

void Line::Normalize(double canvasWidth, double canvasHeight) {
    if (normalized) return;
    startX = x1 / canvasWidth;
    endX = x2 / canvasWidth;
    startY = y1 / canvasHeight;
    endY = y2 / canvasHeight;
    normalizedStrokeWidth = strokeWidth / canvasWidth;
    normalizedDash = dash / canvasWidth;
    reversed = startX > endX;
    if (reversed) {
        std::swap(startX, endX);
        std::swap(startY, endY);
    }
    normalized = true;
}

void Line::SetStart(double x, double y) {
    x1 = x;
    y1 = y;
    x2 = x;
    y2 = y;
    normalized = false;
}

void Line::SetEnd(double x, double y) {
    x2 = x;
    y2 = y;
    normalized = false;
}

}  // namespace Corvanta::Drawing
