// Arithmetic of a tile's picture. Plain values, any thread.
#pragma once

#include <SDL.h>

namespace Corvanta::Video {

struct PictureSize {
    int width = 0;
    int height = 0;
};

// Shape of a thumbnail, and of a tile that has no picture yet.
inline constexpr float kThumbnailAspect = 1.3333334F;

// width / height; kThumbnailAspect when either is 0.
[[nodiscard]] float AspectRatioOf(PictureSize size);

// The part of a picture that fills a 4:3 thumbnail, centred: cropped, never letterboxed. Empty when a side is
// 0.
[[nodiscard]] SDL_Rect CenterCropOf(PictureSize size);

}  // namespace Corvanta::Video
