#include "drawing/StrokeGeometry.h"

#include <algorithm>
#include <cmath>

#include "ui/Arithmetic.h"

namespace Corvanta::Drawing {
namespace {

// Keeps the angle of an upright piece finite.
constexpr double kLeastRun = 1e-6;

}  // namespace

int ToPixel(double value) {
    return static_cast<int16_t>(UI::Truncate(value));
}

int ToThickness(double value) {
    return static_cast<uint8_t>(UI::Truncate(value));
}

SDL_Point ToPixels(const Fraction& place, const SDL_Rect& viewport) {
    return {ToPixel(viewport.w * place.first), ToPixel(viewport.h * place.second)};
}

bool Wraps(int least, int most, int reach) {
    return int64_t{least} - reach < SDL_MIN_SINT16 || int64_t{most} + reach > SDL_MAX_SINT16;
}

Fraction MidpointOf(const Fraction& from, const Fraction& to) {
    const double dx = to.first - from.first;
    const double dy = to.second - from.second;
    const double angle = std::atan(std::abs(dy) / std::max(std::abs(dx), kLeastRun));
    const double half = std::sqrt(dx * dx + dy * dy) / 2;
    return {from.first + std::copysign(std::cos(angle) * half, dx >= 0 ? 1.0 : -1.0),
            from.second + std::copysign(std::sin(angle) * half, dy >= 0 ? 1.0 : -1.0)};
}

std::pair<double, double> ThickLineOffset(SDL_Point step, int width) {
    const double dx = step.x;
    const double dy = step.y;
    const double squared = dx * dx + dy * dy;
    // The cosine of twice the line's angle.
    const double cosine = (dy * dy - dx * dx) / squared;
    const double adjustment = 0.1 + 0.9 * std::abs(cosine);
    const double scale = (width - adjustment) / (2 * std::sqrt(squared));
    return {scale * dy, -scale * dx};
}

Corners ThickLineCorners(SDL_Point from, SDL_Point to, int width) {
    const auto [x, y] = ThickLineOffset({to.x - from.x, to.y - from.y}, width);
    const auto corner = [](double left, double top) { return SDL_Point{ToPixel(left), ToPixel(top)}; };
    return {corner(from.x + x, from.y + y), corner(from.x - x, from.y - y), corner(to.x - x, to.y - y),
            corner(to.x + x, to.y + y)};
}

SDL_Point BezierSample(std::span<const SDL_Point> control, int steps, int index) {
    const int count = static_cast<int>(control.size());
    const int last = count * steps;
    if (index >= last) return {ToPixel(control.back().x), ToPixel(control.back().y)};
    // Bernstein's form with whole numbers above one division, so that a level stroke stays level: a third of
    // 3 is not a little less than 1.
    const double before = last - index;
    const double after = index;
    double x = control.front().x * before;
    double y = control.front().y * before;
    double binomial = 1;
    double power = 1;
    double whole = last;
    for (int i = 1; i < count; ++i) {
        power *= after;
        binomial = binomial * (count - i) / i;
        x += power * binomial * control[static_cast<size_t>(i)].x;
        y += power * binomial * control[static_cast<size_t>(i)].y;
        if (i == count - 1) break;
        x *= before;
        y *= before;
        whole *= last;
    }
    return {ToPixel(x / whole), ToPixel(y / whole)};
}

}  // namespace Corvanta::Drawing
