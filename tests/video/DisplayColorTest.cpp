#include "video/DisplayColor.h"

#include <gtest/gtest.h>

#include "platform/SDLAdditions.h"

namespace Corvanta::Video {
namespace {

[[nodiscard]] ColorSpace Colors(int primaries, int transfer) {
    return {ColorMatrix::BT709, ColorRange::Limited, static_cast<ColorPrimaries>(primaries),
            static_cast<ColorTransfer>(transfer)};
}

// Outputs that are not HDR, whatever number they have.
constexpr int kSdrOutputs[] = {kColorSpaceSdr, -1, 2};

TEST(DisplayColor, NeverConvertsBt709UnderItsOwnTransferOrSrgb) {
    for (const int output : {0, 1, 2}) {
        EXPECT_TRUE(IsShownUnconverted(Colors(1, 1), output));
        EXPECT_TRUE(IsShownUnconverted(Colors(1, 13), output));
    }
}

TEST(DisplayColor, ShowsPqAsItIsOnAnHdrOutputOnly) {
    EXPECT_TRUE(IsShownUnconverted(Colors(9, 16), kColorSpaceBt2020));
    for (const int output : kSdrOutputs) EXPECT_FALSE(IsShownUnconverted(Colors(9, 16), output));
}

TEST(DisplayColor, ConvertsEveryOtherPairOnEveryOutput) {
    for (int primaries = 0; primaries < 24; ++primaries) {
        for (int transfer = 0; transfer < 24; ++transfer) {
            const bool sdrPair = primaries == 1 && (transfer == 1 || transfer == 13);
            const bool hdrPair = primaries == 9 && transfer == 16;
            if (sdrPair || hdrPair) continue;
            EXPECT_FALSE(IsShownUnconverted(Colors(primaries, transfer), 0)) << primaries << ' ' << transfer;
            EXPECT_FALSE(IsShownUnconverted(Colors(primaries, transfer), 1)) << primaries << ' ' << transfer;
        }
    }
}

TEST(DisplayColor, LooksAtNeitherMatrixNorRange) {
    const ColorSpace space{ColorMatrix::SMPTE170M, ColorRange::Full, ColorPrimaries::BT709,
                           ColorTransfer::BT709};
    EXPECT_TRUE(IsShownUnconverted(space, kColorSpaceSdr));
}

TEST(DisplayColor, BringsPqAndHlgToPqOnAnHdrOutput) {
    for (const int primaries : {1, 9}) {
        EXPECT_EQ(ConversionTarget(Colors(primaries, 16), kColorSpaceBt2020), hdrTargetColorSpace);
        EXPECT_EQ(ConversionTarget(Colors(primaries, 18), kColorSpaceBt2020), hdrTargetColorSpace);
    }
}

TEST(DisplayColor, BringsEverythingElseToSdr) {
    for (const int output : kSdrOutputs) {
        EXPECT_EQ(ConversionTarget(Colors(9, 16), output), sdrTargetColorSpace);
        EXPECT_EQ(ConversionTarget(Colors(9, 18), output), sdrTargetColorSpace);
    }
    EXPECT_EQ(ConversionTarget(Colors(6, 6), kColorSpaceBt2020), sdrTargetColorSpace);
    EXPECT_EQ(ConversionTarget(Colors(9, 14), kColorSpaceBt2020), sdrTargetColorSpace);
}

TEST(DisplayColor, TargetsAreLimitedRange709UnderSrgbAnd2020UnderPq) {
    EXPECT_EQ(sdrTargetColorSpace,
              ColorSpace(static_cast<ColorMatrix>(1), static_cast<ColorRange>(1),
                         static_cast<ColorPrimaries>(1), static_cast<ColorTransfer>(13)));
    EXPECT_EQ(hdrTargetColorSpace,
              ColorSpace(static_cast<ColorMatrix>(9), static_cast<ColorRange>(1),
                         static_cast<ColorPrimaries>(9), static_cast<ColorTransfer>(16)));
}

TEST(DisplayColor, TargetsNeedNoFurtherConversion) {
    EXPECT_TRUE(IsShownUnconverted(sdrTargetColorSpace, kColorSpaceSdr));
    EXPECT_TRUE(IsShownUnconverted(sdrTargetColorSpace, kColorSpaceBt2020));
    EXPECT_TRUE(IsShownUnconverted(hdrTargetColorSpace, kColorSpaceBt2020));
}

}  // namespace
}  // namespace Corvanta::Video
