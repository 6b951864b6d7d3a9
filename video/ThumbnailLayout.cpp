#include "video/ThumbnailLayout.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "ui/Arithmetic.h"

namespace Corvanta::Video {
namespace {

constexpr int kFewTiles = 6;
constexpr int kColumnsForFew = 2;
constexpr int kColumnsForMany = 3;

// The nearest int: an area's size is whatever the host says.
[[nodiscard]] int Narrow(int64_t value) {
    return static_cast<int>(
        std::clamp<int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

[[nodiscard]] int64_t CeilOfQuotient(int64_t dividend, int divisor) {
    return UI::Truncate(std::ceil(static_cast<float>(dividend) / static_cast<float>(std::max(divisor, 1))));
}

[[nodiscard]] int WidthFor(int height, float aspect) {
    return UI::Truncate(static_cast<float>(height) * aspect);
}

[[nodiscard]] int HeightFor(int width, float aspect) {
    return UI::Truncate(static_cast<float>(width) / aspect);
}

}  // namespace

int DetachedColumns(ThumbnailLayoutMode mode, int tileCount) {
    switch (mode) {
        case ThumbnailLayoutMode::Column: return kColumnsForMany;
        case ThumbnailLayoutMode::Grid:
            if (tileCount == 1) return 1;
            return tileCount > kFewTiles ? kColumnsForMany : kColumnsForFew;
        default: return 1;
    }
}

void ThumbnailLayout::SetMode(ThumbnailLayoutMode mode, int columns) {
    SetTileSize(baseTileWidth_, baseTileHeight_);
    mode_ = mode;
    if (mode == ThumbnailLayoutMode::Column) SetColumns(1);
    if (mode == ThumbnailLayoutMode::Grid) SetColumns(columns);
}

void ThumbnailLayout::SetColumns(int wanted) {
    columns_ = std::min(std::max(std::min(wanted, tileCount_), 1), kMaxPerSide);
    rows_ = static_cast<int>(std::min<int64_t>(CeilOfQuotient(tileCount_, columns_), kMaxPerSide));
    tilesPerPage_ = static_cast<float>(rows_ * columns_);
}

void ThumbnailLayout::SetTileSize(int width, int height) {
    tileWidth_ = width;
    tileHeight_ = height;
}

void ThumbnailLayout::SetBaseTileSize(int width, int height) {
    baseTileWidth_ = std::max(width, 1);
    baseTileHeight_ = std::max(height, 1);
}

void ThumbnailLayout::Compute(float aspect, int viewWidth) {
    if (tileCount_ <= 0) return;
    SetTileSize(baseTileWidth_, baseTileHeight_);
    if (mode_ == ThumbnailLayoutMode::Grid) FitGrid(aspect, viewWidth);
}

bool ThumbnailLayout::FillHeight(float aspect) {
    const int64_t extraHeight = areaHeight_ - static_cast<int64_t>(rows_) * baseTileHeight_;
    if (extraHeight <= 0) return false;
    tileHeight_ = Narrow(CeilOfQuotient(extraHeight, rows_) + baseTileHeight_);
    tileWidth_ = WidthFor(tileHeight_, aspect);
    return true;
}

void ThumbnailLayout::FitGrid(float aspect, int viewWidth) {
    SetColumns(areaWidth_ / baseTileWidth_);
    int64_t extraWidth = areaWidth_ - static_cast<int64_t>(columns_) * baseTileWidth_;
    if (extraWidth <= 0) {
        FillHeight(aspect);
        return;
    }
    tileWidth_ = Narrow(CeilOfQuotient(extraWidth, columns_) + baseTileWidth_);
    tileHeight_ = HeightFor(tileWidth_, aspect);
    const int64_t extraHeight = areaHeight_ - static_cast<int64_t>(tileHeight_) * rows_;
    if (extraHeight <= 0) return;
    tileHeight_ = Narrow(CeilOfQuotient(extraHeight, rows_) + tileHeight_);
    tileWidth_ = WidthFor(tileHeight_, aspect);
    while (viewWidth < static_cast<int64_t>(columns_) * tileWidth_ && columns_ >= 2) {
        SetColumns(columns_ - 1);
        if (!FillHeight(aspect)) continue;
        extraWidth = areaWidth_ - static_cast<int64_t>(tileWidth_) * columns_;
        if (extraWidth <= 0) continue;
        tileWidth_ = Narrow(CeilOfQuotient(extraWidth, columns_) + tileWidth_);
        tileHeight_ = HeightFor(tileWidth_, aspect);
    }
}

SDL_Rect ThumbnailLayout::TileRect(int index, int scrollOffset) const {
    if (tileCount_ <= 0) return {0, 0, 0, 0};
    const int64_t width = tileWidth_;
    const int64_t height = tileHeight_;
    if (!IsVertical()) {
        return {Narrow(width * index + scrollOffset), yOffset_, tileWidth_, tileHeight_};
    }
    // A page that was shaped before there was a tile has no row.
    const int rows = std::max(rows_, 1);
    const int perPage = std::max(UI::Truncate(tilesPerPage_), 1);
    const int pageIndex = index % perPage;
    const int fullRows = tileCount_ - tileCount_ % columns_;
    const int64_t x = index < fullRows ? pageIndex % columns_ * width
                                       : (fullRows + columns_ - tileCount_) * width / 2 +
                                             (static_cast<int64_t>(index) - fullRows) * width;
    int64_t y = yOffset_ + pageIndex / columns_ * height + scrollOffset;
    if (index >= perPage) y += static_cast<int64_t>(index / perPage) * rows * height;
    return {Narrow(x), Narrow(y), tileWidth_, tileHeight_};
}

int ThumbnailLayout::TotalExtent() const {
    if (tileCount_ <= 0) return 0;
    switch (mode_) {
        case ThumbnailLayoutMode::Column: return Narrow(static_cast<int64_t>(tileCount_) * tileHeight_);
        case ThumbnailLayoutMode::Grid: {
            const bool fillsAPage = static_cast<float>(tileCount_) >= tilesPerPage_;
            return Narrow((fillsAPage ? CeilOfQuotient(tileCount_, columns_) : rows_) * tileHeight_);
        }
        default: return Narrow(static_cast<int64_t>(tileCount_) * tileWidth_);
    }
}

bool ThumbnailLayout::IsNearArea(const SDL_Rect& rect) const {
    return rect.x > -tileWidth_ && rect.x < static_cast<int64_t>(areaWidth_) + tileWidth_ &&
           rect.y > -tileHeight_ && rect.y < static_cast<int64_t>(areaHeight_) + tileHeight_;
}

int ThumbnailLayout::MinimumWidth(int tileCount) const {
    switch (mode_) {
        case ThumbnailLayoutMode::Column: return kMinTileWidth;
        case ThumbnailLayoutMode::Grid: return kMinTileWidth * columns_;
        default: return Narrow(static_cast<int64_t>(tileCount) * kMinTileWidth);
    }
}

int ThumbnailLayout::MinimumHeight(int tileCount) const {
    switch (mode_) {
        case ThumbnailLayoutMode::Column: return Narrow(static_cast<int64_t>(tileCount) * kMinTileHeight);
        case ThumbnailLayoutMode::Grid: return kMinTileHeight * rows_;
        default: return kMinTileHeight;
    }
}

}  // namespace Corvanta::Video
