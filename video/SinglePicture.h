// Where one picture alone in a window stands, and which part of it. Plain values, any thread.
#pragma once

#include <SDL.h>

#include "video/PictureGeometry.h"

namespace Corvanta::Video {

enum class PictureFit {
    // The whole picture, with bars at two sides.
    Whole,
    // The whole window, with the picture cropped at two sides.
    Filled,
};

struct SinglePicture {
    SDL_Rect source{0, 0, 0, 0};
    SDL_Rect destination{0, 0, 0, 0};
};

// In single precision, each side truncated toward zero. A picture without a size counts as one of 4:3; in a
// window without an area the destination is empty.
[[nodiscard]] SinglePicture PlaceSinglePicture(PictureSize picture, int windowWidth, int windowHeight,
                                               PictureFit fit);

}  // namespace Corvanta::Video
