#include "room/MainVideoRect.h"

#include <algorithm>

#include "ui/Arithmetic.h"

namespace Corvanta::Room {

SDL_Rect LetterboxedMainVideo(const MainVideoSpace& space, float aspect) {
    // In doubles, which hold every difference of ints.
    const double room = static_cast<double>(space.viewHeight) - space.reservedBelow - space.stripHeight;
    SDL_Rect rect{0, space.stripHeight, 0, UI::Truncate(room)};
    // Compared before it is truncated, since a strange picture's width need not fit an integer.
    const float width = static_cast<float>(rect.h) * aspect;
    if (static_cast<float>(space.viewWidth) <= width) {
        const int height = UI::Truncate(static_cast<float>(space.viewWidth) / aspect);
        rect.w = space.viewWidth;
        rect.y = UI::Truncate((static_cast<double>(rect.h) - height) * 0.5 + rect.y);
        rect.h = height;
    } else {
        rect.w = UI::Truncate(width);
        rect.x = UI::Truncate((static_cast<double>(space.viewWidth) - rect.w) * 0.5);
    }
    rect.w = std::max(rect.w, 0);
    rect.h = std::max(rect.h, 0);
    return rect;
}

SDL_Rect UnscaledMainVideo(const MainVideoSpace& space, Video::PictureSize picture, float pixelsPerUnit) {
    const int width = static_cast<int>(static_cast<float>(picture.width) / pixelsPerUnit);
    const int height = static_cast<int>(static_cast<float>(picture.height) / pixelsPerUnit);
    return {(space.viewWidth - width) / 2, (space.viewHeight - height) / 2, width, height};
}

}  // namespace Corvanta::Room
