#include "ui/ButtonGeometry.h"

#include <algorithm>

#include "ui/Arithmetic.h"

namespace Corvanta::UI {
namespace {

[[nodiscard]] int WidthFor(SDL_Point pictureSize, int height) {
    if (pictureSize.y == 0) return 0;
    const float aspect = static_cast<float>(pictureSize.x) / static_cast<float>(pictureSize.y);
    return Truncate(aspect * static_cast<float>(height));
}

}  // namespace

SDL_Rect LayoutButtonIcon(const ButtonShape& shape, SDL_Point pictureSize, bool fitHeight, bool hasLabel) {
    const int height = shape.height;
    SDL_Rect icon{0, 0, 0, height / 2};
    if (fitHeight) {
        icon.h = height;
    } else if (shape.labelBelow) {
        icon.h = hasLabel ? Truncate(height / 2.8) : height / 3;
    }
    icon.w = WidthFor(pictureSize, icon.h);
    if (!fitHeight && !shape.labelBelow) {
        icon.x = shape.rect.x + height / 2;
        icon.y = shape.centre.y - height / 4;
        return icon;
    }
    icon.x = shape.centre.x - icon.w / 2;
    icon.y = !fitHeight && hasLabel ? Truncate(shape.rect.y + icon.h / 1.8) : shape.centre.y - icon.h / 2;
    return icon;
}

SDL_Rect LayoutToggleIcon(const ButtonShape& shape, SDL_Point pictureSize, bool flat, bool showLabel) {
    const int height = shape.height;
    SDL_Rect icon{0, 0, 0, height};
    if (!flat) icon.h = shape.labelBelow ? height / 3 : height / 2;
    icon.w = WidthFor(pictureSize, icon.h);
    if (!shape.labelBelow) {
        icon.x = shape.rect.x + height / 2;
        icon.y = shape.centre.y - height / 4;
        return icon;
    }
    icon.x = shape.centre.x - icon.w / 2;
    icon.y = showLabel ? Truncate(shape.rect.y + icon.h / 1.8) : shape.centre.y - icon.h / 2;
    return icon;
}

SDL_Rect LayoutBadge(const SDL_Rect& icon, SDL_Point pictureSize, int buttonHeight) {
    const int height = std::min(pictureSize.y, buttonHeight / 2);
    return {icon.x + icon.w - 2, icon.y + 2 - height, WidthFor(pictureSize, height), height};
}

int LabelFontSize(const ButtonShape& shape, float labelSizeRatio) {
    if (shape.labelBelow) return Truncate(shape.rect.h * 0.24);
    return Truncate(static_cast<float>(shape.rect.h) * labelSizeRatio);
}

SDL_Point LayoutLabel(const ButtonShape& shape, SDL_Point textSize) {
    if (shape.labelBelow) {
        return {shape.rect.x + (shape.rect.w - textSize.x) / 2,
                Truncate(shape.rect.y + shape.rect.h - textSize.y * 1.2)};
    }
    return {Truncate(shape.rect.x + shape.height * 1.5), Truncate(shape.rect.y + shape.height * 0.3)};
}

}  // namespace Corvanta::UI
