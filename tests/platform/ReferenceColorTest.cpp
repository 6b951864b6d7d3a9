#include "tests/fake_platform/ReferenceColor.h"

#include <gtest/gtest.h>

namespace Corvanta::Testing {
namespace {

TEST(ReferenceColor, GivesThePublishedSamplesOfBt709Bars) {
    EXPECT_EQ(ExactYuv(1, 1, 1, ColorMatrix::BT709, ColorRange::Limited, 8), (Yuv{235, 128, 128}));
    EXPECT_EQ(ExactYuv(1, 0, 0, ColorMatrix::BT709, ColorRange::Limited, 8), (Yuv{63, 102, 240}));
    EXPECT_EQ(ExactYuv(0, 0, 1, ColorMatrix::BT709, ColorRange::Limited, 8), (Yuv{32, 240, 118}));
    EXPECT_EQ(ExactYuv(0, 0, 0, ColorMatrix::BT709, ColorRange::Limited, 10), (Yuv{64, 512, 512}));
    EXPECT_EQ(ExactYuv(1, 1, 1, ColorMatrix::BT709, ColorRange::Limited, 10), (Yuv{940, 512, 512}));
}

TEST(ReferenceColor, UsesTheWholeRangeWhenTheRangeIsFull) {
    EXPECT_EQ(ExactYuv(1, 1, 1, ColorMatrix::BT2020NCL, ColorRange::Full, 8), (Yuv{255, 128, 128}));
    EXPECT_EQ(ExactYuv(0, 0, 0, ColorMatrix::BT2020NCL, ColorRange::Full, 10), (Yuv{0, 512, 512}));
}

TEST(ReferenceColor, BringsEveryBarBackInEveryMatrixRangeAndDepth) {
    for (const ColorMatrix matrix :
         {ColorMatrix::BT709, ColorMatrix::SMPTE170M, ColorMatrix::BT2020NCL, ColorMatrix::SMPTE240M}) {
        for (const ColorRange range : {ColorRange::Limited, ColorRange::Full}) {
            for (const int bits : {8, 10}) {
                for (const auto& bar : kTestBars) {
                    const Yuv yuv = ExactYuv(bar[0], bar[1], bar[2], matrix, range, bits);
                    const uint32_t expected = 0xFF000000U | (bar[0] > 0 ? 0xFF0000U : 0U) |
                                              (bar[1] > 0 ? 0xFF00U : 0U) | (bar[2] > 0 ? 0xFFU : 0U);
                    EXPECT_LE(MaxDifference(ExactArgb(yuv, matrix, range, bits), expected), 2);
                }
            }
        }
    }
}

}  // namespace
}  // namespace Corvanta::Testing
