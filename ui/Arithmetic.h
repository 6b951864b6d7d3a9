// Conversions from fractions to pixels: toward zero, and total. Plain values.
#pragma once

#include <cmath>
#include <limits>

namespace Corvanta::UI {

// Toward zero; a value beyond an int gives the nearest int, and no number gives 0.
[[nodiscard]] inline int Truncate(double value) {
    if (std::isnan(value)) return 0;
    if (value >= static_cast<double>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
    if (value <= static_cast<double>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

}  // namespace Corvanta::UI
