#include "video/ThumbnailLayout.h"

#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

namespace Corvanta::Video {
namespace {

constexpr float kAspect = 1.3333334F;
constexpr auto kStrip = ThumbnailLayoutMode::Strip;
constexpr auto kColumn = ThumbnailLayoutMode::Column;
constexpr auto kGrid = ThumbnailLayoutMode::Grid;

struct Shape {
    int columns = 0;
    int rows = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Shape&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Shape& shape) {
    return stream << shape.columns << " x " << shape.rows << " of " << shape.width << " x " << shape.height;
}

[[nodiscard]] ThumbnailLayout MakeLayout(ThumbnailLayoutMode mode, int tiles, int areaWidth, int areaHeight) {
    ThumbnailLayout layout;
    layout.SetTileCount(tiles);
    layout.SetMode(mode, 3);
    layout.SetAreaWidth(areaWidth);
    layout.SetAreaHeight(areaHeight);
    return layout;
}

[[nodiscard]] Shape ShapeOf(const ThumbnailLayout& layout) {
    return {layout.GetColumns(), layout.GetRows(), layout.GetTileWidth(), layout.GetTileHeight()};
}

[[nodiscard]] ThumbnailLayout MakeGrid(int tiles, int areaWidth, int areaHeight, int viewWidth) {
    ThumbnailLayout layout = MakeLayout(kGrid, tiles, areaWidth, areaHeight);
    layout.Compute(kAspect, viewWidth);
    return layout;
}

[[nodiscard]] std::pair<int, int> PlaceOf(const ThumbnailLayout& layout, int index, int scroll = 0) {
    const SDL_Rect rect = layout.TileRect(index, scroll);
    return {rect.x, rect.y};
}

TEST(ThumbnailLayout, StartsAsAStripOfTilesOfTheLeastSize) {
    const ThumbnailLayout layout;
    EXPECT_EQ(layout.GetMode(), kStrip);
    EXPECT_EQ(layout.GetTileWidth(), 213);
    EXPECT_EQ(layout.GetTileHeight(), 160);
    EXPECT_FALSE(layout.IsVertical());
}

TEST(ThumbnailLayout, ShapesAPageOfAtMostThreeByThree) {
    struct Row {
        int wanted;
        int tiles;
        int columns;
        int rows;
    };
    for (const Row& row : std::vector<Row>{{1, 1, 1, 1},
                                           {3, 1, 1, 1},
                                           {2, 2, 2, 1},
                                           {3, 2, 2, 1},
                                           {2, 3, 2, 2},
                                           {3, 5, 3, 2},
                                           {2, 6, 2, 3},
                                           {3, 7, 3, 3},
                                           {3, 9, 3, 3},
                                           {3, 10, 3, 3},
                                           {1, 10, 1, 3},
                                           {36, 100, 3, 3},
                                           {0, 4, 1, 3},
                                           {-7, 4, 1, 3},
                                           {INT_MAX, INT_MAX, 3, 3},
                                           {3, 0, 1, 0}}) {
        ThumbnailLayout layout;
        layout.SetTileCount(row.tiles);
        layout.SetColumns(row.wanted);
        EXPECT_EQ(layout.GetColumns(), row.columns) << row.wanted << " wanted for " << row.tiles;
        EXPECT_EQ(layout.GetRows(), row.rows) << row.wanted << " wanted for " << row.tiles;
        EXPECT_EQ(layout.GetTilesPerPage(), static_cast<float>(row.rows * row.columns));
    }
}

TEST(ThumbnailLayout, FitsTheTilesOfAGridIntoTheArea) {
    struct Row {
        int tiles;
        int areaWidth;
        int areaHeight;
        int viewWidth;
        Shape shape;
    };
    for (const Row& row : std::vector<Row>{
             // The width first, then the height takes what remains. In single precision: in double some of
             // these heights would be a pixel less.
             {1, 640, 480, 640, {1, 1, 640, 480}},
             {1, 1280, 720, 1280, {1, 1, 1280, 960}},
             {1, 300, 600, 800, {1, 1, 800, 600}},
             {2, 1280, 720, 1280, {1, 2, 1280, 960}},
             {2, 1280, 480, 1280, {2, 1, 640, 480}},
             {5, 1280, 720, 1280, {2, 3, 640, 480}},
             {5, 1280, 720, 1440, {3, 2, 480, 360}},
             {9, 1280, 720, 1280, {3, 3, 427, 320}},
             {10, 1280, 720, 1280, {3, 3, 427, 320}},
             {100, 1280, 720, 1280, {3, 3, 427, 320}},
             // Columns are given up while the page is wider than the view.
             {9, 1280, 1200, 1280, {2, 3, 640, 480}},
             {4, 640, 1000, 1600, {2, 2, 666, 500}},
             {4, 640, 1000, 640, {1, 3, 640, 480}},
             {7, 852, 1100, 852, {1, 3, 852, 639}},
             // Exactly as wide as the view: kept.
             {9, 640, 720, 960, {3, 3, 320, 240}},
             {9, 640, 720, 959, {2, 3, 320, 240}},
             // No width to spare: the height alone decides.
             {9, 639, 480, 640, {3, 3, 213, 160}},
             {9, 639, 481, 640, {3, 3, 214, 161}},
             {3, 213, 160, 213, {1, 3, 213, 160}},
             {1, 100, 1000, 100, {1, 1, 1333, 1000}},
             // Smaller than a tile, and no area at all.
             {1, 1, 1, 1, {1, 1, 213, 160}},
             {5, 1, 1, 1, {1, 3, 213, 160}},
             {5, 0, 0, 0, {1, 3, 213, 160}},
             {5, -640, -480, -640, {1, 3, 213, 160}},
             {5, INT_MIN, INT_MIN, INT_MIN, {1, 3, 213, 160}},
             // The largest display.
             {1, 7680, 4320, 7680, {1, 1, 7680, 5760}},
             {9, 7680, 4320, 7680, {3, 3, 2560, 1920}},
             {100, 7680, 4320, 7680, {3, 3, 2560, 1920}}}) {
        const ThumbnailLayout layout = MakeGrid(row.tiles, row.areaWidth, row.areaHeight, row.viewWidth);
        EXPECT_EQ(ShapeOf(layout), row.shape) << row.tiles << " tiles in " << row.areaWidth << " x "
                                              << row.areaHeight << ", view of " << row.viewWidth;
    }
}

TEST(ThumbnailLayout, StartsEachFitFromTheBaseSize) {
    ThumbnailLayout layout = MakeGrid(1, 1280, 960, 1280);
    ASSERT_EQ(layout.GetTileWidth(), 1280);
    layout.SetAreaWidth(100);
    layout.SetAreaHeight(100);
    layout.Compute(kAspect, 100);
    EXPECT_EQ(ShapeOf(layout), (Shape{1, 1, 213, 160}));
    layout.SetBaseTileSize(426, 320);
    layout.Compute(kAspect, 100);
    EXPECT_EQ(ShapeOf(layout), (Shape{1, 1, 426, 320}));
}

TEST(ThumbnailLayout, KeepsStripAndColumnAtTheBaseSize) {
    for (const auto mode : {kStrip, kColumn}) {
        ThumbnailLayout layout = MakeLayout(mode, 5, 1280, 720);
        layout.SetTileSize(7, 8);
        layout.Compute(kAspect, 1280);
        EXPECT_EQ(layout.GetTileWidth(), 213);
        EXPECT_EQ(layout.GetTileHeight(), 160);
    }
}

TEST(ThumbnailLayout, LaysNothingOutWithoutTiles) {
    for (const auto mode : {kStrip, kColumn, kGrid}) {
        ThumbnailLayout layout = MakeLayout(mode, 0, 1280, 720);
        layout.Compute(kAspect, 1280);
        const SDL_Rect rect = layout.TileRect(0, 10);
        EXPECT_EQ(rect.w, 0);
        EXPECT_EQ(rect.h, 0);
        EXPECT_EQ(layout.TotalExtent(), 0);
    }
}

TEST(ThumbnailLayout, StandsAStripInOneRow) {
    ThumbnailLayout layout = MakeLayout(kStrip, 4, 1280, 720);
    layout.SetYOffset(-30);
    layout.Compute(kAspect, 1280);
    EXPECT_EQ(PlaceOf(layout, 0, 100), std::pair(100, -30));
    EXPECT_EQ(PlaceOf(layout, 3, 100), std::pair(739, -30));
    EXPECT_EQ(PlaceOf(layout, 1, -500), std::pair(-287, -30));
    EXPECT_EQ(layout.TotalExtent(), 852);
}

TEST(ThumbnailLayout, StandsAColumnInOneColumn) {
    ThumbnailLayout layout = MakeLayout(kColumn, 5, 300, 400);
    layout.SetYOffset(-10);
    layout.Compute(kAspect, 300);
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(PlaceOf(layout, index, -20), std::pair(0, index * 160 - 30));
    }
    EXPECT_EQ(layout.TotalExtent(), 800);
}

TEST(ThumbnailLayout, StandsAColumnThatWasShapedBeforeAnyTileCame) {
    for (const int tilesThen : {0, 1, 2, 5}) {
        ThumbnailLayout layout = MakeLayout(kColumn, tilesThen, 300, 400);
        layout.SetTileCount(7);
        layout.Compute(kAspect, 300);
        for (int index = 0; index < 7; ++index) EXPECT_EQ(PlaceOf(layout, index), std::pair(0, index * 160));
    }
}

TEST(ThumbnailLayout, CentresTheIncompleteLastRow) {
    struct Row {
        int tiles;
        int index;
        int x;
        int y;
    };
    // Tiles of 320 x 240, three columns; tiles beyond the ninth stand on further pages below.
    for (const Row& row : std::vector<Row>{{5, 0, 0, 0},
                                           {5, 2, 640, 0},
                                           {5, 3, 160, 240},
                                           {5, 4, 480, 240},
                                           {4, 3, 320, 240},
                                           {8, 6, 160, 480},
                                           {8, 7, 480, 480},
                                           {9, 6, 0, 480},
                                           {9, 8, 640, 480},
                                           {10, 8, 640, 480},
                                           {10, 9, 320, 720},
                                           {11, 9, 160, 720},
                                           {11, 10, 480, 720},
                                           {12, 9, 0, 720},
                                           {18, 17, 640, 1200},
                                           {19, 18, 320, 1440},
                                           {100, 50, 640, 3840},
                                           {100, 99, 320, 7920}}) {
        ThumbnailLayout layout = MakeLayout(kGrid, row.tiles, 960, 720);
        layout.SetTileSize(320, 240);
        EXPECT_EQ(PlaceOf(layout, row.index), std::pair(row.x, row.y)) << row.index << " of " << row.tiles;
        EXPECT_EQ(PlaceOf(layout, row.index, -77), std::pair(row.x, row.y - 77));
    }
}

TEST(ThumbnailLayout, MeasuresAGridByWholeRowsAndAtLeastAPage) {
    struct Row {
        int tiles;
        int extent;
    };
    for (const Row& row : std::vector<Row>{{1, 240},
                                           {3, 240},
                                           {4, 480},
                                           {6, 480},
                                           {7, 720},
                                           {9, 720},
                                           {10, 960},
                                           {12, 960},
                                           {13, 1200},
                                           {100, 8160}}) {
        ThumbnailLayout layout = MakeLayout(kGrid, row.tiles, 960, 720);
        layout.SetTileSize(320, 240);
        EXPECT_EQ(layout.TotalExtent(), row.extent) << row.tiles;
    }
}

TEST(ThumbnailLayout, KeepsAMarginOfOneTileAroundTheArea) {
    const ThumbnailLayout layout = MakeLayout(kStrip, 4, 1000, 200);
    const auto isNear = [&](int x, int y) { return layout.IsNearArea({x, y, 213, 160}); };
    EXPECT_TRUE(isNear(-212, 0));
    EXPECT_FALSE(isNear(-213, 0));
    EXPECT_TRUE(isNear(1212, 0));
    EXPECT_FALSE(isNear(1213, 0));
    EXPECT_TRUE(isNear(0, -159));
    EXPECT_FALSE(isNear(0, -160));
    EXPECT_TRUE(isNear(0, 359));
    EXPECT_FALSE(isNear(0, 360));
}

TEST(ThumbnailLayout, TellsTheLeastSizeOfAWindow) {
    ThumbnailLayout layout = MakeLayout(kStrip, 5, 960, 720);
    EXPECT_EQ(std::pair(layout.MinimumWidth(5), layout.MinimumHeight(5)), std::pair(1065, 160));
    layout.SetMode(kColumn, 3);
    EXPECT_EQ(std::pair(layout.MinimumWidth(5), layout.MinimumHeight(5)), std::pair(213, 800));
    layout.SetMode(kGrid, 3);
    EXPECT_EQ(std::pair(layout.MinimumWidth(5), layout.MinimumHeight(5)), std::pair(639, 320));
}

TEST(ThumbnailLayout, AsksForColumnsByTheNumberOfTilesOfADetachedWall) {
    struct Row {
        ThumbnailLayoutMode mode;
        int tiles;
        int columns;
    };
    for (const Row& row : std::vector<Row>{{kStrip, 9, 1},
                                           {kColumn, 1, 3},
                                           {kColumn, 9, 3},
                                           {kGrid, 0, 2},
                                           {kGrid, 1, 1},
                                           {kGrid, 2, 2},
                                           {kGrid, 6, 2},
                                           {kGrid, 7, 3},
                                           {kGrid, 100, 3},
                                           {static_cast<ThumbnailLayoutMode>(7), 9, 1}}) {
        EXPECT_EQ(DetachedColumns(row.mode, row.tiles), row.columns) << row.tiles;
    }
}

TEST(ThumbnailLayout, TakesAnUnknownModeForAStrip) {
    const ThumbnailLayout layout = MakeLayout(static_cast<ThumbnailLayoutMode>(9), 3, 960, 720);
    EXPECT_FALSE(layout.IsVertical());
    EXPECT_EQ(PlaceOf(layout, 2), std::pair(426, 0));
    EXPECT_EQ(layout.TotalExtent(), 639);
}

// Every area keeps the page's own rules, whatever its size.
TEST(ThumbnailLayout, NeverShrinksATileNorLetsTwoOverlap) {
    for (const int width : {-5, 0, 1, 212, 213, 214, 426, 427, 640, 1280, 1920, 3840, 7680}) {
        for (const int height : {-5, 0, 1, 159, 160, 161, 320, 480, 481, 720, 1080, 2160, 4320}) {
            for (const int tiles : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 17, 25, 100}) {
                const ThumbnailLayout layout = MakeGrid(tiles, width, height, width);
                ASSERT_GE(layout.GetTileWidth(), 213);
                // A width that was rounded up to fill the area gives a height within a pixel of its share.
                ASSERT_GE(layout.GetTileHeight(), 159);
                std::set<std::pair<int, int>> places;
                for (int index = 0; index < tiles; ++index) {
                    const SDL_Rect rect = layout.TileRect(index, 0);
                    ASSERT_GE(rect.x, 0);
                    ASSERT_EQ(rect.y % rect.h, 0);
                    ASSERT_LE(rect.x + rect.w, layout.GetColumns() * rect.w);
                    places.emplace(rect.y, rect.x);
                }
                ASSERT_EQ(places.size(), static_cast<size_t>(tiles)) << width << " x " << height;
                for (auto next = places.begin(), last = next++; next != places.end(); last = next++) {
                    ASSERT_TRUE(next->first > last->first ||
                                next->second >= last->second + layout.GetTileWidth());
                }
            }
        }
    }
}

TEST(ThumbnailLayout, SurvivesNumbersAtTheLimitsOfAnInt) {
    for (const int width : {INT_MIN, 1, INT_MAX}) {
        for (const int height : {INT_MIN, 1, INT_MAX}) {
            for (const auto mode : {kStrip, kColumn, kGrid}) {
                ThumbnailLayout layout = MakeLayout(mode, 100, width, height);
                layout.Compute(kAspect, INT_MAX);
                layout.Compute(kAspect, INT_MIN);
                (void)layout.TileRect(99, INT_MAX);
                const SDL_Rect rect = layout.TileRect(100, INT_MIN);
                (void)layout.IsNearArea(rect);
                EXPECT_GT(layout.TotalExtent(), 0);
                EXPECT_GT(layout.GetTileWidth(), 0);
            }
        }
    }
}

}  // namespace
}  // namespace Corvanta::Video
