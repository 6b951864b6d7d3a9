#include "drawing/Brush.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "drawing/StrokeGeometry.h"

namespace Corvanta::Drawing {
namespace {

constexpr size_t kLeastControlPoints = 3;
constexpr int kLeastSteps = 2;

[[nodiscard]] bool IsSame(SDL_Point a, SDL_Point b) {
    return a.x == b.x && a.y == b.y;
}

// The box around one pixel, ends included: it reaches further to the lower right.
[[nodiscard]] SDL_Rect BoxAt(SDL_Point center, int width) {
    const int before = width / 2;
    const auto [left, right] = std::minmax({ToPixel(center.x - before), ToPixel(center.x + width)});
    const auto [top, bottom] = std::minmax({ToPixel(center.y - before), ToPixel(center.y + width)});
    return {left, top, right - left + 1, bottom - top + 1};
}

}  // namespace

void Brush::FilledCircle(SDL_Point center, int radius) {
    if (radius != discRadius_) disc_ = EllipseRows(radius, radius);
    discRadius_ = radius;
    mask_.AddRows(center, disc_);
}

void Brush::FilledEllipse(SDL_Point center, int radiusX, int radiusY) {
    mask_.AddRows(center, EllipseRows(radiusX, radiusY));
}

void Brush::ThickLine(SDL_Point from, SDL_Point to, int width) {
    if (width < 1) return;
    if (IsSame(from, to)) {
        mask_.AddRect(BoxAt(from, width));
    } else if (width == 1) {
        thinLines_.emplace_back(from, to);
    } else {
        mask_.AddPolygon(ThickLineCorners(from, to, width));
    }
}

void Brush::ThickBezier(std::span<const SDL_Point> control, int steps, int width) {
    if (control.size() < kLeastControlPoints || steps < kLeastSteps || width < 1) return;
    const int samples = static_cast<int>(control.size()) * steps + 1;
    SDL_Point from = control.front();
    // How the curve came there; nothing at its beginning.
    SDL_Point before{0, 0};
    for (int i = 1; i <= samples; ++i) {
        const SDL_Point to = BezierSample(control, steps, i);
        if (IsSame(from, to)) continue;
        if (width == 1) {
            thinLines_.emplace_back(from, to);
            return;
        }
        AddStep(before, from, to, width);
        before = {to.x - from.x, to.y - from.y};
        from = to;
    }
}

void Brush::AddStep(SDL_Point before, SDL_Point from, SDL_Point to, int width) {
    if (stamps_ != nullptr) {
        const MaskStamp* const stamp = stamps_->Find(before, from, {to.x - from.x, to.y - from.y});
        if (stamp != nullptr && mask_.AddStamp(from, *stamp)) return;
    }
    AddCurveStep(mask_, before, from, to, width);
}

void Brush::Draw(SDL_Renderer* renderer, const SDL_Color& color, SDL_Point offset) const {
    std::vector<SDL_Rect> rectangles;
    mask_.AppendRectangles(rectangles);
    for (SDL_Rect& rectangle : rectangles) {
        rectangle.x += offset.x;
        rectangle.y += offset.y;
    }
    SDL_SetRenderDrawColor(renderer, color.r, color.g, color.b, color.a);
    if (!rectangles.empty())
        SDL_RenderFillRects(renderer, rectangles.data(), static_cast<int>(rectangles.size()));
    for (const auto& [from, to] : thinLines_)
        SDL_RenderDrawLine(renderer, from.x + offset.x, from.y + offset.y, to.x + offset.x, to.y + offset.y);
}

SDL_Rect Visible(SDL_Renderer* renderer, const SDL_Rect& rect) {
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    viewport.x = 0;
    viewport.y = 0;
    SDL_Rect visible{0, 0, 0, 0};
    return SDL_IntersectRect(&rect, &viewport, &visible) == SDL_TRUE ? visible : SDL_Rect{0, 0, 0, 0};
}

}  // namespace Corvanta::Drawing
