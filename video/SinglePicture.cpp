#include "video/SinglePicture.h"

#include "ui/Arithmetic.h"

namespace Corvanta::Video {
namespace {

[[nodiscard]] SDL_Rect FitInside(int width, int height, float pictureAspect, float windowAspect) {
    if (pictureAspect > windowAspect) {
        const int fitted = UI::Truncate(static_cast<float>(width) / pictureAspect);
        return {0, (height - fitted) / 2, width, fitted};
    }
    if (windowAspect > pictureAspect) {
        const int fitted = UI::Truncate(pictureAspect * static_cast<float>(height));
        return {(width - fitted) / 2, 0, fitted, height};
    }
    return {0, 0, width, height};
}

[[nodiscard]] SDL_Rect CropOf(PictureSize picture, float pictureAspect, float windowAspect) {
    const auto [width, height] = picture;
    if (pictureAspect > windowAspect) {
        const int shown = UI::Truncate(static_cast<float>(height) * windowAspect);
        return {(width - shown) / 2, 0, shown, height};
    }
    if (windowAspect > pictureAspect) {
        const int shown = UI::Truncate(static_cast<float>(width) / windowAspect);
        return {0, (height - shown) / 2, width, shown};
    }
    return {0, 0, width, height};
}

}  // namespace

SinglePicture PlaceSinglePicture(PictureSize picture, int windowWidth, int windowHeight, PictureFit fit) {
    if (windowWidth <= 0 || windowHeight <= 0) return {};
    const float windowAspect = static_cast<float>(windowWidth) / static_cast<float>(windowHeight);
    const float pictureAspect = AspectRatioOf(picture);
    if (fit == PictureFit::Whole) {
        return {.source = {0, 0, picture.width, picture.height},
                .destination = FitInside(windowWidth, windowHeight, pictureAspect, windowAspect)};
    }
    return {.source = CropOf(picture, pictureAspect, windowAspect),
            .destination = {0, 0, windowWidth, windowHeight}};
}

}  // namespace Corvanta::Video
