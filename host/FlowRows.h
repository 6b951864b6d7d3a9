// Groups of controls in rows, as many in each as fit. Plain values in logical pixels.
#pragma once

#include <span>
#include <vector>

#include "host/WindowLayout.h"

namespace Corvanta::Host {

struct GroupSize {
    int width = 0;
    int height = 0;
};

struct FlowRows {
    // One for each group, in their order; the upper left corner of all is (0, 0).
    std::vector<Place> places;
    int width = 0;
    int height = 0;
};

// Each row is centred, and its groups are centred in its height. A group wider than maxWidth has a row of its
// own. gap: between the groups of a row, and between rows.
[[nodiscard]] FlowRows FlowInto(std::span<const GroupSize> groups, int maxWidth, int gap);

}  // namespace Corvanta::Host
