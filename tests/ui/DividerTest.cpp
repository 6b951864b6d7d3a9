#include "ui/Divider.h"

#include <gtest/gtest.h>

#include "tests/fake_platform/PixelReader.h"

namespace Corvanta::UI {
namespace {

using Testing::AreaIs;
using Testing::PixelIs;
using Testing::PixelReader;

constexpr uint32_t kBlack = 0xFF000000;

bool DrawColourIsZero(SDL_Renderer* renderer) {
    Uint8 red = 1, green = 1, blue = 1, alpha = 1;
    SDL_GetRenderDrawColor(renderer, &red, &green, &blue, &alpha);
    return red == 0 && green == 0 && blue == 0 && alpha == 0;
}

TEST(Divider, IsDrawnAroundItsCentre) {
    const PixelReader reader(20, 20);
    Divider divider(4, 10);
    divider.colour = {10, 20, 30, 255};
    divider.Render(reader.Renderer(), {8, 9});
    const auto picture = reader.Read();
    EXPECT_TRUE(AreaIs(picture, {6, 4, 4, 10}, 0xFF0A141E));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 6, 20}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {10, 0, 10, 20}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {6, 0, 4, 4}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {6, 14, 4, 6}, kBlack));
}

TEST(Divider, TruncatesTheHalfOfAnOddSize) {
    const PixelReader reader(20, 20);
    Divider divider(3, 5);
    divider.Render(reader.Renderer(), {10, 10});
    const SDL_Rect expected{9, 8, 3, 5};
    EXPECT_TRUE(SDL_RectEquals(&divider.rect, &expected));
}

TEST(Divider, FollowsTheSizeThatItIsGiven) {
    const PixelReader reader(20, 20);
    Divider divider(2, 2);
    divider.SetWidth(6);
    divider.SetHeight(8);
    divider.Render(reader.Renderer(), {10, 10});
    const SDL_Rect expected{7, 6, 6, 8};
    EXPECT_TRUE(SDL_RectEquals(&divider.rect, &expected));
}

TEST(Divider, IsAFaintWhiteUnlessToldOtherwise) {
    const PixelReader reader(4, 4);
    SDL_SetRenderDrawBlendMode(reader.Renderer(), SDL_BLENDMODE_BLEND);
    Divider divider(4, 4);
    divider.Render(reader.Renderer(), {2, 2});
    EXPECT_TRUE(PixelIs(reader.Read(), 1, 1, 0xFF1F1F1F, 1));
}

TEST(Divider, LeavesTheDrawColourEmpty) {
    const PixelReader reader(4, 4);
    SDL_SetRenderDrawColor(reader.Renderer(), 1, 2, 3, 4);
    Divider divider(2, 2);
    divider.Render(reader.Renderer(), {2, 2});
    EXPECT_TRUE(DrawColourIsZero(reader.Renderer()));
}

TEST(Divider, IsHoveredWhereItWasDrawnAndTakesNoClick) {
    const PixelReader reader(20, 20);
    Divider divider(4, 4);
    divider.Render(reader.Renderer(), {10, 10});
    divider.OnHover({8, 8});
    EXPECT_TRUE(divider.hovered);
    EXPECT_FALSE(divider.OnClick());
}

TEST(Divider, OutlivesALostRenderer) {
    Divider divider(4, 4);
    divider.Render(nullptr, {2, 2});
    const SDL_Rect expected{0, 0, 4, 4};
    EXPECT_TRUE(SDL_RectEquals(&divider.rect, &expected));
}

}  // namespace
}  // namespace Corvanta::UI
