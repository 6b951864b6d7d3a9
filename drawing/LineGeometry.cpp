#include "drawing/LineGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Corvanta::Drawing {
namespace {

constexpr double kDashesToPattern = 3;
// Dashes nearer to each other than that cannot be told apart.
constexpr double kLeastStepPixels = 0.25;

// Cuts the range to the distances at which one coordinate is between 0 and size, give or take the reach.
void CutToAxis(double start, double direction, int size, int reach, double& from, double& to) {
    const double low = -static_cast<double>(reach) / size - start;
    const double high = 1 + static_cast<double>(reach) / size - start;
    if (direction == 0) {
        if (low > 0 || high < 0) to = from;
        return;
    }
    const auto [first, last] = std::minmax({low / direction, high / direction});
    from = std::max(from, first);
    to = std::min(to, last);
}

}  // namespace

LineSpan PullIn(const LineSpan& span, const Fraction& direction, double by) {
    return {{span.from.first + by * direction.first, span.from.second + by * direction.second},
            {span.to.first - by * direction.first, span.to.second - by * direction.second}};
}

std::array<Fraction, 3> ArrowHead(const Fraction& base, const Fraction& direction, double strokeWidth) {
    const auto& [x, y] = base;
    const auto& [dx, dy] = direction;
    const double side = 1.5 * strokeWidth;
    const double tip = 2.5 * strokeWidth;
    return {Fraction{x + dy * side, y - dx * side}, Fraction{x + dx * tip, y + dy * tip},
            Fraction{x - dy * side, y + dx * side}};
}

DashRange VisibleDashes(const LineCourse& line, double dash, double strokeWidth, const SDL_Rect& viewport,
                        int reach) {
    DashRange range{0, line.length, kDashesToPattern * dash};
    if (!(range.step > 0) || viewport.w < 1 || viewport.h < 1) return {0, 0, 0};
    double from = 0;
    double to = line.length;
    CutToAxis(line.start.first, line.direction.first, viewport.w, reach, from, to);
    CutToAxis(line.start.second, line.direction.second, viewport.h, reach, from, to);
    if (!(from < to)) return {0, 0, 0};

    // A dash shorter than the stroke is wide is drawn beyond its ends, since both are pulled in.
    range.end = std::min(range.end, to + strokeWidth);
    const double skipped = std::floor((from - dash - strokeWidth) / range.step) - 1;
    if (skipped >= 1) range.first = skipped * range.step;
    const double stepPixels = range.step * std::max(std::abs(line.direction.first) * viewport.w,
                                                    std::abs(line.direction.second) * viewport.h);
    if (stepPixels < kLeastStepPixels) range.step *= std::ceil(kLeastStepPixels / stepPixels);
    return range;
}

}  // namespace Corvanta::Drawing
