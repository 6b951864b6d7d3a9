#include "engine/webrtc/FrameColor.h"

namespace Corvanta::Engine {

namespace {

constexpr int kFirstHighDefinitionHeight = 720;

// H.265 Annex D.3.28 units, which the caps keep: chromaticities in 0.00002, luminances in 0.0001 cd/m2.
constexpr double kChromaticityUnit = 0.00002;
constexpr double kLuminanceUnit = 0.0001;

std::optional<HDRMetadata> DescribeMastering(const GstCaps* caps) {
    GstVideoMasteringDisplayInfo display;
    gst_video_mastering_display_info_init(&display);
    GstVideoContentLightLevel light;
    gst_video_content_light_level_init(&light);
    const bool hasDisplay = gst_video_mastering_display_info_from_caps(&display, caps) != FALSE;
    const bool hasLight = gst_video_content_light_level_from_caps(&light, caps) != FALSE;
    if (!hasDisplay && !hasLight) return std::nullopt;

    HDRMetadata metadata;
    if (hasDisplay) {
        // The caps list red, green, blue.
        metadata.redX = display.display_primaries[0].x * kChromaticityUnit;
        metadata.redY = display.display_primaries[0].y * kChromaticityUnit;
        metadata.greenX = display.display_primaries[1].x * kChromaticityUnit;
        metadata.greenY = display.display_primaries[1].y * kChromaticityUnit;
        metadata.blueX = display.display_primaries[2].x * kChromaticityUnit;
        metadata.blueY = display.display_primaries[2].y * kChromaticityUnit;
        metadata.whiteX = display.white_point.x * kChromaticityUnit;
        metadata.whiteY = display.white_point.y * kChromaticityUnit;
        metadata.maxMasteringLuminanceNits =
            static_cast<float>(display.max_display_mastering_luminance * kLuminanceUnit);
        metadata.minMasteringLuminanceNits =
            static_cast<float>(display.min_display_mastering_luminance * kLuminanceUnit);
    }
    if (hasLight) {
        metadata.maxContentLightLevelNits = static_cast<float>(light.max_content_light_level);
        metadata.maxFrameAverageLightLevelNits = static_cast<float>(light.max_frame_average_light_level);
    }
    return metadata;
}

}  // namespace

ColorSpace DescribeColor(const GstVideoInfo& info, const GstCaps* caps,
                         const GstVideoColorimetry& container) {
    const bool isRgb = GST_VIDEO_INFO_IS_RGB(&info) != FALSE;
    // The text of the caps, since gst_video_info_from_caps fills gaps by a rule of its own, and that must not
    // pass for a fact.
    GstVideoColorimetry color{};
    const char* text = gst_structure_get_string(gst_caps_get_structure(caps, 0), "colorimetry");
    if (text != nullptr) gst_video_colorimetry_from_string(&color, text);

    if (color.primaries == GST_VIDEO_COLOR_PRIMARIES_UNKNOWN) color.primaries = container.primaries;
    if (color.primaries == GST_VIDEO_COLOR_PRIMARIES_UNKNOWN)
        color.primaries = GST_VIDEO_COLOR_PRIMARIES_BT709;
    if (color.transfer == GST_VIDEO_TRANSFER_UNKNOWN) color.transfer = container.transfer;
    if (color.transfer == GST_VIDEO_TRANSFER_UNKNOWN) {
        color.transfer = isRgb ? GST_VIDEO_TRANSFER_SRGB : GST_VIDEO_TRANSFER_BT709;
    }
    if (isRgb) {
        color.matrix = GST_VIDEO_COLOR_MATRIX_RGB;
        color.range = GST_VIDEO_COLOR_RANGE_0_255;
    } else {
        const bool saysRgb = color.matrix == GST_VIDEO_COLOR_MATRIX_RGB;
        if (saysRgb || color.matrix == GST_VIDEO_COLOR_MATRIX_UNKNOWN) color.matrix = container.matrix;
        if (color.matrix == GST_VIDEO_COLOR_MATRIX_UNKNOWN || color.matrix == GST_VIDEO_COLOR_MATRIX_RGB) {
            color.matrix = GST_VIDEO_INFO_HEIGHT(&info) >= kFirstHighDefinitionHeight
                               ? GST_VIDEO_COLOR_MATRIX_BT709
                               : GST_VIDEO_COLOR_MATRIX_BT601;
        }
        if (color.range == GST_VIDEO_COLOR_RANGE_UNKNOWN) color.range = container.range;
    }

    ColorSpace described(static_cast<ColorMatrix>(gst_video_color_matrix_to_iso(color.matrix)),
                         color.range == GST_VIDEO_COLOR_RANGE_0_255 ? ColorRange::Full : ColorRange::Limited,
                         static_cast<ColorPrimaries>(gst_video_color_primaries_to_iso(color.primaries)),
                         static_cast<ColorTransfer>(gst_video_transfer_function_to_iso(color.transfer)));
    described.SetHDRMetadata(DescribeMastering(caps));
    return described;
}

}  // namespace Corvanta::Engine
