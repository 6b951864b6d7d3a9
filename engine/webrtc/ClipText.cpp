#include "engine/webrtc/ClipText.h"

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/video/video.h>

#include <algorithm>
#include <atomic>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr int kBoxWidth = 1024;
constexpr int kMargin = 8;
constexpr GstClockTime kPatience = 3 * GST_SECOND;
constexpr uint8_t kBlack = 16;
constexpr int kWhiteOverBlack = 219;

void LogOnce() {
    static std::atomic<bool> wasLogged = false;
    if (!wasLogged.exchange(true)) LOG(kLogWarning, "Generated clips go without texts: no text can be drawn");
}

}  // namespace

ClipText::ClipText(int size) : boxHeight((size * 3 / 2 + 1) & ~1) {
    source = MakeElement("appsrc");
    overlay = MakeElement("textoverlay");
    sink = MakeElement("appsink");
    if (!source || !overlay || !sink) {
        LogOnce();
        return;
    }
    const GstOwned<GstCaps> caps(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", "width",
                                                     G_TYPE_INT, kBoxWidth, "height", G_TYPE_INT, boxHeight,
                                                     "framerate", GST_TYPE_FRACTION, 1, 1, nullptr));
    g_object_set(source.get(), "caps", caps.get(), "format", GST_FORMAT_TIME, nullptr);
    // Pango's points are 1/72 inch, and the element draws at 72 dots per inch when it does not scale by
    // itself.
    const std::string face = "Sans Bold " + std::to_string(size) + "px";
    g_object_set(overlay.get(), "font-desc", face.c_str(), "auto-resize", FALSE, "draw-shadow", FALSE,
                 "draw-outline", FALSE, "wait-text", FALSE, "xpad", kMargin, "ypad", size / 8, nullptr);
    gst_util_set_object_arg(G_OBJECT(overlay.get()), "halignment", "left");
    gst_util_set_object_arg(G_OBJECT(overlay.get()), "valignment", "top");
    g_object_set(sink.get(), "sync", FALSE, nullptr);

    pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    gst_bin_add_many(GST_BIN(pipeline.get()), source.get(), overlay.get(), sink.get(), nullptr);
    if (gst_element_link_many(source.get(), overlay.get(), sink.get(), nullptr) == FALSE ||
        gst_element_set_state(pipeline.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
        gst_element_set_state(pipeline.get(), GST_STATE_NULL);
        pipeline.reset();
        LogOnce();
    }
}

ClipText::~ClipText() {
    if (pipeline) gst_element_set_state(pipeline.get(), GST_STATE_NULL);
}

std::optional<Mask> ClipText::Render(const std::string& text) {
    if (!pipeline || text.empty()) return std::nullopt;
    // The element reads markup.
    const std::string escaped = TakeText(g_markup_escape_text(text.c_str(), -1));
    g_object_set(overlay.get(), "text", escaped.c_str(), nullptr);

    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, kBoxWidth, static_cast<guint>(boxHeight));
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&info), nullptr);
    const gsize lumaSize = GST_VIDEO_INFO_PLANE_OFFSET(&info, 1);
    gst_buffer_memset(buffer, 0, kBlack, lumaSize);
    gst_buffer_memset(buffer, lumaSize, 128, GST_VIDEO_INFO_SIZE(&info) - lumaSize);
    GST_BUFFER_PTS(buffer) = 0;
    GST_BUFFER_DURATION(buffer) = GST_SECOND;
    gst_app_src_push_buffer(GST_APP_SRC(source.get()), buffer);
    const GstOwned<GstSample> sample(gst_app_sink_try_pull_sample(GST_APP_SINK(sink.get()), kPatience));
    GstVideoFrame frame;
    if (!sample ||
        gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample.get()), GST_MAP_READ) == FALSE) {
        LogOnce();
        return std::nullopt;
    }

    const auto* luma = static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0));
    const int stride = GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0);
    int left = kBoxWidth;
    int right = 0;
    for (int y = 0; y < boxHeight; ++y) {
        for (int x = 0; x < kBoxWidth; ++x) {
            if (luma[y * stride + x] <= kBlack) continue;
            left = std::min(left, x);
            right = std::max(right, x + 1);
        }
    }
    std::optional<Mask> mask;
    if (right > left) {
        mask.emplace(Mask{right - left, boxHeight, {}});
        for (int y = 0; y < boxHeight; ++y) {
            for (int x = left; x < right; ++x) {
                const int ink = std::clamp(luma[y * stride + x] - kBlack, 0, kWhiteOverBlack);
                mask->coverage.push_back(static_cast<uint8_t>(ink * 255 / kWhiteOverBlack));
            }
        }
    }
    gst_video_frame_unmap(&frame);
    return mask;
}

}  // namespace Corvanta::Engine
