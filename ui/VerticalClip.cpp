#include "ui/VerticalClip.h"

#include <algorithm>

namespace Corvanta::UI {

std::optional<SDL_Rect> ComputeVerticalClip(SDL_Rect& destination, int sourceWidth, int sourceHeight,
                                            const ClipLines& lines) {
    const bool topCut = destination.y < lines.top;
    const int below = destination.y - lines.bottom + destination.h;
    if (!topCut && (lines.bottom == 0 || below <= 0)) return std::nullopt;

    const auto itemHeight = static_cast<float>(destination.h);
    const auto cut = static_cast<float>(topCut ? lines.top - destination.y : below);
    const float fraction = destination.h > 0 ? std::min(1.0F, cut / itemHeight) : 1.0F;
    const float keep = 1.0F - fraction;
    const auto height = static_cast<float>(sourceHeight);
    const SDL_Rect source{0, topCut ? static_cast<int>(fraction * height) : 0, sourceWidth,
                          static_cast<int>(height * keep)};
    if (topCut) {
        destination.y = static_cast<int>(static_cast<float>(destination.y) + itemHeight * fraction);
    }
    destination.h = static_cast<int>(itemHeight * keep);
    return source;
}

}  // namespace Corvanta::UI
