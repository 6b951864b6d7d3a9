#include "platform/ColorSpace.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>
#include <string_view>

namespace Corvanta {
namespace {

struct Row {
    int value;
    std::string_view primaries;
    std::string_view matrix;
    std::string_view range;
    std::string_view transfer;
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.value;
}

// Names in stream descriptions, by code point of ITU-T H.273.
constexpr std::array<Row, 25> kRows{{
    {-1, "", "", "", ""},
    {0, "", "RGB", "UNSPECIFIED", ""},
    {1, "BT709", "BT709", "LIMITED", "BT709"},
    {2, "UNSPECIFIED", "UNSPECIFIED", "FULL", "UNSPECIFIED"},
    {3, "", "", "", ""},
    {4, "BT470M", "FCC", "", "GAMMA22"},
    {5, "BT470BG", "BT470BG", "", "GAMMA28"},
    {6, "SMPTE170M", "SMPTE170M", "", "SMPTE170M"},
    {7, "SMPTE240M", "SMPTE240M", "", "SMPTE240M"},
    {8, "FILM", "YCOCG", "", "LINEAR"},
    {9, "BT2020", "BT2020_NCL", "", "LOG"},
    {10, "SMPTEST428", "BT2020_CL", "", "LOG_SQRT"},
    {11, "SMPTEST431", "", "", "IEC61966_2_4"},
    {12, "SMPTEST432", "CDNCLS", "", ""},
    {13, "", "CDCLS", "", "IEC61966_2_1"},
    {14, "", "BT2100_ICTCP", "", "BT2020_10"},
    {15, "", "", "", "BT2020_12"},
    {16, "", "", "", "SMPTEST2084"},
    {17, "", "", "", ""},
    {18, "", "", "", "ARIB_STD_B67"},
    {19, "", "", "", "GAMMA26"},
    {20, "", "", "", ""},
    {21, "", "", "", ""},
    {22, "JEDECP22", "", "", ""},
    {23, "", "", "", ""},
}};

class ColorSpaceNames : public ::testing::TestWithParam<Row> {};

TEST_P(ColorSpaceNames, AreThoseOfStreamDescriptions) {
    const Row& row = GetParam();
    EXPECT_EQ(GetName(static_cast<ColorPrimaries>(row.value)), row.primaries);
    EXPECT_EQ(GetName(static_cast<ColorMatrix>(row.value)), row.matrix);
    EXPECT_EQ(GetName(static_cast<ColorRange>(row.value)), row.range);
    EXPECT_EQ(GetName(static_cast<ColorTransfer>(row.value)), row.transfer);
}

INSTANTIATE_TEST_SUITE_P(Rows, ColorSpaceNames, ::testing::ValuesIn(kRows), [](const auto& rowInfo) {
    return rowInfo.param.value < 0 ? std::string("Negative") : "Value" + std::to_string(rowInfo.param.value);
});

TEST(ColorSpace, StartsWithEverythingUnspecified) {
    const ColorSpace colorSpace;
    EXPECT_EQ(colorSpace.GetPrimaries(), ColorPrimaries::Unspecified);
    EXPECT_EQ(colorSpace.GetTransfer(), ColorTransfer::Unspecified);
    EXPECT_EQ(colorSpace.GetMatrix(), ColorMatrix::Unspecified);
    EXPECT_EQ(colorSpace.GetRange(), ColorRange::Unspecified);
    EXPECT_FALSE(colorSpace.GetHDRMetadata().has_value());
}

TEST(ColorSpace, OfLegacyBt709IsLimitedBt709Throughout) {
    EXPECT_EQ(ColorSpace(LegacyColorSpace::BT709), ColorSpace(ColorMatrix::BT709, ColorRange::Limited,
                                                              ColorPrimaries::BT709, ColorTransfer::BT709));
}

TEST(ColorSpace, OfLegacyBt2020IsLimitedBt2020UnderPq) {
    EXPECT_EQ(ColorSpace(LegacyColorSpace::BT2020),
              ColorSpace(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                         ColorTransfer::SMPTEST2084));
}

TEST(ColorSpace, DiffersWhenAnyMemberDiffers) {
    const ColorSpace base(LegacyColorSpace::BT709);
    EXPECT_NE(base,
              ColorSpace(ColorMatrix::SMPTE170M, base.GetRange(), base.GetPrimaries(), base.GetTransfer()));
    EXPECT_NE(base, ColorSpace(base.GetMatrix(), ColorRange::Full, base.GetPrimaries(), base.GetTransfer()));
    EXPECT_NE(base,
              ColorSpace(base.GetMatrix(), base.GetRange(), ColorPrimaries::BT2020, base.GetTransfer()));
    EXPECT_NE(base, ColorSpace(base.GetMatrix(), base.GetRange(), base.GetPrimaries(),
                               ColorTransfer::IEC61966_2_1));
}

TEST(ColorSpace, ComparesHdrMetadataToo) {
    const ColorSpace plain(LegacyColorSpace::BT2020);
    ColorSpace described = plain;
    described.SetHDRMetadata(HDRMetadata{.maxContentLightLevelNits = 1000});
    EXPECT_NE(plain, described);
    ColorSpace same = plain;
    same.SetHDRMetadata(HDRMetadata{.maxContentLightLevelNits = 1000});
    EXPECT_EQ(described, same);
}

TEST(ColorSpace, KeepsAValueThatHasNoName) {
    const ColorSpace colorSpace(static_cast<ColorMatrix>(99), ColorRange::Full,
                                static_cast<ColorPrimaries>(77), static_cast<ColorTransfer>(12));
    EXPECT_EQ(static_cast<int>(colorSpace.GetMatrix()), 99);
    EXPECT_EQ(static_cast<int>(colorSpace.GetPrimaries()), 77);
    EXPECT_EQ(static_cast<int>(colorSpace.GetTransfer()), 12);
}

}  // namespace
}  // namespace Corvanta
