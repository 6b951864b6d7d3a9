// The geometry of a menu. Plain values, in logical pixels.
#pragma once

#include <SDL.h>

#include <cstdint>

namespace Corvanta::UI {

// Height of all items; a divider counts as one pixel.
[[nodiscard]] int MenuContentHeight(int items, int dividers, int itemHeight);

// Space above the first and below the last item.
[[nodiscard]] int MenuPadding(int itemHeight);

// Height of the plate: all items, or the first rows alone of a menu that scrolls.
[[nodiscard]] int MenuPlateHeight(int items, int dividers, int itemHeight, bool scrollable);

// How far the plate still is from its rest position.
[[nodiscard]] double MenuSlideDistance(int64_t elapsedMs, int openMs, int height);

}  // namespace Corvanta::UI
