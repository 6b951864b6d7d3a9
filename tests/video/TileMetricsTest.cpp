#include "video/TileMetrics.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/ui/ControlSurroundings.h"

namespace Corvanta::Video {
namespace {

constexpr SDL_Rect kDesign{20, 30, 213, 160};
constexpr SDL_Rect kLarge{-5, 7, 640, 480};
constexpr SDL_Rect kTiny{3, 4, 1, 1};

TEST(TileMetrics, ScalesALengthOfTheDesignWithTheHeightAndRoundsHalvesAwayFromZero) {
    const struct {
        int height, n, expected;
    } rows[] = {{160, 11, 11}, {320, 11, 22},   {80, 11, 6},    {80, 9, 5},   {80, 1, 1},
                {79, 1, 0},    {240, 21, 32},   {213, 92, 122}, {1, 50, 0},   {0, 50, 0},
                {2, 50, 1},    {-160, 11, -11}, {4320, 9, 243}, {100, 14, 9}, {120, 5, 4}};
    for (const auto& row : rows)
        EXPECT_EQ(Scaled(row.height, row.n), row.expected) << row.height << ' ' << row.n;
    EXPECT_EQ(Scaled(std::numeric_limits<int>::max(), 320), std::numeric_limits<int>::max());
}

TEST(TileMetrics, ScalesTheAvatarByTheSameHeight) {
    EXPECT_DOUBLE_EQ(AvatarScale(160), 1.0);
    EXPECT_DOUBLE_EQ(AvatarScale(240), 1.5);
    EXPECT_DOUBLE_EQ(AvatarScale(0), 0.0);
}

TEST(TileMetrics, TakesOnlyTilesThatAWindowCouldShow) {
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    EXPECT_TRUE(IsShowable(kDesign));
    EXPECT_TRUE(IsShowable(kTiny));
    EXPECT_TRUE(IsShowable({-10000, -10000, 7680, 4320}));
    for (const SDL_Rect& rect :
         {SDL_Rect{0, 0, 0, 160}, SDL_Rect{0, 0, 160, 0}, SDL_Rect{0, 0, -1, 160},
          SDL_Rect{0, 0, 160, kLeast}, SDL_Rect{0, 0, kMost, 160}, SDL_Rect{0, 0, 160, kMost},
          SDL_Rect{kMost, 0, 160, 160}, SDL_Rect{0, kLeast, 160, 160}}) {
        EXPECT_FALSE(IsShowable(rect)) << rect;
    }
}

TEST(TileMetrics, PutsTheConnectionButtonIntoTheBottomLeftCorner) {
    const struct {
        SDL_Rect tile;
        int size;
        SDL_Point centre;
        int width;
    } rows[] = {{kDesign, 21, {40, 170}, 31}, {kLarge, 64, {59, 423}, 96}, {kTiny, 0, {3, 5}, 0}};
    for (const auto& row : rows) {
        const SquarePlace place = ConnectionButtonPlace(row.tile);
        EXPECT_EQ(place.size, row.size) << row.tile;
        EXPECT_EQ(place.centre, row.centre) << row.tile;
        EXPECT_EQ(ConnectionButtonWidth(row.tile), row.width) << row.tile;
    }
}

TEST(TileMetrics, PutsTheSignRightOfTheConnectionButton) {
    EXPECT_EQ(SignPlace(kDesign, 0), (SDL_Rect{30, 159, 21, 21}));
    EXPECT_EQ(SignPlace(kDesign, 31), (SDL_Rect{61, 159, 21, 21}));
    EXPECT_EQ(SignPlace(kLarge, 96), (SDL_Rect{123, 391, 64, 64}));
    EXPECT_EQ(SignPlace(kTiny, 0), (SDL_Rect{3, 5, 0, 0}));
}

TEST(TileMetrics, SetsBadgesFromTheRightWithTheirHeightBetweenThem) {
    BadgeRow row(kDesign);
    EXPECT_EQ(row.Next({16, 16}), (SDL_Rect{205, 162, 14, 14}));
    EXPECT_EQ(row.Next({32, 16}), (SDL_Rect{163, 162, 28, 14}));
    // 14 * 10 / 36, truncated.
    EXPECT_EQ(row.Next({10, 36}), (SDL_Rect{146, 162, 3, 14}));
}

TEST(TileMetrics, LeavesTheGapOfABadgeThatHasNoPicture) {
    BadgeRow row(kDesign);
    EXPECT_EQ(row.Next({0, 0}), (SDL_Rect{219, 162, 0, 14}));
    EXPECT_EQ(row.Next({16, 16}), (SDL_Rect{191, 162, 14, 14}));
}

TEST(TileMetrics, SetsButtonsBelowEachOtherAndTheMenuBesideTheLast) {
    ButtonColumn column(kDesign);
    SquarePlace place = column.Next();
    EXPECT_EQ(place.size, 23);
    EXPECT_EQ(place.centre, (SDL_Point{209, 50}));
    EXPECT_EQ(column.MenuPlace(140), (SDL_Point{80, 50}));
    place = column.Next();
    EXPECT_EQ(place.centre, (SDL_Point{209, 82}));
    EXPECT_EQ(column.MenuPlace(140), (SDL_Point{80, 82}));

    ButtonColumn large(kLarge);
    place = large.Next();
    EXPECT_EQ(place.size, 71);
    EXPECT_EQ(place.centre, (SDL_Point{560, 71}));
    EXPECT_EQ(large.MenuPlace(420), (SDL_Point{175, 71}));
}

TEST(TileMetrics, KeepsTheButtonColumnFreeOfTheName) {
    EXPECT_EQ(ReservedWidth(kDesign), 23);
    EXPECT_EQ(NameWidth(kDesign), 177);
    EXPECT_EQ(ReservedWidth(kLarge), 71);
    EXPECT_EQ(NameWidth(kLarge), 529);
    EXPECT_EQ(NameWidth(kTiny), 1);
}

TEST(TileMetrics, CentresWithTruncatingHalves) {
    EXPECT_EQ(Centred(kDesign, {31, 13}), (SDL_Rect{111, 104, 31, 13}));
    EXPECT_EQ(GripPlace(kDesign), (SDL_Rect{80, 96, 92, 28}));
    EXPECT_EQ(GripPlace(kLarge), (SDL_Rect{177, 205, 276, 84}));
    EXPECT_EQ(LostConnectionIconPlace(kDesign), (SDL_Rect{101, 85, 50, 50}));
    EXPECT_EQ(LostConnectionIconPlace(kLarge), (SDL_Rect{240, 172, 150, 150}));
}

TEST(TileMetrics, PutsTheWordsOfALostConnectionBelowItsIcon) {
    EXPECT_EQ(LostConnectionTextPlace(kDesign, 101), (SDL_Point{76, 140}));
    EXPECT_EQ(LostConnectionTextPlace(kLarge, 300), (SDL_Point{165, 337}));
}

}  // namespace
}  // namespace Corvanta::Video
