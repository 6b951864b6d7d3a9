// Where the main video stands in the room's view. Plain values, any thread.
#pragma once

#include <SDL.h>

#include <optional>

#include "video/PictureGeometry.h"

namespace Corvanta::Room {

// All in logical pixels of the view, but for nativeSize.
struct MainVideoSpace {
    int viewWidth = 0;
    int viewHeight = 0;
    // Height that the bars below keep for themselves.
    int reservedBelow = 0;
    // Height of the strip of thumbnails above; 0 when it is not shown.
    int stripHeight = 0;
};

// The largest centred rectangle of that aspect in the space: letterboxed, never cropped.
[[nodiscard]] SDL_Rect LetterboxedMainVideo(const MainVideoSpace& space, float aspect);

// The rectangle in which a picture of that many pixels is not scaled, centred in the whole view.
// pixelsPerUnit: the renderer's own scale.
[[nodiscard]] SDL_Rect UnscaledMainVideo(const MainVideoSpace& space, Video::PictureSize picture,
                                         float pixelsPerUnit);

}  // namespace Corvanta::Room
