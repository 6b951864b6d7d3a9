// What a press and a move make of the order of a wall's remote tiles. Plain values.
#pragma once

#include <SDL.h>

namespace Corvanta::Video {

// A press on a tile that may become a drag.
struct TilePress {
    bool pending = false;
    SDL_Point at{-1, -1};

    // One pixel in either direction: what began as a click becomes a drag.
    [[nodiscard]] bool HasMoved(SDL_Point pointer) const { return pointer.x != at.x || pointer.y != at.y; }
};

enum class PinChange { None, Pin, Unpin };

// Whether a tile that is dragged from one place among the remote tiles to another crosses the end of the
// pinned ones.
[[nodiscard]] PinChange PinChangeOfMove(int from, int to, bool isPinned, int pinnedCount);

}  // namespace Corvanta::Video
