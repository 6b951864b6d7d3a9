#include "drawing/CanvasGeometry.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

namespace Corvanta::Drawing {
namespace {

constexpr float kScale = 2.0F;

void ExpectCanvas(int frameWidth, int frameHeight, double width, double height) {
    const CanvasSize size = CanvasSizeFor(frameWidth, frameHeight);
    EXPECT_EQ(size.width, width) << frameWidth << 'x' << frameHeight;
    EXPECT_EQ(size.height, height) << frameWidth << 'x' << frameHeight;
}

void ExpectTexture(const CanvasSize& canvas, int width, int height, int maxSide = 0, float scale = kScale) {
    const SDL_Point size = TextureSizeFor(canvas, scale, maxSide);
    EXPECT_EQ(size.x, width) << canvas.width << 'x' << canvas.height;
    EXPECT_EQ(size.y, height) << canvas.width << 'x' << canvas.height;
}

void ExpectCrop(const SDL_Rect& crop, const SDL_Rect& expected) {
    EXPECT_TRUE(SDL_RectEquals(&crop, &expected))
        << crop.x << ' ' << crop.y << ' ' << crop.w << ' ' << crop.h;
}

constexpr SDL_Point kLayer{2560, 1440};
constexpr SDL_Rect kDestination{7, 9, 400, 300};

TEST(CanvasGeometry, GivesAllFramesOfACommonRatioOneRoundSize) {
    for (const int height : {180, 360, 720, 1080, 2160}) ExpectCanvas(height * 16 / 9, height, 1280, 720);
    ExpectCanvas(640, 480, 1280, 960);
    ExpectCanvas(4000, 3000, 1280, 960);
    ExpectCanvas(1920, 1200, 1280, 800);
    ExpectCanvas(2560, 1080, 2560, 1080);
    ExpectCanvas(64, 27, 2560, 1080);
}

TEST(CanvasGeometry, KeepsAnOddRatioWithTheHeightOfTheNearestCommonOne) {
    ExpectCanvas(1000, 1000, 960, 960);
    ExpectCanvas(720, 1280, 540, 960);
    ExpectCanvas(1500, 1000, 1200, 800);
    ExpectCanvas(2000, 1000, 1440, 720);
    ExpectCanvas(4000, 1000, 4320, 1080);
}

TEST(CanvasGeometry, TakesTheLowerOfTwoEquallyNearRatios) {
    ExpectCanvas(76, 45, 800 * (76.0 / 45.0), 800);
    ExpectCanvas(56, 27, 720 * (56.0 / 27.0), 720);
}

TEST(CanvasGeometry, HasASizeForEveryFrame) {
    ExpectCanvas(1, 1, 960, 960);
    ExpectCanvas(8192, 8192, 960, 960);
    ExpectCanvas(8192, 1, 8192.0 * 1080, 1080);
    ExpectCanvas(1, 8192, 960.0 / 8192, 960);
    ExpectCanvas(INT_MAX, 1, 1080.0 * INT_MAX, 1080);
}

TEST(CanvasGeometry, MakesALayerTwiceTheReferenceSize) {
    ExpectTexture({1280, 720}, 2560, 1440);
    ExpectTexture({1280, 800}, 2560, 1600);
    ExpectTexture({1280, 960}, 2560, 1920);
    ExpectTexture({960, 960}, 1920, 1920);
    ExpectTexture({540, 960}, 1080, 1920);
}

TEST(CanvasGeometry, CutsOffThePartOfAPixel) {
    ExpectTexture(CanvasSizeFor(1000, 561), 2566, 1440);
    ExpectTexture(CanvasSizeFor(561, 1000), 1077, 1919);
    ExpectTexture({1280, 720.9}, 2558, 1441);
    ExpectTexture({540.9, 960}, 1081, 1918);
}

TEST(CanvasGeometry, HoldsTheShorterSideOfALayerWithinItsLimits) {
    ExpectTexture({2560, 1080}, 5120, 2160);
    ExpectTexture({4320, 1080}, 8640, 2160);
    ExpectTexture({96, 960}, 720, 7200);
    ExpectTexture({1280, 720}, 1280, 720, 0, 0.5F);
    ExpectTexture({720, 1280}, 720, 1280, 0, 0.5F);
    ExpectTexture({1280, 720}, 3840, 2160, 0, 4.0F);
    ExpectTexture({720, 1280}, 2160, 3840, 0, 4.0F);
}

TEST(CanvasGeometry, HasNoLayerWithoutACanvas) {
    ExpectTexture({0, 0}, 0, 0);
}

TEST(CanvasGeometry, ShrinksALayerToWhatTheRendererMakesAndKeepsItsRatio) {
    ExpectTexture({1280, 720}, 2048, 1152, 2048);
    ExpectTexture({4320, 1080}, 4096, 1024, 4096);
    ExpectTexture({540, 960}, 576, 1024, 1024);
    ExpectTexture({1280, 720}, 2560, 1440, 2560);
}

TEST(CanvasGeometry, NeverAsksForALayerOfGigabytes) {
    for (const int maxSide : {0, 16384, 32768, INT_MAX}) {
        ExpectTexture(CanvasSizeFor(8192, 1), 16384, 2, maxSide);
        ExpectTexture(CanvasSizeFor(1, 8192), 2, 16384, maxSide);
        ExpectTexture(CanvasSizeFor(INT_MAX, 1), 16384, 1, maxSide);
        ExpectTexture(CanvasSizeFor(1, INT_MAX), 1, 16384, maxSide);
    }
}

TEST(CanvasGeometry, ShowsTheWholeLayerOverAWholePicture) {
    ExpectCrop(CropOf(kLayer, {0, 0, 0, 0}, kDestination), {0, 0, 2560, 1440});
    ExpectCrop(CropOf(kLayer, {40, 50, 0, 0}, kDestination), {0, 0, 2560, 1440});
    ExpectCrop(CropOf(kLayer, {0, 0, 1920, 1080}, kDestination), {0, 0, 2560, 1440});
    ExpectCrop(CropOf({1999, 1001}, {0, 0, 0, 0}, kDestination), {0, 0, 1999, 1001});
}

TEST(CanvasGeometry, ShowsTheMiddleOfTheLayerOverANarrowerPicture) {
    ExpectCrop(CropOf(kLayer, {240, 0, 1440, 1080}, kDestination), {320, 0, 1920, 1440});
    ExpectCrop(CropOf({1001, 500}, {0, 0, 200, 100}, kDestination), {1, 0, 1000, 500});
}

TEST(CanvasGeometry, ReachesBesideTheLayerOverAWiderPicture) {
    ExpectCrop(CropOf(kLayer, {0, 0, 2000, 1000}, kDestination), {-160, 0, 2880, 1440});
}

TEST(CanvasGeometry, TakesTheRatioOfThePlaceWhereThePartOfThePictureHasNoHeight) {
    ExpectCrop(CropOf(kLayer, {0, 0, 100, 0}, kDestination), {320, 0, 1920, 1440});
    ExpectCrop(CropOf(kLayer, {0, 0, 100, -5}, kDestination), {320, 0, 1920, 1440});
    ExpectCrop(CropOf(kLayer, {0, 0, 0, -5}, kDestination), {320, 0, 1920, 1440});
}

TEST(CanvasGeometry, ShowsNothingWithoutARatio) {
    for (const SDL_Rect crop :
         {CropOf(kLayer, {0, 0, 100, 0}, {0, 0, 640, 0}), CropOf(kLayer, {0, 0, 100, 0}, {0, 0, 0, 0}),
          CropOf(kLayer, {0, 0, 100, 0}, {0, 0, 640, -360}), CropOf(kLayer, {0, 0, 0, 100}, kDestination),
          CropOf(kLayer, {0, 0, -100, 100}, kDestination), CropOf(kLayer, {0, 0, 1, INT_MAX}, kDestination),
          CropOf({0, 0}, {0, 0, 0, 0}, kDestination)}) {
        EXPECT_TRUE(SDL_RectEmpty(&crop)) << crop.w << ' ' << crop.h;
    }
}

TEST(CanvasGeometry, ShowsTheWholeLayerOverAPictureOfAnyWidth) {
    const SDL_Rect crop = CropOf(kLayer, {0, 0, INT_MAX, 1}, kDestination);
    EXPECT_LE(crop.x, 0);
    EXPECT_EQ(crop.h, kLayer.y);
    // SDL adds the two.
    const int64_t right = static_cast<int64_t>(crop.x) + crop.w;
    EXPECT_GE(right, kLayer.x);
    EXPECT_LE(right, INT_MAX);
}

}  // namespace
}  // namespace Corvanta::Drawing
