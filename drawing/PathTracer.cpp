#include "drawing/PathTracer.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "ui/Arithmetic.h"

namespace Corvanta::Drawing {
namespace {

constexpr int kCurveSteps = 2;
// Corners are cut to pixels, and a box of equal ends has its far edge.
constexpr int kSlack = 2;

[[nodiscard]] double DistanceOf(const Fraction& a, const Fraction& b) {
    const double dx = a.first - b.first;
    const double dy = a.second - b.second;
    return std::sqrt(dx * dx + dy * dy);
}

// The smallest box around places in pixels.
class Extent final {
public:
    void Add(const Fraction& place, const SDL_Rect& viewport) {
        const int x = UI::Truncate(viewport.w * place.first);
        const int y = UI::Truncate(viewport.h * place.second);
        left_ = std::min(left_, x);
        right_ = std::max(right_, x);
        top_ = std::min(top_, y);
        bottom_ = std::max(bottom_, y);
    }
    // Beyond 16 bits the midpoints between places come in anywhere.
    [[nodiscard]] bool Wraps(int reach) const {
        return Drawing::Wraps(left_, right_, reach) || Drawing::Wraps(top_, bottom_, reach);
    }
    [[nodiscard]] SDL_Rect GrownBy(int reach) const {
        return {left_ - reach, top_ - reach, right_ - left_ + 2 * reach + 1, bottom_ - top_ + 2 * reach + 1};
    }

private:
    int left_ = SDL_MAX_SINT32;
    int right_ = SDL_MIN_SINT32;
    int top_ = SDL_MAX_SINT32;
    int bottom_ = SDL_MIN_SINT32;
};

[[nodiscard]] SDL_Rect BoxIn(const SDL_Rect& viewport, const Extent& extent, int reach) {
    if (extent.Wraps(reach)) return viewport;
    const SDL_Rect grown = extent.GrownBy(reach);
    SDL_Rect box{0, 0, 0, 0};
    return SDL_IntersectRect(&grown, &viewport, &box) == SDL_TRUE ? box : SDL_Rect{0, 0, 0, 0};
}

}  // namespace

PathTracer::PathTracer(const std::vector<Fraction>& points, double strokeWidth, const SDL_Rect& viewport)
    : points_(points),
      viewport_{0, 0, viewport.w, viewport.h},
      half_(strokeWidth / 2),
      radius_(ToPixel(viewport.w * half_)),
      thickness_(ToThickness(viewport.w * strokeWidth)) {}

SDL_Rect PathTracer::BoxOfAll() const {
    Extent extent;
    for (const Fraction& point : points_) extent.Add(point, viewport_);
    return BoxIn(viewport_, extent, std::max(radius_, thickness_) + kSlack);
}

SDL_Rect PathTracer::BoxFrom(size_t index, const Fraction& pen) const {
    if (index == 0) return BoxOfAll();
    Extent extent;
    extent.Add(pen, viewport_);
    for (size_t i = index; i < points_.size(); ++i) extent.Add(points_[i], viewport_);
    return BoxIn(viewport_, extent, std::max(radius_, thickness_) + kSlack);
}

Fraction PathTracer::TraceCurve(Brush& brush, size_t index, Fraction pen) const {
    if (index == 0) {
        pen = points_.front();
        brush.FilledCircle(ToPixels(pen), radius_);
        index = 1;
    }
    for (; index + 1 < points_.size(); ++index) {
        const Fraction& point = points_[index];
        const Fraction& next = points_[index + 1];
        if (DistanceOf(pen, point) < half_ && DistanceOf(point, next) < half_) continue;
        const Fraction middle = MidpointOf(point, next);
        const std::array control{ToPixels(pen), ToPixels(point), ToPixels(middle)};
        brush.ThickBezier(control, kCurveSteps, thickness_);
        brush.FilledCircle(control.back(), radius_);
        pen = middle;
    }
    return pen;
}

void PathTracer::TraceTail(Brush& brush, const Fraction& pen) const {
    TracePiece(brush, pen, points_.back());
}

void PathTracer::TraceStraight(Brush& brush) const {
    Fraction last = points_.front();
    brush.FilledCircle(ToPixels(last), radius_);
    for (const Fraction& point : points_) {
        if (&point == &points_.front() || !(DistanceOf(last, point) >= half_)) continue;
        TracePiece(brush, last, point);
        last = point;
    }
}

void PathTracer::TracePiece(Brush& brush, const Fraction& from, const Fraction& to) const {
    const SDL_Point start = ToPixels(from);
    const SDL_Point end = ToPixels(to);
    if (start.x == end.x && start.y == end.y) return;
    brush.ThickLine(start, end, thickness_);
    brush.FilledCircle(end, radius_);
}

}  // namespace Corvanta::Drawing
