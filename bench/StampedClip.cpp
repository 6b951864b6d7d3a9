#include "bench/StampedClip.h"

#include <chrono>
#include <utility>

#include "bench/PictureStamp.h"

namespace Corvanta::Bench {

using Engine::GstOwned;

StampedClip::StampedClip(const std::string& name, std::size_t look, Taker pictureTaker)
    : scene(
          Engine::MakePersonScene(name, look, {}, {.width = kWidth, .height = kHeight, .frameRate = kRate})),
      taker(std::move(pictureTaker)),
      thread([this] { Run(); }) {}

StampedClip::~StampedClip() {
    isRunning = false;
    thread.join();
}

ColorSpace StampedClip::Colors() {
    return {ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709, ColorTransfer::BT709};
}

void StampedClip::Run() const {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::nanoseconds kInterval{1'000'000'000 / kRate};
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, kWidth, kHeight);
    const auto start = Clock::now();
    auto due = start;
    while (isRunning) {
        const GstOwned<GstBuffer> buffer(gst_buffer_new_allocate(nullptr, info.size, nullptr));
        GstVideoFrame frame;
        if (gst_video_frame_map(&frame, &info, buffer.get(), GST_MAP_WRITE) == FALSE) return;
        const auto plane = [&frame](guint index) { return static_cast<uint8_t*>(frame.data[index]); };
        scene->Draw(Clock::now() - start, {kWidth, kHeight, plane(0), plane(1), plane(2),
                                           frame.info.stride[0], frame.info.stride[1]});
        WriteStamp(plane(0), frame.info.stride[0], kWidth, kHeight, StampNow());
        gst_video_frame_unmap(&frame);
        taker(buffer.get(), info);
        due += kInterval;
        // Who was held up goes on from there.
        if (due < Clock::now()) due = Clock::now();
        std::this_thread::sleep_until(due);
    }
}

}  // namespace Corvanta::Bench
