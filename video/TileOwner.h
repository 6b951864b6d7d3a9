// What a tile asks of the view that owns it. Render thread.
#pragma once

#include <SDL.h>

namespace Corvanta::Video {

class TileOwner {
public:
    // Where the main video stands in the room's view, in logical pixels.
    [[nodiscard]] virtual SDL_Rect GetMainVideoRect() const = 0;

protected:
    ~TileOwner() = default;
};

}  // namespace Corvanta::Video
