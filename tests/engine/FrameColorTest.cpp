#include "engine/webrtc/FrameColor.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {
namespace {

ColorSpace Describe(const std::string& format, int height, const std::string& fields,
                    const GstVideoColorimetry& container = {}) {
    EXPECT_TRUE(EnsureGStreamer());
    const std::string text = "video/x-raw,format=" + format + ",width=320,height=" + std::to_string(height) +
                             ",framerate=30/1" + (fields.empty() ? "" : "," + fields);
    const GstOwned<GstCaps> caps(gst_caps_from_string(text.c_str()));
    GstVideoInfo info;
    EXPECT_NE(gst_video_info_from_caps(&info, caps.get()), FALSE) << text;
    return DescribeColor(info, caps.get(), container);
}

TEST(FrameColor, TakesWhatTheStreamSays) {
    EXPECT_EQ(
        Describe("I420", 720, "colorimetry=bt709"),
        ColorSpace(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709, ColorTransfer::BT709));
    EXPECT_EQ(Describe("I420", 720, "colorimetry=(string)1:3:5:1"),
              ColorSpace(ColorMatrix::BT709, ColorRange::Full, ColorPrimaries::BT709, ColorTransfer::BT709));
    EXPECT_EQ(Describe("I420", 720, "colorimetry=bt601"),
              ColorSpace(ColorMatrix::SMPTE170M, ColorRange::Limited, ColorPrimaries::SMPTE170M,
                         ColorTransfer::SMPTE170M));
    EXPECT_EQ(Describe("I420_10LE", 720, "colorimetry=bt2100-pq"),
              ColorSpace(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                         ColorTransfer::SMPTEST2084));
    EXPECT_EQ(Describe("I420_10LE", 720, "colorimetry=bt2100-hlg"),
              ColorSpace(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                         ColorTransfer::ARIB_STD_B67));
}

TEST(FrameColor, AssumesTheUsualWhereNothingIsSaid) {
    const ColorSpace high(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709,
                          ColorTransfer::BT709);
    const ColorSpace standard(ColorMatrix::SMPTE170M, ColorRange::Limited, ColorPrimaries::BT709,
                              ColorTransfer::BT709);
    EXPECT_EQ(Describe("I420", 720, ""), high);
    EXPECT_EQ(Describe("I420", 718, ""), standard);
    EXPECT_EQ(Describe("I420", 1080, "colorimetry=(string)2:0:0:0"), high);
    EXPECT_EQ(Describe("I420", 360, "colorimetry=(string)2:0:0:0"), standard);
}

TEST(FrameColor, KeepsAFullRangeThatComesAlone) {
    EXPECT_EQ(Describe("I420", 720, "colorimetry=(string)1:0:0:0").GetRange(), ColorRange::Full);
}

TEST(FrameColor, FillsGapsFromTheContainer) {
    GstVideoColorimetry container{};
    gst_video_colorimetry_from_string(&container, "bt2100-hlg");
    EXPECT_EQ(Describe("I420_10LE", 360, "", container),
              ColorSpace(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                         ColorTransfer::ARIB_STD_B67));
    EXPECT_EQ(
        Describe("I420_10LE", 360, "colorimetry=bt709", container),
        ColorSpace(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709, ColorTransfer::BT709));
}

TEST(FrameColor, DescribesRgbPicturesAsSuch) {
    EXPECT_EQ(Describe("BGRA", 720, ""), ColorSpace(ColorMatrix::RGB, ColorRange::Full, ColorPrimaries::BT709,
                                                    ColorTransfer::IEC61966_2_1));
}

TEST(FrameColor, ReadsHdrMetadataInTheirUnits) {
    const auto color =
        Describe("I420_10LE", 720,
                 "colorimetry=bt2100-pq,mastering-display-info=(string)34000:16000:13250:34500:7500:"
                 "3000:15635:16450:10000000:50,content-light-level=(string)1000:400");
    ASSERT_TRUE(color.GetHDRMetadata().has_value());
    const HDRMetadata& metadata = *color.GetHDRMetadata();
    EXPECT_NEAR(metadata.redX, 0.68, 1e-9);
    EXPECT_NEAR(metadata.redY, 0.32, 1e-9);
    EXPECT_NEAR(metadata.greenX, 0.265, 1e-9);
    EXPECT_NEAR(metadata.greenY, 0.69, 1e-9);
    EXPECT_NEAR(metadata.blueX, 0.15, 1e-9);
    EXPECT_NEAR(metadata.blueY, 0.06, 1e-9);
    EXPECT_NEAR(metadata.whiteX, 0.3127, 1e-9);
    EXPECT_NEAR(metadata.whiteY, 0.329, 1e-9);
    EXPECT_FLOAT_EQ(metadata.maxMasteringLuminanceNits, 1000.0F);
    EXPECT_FLOAT_EQ(metadata.minMasteringLuminanceNits, 0.005F);
    EXPECT_FLOAT_EQ(metadata.maxContentLightLevelNits, 1000.0F);
    EXPECT_FLOAT_EQ(metadata.maxFrameAverageLightLevelNits, 400.0F);
    EXPECT_FALSE(Describe("I420_10LE", 720, "colorimetry=bt2100-pq").GetHDRMetadata().has_value());
}

}  // namespace
}  // namespace Corvanta::Engine
