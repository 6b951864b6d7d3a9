#include "video/OverlayGradient.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/video/OverlayTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;

class OverlayGradientTest : public OverlayTest {
protected:
    ~OverlayGradientTest() override { gradient.ReleaseTexture(); }

    // The alpha of each row, seen through white: what is left of it.
    [[nodiscard]] int AlphaOfRow(int row) {
        screen.Fill(0xFFFFFFFF);
        gradient.Render(Renderer(), {10, 20});
        return 255 - static_cast<int>(screen.Read().At(12, 20 + row) & 0xFFU);
    }

    OverlayGradient gradient;
};

TEST_F(OverlayGradientTest, DarkensTheLowerThirtyPercentTowardsTheFoot) {
    gradient.Resize(Renderer(), 200, 100, true);
    // truncate((row / 100 - 0.7) / 0.7 * 0.6 * 255)
    const std::pair<int, int> rows[] = {{0, 0},   {50, 0},  {70, 0},  {71, 2},
                                        {75, 10}, {80, 21}, {90, 43}, {99, 63}};
    for (const auto& [row, alpha] : rows) EXPECT_NEAR(AlphaOfRow(row), alpha, 1) << row;
}

TEST_F(OverlayGradientTest, DarkensTheUpperThirtyPercentTowardsTheHead) {
    gradient.Resize(Renderer(), 200, 100, false);
    const std::pair<int, int> rows[] = {{0, 65}, {10, 43}, {20, 21}, {30, 0}, {50, 0}, {99, 0}};
    for (const auto& [row, alpha] : rows) EXPECT_NEAR(AlphaOfRow(row), alpha, 1) << row;
}

TEST_F(OverlayGradientTest, CoversItsOwnSizeAndNothingElse) {
    gradient.Resize(Renderer(), 50, 40, true);
    screen.Fill(0xFFFFFFFF);
    gradient.Render(Renderer(), {10, 20});
    const Picture picture = screen.Read();
    EXPECT_TRUE(PixelIs(picture, 9, 59, 0xFFFFFFFF));
    EXPECT_TRUE(PixelIs(picture, 60, 59, 0xFFFFFFFF));
    EXPECT_TRUE(PixelIs(picture, 30, 60, 0xFFFFFFFF));
    EXPECT_FALSE(PixelIs(picture, 10, 59, 0xFFFFFFFF));
    EXPECT_FALSE(PixelIs(picture, 59, 59, 0xFFFFFFFF));
}

TEST_F(OverlayGradientTest, IsMadeOnceForASize) {
    Calls().Clear();
    for (int i = 0; i < 3; ++i) gradient.Resize(Renderer(), 50, 40, true);
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 1U);
    ASSERT_EQ(Calls().Count("SDL_UpdateTexture"), 1U);
    EXPECT_EQ(Calls().Of("SDL_UpdateTexture")[0].arguments[3], "200");
    EXPECT_EQ(Calls().Of("SDL_CreateTexture")[0].arguments[2], ToText(Uint32{SDL_PIXELFORMAT_ARGB8888}));
    EXPECT_EQ(Calls().Of("SDL_CreateTexture")[0].arguments[3], "1");
}

TEST_F(OverlayGradientTest, IsMadeAnewForAnotherSizeSideOrRenderer) {
    const PixelReader other{64, 64};
    gradient.Resize(Renderer(), 50, 40, true);
    Calls().Clear();
    gradient.Resize(Renderer(), 51, 40, true);
    gradient.Resize(Renderer(), 51, 41, true);
    gradient.Resize(Renderer(), 51, 41, false);
    gradient.Resize(other.Renderer(), 51, 41, false);
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 4U);
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 4U);
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
    gradient.ReleaseTexture();
}

TEST_F(OverlayGradientTest, ComesBackAfterItWasReleased) {
    gradient.Resize(Renderer(), 50, 40, true);
    gradient.ReleaseTexture();
    EXPECT_EQ(gradient.GetTexture(), nullptr);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    gradient.Resize(Renderer(), 50, 40, true);
    EXPECT_NE(gradient.GetTexture(), nullptr);
}

TEST_F(OverlayGradientTest, IsTriedAgainWhenItCouldNotBeMade) {
    Sdl().Fail("SDL_CreateTexture");
    gradient.Resize(Renderer(), 50, 40, true);
    EXPECT_EQ(gradient.GetTexture(), nullptr);
    gradient.Resize(Renderer(), 50, 40, true);
    EXPECT_NE(gradient.GetTexture(), nullptr);
}

TEST_F(OverlayGradientTest, IsNotThereForSizesThatNoTileHas) {
    constexpr int kMost = std::numeric_limits<int>::max();
    Calls().Clear();
    for (const auto& [width, height] : {std::pair{0, 40}, std::pair{40, 0}, std::pair{-1, 40},
                                        std::pair{40, -1}, std::pair{kMost, kMost}, std::pair{kMost, 1}}) {
        gradient.Resize(Renderer(), width, height, true);
        gradient.Render(Renderer(), {0, 0});
        EXPECT_EQ(gradient.GetTexture(), nullptr);
    }
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 0U);
}

}  // namespace
}  // namespace Corvanta::Video
