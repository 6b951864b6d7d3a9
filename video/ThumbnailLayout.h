// Where the tiles of a wall stand: plain arithmetic of the layout in use, in logical pixels. Guarded by the
// wall that owns it.
#pragma once

#include <SDL.h>

namespace Corvanta::Video {

// Any other value is laid out as a strip.
enum class ThumbnailLayoutMode : int { Strip = 0, Column = 1, Grid = 2 };

// The columns to ask for when a wall of its own window takes that layout.
[[nodiscard]] int DetachedColumns(ThumbnailLayoutMode mode, int tileCount);

class ThumbnailLayout final {
public:
    static constexpr int kMinTileWidth = 213;
    static constexpr int kMinTileHeight = 160;
    // Of a page of the grid, in either direction.
    static constexpr int kMaxPerSide = 3;

    // The tile goes back to its base size. columns: a wish, for the grid alone.
    void SetMode(ThumbnailLayoutMode mode, int columns);
    [[nodiscard]] ThumbnailLayoutMode GetMode() const { return mode_; }
    [[nodiscard]] bool IsVertical() const {
        return mode_ == ThumbnailLayoutMode::Column || mode_ == ThumbnailLayoutMode::Grid;
    }

    // The one place that shapes a page: at most kMaxPerSide by kMaxPerSide, no more columns than tiles.
    void SetColumns(int wanted);
    void SetTileCount(int count) { tileCount_ = count; }
    void SetAreaWidth(int width) { areaWidth_ = width; }
    void SetAreaHeight(int height) { areaHeight_ = height; }
    // Added to every tile's y; negative while the strip slides.
    void SetYOffset(int offset) { yOffset_ = offset; }
    void SetTileSize(int width, int height);
    // From which the tiles of a grid grow to fill the area. Sides of at least 1.
    void SetBaseTileSize(int width, int height);

    // Once a drawing: the tile's size, and for a grid also its page, for the present area. The width is
    // filled first, then the height takes what remains; columns are given up only when the page has become
    // wider than viewWidth. aspect: width over height of a tile. Nothing without tiles.
    void Compute(float aspect, int viewWidth);

    // Of the tile at that place of the combined list; empty without tiles.
    [[nodiscard]] SDL_Rect TileRect(int index, int scrollOffset) const;
    // Of all tiles along the scrolling direction.
    [[nodiscard]] int TotalExtent() const;
    // Whether it touches the area or the margin of one tile around it.
    [[nodiscard]] bool IsNearArea(const SDL_Rect& rect) const;
    // The least that a window needs for so many tiles.
    [[nodiscard]] int MinimumWidth(int tileCount) const;
    [[nodiscard]] int MinimumHeight(int tileCount) const;

    [[nodiscard]] int GetTileWidth() const { return tileWidth_; }
    [[nodiscard]] int GetTileHeight() const { return tileHeight_; }
    [[nodiscard]] int GetBaseTileWidth() const { return baseTileWidth_; }
    [[nodiscard]] int GetBaseTileHeight() const { return baseTileHeight_; }
    [[nodiscard]] int GetAreaWidth() const { return areaWidth_; }
    [[nodiscard]] int GetAreaHeight() const { return areaHeight_; }
    [[nodiscard]] int GetYOffset() const { return yOffset_; }
    [[nodiscard]] int GetColumns() const { return columns_; }
    [[nodiscard]] int GetRows() const { return rows_; }
    [[nodiscard]] float GetTilesPerPage() const { return tilesPerPage_; }

private:
    void FitGrid(float aspect, int viewWidth);
    // Grows the base tile so that the page fills the area's height; false when it fills it already.
    bool FillHeight(float aspect);

    ThumbnailLayoutMode mode_ = ThumbnailLayoutMode::Strip;
    int tileWidth_ = kMinTileWidth;
    int tileHeight_ = kMinTileHeight;
    int yOffset_ = 0;
    int areaWidth_ = 0;
    int areaHeight_ = 0;
    int tileCount_ = 0;
    int columns_ = 1;
    int rows_ = 1;
    float tilesPerPage_ = 1.0F;
    int baseTileWidth_ = kMinTileWidth;
    int baseTileHeight_ = kMinTileHeight;
};

}  // namespace Corvanta::Video
