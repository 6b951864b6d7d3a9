#include "room/MainVideoRect.h"

#include <gtest/gtest.h>

namespace Corvanta::Room {
namespace {

constexpr float kWide = 16.0F / 9.0F;
constexpr float kThumbnail = 1.3333334F;

void ExpectRect(const SDL_Rect& rect, const SDL_Rect& expected) {
    EXPECT_TRUE(SDL_RectEquals(&rect, &expected))
        << rect.x << ' ' << rect.y << ' ' << rect.w << ' ' << rect.h << " instead of " << expected.x << ' '
        << expected.y << ' ' << expected.w << ' ' << expected.h;
}

TEST(MainVideoRect, FillsASpaceOfThePicturesShape) {
    ExpectRect(LetterboxedMainVideo({.viewWidth = 1280, .viewHeight = 720}, kWide), {0, 0, 1280, 720});
}

TEST(MainVideoRect, StandsInTheMiddleOfAWideView) {
    ExpectRect(LetterboxedMainVideo({.viewWidth = 1280, .viewHeight = 720}, kThumbnail), {160, 0, 960, 720});
}

TEST(MainVideoRect, TakesTheWholeWidthOfATallView) {
    ExpectRect(LetterboxedMainVideo({.viewWidth = 400, .viewHeight = 900}, 2.0F), {0, 350, 400, 200});
}

TEST(MainVideoRect, TruncatesWidthAndLeftEdge) {
    // 101 * 16 / 9 is 179.56, and half of the 121 that are left over is 60.5.
    ExpectRect(LetterboxedMainVideo({.viewWidth = 300, .viewHeight = 101}, kWide), {60, 0, 179, 101});
}

TEST(MainVideoRect, TruncatesHeightAndTopEdge) {
    // 301 * 9 / 16 is 169.31, and half of the 332 and of the 331 that are left over is 166 and 165.5.
    ExpectRect(LetterboxedMainVideo({.viewWidth = 301, .viewHeight = 501}, kWide), {0, 166, 301, 169});
    ExpectRect(LetterboxedMainVideo({.viewWidth = 301, .viewHeight = 500}, kWide), {0, 165, 301, 169});
}

TEST(MainVideoRect, KeepsClearOfTheBarsBelowAndTheStripAbove) {
    const MainVideoSpace space{
        .viewWidth = 1280, .viewHeight = 720, .reservedBelow = 100, .stripHeight = 160};
    // 460 lines are left: 460 * 16 / 9 is 817.78, and half of 463 is 231.5.
    ExpectRect(LetterboxedMainVideo(space, kWide), {231, 160, 817, 460});
}

TEST(MainVideoRect, IsLetterboxedBetweenStripAndBars) {
    const MainVideoSpace space{.viewWidth = 400, .viewHeight = 900, .reservedBelow = 85, .stripHeight = 160};
    // 655 lines are left for 225: 160 + 430 / 2.
    ExpectRect(LetterboxedMainVideo(space, kWide), {0, 375, 400, 225});
}

TEST(MainVideoRect, TakesTheWholeWidthWhereItWouldJustFit) {
    ExpectRect(LetterboxedMainVideo({.viewWidth = 200, .viewHeight = 100}, 2.0F), {0, 0, 200, 100});
    ExpectRect(LetterboxedMainVideo({.viewWidth = 201, .viewHeight = 100}, 2.0F), {0, 0, 200, 100});
}

TEST(MainVideoRect, FitsAlsoThePicturesThatNoSpaceHolds) {
    ExpectRect(LetterboxedMainVideo({.viewWidth = 1280, .viewHeight = 720}, 16384.0F), {0, 360, 1280, 0});
    ExpectRect(LetterboxedMainVideo({.viewWidth = 1280, .viewHeight = 720}, 1.0e30F), {0, 360, 1280, 0});
    ExpectRect(LetterboxedMainVideo({.viewWidth = 1280, .viewHeight = 720}, 1.0F / 16384.0F),
               {640, 0, 0, 720});
}

TEST(MainVideoRect, HoldsUnscaledPicturesInTheMiddleOfTheWholeView) {
    const MainVideoSpace space{.viewWidth = 1280, .viewHeight = 720, .reservedBelow = 85, .stripHeight = 160};
    ExpectRect(UnscaledMainVideo(space, {640, 360}, 1.0F), {320, 180, 640, 360});
    ExpectRect(UnscaledMainVideo(space, {641, 361}, 1.0F), {319, 179, 641, 361});
}

TEST(MainVideoRect, DividesPixelsByTheRenderersScaleAndTruncates) {
    const MainVideoSpace space{.viewWidth = 800, .viewHeight = 600};
    ExpectRect(UnscaledMainVideo(space, {1001, 501}, 2.0F), {150, 175, 500, 250});
    ExpectRect(UnscaledMainVideo(space, {1000, 500}, 1.5F), {67, 133, 666, 333});
}

TEST(MainVideoRect, LetsUnscaledPicturesHangOverTheView) {
    ExpectRect(UnscaledMainVideo({.viewWidth = 100, .viewHeight = 100}, {301, 200}, 1.0F),
               {-100, -50, 301, 200});
}

TEST(LetterboxedMainVideo, HasNoNegativeSizeBelowAStripThatIsTooTall) {
    const SDL_Rect rect =
        LetterboxedMainVideo({.viewWidth = 640, .viewHeight = 100, .stripHeight = 160}, 16.0F / 9.0F);
    EXPECT_EQ(rect.w, 0);
    EXPECT_EQ(rect.h, 0);
}

}  // namespace
}  // namespace Corvanta::Room
