#include "video/PictureGeometry.h"

#include <gtest/gtest.h>

namespace Corvanta::Video {
namespace {

void ExpectCrop(PictureSize size, const SDL_Rect& expected) {
    const SDL_Rect crop = CenterCropOf(size);
    EXPECT_TRUE(SDL_RectEquals(&crop, &expected)) << crop.x << ' ' << crop.y << ' ' << crop.w << ' ' << crop.h
                                                  << " of " << size.width << 'x' << size.height;
}

TEST(PictureGeometry, HasTheThumbnailsShapeWhereASideIsMissing) {
    EXPECT_EQ(AspectRatioOf({0, 0}), 1.3333334F);
    EXPECT_EQ(AspectRatioOf({0, 720}), 1.3333334F);
    EXPECT_EQ(AspectRatioOf({1280, 0}), 1.3333334F);
}

TEST(PictureGeometry, DividesWidthByHeightInSinglePrecision) {
    EXPECT_EQ(AspectRatioOf({1920, 1080}), 1920.0F / 1080.0F);
    EXPECT_EQ(AspectRatioOf({1, 3}), 1.0F / 3.0F);
}

TEST(PictureGeometry, CutsTheSidesOfAWidePicture) {
    ExpectCrop({1920, 1080}, {240, 0, 1440, 1080});
}

TEST(PictureGeometry, CutsTopAndBottomOfATallPicture) {
    ExpectCrop({480, 640}, {0, 140, 480, 360});
}

TEST(PictureGeometry, LeavesAPictureOfFourByThreeWhole) {
    ExpectCrop({640, 480}, {0, 0, 640, 480});
}

TEST(PictureGeometry, TruncatesWhatItCuts) {
    // 100 * 4 / 3 is 133.33, and half of the 68 that are left over is 33.5.
    ExpectCrop({201, 100}, {34, 0, 133, 100});
    ExpectCrop({200, 100}, {33, 0, 133, 100});
    // 101 * 0.75 is 75.75, and half of 26 and of 25.
    ExpectCrop({101, 101}, {0, 13, 101, 75});
    ExpectCrop({101, 100}, {0, 12, 101, 75});
}

TEST(PictureGeometry, CropsNothingOutOfNoPicture) {
    ExpectCrop({0, 0}, {0, 0, 0, 0});
    ExpectCrop({64, 0}, {0, 0, 0, 0});
    ExpectCrop({0, 64}, {0, 0, 0, 0});
}

}  // namespace
}  // namespace Corvanta::Video
