#include "engine/webrtc/ClipSource.h"

#include <gst/app/gstappsrc.h>
#include <gst/video/video.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>

namespace Corvanta::Engine {

namespace {

constexpr int kSoundRate = 48000;
constexpr int kSoundFrames = kSoundRate / 50;
constexpr GstClockTime kSoundDuration = GST_SECOND / 50;
constexpr guint64 kQueuedBuffers = 3;
// A machine that cannot keep up gets fewer pictures, not late ones.
constexpr GstClockTime kTooLate = 200 * GST_MSECOND;
// A voice-like mixture of the first partials.
constexpr double kPartials[] = {0.6, 0.28, 0.12};

GstClockTime PictureTime(guint64 index, int frameRate) {
    return gst_util_uint64_scale(index, GST_SECOND, static_cast<guint64>(frameRate));
}

// Zero before the element plays; on its way there it has a clock already, but no start to count from.
GstClockTime RunningTime(GstElement* element) {
    GstState state = GST_STATE_NULL;
    gst_element_get_state(element, &state, nullptr, 0);
    const GstClockTime time = gst_element_get_current_running_time(element);
    return state == GST_STATE_PLAYING && GST_CLOCK_TIME_IS_VALID(time) ? time : 0;
}

GstOwned<GstElement> MakeSource(const GstCaps* caps) {
    auto source = MakeElement("appsrc");
    if (!source) return source;
    g_object_set(source.get(), "caps", caps, "format", GST_FORMAT_TIME, "max-buffers", kQueuedBuffers,
                 "max-bytes", guint64{0}, nullptr);
    return source;
}

}  // namespace

ClipSource::ClipSource(std::unique_ptr<const ClipScene> shownScene) : scene(std::move(shownScene)) {
    const ClipFormat& format = scene->Format();
    pictureCaps.reset(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", "width", G_TYPE_INT,
                                          format.width, "height", G_TYPE_INT, format.height, "framerate",
                                          GST_TYPE_FRACTION, format.frameRate, 1, "pixel-aspect-ratio",
                                          GST_TYPE_FRACTION, 1, 1, "colorimetry", G_TYPE_STRING, "bt709",
                                          "interlace-mode", G_TYPE_STRING, "progressive", nullptr));
    const GstOwned<GstCaps> soundCaps(gst_caps_new_simple(
        "audio/x-raw", "format", G_TYPE_STRING, G_BYTE_ORDER == G_LITTLE_ENDIAN ? "S16LE" : "S16BE", "rate",
        G_TYPE_INT, kSoundRate, "channels", G_TYPE_INT, 1, "layout", G_TYPE_STRING, "interleaved", nullptr));
    video = MakeSource(pictureCaps.get());
    audio = MakeSource(soundCaps.get());
    if (!video || !audio) return;

    pool.reset(gst_video_buffer_pool_new());
    GstStructure* config = gst_buffer_pool_get_config(pool.get());
    gst_buffer_pool_config_set_params(config, pictureCaps.get(),
                                      static_cast<guint>(format.width * format.height * 3 / 2), 0, 0);
    gst_buffer_pool_set_config(pool.get(), config);
    gst_buffer_pool_set_active(pool.get(), TRUE);

    GstAppSrcCallbacks callbacks{};
    callbacks.need_data = [](GstAppSrc*, guint, gpointer self) {
        static_cast<ClipSource*>(self)->PushPicture();
    };
    gst_app_src_set_callbacks(GST_APP_SRC(video.get()), &callbacks, this, nullptr);
    callbacks.need_data = [](GstAppSrc*, guint, gpointer self) {
        static_cast<ClipSource*>(self)->PushSound();
    };
    gst_app_src_set_callbacks(GST_APP_SRC(audio.get()), &callbacks, this, nullptr);
}

ClipSource::~ClipSource() {
    // Buffers that are still shown keep the pool until they come back.
    if (pool) gst_buffer_pool_set_active(pool.get(), FALSE);
}

void ClipSource::PushPicture() {
    const auto [width, height, frameRate] = scene->Format();
    const GstClockTime now = RunningTime(video.get());
    if (now > PictureTime(nextPicture, frameRate) + kTooLate) {
        nextPicture = gst_util_uint64_scale(now, static_cast<guint64>(frameRate), GST_SECOND);
    }
    GstBuffer* buffer = nullptr;
    if (gst_buffer_pool_acquire_buffer(pool.get(), &buffer, nullptr) != GST_FLOW_OK) return;
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, static_cast<guint>(width),
                              static_cast<guint>(height));
    const GstClockTime time = PictureTime(nextPicture++, frameRate);
    GstVideoFrame frame;
    if (gst_video_frame_map(&frame, &info, buffer, GST_MAP_WRITE) != FALSE) {
        const auto plane = [&](guint index) { return static_cast<uint8_t*>(frame.data[index]); };
        scene->Draw(
            std::chrono::nanoseconds(startNs + static_cast<int64_t>(time)),
            {width, height, plane(0), plane(1), plane(2), frame.info.stride[0], frame.info.stride[1]});
        gst_video_frame_unmap(&frame);
    }
    GST_BUFFER_PTS(buffer) = time;
    GST_BUFFER_DURATION(buffer) = PictureTime(nextPicture, frameRate) - time;
    gst_app_src_push_buffer(GST_APP_SRC(video.get()), buffer);
}

void ClipSource::PushSound() {
    const GstClockTime time = nextSound++ * kSoundDuration;
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, kSoundFrames * sizeof(int16_t), nullptr);
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_WRITE) != FALSE) {
        auto* samples = reinterpret_cast<int16_t*>(map.data);
        const auto clipTime = std::chrono::nanoseconds(startNs + static_cast<int64_t>(time));
        const double first = scene->Loudness(clipTime);
        const double last = scene->Loudness(clipTime + std::chrono::nanoseconds(kSoundDuration));
        const bool isSilent = first == 0 && last == 0;
        if (isSilent) std::fill_n(samples, kSoundFrames, int16_t{0});
        const double step = 2 * std::numbers::pi * scene->PitchHz() / kSoundRate;
        for (int index = 0; index < kSoundFrames && !isSilent; ++index) {
            double value = 0;
            double partial = 1;
            for (const double share : kPartials) value += share * std::sin(tonePhase * partial++);
            const double loudness = std::lerp(first, last, static_cast<double>(index) / kSoundFrames);
            samples[index] = static_cast<int16_t>(std::lround(value * loudness * INT16_MAX));
            tonePhase = std::fmod(tonePhase + step, 2 * std::numbers::pi);
        }
        gst_buffer_unmap(buffer, &map);
    }
    GST_BUFFER_PTS(buffer) = time;
    GST_BUFFER_DURATION(buffer) = kSoundDuration;
    gst_app_src_push_buffer(GST_APP_SRC(audio.get()), buffer);
}

}  // namespace Corvanta::Engine
