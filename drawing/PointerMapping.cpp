#include "drawing/PointerMapping.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "drawing/TextBox.h"

namespace Corvanta::Drawing {

namespace {

// Cut towards zero and held within what an integer has; 0 for what is no number.
int ToInt(double value) {
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    if (!(value >= kLowest)) return value < kLowest ? std::numeric_limits<int>::min() : 0;
    return value > kHighest ? std::numeric_limits<int>::max() : static_cast<int>(value);
}

// offset from the area's near edge, size of the area, size of the canvas.
int MapAxis(int64_t offset, int size, int canvasSize) {
    const int64_t held = std::min<int64_t>(offset, size);
    return ToInt(static_cast<double>(held) / size * canvasSize);
}

// Whether the value is in [start - margin, start + size + margin).
bool IsWithin(int value, int start, int size, int64_t margin) {
    return value >= start - margin && value < int64_t{start} + size + margin;
}

}  // namespace

SDL_Point WholeUnits(double canvasWidth, double canvasHeight) {
    return {ToInt(canvasWidth), ToInt(canvasHeight)};
}

std::optional<SDL_Point> MapToCanvas(const SDL_Point& position, const SDL_Rect& videoArea,
                                     const SDL_Point& canvasSize) {
    if (videoArea.w <= 0 || videoArea.h <= 0) return std::nullopt;
    return SDL_Point{MapAxis(int64_t{position.x} - videoArea.x, videoArea.w, canvasSize.x),
                     MapAxis(int64_t{position.y} - videoArea.y, videoArea.h, canvasSize.y)};
}

bool IsOnCanvas(const SDL_Point& point, const SDL_Point& canvasSize) {
    return point.x >= 0 && point.y >= 0 && point.x < canvasSize.x && point.y < canvasSize.y;
}

TextHit HitTestText(const SDL_Point& point, const SDL_Rect& drawnRect, const SDL_Point& textureSize,
                    const SDL_Point& canvasSize) {
    if (textureSize.x <= 0 || textureSize.y <= 0) return {};
    const double scaleX = static_cast<double>(canvasSize.x) / textureSize.x;
    const double scaleY = static_cast<double>(canvasSize.y) / textureSize.y;
    const SDL_Rect text{ToInt(drawnRect.x * scaleX), ToInt(drawnRect.y * scaleY), ToInt(drawnRect.w * scaleX),
                        ToInt(drawnRect.h * scaleY)};
    const auto isWithin = [&](int64_t margin) {
        return IsWithin(point.x, text.x, text.w, margin) && IsWithin(point.y, text.y, text.h, margin);
    };
    return {.inside = isWithin(0), .nearby = isWithin(kTextBoxMargin)};
}

}  // namespace Corvanta::Drawing
