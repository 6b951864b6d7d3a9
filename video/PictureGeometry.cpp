#include "video/PictureGeometry.h"

namespace Corvanta::Video {

float AspectRatioOf(PictureSize size) {
    if (size.width == 0 || size.height == 0) return kThumbnailAspect;
    return static_cast<float>(size.width) / static_cast<float>(size.height);
}

SDL_Rect CenterCropOf(PictureSize size) {
    if (size.width == 0 || size.height == 0) return {0, 0, 0, 0};
    if (AspectRatioOf(size) > kThumbnailAspect) {
        const int width = static_cast<int>(static_cast<double>(static_cast<float>(size.height)) * 4.0 / 3.0);
        return {static_cast<int>((size.width - width) * 0.5), 0, width, size.height};
    }
    const int height = static_cast<int>(static_cast<double>(static_cast<float>(size.width)) * 3.0 * 0.25);
    return {0, static_cast<int>((size.height - height) * 0.5), size.width, height};
}

}  // namespace Corvanta::Video
