#include "drawing/DashedBox.h"

#include <algorithm>
#include <cstdint>

#include "drawing/Brush.h"

namespace Corvanta::Drawing {
namespace {

constexpr SDL_Color kColor{255, 0, 0, 255};
constexpr int kWidth = 5;
constexpr int64_t kDash = 5;
constexpr int64_t kPeriod = 15;

// Dashes from one place of an axis to another; draw takes both ends of one. Those outside of the viewport's
// part of the axis are left out.
template <typename Draw>
void DrawDashes(int64_t from, int64_t to, int size, const Draw& draw) {
    const int64_t before = std::max<int64_t>(0, -from - kDash - kWidth) / kPeriod * kPeriod;
    const int64_t until = std::min<int64_t>(to, int64_t{size} + kWidth);
    for (int64_t start = from + before; start < until; start += kPeriod)
        draw(static_cast<int>(start), static_cast<int>(std::min(start + kDash, to)));
}

}  // namespace

void DrawDashedBox(SDL_Renderer* renderer, const SDL_Rect& rect, int margin) {
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    const int64_t left = int64_t{rect.x} - margin;
    const int64_t top = int64_t{rect.y} - margin;
    const int64_t right = left + rect.w + 2 * int64_t{margin};
    const int64_t bottom = top + rect.h + 2 * int64_t{margin};
    Brush brush(SDL_Rect{0, 0, viewport.w, viewport.h});
    const auto isNear = [](int64_t line, int size) { return line >= -kWidth && line < size + kWidth; };
    for (const int64_t y : {top, bottom}) {
        if (!isNear(y, viewport.h)) continue;
        DrawDashes(left, right, viewport.w, [&](int start, int end) {
            brush.ThickLine({start, static_cast<int>(y)}, {end, static_cast<int>(y)}, kWidth);
        });
    }
    for (const int64_t x : {right, left}) {
        if (!isNear(x, viewport.w)) continue;
        DrawDashes(top, bottom, viewport.h, [&](int start, int end) {
            brush.ThickLine({static_cast<int>(x), start}, {static_cast<int>(x), end}, kWidth);
        });
    }
    brush.Draw(renderer, kColor);
}

}  // namespace Corvanta::Drawing
