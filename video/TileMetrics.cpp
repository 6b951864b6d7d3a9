#include "video/TileMetrics.h"

#include <cmath>
#include <cstdlib>

#include "ui/Arithmetic.h"

namespace Corvanta::Video {
namespace {

constexpr double kDesignHeight = 160.0;
constexpr double kAvatarScaleOfAPixel = 0.00625;
// Several times the largest screen, and so small that no sum of places can overflow.
constexpr int kMostSide = 1 << 16;
constexpr int kMostDistance = 1 << 24;

[[nodiscard]] bool IsWithin(int value, int most) {
    return value >= -most && value <= most;
}

}  // namespace

int Scaled(int displayHeight, int n) {
    return UI::Truncate(std::round(displayHeight * (n / kDesignHeight)));
}

double AvatarScale(int displayHeight) {
    return displayHeight * kAvatarScaleOfAPixel;
}

bool IsShowable(const SDL_Rect& tile) {
    return tile.w > 0 && tile.h > 0 && tile.w <= kMostSide && tile.h <= kMostSide &&
           IsWithin(tile.x, kMostDistance) && IsWithin(tile.y, kMostDistance);
}

SquarePlace ConnectionButtonPlace(const SDL_Rect& tile) {
    const int size = tile.w / 10;
    const int margin = tile.w / 20;
    return {size, {tile.x + size / 2 + margin, tile.y + tile.h - size / 2 - margin}};
}

int ConnectionButtonWidth(const SDL_Rect& tile) {
    return tile.w / 20 + tile.w / 10;
}

SDL_Rect SignPlace(const SDL_Rect& tile, int xOffset) {
    const int size = tile.w / 10;
    const int margin = tile.w / 20;
    return {xOffset + tile.x + margin, tile.h + tile.y - margin - size, size, size};
}

BadgeRow::BadgeRow(const SDL_Rect& tile) : tile_(tile), height_(tile.w / 15) {}

SDL_Rect BadgeRow::Next(SDL_Point pictureSize) {
    int width = 0;
    if (pictureSize.y > 0) {
        const float shape = static_cast<float>(pictureSize.x) / static_cast<float>(pictureSize.y);
        width = UI::Truncate(shape * static_cast<float>(height_));
    }
    offset_ += height_;
    const SDL_Rect place{tile_.x - width - offset_ + tile_.w, tile_.y + tile_.h - 2 * height_, width,
                         height_};
    offset_ += width;
    return place;
}

ButtonColumn::ButtonColumn(const SDL_Rect& tile) : tile_(tile), size_(ReservedWidth(tile)) {}

SquarePlace ButtonColumn::Next() {
    y_ += tile_.w / 22;
    last_ = {tile_.x - size_ / 2 - tile_.w / 16 + tile_.w, size_ / 2 + tile_.y + y_};
    y_ += size_;
    return {size_, last_};
}

SDL_Point ButtonColumn::MenuPlace(int menuWidth) const {
    return {size_ / 2 - menuWidth + last_.x, last_.y};
}

int ReservedWidth(const SDL_Rect& tile) {
    return tile.w / 9;
}

int NameWidth(const SDL_Rect& tile) {
    return tile.w - tile.w / 16 - ReservedWidth(tile);
}

SDL_Rect Centred(const SDL_Rect& tile, SDL_Point size) {
    return {tile.x + tile.w / 2 - size.x / 2, tile.y + tile.h / 2 - size.y / 2, size.x, size.y};
}

SDL_Rect GripPlace(const SDL_Rect& tile) {
    return Centred(tile, {Scaled(tile.h, 92), Scaled(tile.h, 28)});
}

SDL_Rect LostConnectionIconPlace(const SDL_Rect& tile) {
    const int size = Scaled(tile.h, 50);
    return Centred(tile, {size, size});
}

SDL_Point LostConnectionTextPlace(const SDL_Rect& tile, int textWidth) {
    const int half = Scaled(tile.h, 50) / 2;
    return {tile.x + tile.w / 2 - textWidth / 2, Scaled(tile.h, 5) + half + tile.y + tile.h / 2};
}

}  // namespace Corvanta::Video
