#include "engine/webrtc/TransferFunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Corvanta::Engine {
namespace {

constexpr ColorTransfer kPq = ColorTransfer::SMPTEST2084;
constexpr ColorTransfer kHlg = ColorTransfer::ARIB_STD_B67;
constexpr std::array kTransfers{ColorTransfer::BT709,       ColorTransfer::Unspecified,
                                ColorTransfer::Gamma22,     ColorTransfer::Gamma28,
                                ColorTransfer::Linear,      ColorTransfer::IEC61966_2_1,
                                ColorTransfer::SMPTEST2084, ColorTransfer::ARIB_STD_B67,
                                ColorTransfer::Gamma26,     ColorTransfer::SMPTE170M};

const ColorSpace kSdr(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709,
                      ColorTransfer::IEC61966_2_1);
const ColorSpace kPqSpace(LegacyColorSpace::BT2020);
const ColorSpace kHlgSpace(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020, kHlg);

double PqOfNits(double nits) {
    return Encode(kPq, nits / 10000);
}

TEST(TransferFunctions, GiveThePublishedValuesOfPq) {
    // BT.2408 table 1 and BT.2100: 203 cd/m2 is 58 %, 1000 is 75 %, 100 is 51 %.
    EXPECT_NEAR(PqOfNits(100), 0.508, 0.0005);
    EXPECT_NEAR(PqOfNits(203), 0.581, 0.0005);
    EXPECT_NEAR(PqOfNits(1000), 0.752, 0.0005);
    EXPECT_DOUBLE_EQ(PqOfNits(10000), 1);
    EXPECT_DOUBLE_EQ(Decode(kPq, 0), 0);
}

TEST(TransferFunctions, GiveThePublishedValuesOfHlg) {
    EXPECT_DOUBLE_EQ(Decode(kHlg, 0.5), 1.0 / 12);
    EXPECT_NEAR(Decode(kHlg, 1), 1, 1e-6);
    EXPECT_NEAR(Encode(kHlg, 1), 1, 1e-6);
    // BT.2408: HLG's reference white, 75 %, is 203 cd/m2 on a display of 1000, which is 58 % PQ.
    const Rgb white = ExactTransfer(kHlgSpace, kPqSpace).Convert({0.75, 0.75, 0.75});
    for (const double component : white) EXPECT_NEAR(component, 0.581, 0.0005);
    const Rgb peak = ExactTransfer(kHlgSpace, kPqSpace).Convert({1, 1, 1});
    for (const double component : peak) EXPECT_NEAR(component, PqOfNits(1000), 1e-6);
}

TEST(TransferFunctions, DecodeWhatTheyEncode) {
    for (const ColorTransfer transfer : kTransfers) {
        for (int i = 0; i <= 100; ++i) {
            const double light = i / 100.0;
            EXPECT_NEAR(Decode(transfer, Encode(transfer, light)), light, 1e-6) << static_cast<int>(transfer);
        }
    }
}

TEST(TransferFunctions, MapBlackToBlackAndWhiteToWhite) {
    for (const ColorTransfer transfer : kTransfers) {
        EXPECT_DOUBLE_EQ(Decode(transfer, 0), 0) << static_cast<int>(transfer);
        EXPECT_NEAR(Decode(transfer, 1), 1, 1e-6) << static_cast<int>(transfer);
    }
    EXPECT_NEAR(Decode(ColorTransfer::IEC61966_2_1, 0.5), 0.21404, 1e-5);
    EXPECT_NEAR(Decode(ColorTransfer::Gamma22, 0.5), std::pow(0.5, 2.2), 1e-12);
    EXPECT_NEAR(Decode(ColorTransfer::Log, 0.5), 0.1, 1e-12);
    EXPECT_NEAR(Decode(static_cast<ColorTransfer>(17), 1), 52.37 / 48, 1e-12);
}

TEST(TransferFunctions, ConvertPrimariesByTheMatrixOfBt2407) {
    const Matrix3 matrix = MakePrimariesMatrix(ColorPrimaries::BT2020, ColorPrimaries::BT709);
    constexpr Matrix3 kPublished{
        {{1.6605, -0.5876, -0.0728}, {-0.1246, 1.1329, -0.0083}, {-0.0182, -0.1006, 1.1187}}};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) EXPECT_NEAR(matrix[i][j], kPublished[i][j], 5e-5);
    }
}

TEST(TransferFunctions, KeepWhiteBetweenAllPrimaries) {
    for (const int from : {1, 2, 4, 5, 6, 7, 8, 9, 10, 11, 12, 22, 77}) {
        for (const int to : {1, 9, 12}) {
            const Matrix3 matrix = MakePrimariesMatrix(ColorPrimaries{from}, ColorPrimaries{to});
            for (const auto& row : matrix)
                EXPECT_NEAR(row[0] + row[1] + row[2], 1, 1e-9) << from << " to " << to;
        }
    }
}

TEST(TransferFunctions, TakeUnspecifiedForBt709) {
    EXPECT_TRUE(IsSamePrimaries(ColorPrimaries::Unspecified, ColorPrimaries::BT709));
    EXPECT_TRUE(IsSameLight(ColorTransfer::Unspecified, ColorTransfer::IEC61966_2_1));
    EXPECT_FALSE(IsSameLight(ColorTransfer::Gamma22, ColorTransfer::IEC61966_2_1));
    EXPECT_FALSE(IsSameLight(kPq, kHlg));
    EXPECT_EQ(GetLumaWeights(ColorMatrix::Unspecified).red, 0.2126);
}

TEST(ToneCurve, LeavesColoursBelowTheKneeAloneAndBringsThePeakToWhite) {
    const ToneCurve curve = MakeToneCurve(kPqSpace);
    EXPECT_NEAR(curve.GetKneePq(), 1.5 * PqOfNits(203) - 0.5 * PqOfNits(1000), 1e-9);
    EXPECT_DOUBLE_EQ(curve.Apply(0.3), 0.3);
    EXPECT_NEAR(curve.Apply(PqOfNits(1000)), PqOfNits(203), 1e-9);
    EXPECT_NEAR(curve.Apply(1), PqOfNits(203), 1e-9);
}

TEST(ToneCurve, IsMonotonicAndSmoothAtTheKnee) {
    const ToneCurve curve = MakeToneCurve(kPqSpace);
    for (double pq = 0.001; pq < 0.75; pq += 0.001) EXPECT_GT(curve.Apply(pq + 0.001), curve.Apply(pq));
    const double knee = curve.GetKneePq();
    EXPECT_NEAR((curve.Apply(knee + 1e-4) - curve.Apply(knee)) / 1e-4, 1, 1e-2);
}

TEST(ToneCurve, TakesThePeakFromTheMetadata) {
    ColorSpace space = kPqSpace;
    HDRMetadata metadata;
    metadata.maxMasteringLuminanceNits = 4000;
    space.SetHDRMetadata(metadata);
    EXPECT_NEAR(MakeToneCurve(space).sourcePeakPq, PqOfNits(4000), 1e-9);
    metadata.maxContentLightLevelNits = 600;
    space.SetHDRMetadata(metadata);
    EXPECT_NEAR(MakeToneCurve(space).sourcePeakPq, PqOfNits(600), 1e-9);
    metadata.maxContentLightLevelNits = 50;
    space.SetHDRMetadata(metadata);
    EXPECT_TRUE(MakeToneCurve(space).IsIdentity());
    metadata.maxContentLightLevelNits = 1e30F;
    space.SetHDRMetadata(metadata);
    EXPECT_NEAR(MakeToneCurve(space).sourcePeakPq, 1, 1e-9);
}

TEST(ExactTransfer, ShowsDarkHdrAtItsOwnLuminance) {
    const double nits = 20;
    const Rgb out = ExactTransfer(kPqSpace, kSdr).Convert({PqOfNits(nits), PqOfNits(nits), PqOfNits(nits)});
    for (const double component : out)
        EXPECT_NEAR(Decode(ColorTransfer::IEC61966_2_1, component), nits / 203, 1e-9);
}

TEST(ExactTransfer, KeepsTheHueOfColoursOutsideTheTargetsGamut) {
    // In linear light the result lies on a line from the grey of the colour's luminance through the colour.
    const Rgb encoded{0.2, 0.45, 0.1};
    const Rgb out = ExactTransfer(kPqSpace, kSdr).Convert(encoded);
    Rgb light{};
    Rgb converted{};
    const Matrix3 matrix = MakePrimariesMatrix(ColorPrimaries::BT2020, ColorPrimaries::BT709);
    for (size_t i = 0; i < 3; ++i) light[i] = Decode(kPq, encoded[i]) * 10000 / 203;
    for (size_t i = 0; i < 3; ++i) {
        converted[i] = matrix[i][0] * light[0] + matrix[i][1] * light[1] + matrix[i][2] * light[2];
    }
    ASSERT_LT(std::min({converted[0], converted[1], converted[2]}), 0);
    const Rgb weights = GetLuminanceWeights(ColorPrimaries::BT709);
    const double grey = weights[0] * converted[0] + weights[1] * converted[1] + weights[2] * converted[2];
    Rgb shown{};
    for (size_t i = 0; i < 3; ++i) shown[i] = Decode(ColorTransfer::IEC61966_2_1, out[i]);
    const double keep = (shown[1] - grey) / (converted[1] - grey);
    EXPECT_GT(keep, 0);
    EXPECT_LT(keep, 1);
    for (size_t i = 0; i < 3; ++i) EXPECT_NEAR(shown[i], grey + keep * (converted[i] - grey), 1e-9);
}

TEST(ExactTransfer, PutsSdrWhiteAt203NitsOfHdr) {
    const Rgb out = ExactTransfer(kSdr, kPqSpace).Convert({1, 1, 1});
    for (const double component : out) EXPECT_NEAR(component, PqOfNits(203), 1e-9);
}

}  // namespace
}  // namespace Corvanta::Engine
