#include "room/MainVideoRect.h"

namespace Corvanta::Room {

SDL_Rect LetterboxedMainVideo(const MainVideoSpace& space, float aspect) {
    SDL_Rect rect{0, space.stripHeight, 0, space.viewHeight - space.reservedBelow - space.stripHeight};
    // Compared before it is truncated, since a strange picture's width need not fit an integer.
    const float width = static_cast<float>(rect.h) * aspect;
    if (static_cast<float>(space.viewWidth) <= width) {
        const int height = static_cast<int>(static_cast<float>(space.viewWidth) / aspect);
        rect.w = space.viewWidth;
        rect.y = static_cast<int>((rect.h - height) * 0.5 + rect.y);
        rect.h = height;
    } else {
        rect.w = static_cast<int>(width);
        rect.x = static_cast<int>((space.viewWidth - rect.w) * 0.5);
    }
    return rect;
}

SDL_Rect UnscaledMainVideo(const MainVideoSpace& space, Video::PictureSize picture, float pixelsPerUnit) {
    const int width = static_cast<int>(static_cast<float>(picture.width) / pixelsPerUnit);
    const int height = static_cast<int>(static_cast<float>(picture.height) / pixelsPerUnit);
    return {(space.viewWidth - width) / 2, (space.viewHeight - height) / 2, width, height};
}

}  // namespace Corvanta::Room
