#include "video/SinglePicture.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

namespace Corvanta::Video {
namespace {

std::string Text(const SDL_Rect& rect) {
    std::string text = std::to_string(rect.x);
    for (const int number : {rect.y, rect.w, rect.h}) {
        text += ' ';
        text += std::to_string(number);
    }
    return text;
}

struct Row {
    PictureSize picture;
    int width = 0;
    int height = 0;
    const char* source = "";
    const char* destination = "";
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.picture.width << "x" << row.picture.height << " in " << row.width << "x" << row.height;
}

class WholePicture : public ::testing::TestWithParam<Row> {};
class FilledWindow : public ::testing::TestWithParam<Row> {};

TEST_P(WholePicture, StandsInTheMiddle) {
    const Row& row = GetParam();
    const SinglePicture place = PlaceSinglePicture(row.picture, row.width, row.height, PictureFit::Whole);
    EXPECT_EQ(Text(place.source), row.source);
    EXPECT_EQ(Text(place.destination), row.destination);
}

INSTANTIATE_TEST_SUITE_P(SinglePicture, WholePicture,
                         ::testing::Values(
                             // The window's own shape.
                             Row{{640, 360}, 1280, 720, "0 0 640 360", "0 0 1280 720"},
                             // Wider than the window, and narrower.
                             Row{{640, 360}, 640, 480, "0 0 640 360", "0 60 640 360"},
                             Row{{640, 480}, 1280, 720, "0 0 640 480", "160 0 960 720"},
                             Row{{360, 640}, 1000, 500, "0 0 360 640", "359 0 281 500"},
                             // 100 / 1.777... and 1.777... x 51 are cut, not rounded, and so are the halves.
                             Row{{1920, 1080}, 100, 100, "0 0 1920 1080", "0 22 100 56"},
                             Row{{1920, 1080}, 200, 51, "0 0 1920 1080", "55 0 90 51"},
                             Row{{1600, 900}, 1600, 1000, "0 0 1600 900", "0 50 1600 900"},
                             // Single precision: 204 times 7/3 falls just short of 476.
                             Row{{7, 3}, 478, 204, "0 0 7 3", "1 0 475 204"},
                             Row{{7, 3}, 21, 10, "0 0 7 3", "0 0 21 9"},
                             // No picture yet: 4:3.
                             Row{{0, 0}, 1280, 720, "0 0 0 0", "160 0 960 720"},
                             Row{{640, 0}, 400, 400, "0 0 640 0", "0 50 400 300"},
                             Row{{1, 1}, 1, 1, "0 0 1 1", "0 0 1 1"},
                             Row{{7680, 4320}, 1, 1, "0 0 7680 4320", "0 0 1 0"}));

TEST_P(FilledWindow, CropsTheMiddleOfThePicture) {
    const Row& row = GetParam();
    const SinglePicture place = PlaceSinglePicture(row.picture, row.width, row.height, PictureFit::Filled);
    EXPECT_EQ(Text(place.source), row.source);
    EXPECT_EQ(Text(place.destination), row.destination);
}

INSTANTIATE_TEST_SUITE_P(SinglePicture, FilledWindow,
                         ::testing::Values(Row{{640, 360}, 1280, 720, "0 0 640 360", "0 0 1280 720"},
                                           Row{{640, 360}, 640, 480, "80 0 480 360", "0 0 640 480"},
                                           Row{{640, 480}, 1280, 720, "0 60 640 360", "0 0 1280 720"},
                                           Row{{1920, 1080}, 100, 100, "420 0 1080 1080", "0 0 100 100"},
                                           Row{{100, 51}, 200, 51, "0 13 100 25", "0 0 200 51"},
                                           // Single precision: just short of 121.
                                           Row{{640, 360}, 121, 360, "260 0 120 360", "0 0 121 360"},
                                           Row{{101, 100}, 33, 100, "34 0 33 100", "0 0 33 100"},
                                           Row{{0, 0}, 1280, 720, "0 0 0 0", "0 0 1280 720"},
                                           Row{{1, 1}, 7680, 4320, "0 0 1 0", "0 0 7680 4320"}));

TEST(SinglePicture, IsNowhereInAWindowWithoutAnArea) {
    for (const PictureFit fit : {PictureFit::Whole, PictureFit::Filled}) {
        for (const SDL_Point size : {SDL_Point{0, 0}, SDL_Point{0, 720}, SDL_Point{1280, 0}, SDL_Point{-1, 5},
                                     SDL_Point{5, std::numeric_limits<int>::min()}}) {
            const SinglePicture place = PlaceSinglePicture({640, 360}, size.x, size.y, fit);
            EXPECT_EQ(Text(place.source), "0 0 0 0");
            EXPECT_EQ(Text(place.destination), "0 0 0 0");
        }
    }
}

TEST(SinglePicture, KeepsWithinTheWindowAndThePicture) {
    for (const int side : {1, 2, 3, 160, 719, 1080, 4320}) {
        for (const int width : {1, 7, 853, 1280, 7680}) {
            for (const int height : {1, 11, 480, 720, 4320}) {
                const PictureSize picture{width, side};
                const SDL_Rect whole =
                    PlaceSinglePicture(picture, height, width, PictureFit::Whole).destination;
                EXPECT_TRUE(whole.x >= 0 && whole.y >= 0 && whole.x + whole.w <= height &&
                            whole.y + whole.h <= width);
                const SDL_Rect crop = PlaceSinglePicture(picture, height, width, PictureFit::Filled).source;
                EXPECT_TRUE(crop.x >= 0 && crop.y >= 0 && crop.x + crop.w <= width &&
                            crop.y + crop.h <= side);
            }
        }
    }
}

}  // namespace
}  // namespace Corvanta::Video
