#include "video/TextureFormat.h"

#include <gtest/gtest.h>

#include "platform/SDLAdditions.h"

namespace Corvanta::Video {
namespace {

[[nodiscard]] Uint32 FormatFor(int type, int subsampling) {
    return TextureFormatFor(static_cast<VideoFrameBufferType>(type),
                            static_cast<SubsamplingMode>(subsampling));
}

TEST(TextureFormat, ShowsRgbAsArgb8888WhateverTheSubsampling) {
    for (int mode = -1; mode < 5; ++mode) EXPECT_EQ(FormatFor(0, mode), SDL_PIXELFORMAT_ARGB8888);
}

TEST(TextureFormat, GoesByTheSubsamplingOfEightBitPlanesAndNotByTheirType) {
    for (const int type : {1, 2, 3}) {
        EXPECT_EQ(FormatFor(type, 0), SDL_PIXELFORMAT_IYUV);
        EXPECT_EQ(FormatFor(type, 1), kPixelFormatI422);
        EXPECT_EQ(FormatFor(type, 2), kPixelFormatI444);
    }
}

TEST(TextureFormat, GoesByTheSubsamplingOfSixteenBitPlanesAndNotByTheirType) {
    for (const int type : {4, 5, 6}) {
        EXPECT_EQ(FormatFor(type, 0), kPixelFormatI010);
        EXPECT_EQ(FormatFor(type, 1), kPixelFormatI210);
        EXPECT_EQ(FormatFor(type, 2), kPixelFormatI410);
    }
}

TEST(TextureFormat, FallsBackToIyuvForAnUnknownSubsampling) {
    for (int type = 1; type < 7; ++type) {
        for (const int mode : {-1, 3, 77}) EXPECT_EQ(FormatFor(type, mode), SDL_PIXELFORMAT_IYUV);
    }
}

TEST(TextureFormat, HasNoneForAnUnknownType) {
    for (const int type : {-1, 7, 8, 1000}) {
        for (int mode = 0; mode < 3; ++mode) EXPECT_EQ(FormatFor(type, mode), SDL_PIXELFORMAT_UNKNOWN);
    }
}

TEST(TextureFormat, NamesThePlanarFormatsByTheirFourLetters) {
    EXPECT_EQ(kPixelFormatI422, SDL_FOURCC('I', '4', '2', '2'));
    EXPECT_EQ(kPixelFormatI444, SDL_FOURCC('I', '4', '4', '4'));
    EXPECT_EQ(kPixelFormatI010, SDL_FOURCC('I', '0', '1', '0'));
    EXPECT_EQ(kPixelFormatI210, SDL_FOURCC('I', '2', '1', '0'));
    EXPECT_EQ(kPixelFormatI410, SDL_FOURCC('I', '4', '1', '0'));
}

}  // namespace
}  // namespace Corvanta::Video
