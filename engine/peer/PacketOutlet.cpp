#include "engine/peer/PacketOutlet.h"

#include <gst/rtp/gstrtpbuffer.h>

#include <utility>

namespace Corvanta::Engine {

PacketOutlet::PacketOutlet(GstOwned<GstElement> source, std::uint32_t streamSource)
    : ssrc(streamSource),
      appSource(std::move(source)),
      nextNumber(static_cast<std::uint16_t>(g_random_int_range(0, G_MAXINT16))) {}

void PacketOutlet::Open() {
    const std::lock_guard lock(stateMutex);
    isOpen = appSource != nullptr;
}

void PacketOutlet::Close() {
    const std::lock_guard lock(stateMutex);
    isOpen = false;
    appSource.reset();
    keyFrameSource = nullptr;
}

void PacketOutlet::Push(GstBuffer* packet) {
    const std::lock_guard lock(stateMutex);
    if (!isOpen) return;
    // The payload stays shared; only the header in front of it is copied when it is written.
    GstBuffer* own = gst_buffer_make_writable(gst_buffer_ref(packet));
    GstRTPBuffer header = GST_RTP_BUFFER_INIT;
    if (gst_rtp_buffer_map(own, GST_MAP_READWRITE, &header) == FALSE) {
        gst_buffer_unref(own);
        return;
    }
    gst_rtp_buffer_set_ssrc(&header, ssrc);
    gst_rtp_buffer_set_seq(&header, nextNumber++);
    gst_rtp_buffer_unmap(&header);
    gst_app_src_push_buffer(GST_APP_SRC(appSource.get()), own);
}

void PacketOutlet::SetKeyFrameSource(std::function<void()> request) {
    const std::lock_guard lock(stateMutex);
    keyFrameSource = std::move(request);
    wasAsked = isAskedAgain = false;
}

void PacketOutlet::RequestKeyFrame() {
    std::function<void()> request;
    {
        const std::lock_guard lock(stateMutex);
        if (std::exchange(wasAsked, true)) {
            isAskedAgain = true;
            return;
        }
        request = keyFrameSource;
    }
    if (request) request();
}

void PacketOutlet::EndKeyFrameInterval() {
    {
        const std::lock_guard lock(stateMutex);
        wasAsked = false;
        if (!std::exchange(isAskedAgain, false)) return;
    }
    RequestKeyFrame();
}

}  // namespace Corvanta::Engine
