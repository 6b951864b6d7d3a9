#include "engine/webrtc/ScreenSource.h"

#include <gst/app/gstappsrc.h>
#include <gst/video/video.h>

#include <chrono>
#include <thread>

#include "engine/webrtc/ScreenGrabber.h"

namespace Corvanta::Engine {

namespace {

using std::chrono::steady_clock;

constexpr int kFrameRate = 15;
constexpr steady_clock::duration kInterval = std::chrono::nanoseconds(std::chrono::seconds(1)) / kFrameRate;

// Belongs to the element; used by its streaming thread alone.
class Feeder final {
public:
    explicit Feeder(std::uint32_t window) : grabber(window) {}
    ~Feeder() { ReleasePool(); }
    Feeder(const Feeder&) = delete;
    Feeder& operator=(const Feeder&) = delete;

    // Returns when a picture was pushed, when there will never be another one, or when the element stops.
    void Feed(GstAppSrc* source) {
        const GstOwned<GstPad> pad(gst_element_get_static_pad(GST_ELEMENT(source), "src"));
        while (!GST_PAD_IS_FLUSHING(pad.get())) {
            WaitForTurn();
            const ScreenGrabber::Look look = grabber.Check();
            if (look.state == ScreenGrabber::State::Gone) {
                gst_app_src_end_of_stream(source);
                return;
            }
            if (look.state == ScreenGrabber::State::Visible && Push(source, look)) return;
        }
    }

private:
    void WaitForTurn() {
        const auto now = steady_clock::now();
        due += kInterval;
        // What was missed is not made up for.
        if (due < now) due = now;
        std::this_thread::sleep_until(due);
    }

    bool Push(GstAppSrc* source, const ScreenGrabber::Look& look) {
        if (!EnsurePool(look.width, look.height)) return false;
        GstBuffer* taken = nullptr;
        if (gst_buffer_pool_acquire_buffer(pool.get(), &taken, nullptr) != GST_FLOW_OK) return false;
        GstOwned<GstBuffer> buffer(taken);
        GstVideoFrame frame;
        if (gst_video_frame_map(&frame, &info, buffer.get(), GST_MAP_WRITE) == FALSE) return false;
        const bool isTaken = grabber.Take(static_cast<uint8_t*>(frame.data[0]),
                                          static_cast<std::size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0)));
        gst_video_frame_unmap(&frame);
        if (!isTaken) return false;
        gst_app_src_set_caps(source, caps.get());
        gst_app_src_push_buffer(source, buffer.release());
        return true;
    }

    bool EnsurePool(int width, int height) {
        if (pool && info.width == width && info.height == height) return true;
        ReleasePool();
        gst_video_info_set_format(&info, GST_VIDEO_FORMAT_BGRA, static_cast<guint>(width),
                                  static_cast<guint>(height));
        info.fps_n = kFrameRate;
        info.fps_d = 1;
        caps.reset(gst_video_info_to_caps(&info));
        pool.reset(gst_video_buffer_pool_new());
        GstStructure* const config = gst_buffer_pool_get_config(pool.get());
        gst_buffer_pool_config_set_params(config, caps.get(), static_cast<guint>(info.size), 0, 0);
        if (gst_buffer_pool_set_config(pool.get(), config) != FALSE &&
            gst_buffer_pool_set_active(pool.get(), TRUE) != FALSE) {
            return true;
        }
        pool.reset();
        return false;
    }

    void ReleasePool() {
        // Buffers that are still shared keep the pool until they come back.
        if (pool) gst_buffer_pool_set_active(pool.get(), FALSE);
        pool.reset();
    }

    ScreenGrabber grabber;
    steady_clock::time_point due = steady_clock::now();
    GstVideoInfo info{};
    GstOwned<GstCaps> caps;
    GstOwned<GstBufferPool> pool;
};

}  // namespace

GstOwned<GstElement> MakeScreenElement(std::uint32_t window) {
    auto element = MakeElement("appsrc");
    if (!element) return element;
    // A picture may wait for as long as the pipeline needs to show it.
    g_object_set(element.get(), "format", GST_FORMAT_TIME, "is-live", TRUE, "do-timestamp", TRUE,
                 "min-latency", gint64{0}, "max-latency", gint64{GST_SECOND}, "max-buffers", guint64{1},
                 "max-bytes", guint64{0}, nullptr);
    GstAppSrcCallbacks callbacks{};
    callbacks.need_data = [](GstAppSrc* source, guint, gpointer feeder) {
        static_cast<Feeder*>(feeder)->Feed(source);
    };
    gst_app_src_set_callbacks(GST_APP_SRC(element.get()), &callbacks, new Feeder(window),
                              [](gpointer feeder) { delete static_cast<Feeder*>(feeder); });
    return element;
}

}  // namespace Corvanta::Engine
