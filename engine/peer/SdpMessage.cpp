#include "engine/peer/SdpMessage.h"

namespace Corvanta::Engine {

SdpMessage ReadSdp(const std::string& sdp) {
    SdpMessage message(nullptr, gst_sdp_message_free);
    if (sdp.empty()) return message;
    // gst_sdp_message_new_from_text keeps the message when the text is none.
    GstSDPMessage* made = nullptr;
    gst_sdp_message_new(&made);
    message.reset(made);
    const auto* const bytes = reinterpret_cast<const guint8*>(sdp.c_str());
    if (gst_sdp_message_parse_buffer(bytes, static_cast<guint>(sdp.size()), made) != GST_SDP_OK)
        message.reset();
    return message;
}

}  // namespace Corvanta::Engine
