#include "video/OverlayGradient.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace Corvanta::Video {
namespace {

// Share of the height above the darkening, and how dark it gets.
constexpr double kClearShare = 0.7;
constexpr double kStrength = 0.6;
constexpr double kMostAlpha = 255.0;
constexpr uint32_t kAlphaShift = 24;
// 256 MiB of pixels, far beyond any tile: a wild size must cost a shade, not the process's memory.
constexpr int64_t kMostPixels = int64_t{64} << 20U;

[[nodiscard]] uint32_t ShadeOfRow(int row, int height, bool fromBottom) {
    const float share = static_cast<float>(row) / static_cast<float>(height);
    const double way = fromBottom ? share - kClearShare : 1.0 - share - kClearShare;
    const double alpha = std::clamp(way / kClearShare * kStrength, 0.0, 1.0);
    return static_cast<uint32_t>(alpha * kMostAlpha) << kAlphaShift;
}

[[nodiscard]] std::vector<uint32_t> ShadeOf(int width, int height, bool fromBottom) {
    const auto columns = static_cast<size_t>(width);
    std::vector<uint32_t> pixels(columns * static_cast<size_t>(height));
    auto row = pixels.begin();
    for (int i = 0; i < height; ++i) {
        row = std::fill_n(row, columns, ShadeOfRow(i, height, fromBottom));
    }
    return pixels;
}

}  // namespace

void OverlayGradient::Resize(SDL_Renderer* renderer, int width, int height, bool fromBottom) {
    const bool same =
        renderer == renderer_ && width == width_ && height == height_ && fromBottom == fromBottom_;
    if (same && texture_ != nullptr) return;
    ReleaseTexture();
    width_ = width;
    height_ = height;
    fromBottom_ = fromBottom;
    renderer_ = renderer;
    if (width <= 0 || height <= 0 || int64_t{width} * height > kMostPixels) return;
    texture_ =
        SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, width, height);
    if (texture_ == nullptr) return;
    SDL_SetTextureBlendMode(texture_, SDL_BLENDMODE_BLEND);
    const std::vector<uint32_t> pixels = ShadeOf(width, height, fromBottom);
    SDL_UpdateTexture(texture_, nullptr, pixels.data(), width * static_cast<int>(sizeof(uint32_t)));
}

void OverlayGradient::Render(SDL_Renderer* renderer, SDL_Point topLeft) const {
    if (texture_ == nullptr) return;
    SDL_SetTextureBlendMode(texture_, SDL_BLENDMODE_BLEND);
    const SDL_Rect destination{topLeft.x, topLeft.y, width_, height_};
    SDL_RenderCopy(renderer, texture_, nullptr, &destination);
}

void OverlayGradient::ReleaseTexture() {
    if (texture_ != nullptr) SDL_DestroyTexture(texture_);
    texture_ = nullptr;
}

}  // namespace Corvanta::Video
