// One kind of packets of an outbound feed on their way into one peer's pipeline: a queue that drops its
// oldest packets when the peer is slow. Any thread.
#pragma once

#include <gst/app/gstappsrc.h>

#include <cstdint>
#include <functional>
#include <mutex>

#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

class PacketOutlet final {
public:
    // `source` takes the packets; they get `streamSource` as their SSRC, and follow each other in number
    // whichever feed they come from, so that a feed can be exchanged in the middle of a session.
    PacketOutlet(GstOwned<GstElement> source, std::uint32_t streamSource);
    PacketOutlet(const PacketOutlet&) = delete;
    PacketOutlet& operator=(const PacketOutlet&) = delete;

    // Packets go nowhere until it is opened: what is queued before the peer is connected would come late.
    void Open();
    // For good: on return no packet is on its way into the pipeline and none follows.
    void Close();
    void Push(GstBuffer* packet);

    // Whom to ask for a key frame; an empty function ends it. Once it was asked, it is not asked again before
    // EndKeyFrameInterval.
    void SetKeyFrameSource(std::function<void()> request);
    // The peer wants a key frame.
    void RequestKeyFrame();
    // Passes on what was asked for meanwhile.
    void EndKeyFrameInterval();

private:
    const std::uint32_t ssrc;
    std::mutex stateMutex;  // guards: everything below
    GstOwned<GstElement> appSource;
    std::function<void()> keyFrameSource;
    bool isOpen = false;
    // The source was asked a moment ago; and the peer has asked again since.
    bool wasAsked = false, isAskedAgain = false;
    std::uint16_t nextNumber;
};

}  // namespace Corvanta::Engine
