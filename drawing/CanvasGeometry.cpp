#include "drawing/CanvasGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "ui/Arithmetic.h"

namespace Corvanta::Drawing {
namespace {

struct ReferenceSize {
    double aspect;
    CanvasSize size;
};

// By aspect ratio, ascending, so that the lower of two equally near ones is found first.
constexpr std::array kReferenceSizes{
    ReferenceSize{4.0 / 3.0, {1280, 960}},
    ReferenceSize{16.0 / 10.0, {1280, 800}},
    ReferenceSize{16.0 / 9.0, {1280, 720}},
    ReferenceSize{64.0 / 27.0, {2560, 1080}},
};

constexpr int kMinShorterSide = 720;
constexpr int kMaxShorterSide = 2160;
// What the usual graphics hardware makes. Also the bound where a renderer makes anything, as the software one
// does, so that a picture of one line does not ask for gigabytes.
constexpr int kMaxSide = 16384;

// SDL cuts off what lies beside the layer, as long as its sums of coordinates fit into an int.
constexpr double kMaxOverhang = 1e9;

[[nodiscard]] int ShorterSide(double length) {
    return std::clamp(UI::Truncate(length), kMinShorterSide, kMaxShorterSide);
}

}  // namespace

CanvasSize CanvasSizeFor(int frameWidth, int frameHeight) {
    const double aspect = static_cast<double>(frameWidth) / frameHeight;
    const auto* const nearest =
        std::min_element(kReferenceSizes.begin(), kReferenceSizes.end(),
                         [aspect](const ReferenceSize& left, const ReferenceSize& right) {
                             return std::abs(left.aspect - aspect) < std::abs(right.aspect - aspect);
                         });
    if (nearest->aspect == aspect) return nearest->size;
    return {nearest->size.height * aspect, nearest->size.height};
}

SDL_Point TextureSizeFor(const CanvasSize& canvas, float scale, int maxSide) {
    if (canvas.width == 0 || canvas.height == 0) {
        return {UI::Truncate(canvas.width), UI::Truncate(canvas.height)};
    }
    const double aspect = canvas.width / canvas.height;
    const int limit = maxSide > 0 ? std::min(maxSide, kMaxSide) : kMaxSide;
    SDL_Point size{};
    if (canvas.width > canvas.height) {
        size.y = ShorterSide(scale * canvas.height);
        size.x = UI::Truncate(size.y * aspect);
        if (size.x > limit) size = {limit, UI::Truncate(limit / aspect)};
    } else {
        size.x = ShorterSide(scale * canvas.width);
        size.y = UI::Truncate(size.x / aspect);
        if (size.y > limit) size = {UI::Truncate(limit * aspect), limit};
    }
    return {std::max(size.x, 1), std::max(size.y, 1)};
}

SDL_Rect CropOf(SDL_Point textureSize, const SDL_Rect& sourceRect, const SDL_Rect& destinationRect) {
    SDL_Point shown{sourceRect.w, sourceRect.h};
    if (shown.x == 0 && shown.y == 0) {
        shown = textureSize;
    } else if (shown.y < 1) {
        shown = {destinationRect.w, destinationRect.h};
    }
    const double ratio = shown.y == 0 ? 0 : static_cast<double>(shown.x) / shown.y;
    if (!(ratio > 0)) return {};
    const double excess = std::max(textureSize.x - textureSize.y * ratio, -kMaxOverhang);
    return {UI::Truncate(std::round(excess / 2)), 0, UI::Truncate(std::round(textureSize.x - excess)),
            textureSize.y};
}

}  // namespace Corvanta::Drawing
