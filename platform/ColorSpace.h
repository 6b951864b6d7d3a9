// Colour description of a picture. Members carry the code points of ITU-T H.273 (ISO/IEC 23091-2), so a value
// that a newer source sends survives the trip even where it has no enumerator or name here. Plain value type.
#pragma once

#include <optional>
#include <string_view>

namespace Corvanta {

// H.273 table 2, ColourPrimaries.
enum class ColorPrimaries : int {
    BT709 = 1,
    Unspecified = 2,
    BT470M = 4,
    BT470BG = 5,
    SMPTE170M = 6,
    SMPTE240M = 7,
    Film = 8,
    BT2020 = 9,
    SMPTEST428 = 10,
    SMPTEST431 = 11,
    SMPTEST432 = 12,
    JEDECP22 = 22
};

// H.273 table 3, TransferCharacteristics. IEC61966_2_1 is sRGB, SMPTEST2084 is PQ, ARIB_STD_B67 is HLG.
enum class ColorTransfer : int {
    BT709 = 1,
    Unspecified = 2,
    Gamma22 = 4,
    Gamma28 = 5,
    SMPTE170M = 6,
    SMPTE240M = 7,
    Linear = 8,
    Log = 9,
    LogSqrt = 10,
    IEC61966_2_4 = 11,
    IEC61966_2_1 = 13,
    BT2020_10 = 14,
    BT2020_12 = 15,
    SMPTEST2084 = 16,
    ARIB_STD_B67 = 18,
    Gamma26 = 19
};

// H.273 table 4, MatrixCoefficients.
enum class ColorMatrix : int {
    RGB = 0,
    BT709 = 1,
    Unspecified = 2,
    FCC = 4,
    BT470BG = 5,
    SMPTE170M = 6,
    SMPTE240M = 7,
    YCoCg = 8,
    BT2020NCL = 9,
    BT2020CL = 10,
    CDNCLS = 12,
    CDCLS = 13,
    BT2100ICtCp = 14
};

// Not H.273's VideoFullRangeFlag, which has no "unspecified".
enum class ColorRange : int { Unspecified = 0, Limited = 1, Full = 2 };

// The two colour spaces that the media engine could name before it spoke H.273.
enum class LegacyColorSpace : int { BT709 = 0, BT2020 = 1 };

// Static HDR metadata: SMPTE ST 2086 mastering display (chromaticities as CIE 1931 x, y; luminances in cd/m2)
// and CTA-861.3 light levels (cd/m2). Member order is part of the binary interface.
struct HDRMetadata {
    double redX = 0, redY = 0;
    double greenX = 0, greenY = 0;
    double blueX = 0, blueY = 0;
    double whiteX = 0, whiteY = 0;
    float maxContentLightLevelNits = 0;
    float maxFrameAverageLightLevelNits = 0;
    float maxMasteringLuminanceNits = 0;
    float minMasteringLuminanceNits = 0;

    bool operator==(const HDRMetadata&) const = default;
};

class ColorSpace {
public:
    // All members unspecified, no HDR metadata.
    constexpr ColorSpace() = default;

    constexpr ColorSpace(ColorMatrix matrix, ColorRange range, ColorPrimaries primaries,
                         ColorTransfer transfer)
        : primaries_(primaries), transfer_(transfer), matrix_(matrix), range_(range) {}

    // BT709 stands for 709 throughout, BT2020 for 2020 primaries and matrix under PQ; both limited range.
    explicit constexpr ColorSpace(LegacyColorSpace legacy)
        : ColorSpace(legacy == LegacyColorSpace::BT2020
                         ? ColorSpace(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                                      ColorTransfer::SMPTEST2084)
                         : ColorSpace(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709,
                                      ColorTransfer::BT709)) {}

    [[nodiscard]] constexpr ColorPrimaries GetPrimaries() const { return primaries_; }
    [[nodiscard]] constexpr ColorTransfer GetTransfer() const { return transfer_; }
    [[nodiscard]] constexpr ColorMatrix GetMatrix() const { return matrix_; }
    [[nodiscard]] constexpr ColorRange GetRange() const { return range_; }
    [[nodiscard]] constexpr const std::optional<HDRMetadata>& GetHDRMetadata() const { return hdrMetadata_; }
    constexpr void SetHDRMetadata(const std::optional<HDRMetadata>& metadata) { hdrMetadata_ = metadata; }

    // HDR metadata take part in the comparison.
    constexpr bool operator==(const ColorSpace&) const = default;

private:
    ColorPrimaries primaries_ = ColorPrimaries::Unspecified;
    ColorTransfer transfer_ = ColorTransfer::Unspecified;
    ColorMatrix matrix_ = ColorMatrix::Unspecified;
    ColorRange range_ = ColorRange::Unspecified;
    std::optional<HDRMetadata> hdrMetadata_;
};

// The names that stream descriptions carry. Empty for a value without a name.
[[nodiscard]] constexpr std::string_view GetName(ColorPrimaries primaries) {
    switch (static_cast<int>(primaries)) {
        case 1: return "BT709";
        case 2: return "UNSPECIFIED";
        case 4: return "BT470M";
        case 5: return "BT470BG";
        case 6: return "SMPTE170M";
        case 7: return "SMPTE240M";
        case 8: return "FILM";
        case 9: return "BT2020";
        case 10: return "SMPTEST428";
        case 11: return "SMPTEST431";
        case 12: return "SMPTEST432";
        case 22: return "JEDECP22";
        default: return {};
    }
}

[[nodiscard]] constexpr std::string_view GetName(ColorMatrix matrix) {
    switch (static_cast<int>(matrix)) {
        case 0: return "RGB";
        case 1: return "BT709";
        case 2: return "UNSPECIFIED";
        case 4: return "FCC";
        case 5: return "BT470BG";
        case 6: return "SMPTE170M";
        case 7: return "SMPTE240M";
        case 8: return "YCOCG";
        case 9: return "BT2020_NCL";
        case 10: return "BT2020_CL";
        case 12: return "CDNCLS";
        case 13: return "CDCLS";
        case 14: return "BT2100_ICTCP";
        default: return {};
    }
}

[[nodiscard]] constexpr std::string_view GetName(ColorRange range) {
    switch (static_cast<int>(range)) {
        case 0: return "UNSPECIFIED";
        case 1: return "LIMITED";
        case 2: return "FULL";
        default: return {};
    }
}

[[nodiscard]] constexpr std::string_view GetName(ColorTransfer transfer) {
    switch (static_cast<int>(transfer)) {
        case 1: return "BT709";
        case 2: return "UNSPECIFIED";
        case 4: return "GAMMA22";
        case 5: return "GAMMA28";
        case 6: return "SMPTE170M";
        case 7: return "SMPTE240M";
        case 8: return "LINEAR";
        case 9: return "LOG";
        case 10: return "LOG_SQRT";
        case 11: return "IEC61966_2_4";
        case 13: return "IEC61966_2_1";
        case 14: return "BT2020_10";
        case 15: return "BT2020_12";
        case 16: return "SMPTEST2084";
        case 18: return "ARIB_STD_B67";
        case 19: return "GAMMA26";
        default: return {};
    }
}

}  // namespace Corvanta
