// The cut of an item of a scrolled list that crosses the visible band's top or bottom line. Plain arithmetic.
#pragma once

#include <SDL.h>

#include <optional>

namespace Corvanta::UI {

// Lines in logical pixels; a bottom of 0 means that there is no bottom line.
struct ClipLines {
    int top = 0;
    int bottom = 0;
};

// Moves and shrinks destination to the part inside the lines and returns the part of the source (of
// sourceWidth by sourceHeight texture pixels) that belongs there; nothing when the item crosses no line. One
// side is cut in a call, the top first. An item wholly outside comes back with heights 0.
[[nodiscard]] std::optional<SDL_Rect> ComputeVerticalClip(SDL_Rect& destination, int sourceWidth,
                                                          int sourceHeight, const ClipLines& lines);

}  // namespace Corvanta::UI
