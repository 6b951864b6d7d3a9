// Where the tiles of a wall stand: plain arithmetic of the layout in use. Guarded by the wall that owns it.
#pragma once

#include <SDL.h>

namespace Corvanta::Video {

enum class ThumbnailLayoutMode : int { Strip = 0, Column = 1, Grid = 2 };

class ThumbnailLayout;

}  // namespace Corvanta::Video
